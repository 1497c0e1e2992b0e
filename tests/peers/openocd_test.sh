#!/usr/bin/env bash
# Lets an independent JTAG program look at the same chain: openocd has to find the ids that
# `vorelctl scan` lists, in the same order, on a chain served by `vorelctl serve`; and `vorelctl scan
# --bitbang` has to read a chain that another process serves.
#
# usage: openocd_test.sh SYSTEM_FOLDER SCENE_FOLDER. Exit status 77: openocd is not installed.
set -euo pipefail

vorelctl=$1/vorelctl
scenes=$2
command -v openocd >/dev/null || { echo "openocd is not installed: skipped"; exit 77; }

work=$(mktemp -d)
server=
cleanup() {
    [[ -n $server ]] && kill "$server" 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT
export XDG_DATA_HOME=$work XDG_CONFIG_HOME=$work

# The server says its port on its first line; reading it waits until it listens.
serve() {
    exec 3< <(exec "$vorelctl" serve --scene "$1" --chain hard --port 0)
    server=$!
    read -r line <&3
    port=${line##*:}
}

for scene in three_devices one_device; do
    serve "$scenes/$scene.ini"

    "$vorelctl" scan --bitbang "127.0.0.1:$port" --json >"$work/remote.json"
    "$vorelctl" scan --scene "$scenes/$scene.ini" --json >"$work/local.json"
    grep -o '"id": "0x[0-9A-F]*"' "$work/remote.json" >"$work/remote"
    grep -o '"id": "0x[0-9A-F]*"' "$work/local.json" >"$work/local"
    cmp "$work/remote" "$work/local"
    echo "$scene: scan through remote_bitbang lists the same devices"

    # openocd names TAP 1 the one nearest TDO, and shows ids with their version bits.
    openocd -c "adapter driver remote_bitbang; remote_bitbang port $port; remote_bitbang host 127.0.0.1" \
        -c "transport select jtag; gdb_port disabled; tcl_port disabled; telnet_port disabled" \
        -c "init; shutdown" >"$work/openocd.log" 2>&1 || true
    grep -oE 'Warn : AUTO .*expected-id 0x[0-9a-f]{8}' "$work/openocd.log" |
        grep -oE '0x[0-9a-f]{8}' | tac | tr 'a-f' 'A-F' | sed 's/0X/0x/' >"$work/peer" || true
    sed 's/.*"0x\(.*\)"/0x\1/' "$work/local" >"$work/ours"
    sed 's/^0x./0x0/' "$work/peer" >"$work/peer-masked"
    sed 's/^0x./0x0/' "$work/ours" >"$work/ours-masked"
    [[ -s $work/peer ]] || { cat "$work/openocd.log"; exit 1; }
    diff "$work/peer-masked" "$work/ours-masked"
    echo "$scene: openocd reads the same $(wc -l <"$work/peer") ids in the same order"

    kill "$server"
    wait "$server" 2>/dev/null || true
    server=
    exec 3<&-
done
