#!/bin/sh
# Builds the programs of this folder: NAME.hex, and NAME.symbols with the addresses of its functions, of each NAME.c.
#
# usage: build.sh [FOLDER]   With a folder they go there, with NAME.elf, stripped, beside them; without one the shipped files are
#                            built anew, and compiler.txt tells what built them. Needs Debian's gcc-mips-linux-gnu.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
compiler=mips-linux-gnu-gcc
folder=${1:-$(mktemp -d)}
for source in "$here"/*.c; do
    name=$(basename "$source" .c)
    elf=$folder/$name.elf
    $compiler -mips1 -EB -mfp32 -msoft-float -nostdlib -ffreestanding -fno-pic -mno-abicalls -G 0 -O1 -static \
        -Wall -Wextra -Werror -Wl,--build-id=none -Wl,-T,"$here/program.ld" "$here/start.S" "$source" -o "$elf"
    mips-linux-gnu-objcopy -O ihex "$elf" "$folder/$name.hex"
    mips-linux-gnu-nm -n "$elf" | sed -n "s/ T / /p" >"$folder/$name.symbols"
    mips-linux-gnu-strip "$elf"
done
$compiler --version | head -n 1 >"$folder/compiler.txt"
if [ $# -eq 0 ]; then
    cp "$folder"/*.hex "$folder"/*.symbols "$folder"/compiler.txt "$here"
    rm -r "$folder"
fi
