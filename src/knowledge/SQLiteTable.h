// The whole result of one query, read when the table is made.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vorel {

class TSQLiteDatabase;
class TSQLiteStatement;

// A cursor over the rows, which starts at the first one. Access behind the last row raises "Table
// is at End of File". Columns are counted from 0; an index outside them raises std::out_of_range.
class TSQLiteTable {
public:
    enum class ColumnType { Integer, Float, Blob, Text };

    // Raises as TSQLiteStatement does, "SQLite is Busy" when another connection holds the file, and
    // "Could not retrieve data" for any other failure.
    TSQLiteTable(TSQLiteDatabase& database, std::string_view text);

    std::size_t RowCount() const noexcept { return Rows.size(); }
    // 0 for a result with no rows.
    std::size_t ColumnCount() const noexcept { return Columns.size(); }
    bool Eof() const noexcept { return Row >= Rows.size(); }
    void Next() noexcept { Row += Eof() ? 0 : 1; }

    // A null value is an empty text; numbers come in decimal.
    std::string FieldAsString(std::size_t index) const;
    // The column of that name, without case.
    std::string FieldAsString(std::string_view name) const;
    // 0 for a null value.
    std::int64_t FieldAsInteger(std::size_t index) const;
    double FieldAsDouble(std::size_t index) const;
    // The bytes; empty for a null value.
    std::string FieldAsBlob(std::size_t index) const;

private:
    using Value = std::variant<std::monostate, std::int64_t, double, std::string>;
    struct TColumn {
        std::string Name; // upper case
        ColumnType Type;
    };

    void ReadColumns(const TSQLiteStatement& statement);
    void ReadRow(const TSQLiteStatement& statement);
    const Value& ValueAt(std::size_t index) const;

    std::vector<TColumn> Columns;
    std::vector<std::vector<Value>> Rows;
    std::size_t Row = 0;
};

} // namespace vorel
