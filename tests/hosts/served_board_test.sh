#!/usr/bin/env bash
# Debugs the processor of a board that `vorelctl serve` keeps, from several processes in turn: memory, state and the breakpoints of
# the unit stay, those planted in the memory leave with the process that planted them.
#
# usage: served_board_test.sh SYSTEM_FOLDER SCENE_FOLDER PROGRAM_FOLDER
set -euo pipefail

vorelctl=$1/vorelctl
work=$(mktemp -d)
server=
cleanup() {
    [[ -n $server ]] && kill "$server" 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT
export XDG_DATA_HOME=$work XDG_CONFIG_HOME=$work

exec 3< <(exec "$vorelctl" serve --scene "$2/default.ini" --chain soft --port 0)
server=$!
read -r line <&3
ask() { "$vorelctl" "$@" --bitbang "127.0.0.1:${line##*:}"; }
expect() {
    local wanted=$1 seen
    shift
    seen=$(ask "$@")
    [[ $seen == "$wanted" ]] || { printf '%s: wanted\n%s\nseen\n%s\n' "$*" "$wanted" "$seen"; exit 1; }
    echo "$*: right"
}

ask load ZRC3000 "$3/tour.hex"
printf 'break add %s\n' 80000 80004 80008 E4 94 154 >"$work/script"
printf 'run\nwait\nregs pc\nmem 94 1 --width 32\n' >>"$work/script"
ask debug --script "$work/script" | tail -n 3 | grep -qx '00000094  27BDFFE0                             .*'
expect "00000094  27BDFFE0                             '..." mem ZRC3000 94 1 --width 32
expect "pc   00000094" regs ZRC3000 pc
expect "4 of an earlier session; clear removes them, too." break ZRC3000 list
ask run ZRC3000 >"$work/output"
expect "Paused: Breakpoint at 000000E4" wait ZRC3000
expect "" break ZRC3000 clear
ask run ZRC3000 >"$work/output"
expect "Paused: Trap: system call, goes on at 00000010" wait ZRC3000
