/* Longer work than the tour: sorting through a function pointer, a checksum by table over 64 KiB, deep
   recursion and backtracking. main gives the number of results that are wrong. */
#include "console.h"

typedef int (*Compare)(unsigned a, unsigned b);

static unsigned state = 1;

unsigned Random(void) {
    state = state * 1664525u + 1013904223u;
    return state;
}

int Descending(unsigned a, unsigned b) {
    return a < b ? 1 : a > b ? -1 : 0;
}

int ByLowByte(unsigned a, unsigned b) {
    return (signed char)a - (signed char)b;
}

void QuickSort(unsigned *items, int count, Compare compare) {
    while (count > 1) {
        const unsigned pivot = items[count / 2];
        int low = 0;
        int high = count - 1;
        while (low <= high) {
            while (compare(items[low], pivot) < 0) {
                ++low;
            }
            while (compare(pivot, items[high]) < 0) {
                --high;
            }
            if (low <= high) {
                const unsigned item = items[low];
                items[low++] = items[high];
                items[high--] = item;
            }
        }
        QuickSort(items, high + 1, compare);
        items += low;
        count -= low;
    }
}

static unsigned items[1000];

static unsigned Disorder(Compare compare) {
    unsigned wrong = 0;
    for (int i = 1; i < 1000; ++i) {
        wrong += compare(items[i - 1], items[i]) > 0;
    }
    return wrong;
}

static unsigned table[256];

void MakeTable(void) {
    for (unsigned i = 0; i < 256; ++i) {
        unsigned value = i;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value & 1) != 0 ? value >> 1 ^ 0xEDB88320u : value >> 1;
        }
        table[i] = value;
    }
}

/* Behind the image, which holds all variables. */
#define BUFFER ((unsigned char *)0x40000)
#define BUFFER_SIZE 65536u

unsigned Crc32(const unsigned char *bytes, unsigned count) {
    unsigned crc = 0xFFFFFFFFu;
    while (count-- > 0) {
        crc = crc >> 8 ^ table[(crc ^ *bytes++) & 255];
    }
    return ~crc;
}

unsigned Ackermann(unsigned m, unsigned n) {
    return m == 0 ? n + 1 : n == 0 ? Ackermann(m - 1, 1) : Ackermann(m - 1, Ackermann(m, n - 1));
}

unsigned Queens(unsigned all, unsigned columns, unsigned left, unsigned right) {
    unsigned count = columns == all;
    for (unsigned open = all & ~(columns | left | right); open != 0; open &= open - 1) {
        const unsigned place = open & -open;
        count += Queens(all, columns | place, (left | place) << 1, (right | place) >> 1);
    }
    return count;
}

int main(void) {
    int wrong = 0;
    unsigned sum = 0;
    for (int i = 0; i < 1000; ++i) {
        items[i] = Random();
        sum += items[i];
    }
    QuickSort(items, 1000, Descending);
    wrong += Report("disorder  ", Disorder(Descending), 0);
    QuickSort(items, 1000, ByLowByte);
    wrong += Report("low bytes ", Disorder(ByLowByte), 0);
    for (int i = 0; i < 1000; ++i) {
        sum -= items[i];
    }
    wrong += Report("items lost", sum, 0);
    MakeTable();
    for (unsigned i = 0; i < BUFFER_SIZE; ++i) {
        BUFFER[i] = (unsigned char)(i * 7 + (i >> 8));
    }
    wrong += Report("crc32     ", Crc32(BUFFER, BUFFER_SIZE), 0xDF6FD768u);
    wrong += Report("ackermann ", Ackermann(2, 20), 43);
    wrong += Report("queens    ", Queens(255, 0, 0, 0), 92);
    return wrong;
}
