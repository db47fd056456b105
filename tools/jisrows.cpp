// Prints the rows of the Japanese character sets as they are kept in codec/jisrows.inc, from ICU's
// tables. Not part of the build:
//
//     g++ -std=c++20 tools/jisrows.cpp -licuuc -o jisrows && ./jisrows > codec/jisrows.inc
//
// "windows-31j" gives JIS X 0208 with the rows its makers added (13, 89 to 92 and 115 to 119), "jisx-212"
// gives JIS X 0212. The user-defined rows are not printed: they follow a formula.
#include <unicode/ucnv.h>

#include <cstdio>
#include <string>

namespace {

constexpr char16_t hole = u'.';
/// From an ASCII character to its full-width form: a two-byte "~" is not the one-byte one.
constexpr char16_t fullWidth = 0xFEE0;
constexpr int cellsPerRow = 94;

char16_t character(UConverter *converter, int first, int second)
{
    const char bytes[] = { static_cast<char>(first), static_cast<char>(second) };
    char16_t text[4] = {};
    UErrorCode error = U_ZERO_ERROR;
    const int length = ucnv_toUChars(converter, text, 4, bytes, 2, &error);
    const bool mapped = U_SUCCESS(error) && length == 1 && text[0] != 0x1A && text[0] != 0xFFFD;
    if (!mapped)
        return hole;
    return text[0] < 0x80 ? static_cast<char16_t>(text[0] + fullWidth) : text[0];
}

/// Row and cell, both from 1, in Shift-JIS.
char16_t shiftJisCharacter(UConverter *converter, int row, int cell)
{
    const int pair = (row - 1) / 2;
    const int lead = pair < 31 ? 0x81 + pair : 0xC1 + pair;
    const int trail = row % 2 == 0 ? cell + 0x9E : cell + (cell <= 63 ? 0x3F : 0x40);
    return character(converter, lead, trail);
}

char16_t supplementCharacter(UConverter *converter, int row, int cell)
{
    return character(converter, row + 0x20, cell + 0x20);
}

/// Compatibility ideographs are printed by number: programs that normalize text would make others of them.
bool isFragile(char16_t c)
{
    return c >= 0xF900 && c <= 0xFAFF;
}

void print(char16_t c)
{
    if (isFragile(c))
        std::printf("\\u%04X", c);
    else if (c < 0x80)
        std::printf("%c", c);
    else if (c < 0x800)
        std::printf("%c%c", 0xC0 | (c >> 6), 0x80 | (c & 0x3F));
    else
        std::printf("%c%c%c", 0xE0 | (c >> 12), 0x80 | ((c >> 6) & 0x3F), 0x80 | (c & 0x3F));
}

using Lookup = char16_t (*)(UConverter *, int, int);

void printRow(UConverter *converter, Lookup lookup, int row)
{
    std::u16string cells;
    for (int cell = 1; cell <= cellsPerRow; ++cell)
        cells += lookup(converter, row, cell);
    cells.erase(cells.find_last_not_of(hole) + 1);
    if (cells.empty())
        return;
    std::printf("    {%d, u\"", row);
    for (const char16_t c : cells)
        print(c);
    std::printf("\"},\n");
}

bool printRows(const char *name, const char *converterName, Lookup lookup, int rows)
{
    UErrorCode error = U_ZERO_ERROR;
    UConverter *converter = ucnv_open(converterName, &error);
    if (U_FAILURE(error))
        return false;
    std::printf("constexpr JisRow %s[] = {\n", name);
    for (int row = 1; row <= rows; ++row) {
        if (row < 95 || row > 114)
            printRow(converter, lookup, row);
    }
    std::printf("};\n");
    ucnv_close(converter);
    return true;
}

} // namespace

int main()
{
    std::printf("// Printed by tools/jisrows.cpp. Cells from 1 on; \".\" is an unassigned one.\n");
    const bool printed = printRows("kanjiRows", "windows-31j", shiftJisCharacter, 120)
        && printRows("supplementRows", "jisx-212", supplementCharacter, 94);
    return printed ? 0 : 1;
}
