/* Texts and numbers on the console. */
#pragma once

/* For functions that a program may leave out. */
#define HELPER static __attribute__((unused))

#define CONSOLE (*(volatile unsigned*)0xFFFF0000u)

HELPER void PutText(const char* text) {
    while (*text != 0) {
        CONSOLE = (unsigned char)*text++;
    }
}

HELPER void PutHex(unsigned value) {
    for (int shift = 28; shift >= 0; shift -= 4) {
        CONSOLE = (unsigned char)"0123456789ABCDEF"[value >> shift & 15];
    }
}

/* Prints a line and gives 1 when the value is not the expected one. */
HELPER int Report(const char* what, unsigned value, unsigned expected) {
    PutText(what);
    PutHex(value);
    PutText(value == expected ? " ok\n" : " WRONG\n");
    return value != expected;
}
