#!/usr/bin/env bash
# 1,000 pairs of an instruction and a data scan over remote_bitbang on loopback: VorelManager and
# openocd on the same server, one after the other, in one run.
#
# usage: openocd_pairs.sh BENCH_BUILD_FOLDER (build/bench)
set -euo pipefail

build=$1
work=$(mktemp -d)
server=
trap '[[ -n $server ]] && kill "$server" 2>/dev/null; rm -rf "$work"' EXIT
export XDG_DATA_HOME=$work XDG_CONFIG_HOME=$work

exec 3< <(exec "$build/vorel/System/vorelctl" serve --scene one_device.ini --chain hard --port 0)
server=$!
read -r line <&3
port=${line##*:}

for round in 1 2 3; do
    echo "round $round"
    printf '  VorelManager: '
    "$build/benchmarks/bitbang_pairs" "127.0.0.1:$port" 1000
    printf '  openocd:      '
    openocd -c "adapter driver remote_bitbang; remote_bitbang port $port; remote_bitbang host 127.0.0.1" \
        -c "transport select jtag; gdb_port disabled; tcl_port disabled; telnet_port disabled" \
        -c "jtag newtap x y -irlen 6 -expected-id 0x0140d093 -ignore-version; init" \
        -c 'set t [clock microseconds]; for {set i 0} {$i < 1000} {incr i} { irscan x.y 0x09; set id [drscan x.y 32 0] }; echo "1000 pairs, id $id, [expr {([clock microseconds] - $t) / 1e6}] s"; shutdown' \
        2>&1 | grep -E 'pairs|Error' || true
done
