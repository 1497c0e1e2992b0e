/* A tour of the processor: recursion, sorting, a checksum and texts on the console. main gives the
   number of results that are wrong. */
#include "console.h"

unsigned Fibonacci(unsigned n) {
    return n < 2 ? n : Fibonacci(n - 1) + Fibonacci(n - 2);
}

void Sort(int *items, int count) {
    for (int i = 1; i < count; ++i) {
        const int item = items[i];
        int place = i;
        for (; place > 0 && items[place - 1] > item; --place) {
            items[place] = items[place - 1];
        }
        items[place] = item;
    }
}

unsigned Crc32(const char *text) {
    unsigned crc = 0xFFFFFFFFu;
    for (; *text != 0; ++text) {
        crc ^= (unsigned char)*text;
        for (int bit = 0; bit < 8; ++bit) {
            crc = crc >> 1 ^ (0xEDB88320u & -(crc & 1));
        }
    }
    return ~crc;
}

static int items[] = {5, -3, 99, 0, 7, -3, 42, 1};

int main(void) {
    int wrong = 0;
    unsigned digits = 0;
    PutText("ZRC3000\n");
    wrong += Report("fibonacci ", Fibonacci(12), 144);
    Sort(items, 8);
    for (int i = 0; i < 8; ++i) {
        digits = digits * 31 + (unsigned)items[i];
    }
    wrong += Report("sort      ", digits, 0x29BA44BCu);
    wrong += Report("crc32     ", Crc32("123456789"), 0xCBF43926u);
    return wrong;
}
