#!/bin/sh
# Builds the programs of this folder anew: tour.hex, and tour.symbols with the addresses of its functions. Needs Debian's gcc-mips-linux-gnu.
set -eu
cd "$(dirname "$0")"
elf=$(mktemp)
trap 'rm -f "$elf"' EXIT
mips-linux-gnu-gcc -mips1 -EB -mfp32 -msoft-float -nostdlib -ffreestanding -fno-pic -mno-abicalls \
    -G 0 -O1 -static -Wl,--build-id=none -Wl,-T,program.ld start.S tour.c -o "$elf"
mips-linux-gnu-objcopy -O ihex "$elf" tour.hex
mips-linux-gnu-nm -n "$elf" | sed -n "s/ T / /p" > tour.symbols
