#!/usr/bin/env bash
# Lets an independent reader look at a recording: sigrok-cli decodes the waves that
# `vorelctl scan --record` wrote, and has to find the TAP states of the text recording and the ids
# that the scan listed.
#
# usage: sigrok_test.sh SYSTEM_FOLDER SCENE_FOLDER. Exit status 77: sigrok-cli is not installed.
set -euo pipefail

vorelctl=$1/vorelctl
scenes=$2
command -v sigrok-cli >/dev/null || { echo "sigrok-cli is not installed: skipped"; exit 77; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME=$work XDG_CONFIG_HOME=$work

# decode WHAT [SET]: of one set of lines in the file, 0 without a choice. The TAP's state is a text
# there, which sigrok passes over.
decode() {
    sed "/module jtag$((1 - ${2:-0})) /,/upscope/d" "$work/scan.vcd" >"$work/set.vcd"
    sigrok-cli -i "$work/set.vcd" -I vcd -P jtag:tck=TCK:tms=TMS:tdi=TDI:tdo=TDO -A "jtag=$1" \
        2>/dev/null | sed 's/.*: //'
}

# Hexadecimal ids as one row of binary digits, the version digit of each as a pattern.
binary() {
    awk '{ for (i = 2; i <= 8; i++) { v = index("0123456789ABCDEF", substr($0, i, 1)) - 1
               d = int(v / 8) % 2 "" int(v / 4) % 2 int(v / 2) % 2 v % 2
               row = row (i == 2 ? "[01][01][01][01]" : "") d } } END { print row }'
}

# scan_ids SCENE ROLE SET: the ids of a chain, in one shift on a set of lines. Of chains on the same
# lines the one that is not read last: its shift has an end.
scan_ids() {
    "$vorelctl" scan --scene "$scenes/$1.ini" --record "$work/scan" --json \
        >"$work/scan.json" 2>/dev/null
    awk -v role="\"$2\"," '/"role":/ { if (seen) exit; on = $2 == role }
        on && /"id": "0x/ { seen = 1; print substr($2, 4, 8) }' \
        "$work/scan.json" >"$work/ids"
    [[ -s $work/ids ]] || { echo "the scan of $1 lists no ids of its $2 chain"; exit 1; }
    decode bitstring-tdo "$3" >"$work/shifts"
    grep -qE "$(binary <"$work/ids")" "$work/shifts" ||
        { echo "$1: the ids of the $2 chain are in no shift"; cat "$work/ids"; exit 1; }
    echo "$1: sigrok reads the $(wc -l <"$work/ids") ids of the $2 chain in one shift"
}

# A cable beside a pod, a cable in front of a board, a pod in front of a board.
scan_ids cable hard 0
scan_ids cable_board soft 0
scan_ids cable_board board 1
scan_ids default soft 1
scan_ids default board 0

# The text recording follows one TAP, so the states are compared where one set of lines is in use:
# from the first Run-Test/Idle on. sigrok does not tell the state that the last clock led to.
sed '/^\[pod\]/,$d' "$scenes/cable.ini" >"$work/alone.ini"
"$vorelctl" scan --scene "$work/alone.ini" --record "$work/scan" >/dev/null 2>&1
decode states | sed 's/TEST-LOGIC-RESET/RESET/;s,RUN-TEST/IDLE,IDLE,
    s/^\([A-Z0-9]*\)-\([DI]R\)\(-SCAN\)\?$/\2\1/' | sed -n '/^IDLE/,$p' >"$work/theirs"
sed -n 's/.*Mode:0.*->\([A-Z0-9]*\).*/\1/p' "$work/scan_JTAG.txt" | sed -n '/^IDLE/,$p' |
    head -n -1 >"$work/ours"
[[ $(wc -l <"$work/ours") -gt 1000 ]]
cmp "$work/theirs" "$work/ours"
echo "sigrok follows the same $(wc -l <"$work/ours") TAP states"
