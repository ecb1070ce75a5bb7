#include "avqdata/csv_table.h"

#include <algorithm>

namespace avqdata {
namespace {

constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);
constexpr std::string_view kBlanks = " \t";

struct Reader {
    const std::vector<std::string>& columns;
    std::string missing = {};              // a column that must be there and is not
    std::vector<std::size_t> wanted = {};  // per file column: which of `columns`
    std::vector<std::string> header = {};
};

void TakeHeader(Reader& reader) {
    reader.wanted.assign(reader.header.size(), kNoColumn);
    for (std::size_t i = 0; i < reader.columns.size(); ++i) {
        const std::string& column = reader.columns[i];
        const bool optional = column.starts_with('?');
        const auto found =
            std::find(reader.header.begin(), reader.header.end(), column.substr(optional ? 1 : 0));
        if (found != reader.header.end()) {
            reader.wanted[static_cast<std::size_t>(found - reader.header.begin())] = i;
        } else if (!optional && reader.missing.empty()) {
            reader.missing = column;
        }
    }
}

// Takes a field off the text; the separator behind it stays. `room` is for a field in which quotes
// are doubled. False when a quoted field does not end.
bool TakeField(std::string_view& text, std::string& room, std::string_view& field) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    if (!text.starts_with('"')) {
        field = text.substr(0, text.find_first_of(",\r\n"));
        text.remove_prefix(field.size());
        field = field.substr(0, field.find_last_not_of(kBlanks) + 1);
        return true;
    }
    room.clear();
    std::size_t end = text.find('"', 1);
    while (end != std::string_view::npos && text.substr(end + 1).starts_with('"')) {
        room.append(text, 1, end);  // with the first of the two
        text.remove_prefix(end + 1);
        end = text.find('"', 1);
    }
    if (end == std::string_view::npos) {
        return false;
    }
    field = text.substr(1, end - 1);
    if (!room.empty()) {
        room += field;
        field = room;
    }
    text.remove_prefix(std::min(text.find_first_of(",\r\n", end + 1), text.size()));
    return true;
}

// Takes a record off the text, calling `onField` with each field and its number.
template <typename OnField>
bool TakeRecord(std::string_view& text, std::string& room, OnField onField) {
    std::string_view field;
    for (std::size_t column = 0;; ++column) {
        if (!TakeField(text, room, field)) {
            return false;
        }
        onField(column, field);
        if (!text.starts_with(',')) {
            return true;
        }
        text.remove_prefix(1);
    }
}

void SkipLineEnds(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
}

// The records behind the header.
bool ReadRecords(std::string_view text, const Reader& reader,
                 const std::function<void(const CsvRow&)>& onRow) {
    std::vector<std::string> fields(reader.columns.size());
    std::string room;
    SkipLineEnds(text);
    for (std::size_t number = 2; !text.empty(); ++number) {
        for (std::string& field : fields) {
            field.clear();
        }
        const bool taken = TakeRecord(text, room, [&](std::size_t column, std::string_view field) {
            if (column < reader.wanted.size() && reader.wanted[column] != kNoColumn) {
                fields[reader.wanted[column]] = field;
            }
        });
        if (!taken) {
            return false;
        }
        onRow({number, fields});
        SkipLineEnds(text);
    }
    return true;
}

}  // namespace

bool ReadCsv(std::string_view text, const std::vector<std::string>& columns,
             const std::function<void(const CsvRow&)>& onRow, std::string& error) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    SkipLineEnds(text);
    if (text.empty()) {
        error = "is empty";
        return false;
    }
    Reader reader{columns};
    std::string room;
    bool read = TakeRecord(text, room, [&](std::size_t, std::string_view field) {
        reader.header.emplace_back(field);
    });
    TakeHeader(reader);
    if (read && !reader.missing.empty()) {
        error = "has no column \"" + reader.missing + "\"";
        return false;
    }
    read = read && ReadRecords(text, reader, onRow);
    if (!read) {
        error = "is no table of comma-separated values: a quoted field does not end";
    }
    return read;
}

}  // namespace avqdata
