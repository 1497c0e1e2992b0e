// A thin layer over SQLite: statements that raise, values that are text whatever they say.
//
// SQL texts carry values by one rule: every double quote doubled, the whole between double quotes
// (QuoteText). SQLite would take such a value for a column when a column has that name, so the
// layer hands it over as a text literal. Names in SQL texts stand bare or in square brackets.
#pragma once

#include "support/Errors.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace vorel {

class TSQLiteTable;

class ESQLiteException : public EVorelError {
public:
    explicit ESQLiteException(const std::string& text, int code = 0)
        : EVorelError(text), ResultCode(code) {}

    // SQLite's primary result code; 0 for a misuse of the layer itself.
    int GetResultCode() const noexcept { return ResultCode; }
    // True when the file is no database, or a broken one.
    bool MeansDamage() const noexcept;

private:
    int ResultCode;
};

std::string QuoteText(std::string_view value);

// One connection. Two of them, in one process or two, may work on one file: a connection that finds
// the other writing tries again for a while, then raises.
class TSQLiteDatabase {
public:
    enum class Access { ReadWrite, ReadOnly };
    // Asked with the number of tries so far; false gives up.
    using BusyHandler = std::function<bool(int tries)>;

    // Opens the file, which is created when it is missing and Access allows it. Raises
    // `Failed to open database "FILE" : REASON`.
    explicit TSQLiteDatabase(const std::string& fileName, Access access = Access::ReadWrite,
                             BusyHandler onBusy = WaitAWhile);
    TSQLiteDatabase(const TSQLiteDatabase&) = delete;
    TSQLiteDatabase& operator=(const TSQLiteDatabase&) = delete;
    // A transaction that is still open is rolled back.
    ~TSQLiteDatabase();

    // Runs one statement and drops its result.
    void ExecSQL(std::string_view text);
    TSQLiteTable GetTable(std::string_view text);
    bool TableExists(std::string_view name);
    void RollBack() noexcept; // does nothing outside a transaction
    // Takes the whole contents of `source`, in one transaction.
    void CopyFrom(TSQLiteDatabase& source);

    // Raises `TEXT "SQL" : MESSAGE` with SQLite's message, or "No message" when it has no error.
    [[noreturn]] void RaiseError(std::string_view text, std::string_view sql) const;
    sqlite3* GetHandle() const noexcept { return Database; }

    // The usual busy handler: short sleeps, 15 seconds in all.
    static bool WaitAWhile(int tries);

private:
    void Close() noexcept;

    sqlite3* Database = nullptr;
    BusyHandler OnBusy;
};

// BEGIN to COMMIT. Without Commit all that was written is taken back.
class TSQLiteTransaction {
public:
    explicit TSQLiteTransaction(TSQLiteDatabase& database);
    TSQLiteTransaction(const TSQLiteTransaction&) = delete;
    TSQLiteTransaction& operator=(const TSQLiteTransaction&) = delete;
    ~TSQLiteTransaction();

    void Commit();

private:
    TSQLiteDatabase& Database;
};

// A prepared statement. Parameters are counted from 1; a bound text is not copied and must stay
// until the step.
class TSQLiteStatement {
public:
    // Raises "Error executing SQL" for a text that SQLite refuses, "Could not prepare SQL
    // statement" for one that holds no statement.
    TSQLiteStatement(TSQLiteDatabase& database, std::string_view text);
    TSQLiteStatement(const TSQLiteStatement&) = delete;
    TSQLiteStatement& operator=(const TSQLiteStatement&) = delete;
    ~TSQLiteStatement();

    void BindText(int parameter, std::string_view text);
    void BindInteger(int parameter, std::int64_t value);
    // SQLite's result code of one step.
    int Step();
    // One step that has to succeed (else "Error executing SQL statement"), then back to the start.
    void Run();

    sqlite3_stmt* GetHandle() const noexcept { return Statement; }
    TSQLiteDatabase& GetDatabase() const noexcept { return Database; }
    const std::string& GetText() const noexcept { return Text; }

private:
    TSQLiteDatabase& Database;
    std::string Text;
    sqlite3_stmt* Statement = nullptr;
};

} // namespace vorel
