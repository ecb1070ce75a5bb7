// avqdata/csv_table.h - CSV files with a header line, by column name.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace avqdata {

// One record: its fields in the order of the columns asked for.
struct CsvRow {
    std::size_t number = 0;  // of the record, the header being 1
    const std::vector<std::string>& fields;
    const std::string& operator[](std::size_t column) const { return fields[column]; }
};

// Calls `onRow` for every record. A column that the header lacks gives empty fields when it may be
// missing ("?name"), else an error. False, with `error`, when the text is no such table.
bool ReadCsv(std::string_view text, const std::vector<std::string>& columns,
             const std::function<void(const CsvRow&)>& onRow, std::string& error);

}  // namespace avqdata
