#include "knowledge/SQLiteDatabase.h"

#include "knowledge/SQLiteTable.h"
#include "support/Text.h"

#include <chrono>
#include <sqlite3.h>
#include <thread>

namespace vorel {

namespace {

// Copies the part between `quote` characters that starts at `pos`, unchanged.
void CopyQuoted(std::string_view text, std::size_t& pos, char closing, std::string& out) {
    out.push_back(text[pos++]);
    while (pos < text.size()) {
        out.push_back(text[pos]);
        if (text[pos++] == closing) {
            return;
        }
    }
}

// Turns the value in double quotes at `pos` into a literal in single quotes.
void CopyAsLiteral(std::string_view text, std::size_t& pos, std::string& out) {
    out.push_back('\'');
    for (++pos; pos < text.size(); ++pos) {
        if (text[pos] == '"') {
            if (pos + 1 >= text.size() || text[pos + 1] != '"') {
                break;
            }
            ++pos;
        }
        if (text[pos] == '\'') {
            out.push_back('\'');
        }
        out.push_back(text[pos]);
    }
    ++pos;
    out.push_back('\'');
}

std::string WithLiterals(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t pos = 0; pos < text.size();) {
        switch (text[pos]) {
        case '"':
            CopyAsLiteral(text, pos, out);
            break;
        case '\'':
            CopyQuoted(text, pos, '\'', out);
            break;
        case '[':
            CopyQuoted(text, pos, ']', out);
            break;
        default:
            out.push_back(text[pos++]);
        }
    }
    return out;
}

int AskBusyHandler(void* context, int tries) {
    try {
        return (*static_cast<TSQLiteDatabase::BusyHandler*>(context))(tries) ? 1 : 0;
    } catch (...) {
        return 0;
    }
}

constexpr int BusySleepMs = 10;
constexpr int BusyTries = 15000 / BusySleepMs;

} // namespace

bool ESQLiteException::MeansDamage() const noexcept {
    return ResultCode == SQLITE_CORRUPT || ResultCode == SQLITE_NOTADB;
}

std::string QuoteText(std::string_view value) {
    std::string text = "\"";
    for (const char c : value) {
        if (c == '"') {
            text.push_back('"');
        }
        text.push_back(c);
    }
    text.push_back('"');
    return text;
}

TSQLiteDatabase::TSQLiteDatabase(const std::string& fileName, Access access, BusyHandler onBusy)
    : OnBusy(std::move(onBusy)) {
    const int flags = access == Access::ReadOnly ? SQLITE_OPEN_READONLY
                                                 : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    const int code = sqlite3_open_v2(fileName.c_str(), &Database, flags, nullptr);
    if (code != SQLITE_OK) {
        const std::string reason = Database != nullptr ? sqlite3_errmsg(Database) : "unknown error";
        Close();
        throw ESQLiteException("Failed to open database \"" + fileName + "\" : " + reason, code);
    }
    try {
        sqlite3_busy_handler(Database, AskBusyHandler, &OnBusy);
        ExecSQL("PRAGMA SYNCHRONOUS=NORMAL;");
        ExecSQL("PRAGMA temp_store = MEMORY;");
    } catch (...) {
        Close();
        throw;
    }
}

TSQLiteDatabase::~TSQLiteDatabase() {
    RollBack();
    Close();
}

void TSQLiteDatabase::RollBack() noexcept {
    if (sqlite3_get_autocommit(Database) == 0) {
        sqlite3_exec(Database, "ROLLBACK;", nullptr, nullptr, nullptr);
    }
}

void TSQLiteDatabase::Close() noexcept {
    sqlite3_close(Database);
    Database = nullptr;
}

bool TSQLiteDatabase::WaitAWhile(int tries) {
    if (tries >= BusyTries) {
        return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(BusySleepMs));
    return true;
}

void TSQLiteDatabase::ExecSQL(std::string_view text) {
    TSQLiteStatement(*this, text).Run();
}

TSQLiteTable TSQLiteDatabase::GetTable(std::string_view text) {
    return {*this, text};
}

bool TSQLiteDatabase::TableExists(std::string_view name) {
    return GetTable("select [sql] from sqlite_master where [type] = 'table' and lower(name) = '" +
                    LowerCase(name) + "' ")
               .RowCount() > 0;
}

void TSQLiteDatabase::CopyFrom(TSQLiteDatabase& source) {
    sqlite3_backup* backup = sqlite3_backup_init(Database, "main", source.Database, "main");
    if (backup == nullptr) {
        RaiseError("Could not copy the database", "");
    }
    const int code = sqlite3_backup_step(backup, -1);
    sqlite3_backup_finish(backup);
    if (code != SQLITE_DONE) {
        throw ESQLiteException(std::string("Could not copy the database : ") + sqlite3_errstr(code),
                               code);
    }
}

void TSQLiteDatabase::RaiseError(std::string_view text, std::string_view sql) const {
    const int code = sqlite3_errcode(Database);
    const bool hasMessage = code != SQLITE_OK;
    std::string message(text);
    message.append(" \"").append(sql).append("\" : ");
    message += hasMessage ? sqlite3_errmsg(Database) : "No message";
    throw ESQLiteException(message, code & 0xFF);
}

TSQLiteTransaction::TSQLiteTransaction(TSQLiteDatabase& database) : Database(database) {
    Database.ExecSQL("BEGIN");
}

TSQLiteTransaction::~TSQLiteTransaction() {
    Database.RollBack();
}

void TSQLiteTransaction::Commit() {
    Database.ExecSQL("COMMIT");
}

TSQLiteStatement::TSQLiteStatement(TSQLiteDatabase& database, std::string_view text)
    : Database(database), Text(text) {
    const std::string sql = WithLiterals(text);
    const int length = static_cast<int>(std::min<std::size_t>(sql.size() + 1, 0x7FFFFFFF));
    if (sqlite3_prepare_v2(Database.GetHandle(), sql.c_str(), length, &Statement, nullptr) !=
        SQLITE_OK) {
        Database.RaiseError("Error executing SQL", Text);
    }
    if (Statement == nullptr) {
        Database.RaiseError("Could not prepare SQL statement", Text);
    }
}

TSQLiteStatement::~TSQLiteStatement() {
    sqlite3_finalize(Statement);
}

void TSQLiteStatement::BindText(int parameter, std::string_view text) {
    if (sqlite3_bind_text64(Statement, parameter, text.data(), text.size(), SQLITE_STATIC,
                            SQLITE_UTF8) != SQLITE_OK) {
        Database.RaiseError("Could not bind a text", Text);
    }
}

void TSQLiteStatement::BindInteger(int parameter, std::int64_t value) {
    if (sqlite3_bind_int64(Statement, parameter, value) != SQLITE_OK) {
        Database.RaiseError("Could not bind a number", Text);
    }
}

int TSQLiteStatement::Step() {
    return sqlite3_step(Statement);
}

void TSQLiteStatement::Run() {
    const int code = Step();
    if (code != SQLITE_DONE && code != SQLITE_ROW) {
        Database.RaiseError("Error executing SQL statement", Text);
    }
    sqlite3_reset(Statement);
}

} // namespace vorel
