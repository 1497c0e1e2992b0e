#!/usr/bin/env bash
# Looks into the driver cache with the sqlite3 tool: the schema to the last blank, and what the rows
# say about the shipped driver modules.
#
# usage: sqlite3_test.sh SYSTEM_FOLDER. Exit status 77: sqlite3 is not installed.
set -euo pipefail

command -v sqlite3 >/dev/null || { echo "sqlite3 is not installed: skipped"; exit 77; }
system=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME=$work XDG_CONFIG_HOME=$work

"$system/vorelctl" cache status >/dev/null
cache=$work/vorel/VorelCache.db
ask() { sqlite3 -readonly "$cache" "$1"; }
expect() {
    local what=$1 wanted=$2 seen
    seen=$(ask "$3")
    [[ $seen == "$wanted" ]] || { printf '%s: wanted\n%s\nseen\n%s\n' "$what" "$wanted" "$seen"; exit 1; }
    echo "$what: right"
}

expect "schema" "CREATE TABLE tblVorelCache ([Path]         VARCHAR (255) COLLATE NOCASE,[Vendor]       VARCHAR (255) COLLATE NOCASE,[Family]       VARCHAR (255) COLLATE NOCASE,[Device]       VARCHAR (255) PRIMARY KEY COLLATE NOCASE,[Display]      VARCHAR (255) COLLATE NOCASE,[Type]         VARCHAR (255) COLLATE NOCASE,[IdCode]       INTEGER NULL,[MaskedIdCode] INTEGER NULL)
CREATE TABLE tblModuleFileTime ([Path]       VARCHAR (255) PRIMARY KEY COLLATE NOCASE,[FileTime]   INTEGER NULL,[Checksum]   VARCHAR (255) NULL COLLATE NOCASE)
CREATE TABLE tblSystemInfo ([ID]      INTEGER PRIMARY KEY,[Version] VARCHAR (255))" \
    "SELECT sql FROM sqlite_master WHERE type = 'table' ORDER BY rowid"
expect "integrity" "ok" "PRAGMA integrity_check"
expect "one row of a device" "XILINX.VOR|Xilinx|Spartan-3|FPGA|$((16#0140D093))|$((16#0140D093))" \
    "SELECT Path, Vendor, Family, Type, IdCode, MaskedIdCode FROM tblVorelCache WHERE Device = 'xc3s50-5vq100c'"
expect "types" "CPLD
FPGA
Other
PROC
PROM" "SELECT DISTINCT Type FROM tblVorelCache ORDER BY Type"
expect "masks: only manufacturer 110 keeps its version" "0" \
    "SELECT count(*) FROM tblVorelCache WHERE MaskedIdCode <> CASE WHEN (IdCode >> 1) & 2047 = 110 THEN IdCode ELSE IdCode & 268435455 END"
expect "modules" "$(cd "$system" && printf '%s\n' *.VOR | LC_ALL=C sort)" \
    "SELECT Path FROM tblModuleFileTime ORDER BY Path COLLATE BINARY"
for module in "$system"/XILINX.VOR "$system"/GENERIC.VOR; do
    name=${module##*/}
    expect "checksum of $name" "$(md5sum "$module" | cut -c1-32 | tr a-f A-F)" \
        "SELECT Checksum FROM tblModuleFileTime WHERE Path = '$name'"
done
