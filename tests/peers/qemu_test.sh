#!/usr/bin/env bash
# Executes the same random instructions on the virtual processor and in qemu's MIPS user emulation: every integer instruction of
# MIPS I alone with drawn operands, and rows of instructions that use each other's results. What they leave in a table of results
# has to be the same. What the architecture leaves open (division by 0, its overflow) and traps are not drawn.
#
# usage: qemu_test.sh SYSTEM_FOLDER SOURCE_FOLDER [SEED [CASES]]. Exit status 77: qemu-mips or the MIPS compiler is missing.
set -euo pipefail

for program in qemu-mips mips-linux-gnu-gcc; do
    command -v $program >/dev/null || { echo "$program is not installed: skipped"; exit 77; }
done
vorelctl=$(realpath "$1")/vorelctl
programs=$(realpath "$2")/data/programs
seed=${3:-1}
cases=${4:-4000}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME=$work XDG_CONFIG_HOME=$work
cd "$work"

# r2 to r15 are drawn, r16 points at the next result, r17 into 32 bytes of memory.
awk -v seed="$seed" -v cases="$cases" '
function draw(n) { return int(rand() * n) }
function reg() { return "$" (2 + draw(14)) }
function half() { return draw(65536) }
function any_half() { split("0 1 32767 32768 65535 65534", edge, " "); return draw(3) ? half() : edge[1 + draw(6)] }
function emit(text) { print "\t" text }
function load(r, high, low) { emit("lui " r ", " high); emit("ori " r ", " r ", " low) }
function load_any(r) { load(r, any_half(), any_half()) }
function load_small(r) { load(r, draw(2) ? draw(8192) : 57344 + draw(8192), half()) } # no sum of two overflows
function keep(r) { emit("sw " r ", " kept * 4 "($16)"); ++kept; ++results }
function done() { emit("addiu $16, $16, " kept * 4); kept = 0 }
function offset() { return any_half() - 32768 }

function one_of_three(list,   n, names) { n = split(list, names, " "); emit(names[1 + draw(n)] " $4, $2, $3"); keep("$4") }
function case_alu() { load_any("$2"); load_any("$3"); one_of_three("addu subu and or xor nor slt sltu sllv srlv srav") }
function case_checked() { load_small("$2"); load_small("$3"); one_of_three("add sub") }
function case_shift(   n, names) {
    n = split("sll srl sra", names, " "); load_any("$2"); emit(names[1 + draw(n)] " $4, $2, " draw(32)); keep("$4")
}
function case_immediate(   n, names) {
    load_any("$2")
    if (draw(2)) { n = split("andi ori xori", names, " "); emit(names[1 + draw(n)] " $4, $2, " any_half()) }
    else { n = split("addiu slti sltiu", names, " "); emit(names[1 + draw(n)] " $4, $2, " offset()) }
    keep("$4")
    load_small("$2"); emit("addi $4, $2, " offset()); keep("$4")
    emit("lui $4, " any_half()); keep("$4")
}
function case_multiply(   low, n, names) {
    load_any("$2"); low = any_half()
    load("$3", any_half(), low == 0 || low == 65535 ? 5 : low)
    split("mult multu div divu", names, " "); n = 1 + draw(4); emit(names[n] (n < 3 ? "" : " $0,") " $2, $3")
    emit("mfhi $4"); emit("mflo $5"); keep("$4"); keep("$5")
    emit("mthi $2"); emit("mtlo $3"); emit("mflo $4"); emit("mfhi $5"); keep("$4"); keep("$5")
}
function case_load(   n, names, size) {
    for (n = 0; n < 3; ++n) { load_any("$2"); emit("sw $2, " n * 4 "($17)") }
    load_any("$4")
    split("lb lbu lwl lwr lh lhu lw", names, " "); n = 1 + draw(7); size = n < 5 ? 1 : n < 7 ? 2 : 4
    emit(names[n] " $4, " draw(int(12 / size)) * size "($17)"); emit("addu $5, $4, $4"); keep("$4"); keep("$5")
}
function case_store(   n, names, size) {
    load_any("$2"); load_any("$3"); load_any("$4"); load_any("$5")
    emit("sw $2, 0($17)"); emit("sw $3, 4($17)"); emit("sw $4, 8($17)")
    split("sb swl swr sh sw", names, " "); n = 1 + draw(5); size = n < 4 ? 1 : n < 5 ? 2 : 4
    emit(names[n] " $5, " draw(int(12 / size)) * size "($17)")
    for (n = 0; n < 3; ++n) { emit("lw $6, " n * 4 "($17)"); keep("$6") }
}
# A branch over one instruction; what its delay slot and the link leave is kept, the link from the branch on.
function case_branch(   n, names, what) {
    load_any("$2"); load_any("$3"); if (draw(2)) emit("or $3, $2, $0"); if (!draw(4)) emit("or $2, $0, $0")
    split("beq bne blez bgtz bltz bgez bltzal bgezal j jal jr jalr", names, " "); n = 1 + draw(12); what = names[n]
    emit("la $7, 1f"); emit("la $8, 2f"); emit("or $31, $7, $0"); emit("or $4, $0, $0")
    if (what == "jalr") what = "jalr $9, $8"
    else if (what == "jr") what = "jr $8"
    else what = what (n < 3 ? " $2, $3, 2f" : n < 9 ? " $2, 2f" : " 2f")
    if (n == 12) emit("or $9, $7, $0"); else emit("or $9, $31, $0")
    print "1:\t" what
    emit("addiu $4, $4, 1"); emit("addiu $4, $4, 16")
    print "2:\tsubu $31, $31, $7"; emit("subu $9, $9, $7")
    keep("$4"); keep("$31"); keep("$9")
}
# Fourteen registers and thirty instructions on them.
function case_row(   i, n, m, three, two, size) {
    n = split("addu subu and or xor nor slt sltu sllv srlv srav", three, " ")
    for (i = 2; i < 16; ++i) load_any("$" i)
    emit("mthi $2"); emit("mtlo $3")
    for (i = 0; i < 30; ++i) {
        m = draw(9)
        if (m < 3) emit(three[1 + draw(n)] " " reg() ", " reg() ", " reg())
        else if (m == 3) emit("addiu " reg() ", " reg() ", " offset())
        else if (m == 4) emit("xori " reg() ", " reg() ", " half())
        else if (m == 5) emit((draw(2) ? "mult " : "multu ") reg() ", " reg())
        else if (m == 6) emit((draw(2) ? "mfhi " : "mflo ") reg())
        else if (m == 7) emit((draw(2) ? "swl " : "swr ") reg() ", " draw(32) "($17)")
        else emit((draw(2) ? "lwl " : "lwr ") reg() ", " draw(32) "($17)")
    }
    for (i = 2; i < 16; ++i) keep("$" i)
    emit("mfhi $2"); emit("mflo $3"); keep("$2"); keep("$3")
}
BEGIN {
    srand(seed)
    print "\t.set noreorder\n\t.set noat\n\t.text\n\t.globl draw\ndraw:"
    emit("or $30, $31, $0"); emit("la $16, results"); emit("la $17, scratch")
    for (i = 0; i < cases; ++i) {
        kind = draw(10)
        if (kind == 0) case_alu(); else if (kind == 1) case_checked(); else if (kind == 2) case_shift()
        else if (kind == 3) case_immediate(); else if (kind == 4) case_multiply(); else if (kind < 7) case_load()
        else if (kind == 7) case_store(); else if (kind == 8) case_branch()
        else if (i % 5 == 0) case_row(); else case_alu()
        done()
    }
    emit("jr $30"); emit("nop")
    print "\t.data\n\t.balign 4\nscratch:\t.fill 32, 1, 0x5A\n\t.globl results\nresults:\t.space " results * 4
    print results * 4 >"size"
}' >draw.S
size=$(cat size)

cat >linux.S <<END
    .set noreorder
    .globl __start
__start:
    jal draw
    nop
    li \$4, 1
    la \$5, results
    li \$6, $size
    li \$2, 4004 /* write */
    syscall
    li \$4, 0
    li \$2, 4001 /* exit */
    syscall
END
sed 's/\<main\>/draw/' "$programs/start.S" >bare.S

options=(-mips1 -EB -mfp32 -msoft-float -nostdlib -fno-pic -mno-abicalls -G 0 -static -Wl,--build-id=none)
mips-linux-gnu-gcc "${options[@]}" linux.S draw.S -o linux.elf
mips-linux-gnu-gcc "${options[@]}" -Wl,-T,"$programs/program.ld" bare.S draw.S -o bare.elf
address=$(mips-linux-gnu-nm bare.elf | sed -n 's/ . results$//p')
mips-linux-gnu-strip bare.elf

qemu-mips ./linux.elf >expected
[[ $(stat -c %s expected) == "$size" ]]
printf 'load bare.elf\nrun\nwait\nsave %s %s seen.bin\n' "$address" "$size" >script
"$vorelctl" debug --script script >output
grep -q 'system call' output || { cat output; exit 1; }
if ! cmp -s expected seen.bin; then
    place=$(cmp -l expected seen.bin | head -n 1 | awk '{ print int(($1 - 1) / 4) }' || true)
    echo "seed $seed: result $place differs; up to its store:"
    awk -v wanted="$place" '/^\tsw .*\(\$16\)/ && n++ == wanted { for (i = NR > 20 ? NR - 20 : 1; i < NR; ++i) print line[i % 20]
        print; exit } { line[NR % 20] = $0 }' draw.S
    exit 1
fi
echo "seed $seed: $cases cases, $((size / 4)) results, the same in qemu"
