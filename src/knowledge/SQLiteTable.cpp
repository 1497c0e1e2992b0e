#include "knowledge/SQLiteTable.h"

#include "knowledge/SQLiteDatabase.h"
#include "support/Text.h"

#include <algorithm>
#include <array>
#include <sqlite3.h>
#include <utility>

namespace vorel {

namespace {

using Type = TSQLiteTable::ColumnType;

constexpr std::array<std::pair<std::string_view, Type>, 7> DeclaredTypes{{
    {"INTEGER", Type::Integer},
    {"BOOLEAN", Type::Integer},
    {"NUMERIC", Type::Integer},
    {"FLOAT", Type::Float},
    {"DOUBLE", Type::Float},
    {"REAL", Type::Float},
    {"BLOB", Type::Blob},
}};

Type TypeOfColumn(sqlite3_stmt* statement, int column) {
    if (const char* declared = sqlite3_column_decltype(statement, column)) {
        const auto* const hit =
            std::find_if(DeclaredTypes.begin(), DeclaredTypes.end(),
                         [&](const auto& entry) { return SameText(entry.first, declared); });
        return hit == DeclaredTypes.end() ? Type::Text : hit->second;
    }
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return Type::Integer;
    case SQLITE_FLOAT:
        return Type::Float;
    case SQLITE_BLOB:
        return Type::Blob;
    default:
        return Type::Text;
    }
}

std::string BytesOfColumn(sqlite3_stmt* statement, int column) {
    const void* bytes = sqlite3_column_blob(statement, column);
    const int count = sqlite3_column_bytes(statement, column);
    return bytes == nullptr
               ? std::string()
               : std::string(static_cast<const char*>(bytes), static_cast<std::size_t>(count));
}

} // namespace

TSQLiteTable::TSQLiteTable(TSQLiteDatabase& database, std::string_view text) {
    TSQLiteStatement statement(database, text);
    int code = statement.Step();
    for (; code == SQLITE_ROW; code = statement.Step()) {
        if (Rows.empty()) {
            ReadColumns(statement);
        }
        ReadRow(statement);
    }
    if (code != SQLITE_DONE) {
        database.RaiseError(code == SQLITE_BUSY ? "SQLite is Busy" : "Could not retrieve data",
                            text);
    }
}

void TSQLiteTable::ReadColumns(const TSQLiteStatement& statement) {
    const int count = sqlite3_column_count(statement.GetHandle());
    for (int i = 0; i < count; ++i) {
        const char* name = sqlite3_column_name(statement.GetHandle(), i);
        Columns.push_back(
            {UpperCase(name == nullptr ? "" : name), TypeOfColumn(statement.GetHandle(), i)});
    }
}

void TSQLiteTable::ReadRow(const TSQLiteStatement& statement) {
    sqlite3_stmt* const row = statement.GetHandle();
    std::vector<Value>& values = Rows.emplace_back();
    values.reserve(Columns.size());
    int index = 0;
    for (const TColumn& column : Columns) {
        if (sqlite3_column_type(row, index) == SQLITE_NULL) {
            values.emplace_back();
        } else if (column.Type == ColumnType::Integer) {
            values.emplace_back(std::int64_t{sqlite3_column_int64(row, index)});
        } else if (column.Type == ColumnType::Float) {
            values.emplace_back(sqlite3_column_double(row, index));
        } else {
            values.emplace_back(BytesOfColumn(row, index));
        }
        ++index;
    }
}

const TSQLiteTable::Value& TSQLiteTable::ValueAt(std::size_t index) const {
    if (Eof()) {
        throw ESQLiteException("Table is at End of File");
    }
    return Rows[Row].at(index);
}

std::string TSQLiteTable::FieldAsString(std::size_t index) const {
    const Value& value = ValueAt(index);
    if (const auto* const text = std::get_if<std::string>(&value)) {
        return *text;
    }
    if (const auto* const number = std::get_if<std::int64_t>(&value)) {
        return std::to_string(*number);
    }
    if (const auto* const number = std::get_if<double>(&value)) {
        return std::to_string(*number);
    }
    return {};
}

std::string TSQLiteTable::FieldAsString(std::string_view name) const {
    if (Rows.empty()) {
        throw ESQLiteException("Field " + std::string(name) + " Not found. Empty dataset");
    }
    const auto hit = std::find_if(Columns.begin(), Columns.end(), [&](const TColumn& column) {
        return column.Name == UpperCase(name);
    });
    if (hit == Columns.end()) {
        throw ESQLiteException("Field not found in dataset: " + std::string(name));
    }
    return FieldAsString(static_cast<std::size_t>(hit - Columns.begin()));
}

std::int64_t TSQLiteTable::FieldAsInteger(std::size_t index) const {
    const Value& value = ValueAt(index);
    if (Columns[index].Type != ColumnType::Integer) {
        throw ESQLiteException("Not an Integer or numeric field");
    }
    const auto* const number = std::get_if<std::int64_t>(&value);
    return number == nullptr ? 0 : *number;
}

double TSQLiteTable::FieldAsDouble(std::size_t index) const {
    const Value& value = ValueAt(index);
    if (Columns[index].Type != ColumnType::Integer && Columns[index].Type != ColumnType::Float) {
        throw ESQLiteException("Not an Integer or numeric field");
    }
    if (const auto* const number = std::get_if<std::int64_t>(&value)) {
        return static_cast<double>(*number);
    }
    const auto* const number = std::get_if<double>(&value);
    return number == nullptr ? 0 : *number;
}

std::string TSQLiteTable::FieldAsBlob(std::size_t index) const {
    const Value& value = ValueAt(index);
    if (Columns[index].Type != ColumnType::Blob) {
        throw ESQLiteException("Not a Blob field");
    }
    const auto* const bytes = std::get_if<std::string>(&value);
    return bytes == nullptr ? std::string() : *bytes;
}

} // namespace vorel
