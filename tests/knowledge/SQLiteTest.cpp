#include "knowledge/SQLiteDatabase.h"
#include "knowledge/SQLiteTable.h"
#include "knowledge/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace vorel {
namespace {

using testing::HasSubstr;

template<class Call>
std::string ErrorOf(Call call) {
    try {
        call();
    } catch (const ESQLiteException& error) {
        return error.what();
    }
    return "no error";
}

struct SQLite : testing::Test {
    TTempFolder Folder;
    TSQLiteDatabase Database{Folder / "test.db"};
};

TEST_F(SQLite, QuotedValuesAreTextsEvenWhenTheyNameAColumn) {
    Database.ExecSQL("CREATE TABLE t ([Path] VARCHAR (255) COLLATE NOCASE, [b] BLOB)");
    for (const char* value : {"Path", "a\"b", "it's", "[x]", "''\"\"", ""}) {
        Database.ExecSQL("INSERT INTO t(Path) VALUES (" + QuoteText(value) + ")");
        TSQLiteTable table =
            Database.GetTable("SELECT Path FROM t WHERE Path = " + QuoteText(value));
        ASSERT_EQ(table.RowCount(), 1U) << value;
        EXPECT_EQ(table.FieldAsString("pATH"), value);
    }
    Database.ExecSQL("DELETE FROM t WHERE Path = \"path\";");
    EXPECT_EQ(Database.GetTable("SELECT * FROM t").RowCount(), 5U);
    EXPECT_EQ(QuoteText("a\"b"), "\"a\"\"b\"");
    EXPECT_TRUE(Database.TableExists("T"));
    EXPECT_FALSE(Database.TableExists("u"));
}

TEST_F(SQLite, ColumnsTakeTheirTypesFromDeclarationOrFirstRow) {
    Database.ExecSQL("CREATE TABLE t (i INTEGER, n NUMERIC, f DOUBLE, b BLOB, v VARCHAR (255))");
    Database.ExecSQL("INSERT INTO t VALUES (7, 8, 1.5, X'00FF', '12')");
    Database.ExecSQL("INSERT INTO t VALUES (NULL, NULL, NULL, NULL, NULL)");
    TSQLiteTable table = Database.GetTable("SELECT *, i + 1 AS sum FROM t");
    EXPECT_EQ(table.ColumnCount(), 6U);
    EXPECT_EQ(table.FieldAsInteger(0) + table.FieldAsInteger(1) + table.FieldAsInteger(5), 23);
    EXPECT_EQ(table.FieldAsDouble(2), 1.5);
    EXPECT_EQ(table.FieldAsBlob(3), std::string("\0\xFF", 2));
    EXPECT_EQ(table.FieldAsString("v"), "12");
    EXPECT_EQ(ErrorOf([&] { table.FieldAsInteger(4); }), "Not an Integer or numeric field");
    EXPECT_EQ(ErrorOf([&] { table.FieldAsBlob(0); }), "Not a Blob field");
    EXPECT_EQ(ErrorOf([&] { table.FieldAsString("zz"); }), "Field not found in dataset: zz");
    table.Next();
    EXPECT_EQ(table.FieldAsInteger(0), 0);
    EXPECT_EQ(table.FieldAsString(std::size_t{4}), "");
    table.Next();
    EXPECT_TRUE(table.Eof());
    EXPECT_EQ(ErrorOf([&] { table.FieldAsString(std::size_t{0}); }), "Table is at End of File");
    TSQLiteTable empty = Database.GetTable("SELECT * FROM t WHERE i = 99");
    EXPECT_EQ(ErrorOf([&] { empty.FieldAsString("i"); }), "Field i Not found. Empty dataset");
}

TEST_F(SQLite, ErrorsCarryTheStatementAndTheReason) {
    EXPECT_EQ(ErrorOf([&] { Database.ExecSQL("SELEC"); }),
              "Error executing SQL \"SELEC\" : near \"SELEC\": syntax error");
    EXPECT_EQ(ErrorOf([&] { Database.GetTable(" "); }),
              "Could not prepare SQL statement \" \" : No message");
    Database.ExecSQL("CREATE TABLE t (i INTEGER PRIMARY KEY)");
    Database.ExecSQL("INSERT INTO t VALUES (1)");
    EXPECT_THAT(ErrorOf([&] { Database.ExecSQL("INSERT INTO t VALUES (1)"); }),
                HasSubstr("Error executing SQL statement \"INSERT INTO t VALUES (1)\" : UNIQUE"));
    EXPECT_THAT(ErrorOf([&] { TSQLiteDatabase(Folder / "no/such.db"); }),
                HasSubstr("Failed to open database \"" + (Folder / "no/such.db") + "\" : unable"));
}

TEST_F(SQLite, ABusyDatabaseIsTriedAgainAndThenReported) {
    Database.ExecSQL("CREATE TABLE t (i INTEGER)");
    int tries = 0;
    TSQLiteDatabase other(Folder / "test.db", TSQLiteDatabase::Access::ReadWrite, [&](int count) {
        tries = count + 1;
        return tries < 3;
    });
    Database.ExecSQL("BEGIN EXCLUSIVE");
    EXPECT_THAT(ErrorOf([&] { other.GetTable("SELECT * FROM t"); }), HasSubstr("locked"));
    EXPECT_EQ(tries, 3);

    TSQLiteDatabase patient(Folder / "test.db", TSQLiteDatabase::Access::ReadWrite, [&](int) {
        Database.ExecSQL("COMMIT");
        return true;
    });
    patient.ExecSQL("INSERT INTO t VALUES (1)");
    EXPECT_EQ(Database.GetTable("SELECT * FROM t").RowCount(), 1U);
}

TEST_F(SQLite, WhatWasNotCommittedIsTakenBack) {
    Database.ExecSQL("CREATE TABLE t (i INTEGER)");
    {
        TSQLiteTransaction transaction(Database);
        Database.ExecSQL("INSERT INTO t VALUES (1)");
    }
    EXPECT_EQ(Database.GetTable("SELECT * FROM t").RowCount(), 0U);
}

} // namespace
} // namespace vorel
