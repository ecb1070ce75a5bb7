#include "avqdata/csv_table.h"

#include <csv.h>

#include <algorithm>

namespace avqdata {
namespace {

constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);

struct Reader {
    const std::vector<std::string>& columns;
    const std::function<void(const CsvRow&)>& onRow;
    std::string missing;              // a column that must be there and is not
    std::vector<std::size_t> wanted;  // per file column: which of `columns`
    std::vector<std::string> header;
    std::vector<std::string> fields;
    std::size_t column = 0;
    std::size_t number = 0;
};

void OnField(void* data, std::size_t size, void* context) {
    auto& reader = *static_cast<Reader*>(context);
    const std::string_view text(static_cast<const char*>(data), size);
    if (reader.number == 0) {
        reader.header.emplace_back(text);
    } else if (reader.column < reader.wanted.size() && reader.wanted[reader.column] != kNoColumn) {
        reader.fields[reader.wanted[reader.column]] = text;
    }
    ++reader.column;
}

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

void OnRecord(int, void* context) {
    auto& reader = *static_cast<Reader*>(context);
    ++reader.number;
    reader.column = 0;
    if (reader.number == 1) {
        TakeHeader(reader);
    } else if (reader.missing.empty()) {
        reader.onRow({reader.number, reader.fields});
    }
    reader.fields.assign(reader.columns.size(), {});
}

}  // namespace

bool ReadCsv(std::string_view text, const std::vector<std::string>& columns,
             const std::function<void(const CsvRow&)>& onRow, std::string& error) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    Reader reader{columns, onRow, {}, {}, {}, std::vector<std::string>(columns.size()), 0, 0};
    csv_parser parser;
    if (csv_init(&parser, 0) != 0) {
        error = "no memory for the table";
        return false;
    }
    const bool read =
        csv_parse(&parser, text.data(), text.size(), OnField, OnRecord, &reader) == text.size() &&
        csv_fini(&parser, OnField, OnRecord, &reader) == 0;
    csv_free(&parser);
    if (!read) {
        error = "is no table of comma-separated values";
    } else if (reader.number == 0) {
        error = "is empty";
    } else if (!reader.missing.empty()) {
        error = "has no column \"" + reader.missing + "\"";
    }
    return read && reader.number > 0 && reader.missing.empty();
}

}  // namespace avqdata
