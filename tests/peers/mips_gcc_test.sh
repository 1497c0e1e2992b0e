#!/usr/bin/env bash
# Builds the programs of the soft processor with Debian's MIPS compiler and runs them to their end on the virtual board, from
# Intel Hex and from ELF: each has to print what the shipped one prints. The compiler that built the shipped files has to give
# them again, byte for byte.
#
# usage: mips_gcc_test.sh SYSTEM_FOLDER SOURCE_FOLDER. Exit status 77: the compiler is not installed.
set -euo pipefail

command -v mips-linux-gnu-gcc >/dev/null || { echo "mips-linux-gnu-gcc is not installed: skipped"; exit 77; }
vorelctl=$1/vorelctl
shipped=$2/data/programs
golden=$2/tests/hosts/golden
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME=$work XDG_CONFIG_HOME=$work

built=$work/built
mkdir "$built"
"$shipped/build.sh" "$built"

results() { sed -n '/^> console$/,$p' "$1"; }
for hex in "$built"/*.hex; do
    name=$(basename "$hex" .hex)
    for kind in hex elf; do
        printf 'load %s.%s --verify\nrun\nwait\nconsole\nregs v0\n' "$built/$name" $kind >"$work/script"
        "$vorelctl" debug --script "$work/script" >"$work/output"
        diff <(results "$golden/debug_$name.txt") <(results "$work/output")
        grep -q '^v0   00000000$' "$work/output"
        echo "$name.$kind: right"
    done
done

if cmp -s "$built/compiler.txt" "$shipped/compiler.txt"; then
    for file in "$shipped"/*.hex "$shipped"/*.symbols; do
        cmp "$file" "$built/$(basename "$file")"
    done
    echo "the shipped files are what the compiler makes"
else
    echo "shipped files not compared: they were built by $(cat "$shipped/compiler.txt")"
fi
