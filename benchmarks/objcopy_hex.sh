#!/usr/bin/env bash
# CPU seconds for 8 MiB of Intel Hex in 32-byte lines: objcopy, which makes a binary file of it, vorelctl, which makes
# checksums of it, and the loader alone; one after the other, on the same file, in one run.
#
# usage: objcopy_hex.sh BENCH_BUILD_FOLDER (build/bench)
set -euo pipefail

build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export VOREL_BENCH_DIR=$work XDG_DATA_HOME=$work XDG_CONFIG_HOME=$work
TIMEFORMAT='%U user + %S system'

loader() {
    "$build/benchmarks/bench_objectcode" --benchmark_filter='LoadHexAsBytes|LoadElfAsBytes|ReadBy' 2>/dev/null |
        awk '/^(Load|Read)/ { printf "  %s: %s ms CPU\n", $1, $4 }'
}

loader >/dev/null # writes the files
for round in 1 2 3; do
    echo "round $round"
    printf '  objcopy -I ihex -O binary: '
    { time objcopy -I ihex -O binary "$work/bench.hex" "$work/bench.bin"; } 2>&1
    printf '  vorelctl object: '
    { time "$build/vorel/System/vorelctl" object "$work/bench.hex" >"$work/blocks"; } 2>&1
    loader
done
test "$(sed -n 's/^Bytes: *//p' "$work/blocks")" -eq "$(stat -c %s "$work/bench.bin")"
