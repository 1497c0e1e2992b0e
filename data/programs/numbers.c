/* What compilers make of numbers: division and its signs, bytes and halfwords, words at odd addresses,
   64 bits, jump tables, variable arguments. main gives the number of lines that are wrong. */
#include <stdarg.h>

#include "console.h"

static char line[80];
static char *end = line;

static void PutDecimal(unsigned value) {
    if (value >= 10) {
        PutDecimal(value / 10);
    }
    *end++ = (char)('0' + value % 10);
}

static void PutSigned(int value) {
    if (value < 0) {
        *end++ = '-';
    }
    PutDecimal(value < 0 ? 0u - (unsigned)value : (unsigned)value);
}

/* %d, %u, %c, %s */
void Format(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    end = line;
    for (; *format != 0; ++format) {
        if (*format != '%') {
            *end++ = *format;
            continue;
        }
        switch (*++format) {
        case 'd':
            PutSigned(va_arg(arguments, int));
            break;
        case 'u':
            PutDecimal(va_arg(arguments, unsigned));
            break;
        case 'c':
            *end++ = (char)va_arg(arguments, int);
            break;
        case 's':
            for (const char *text = va_arg(arguments, const char *); *text != 0; ++text) {
                *end++ = *text;
            }
            break;
        default:
            *end++ = '?';
            break;
        }
    }
    *end = 0;
    va_end(arguments);
}

/* Prints the line and says whether it is another one than expected. */
static int Differs(const char *expected) {
    const char *seen = line;
    PutText(line);
    while (*seen != 0 && *seen == *expected) {
        ++seen;
        ++expected;
    }
    PutText(*seen == *expected ? "\n" : " WRONG\n");
    return *seen != *expected;
}

/* Kept from the compiler's foresight. */
static volatile int minusSeven = -7;
static volatile int three = 3;
static volatile unsigned large = 4000000000u;
static volatile unsigned char bytes[] = {0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10};

struct __attribute__((packed)) Record {
    char Tag;
    unsigned Word;
    short Half;
    long long Long;
};
static struct Record records[2];

void Copy(struct Record *to, const struct Record *from) {
    *to = *from;
}

int Kind(int code) {
    switch (code) {
    case 0: return 'n';
    case 1: return 'a';
    case 2: return 'v';
    case 3: return 'i';
    case 4: return 'g';
    case 5: return 'o';
    case 6: return 'r';
    default: return '.';
    }
}

int main(void) {
    int wrong = 0;
    Format("%d / %d = %d rest %d", minusSeven, three, minusSeven / three, minusSeven % three);
    wrong += Differs("-7 / 3 = -2 rest -1");
    Format("%u / 7 = %u rest %u", large, large / (unsigned)(three + 4), large % (unsigned)(three + 4));
    wrong += Differs("4000000000 / 7 = 571428571 rest 3");
    Format("smallest %d, shifted %d %u", (int)(large + 0x9194D800u), minusSeven >> 1,
           (unsigned)minusSeven >> 28);
    wrong += Differs("smallest -2147483648, shifted -4 15");
    Format("bytes %d %u, halves %d %u", (signed char)bytes[1], bytes[1],
           *(volatile short *)&bytes[2], *(volatile unsigned short *)&bytes[4]);
    wrong += Differs("bytes -36 220, halves -17768 30292");

    const long long product = (long long)minusSeven * (int)(large >> 1);
    Format("64 bits %d %u %u", (int)(product >> 32), (unsigned)product, (unsigned)(product >> 7));
    wrong += Differs("64 bits -4 3179869184 4185592296");

    records[0] = (struct Record){'R', large, -300, product};
    Copy(&records[1], &records[0]);
    Format("record %c %u %d %u", records[1].Tag, records[1].Word, records[1].Half,
           (unsigned)(records[1].Long == product));
    wrong += Differs("record R 4000000000 -300 1");
    Format("%s %c%c%c%c", "switch", Kind(three), Kind(three - 3), Kind(three + 3), Kind(three + 9));
    wrong += Differs("switch inr.");
    return wrong;
}
