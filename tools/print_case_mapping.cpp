// Prints what CharUpperW does under Wine, as the two expectation files of tests/conformance/casing_test.cpp.
//
//     x86_64-w64-mingw32-g++-posix -static -O2 tools/print_case_mapping.cpp -o /tmp/print.exe
//     wine /tmp/print.exe units > tests/conformance/casing_expectation.inc
//     wine /tmp/print.exe pairs > tests/conformance/casing_pairs_expectation.inc
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <io.h>

static void PrintUnits()
{
    int column = 0;
    for (unsigned unit = 1; unit < 0x10000; ++unit)
    {
        WCHAR text[] = {static_cast<WCHAR>(unit), 0};
        CharUpperW(text);
        if (text[0] != unit)
        {
            std::printf("%s{0x%04X, 0x%04X},", column % 5 == 0 ? (column == 0 ? "" : "\n") : " ", unit, text[0]);
            ++column;
        }
    }
    std::printf("\n");
}

static unsigned UpperOfPair(unsigned character)
{
    const unsigned offset = character - 0x10000;
    WCHAR text[] = {static_cast<WCHAR>(0xD800 + (offset >> 10)), static_cast<WCHAR>(0xDC00 + (offset & 0x3FF)), 0};
    CharUpperW(text);
    return 0x10000 + ((text[0] - 0xD800u) << 10) + (text[1] - 0xDC00u);
}

static void PrintPairs()
{
    unsigned first = 0;
    unsigned distance = 0;
    for (unsigned character = 0x10000; character <= 0x110000; ++character)
    {
        const unsigned change = character < 0x110000 ? character - UpperOfPair(character) : 0;
        if (change != distance)
        {
            if (distance != 0)
                std::printf("{0x%X, 0x%X, %u},\n", first, character - 1, distance);
            first = character;
            distance = change;
        }
    }
}

int main(int argc, char** argv)
{
    _setmode(_fileno(stdout), _O_BINARY);
    argc > 1 && std::strcmp(argv[1], "pairs") == 0 ? PrintPairs() : PrintUnits();
    return 0;
}
