# Start of a program for the ZRC3000: the stack at the end of the RAM, then main. Its result stays in
# v0, and the system call stops the processor; whoever runs on stays here.
    .set noreorder
    .section .text.start, "ax"
    .globl _start
_start:
    lui     $sp, 0x0010
    jal     main
    addiu   $sp, $sp, -32
    syscall
    b       .
    nop
