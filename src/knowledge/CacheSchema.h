// The tables of the driver cache. Their texts are part of the file format: other programs read it.
#pragma once

#include <array>

namespace vorel {

struct TCacheTable {
    const char* Name;
    const char* Schema;
};

inline constexpr std::array<TCacheTable, 3> CacheTables{{
    {"tblVorelCache", "CREATE TABLE tblVorelCache ([Path]         VARCHAR (255) COLLATE NOCASE,"
                      "[Vendor]       VARCHAR (255) COLLATE NOCASE,"
                      "[Family]       VARCHAR (255) COLLATE NOCASE,"
                      "[Device]       VARCHAR (255) PRIMARY KEY COLLATE NOCASE,"
                      "[Display]      VARCHAR (255) COLLATE NOCASE,"
                      "[Type]         VARCHAR (255) COLLATE NOCASE,"
                      "[IdCode]       INTEGER NULL,"
                      "[MaskedIdCode] INTEGER NULL);"},
    {"tblModuleFileTime",
     "CREATE TABLE tblModuleFileTime ([Path]       VARCHAR (255) PRIMARY KEY COLLATE NOCASE,"
     "[FileTime]   INTEGER NULL,"
     "[Checksum]   VARCHAR (255) NULL COLLATE NOCASE);"},
    {"tblSystemInfo", "CREATE TABLE tblSystemInfo ([ID]      INTEGER PRIMARY KEY,"
                      "[Version] VARCHAR (255));"},
}};

} // namespace vorel
