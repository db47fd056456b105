#include "codec/jistables.h"

#include <algorithm>
#include <span>

namespace {

struct JisRow {
    int row;
    const char16_t *cells;
};

#include "codec/jisrows.inc"

/// Where some systems put in the second plane of EUC what rows 89 to 92 of the first hold and JIS X 0212
/// lacks.
constexpr JisRow systemRows[] = {
    { 83, u"..................................................................................ⅰⅱⅲⅳⅴⅵⅶⅷⅸⅹⅠⅡ" },
    { 84,
        u"ⅢⅣⅤⅥⅦⅧⅨⅩ＇＂㈱№℡炻仼僴凬匇匤\uFA0E咊坙\uFA0F\uFA10增寬峵嵓\uFA11德悅愠敎昻晥\uFA12\uF929栁\uFA13"
        u"\uFA14"
        u"橫櫢淸淲瀨\uFA15\uFA16甁皂皞\uFA17礰\uFA18\uFA19\uFA1A\uFA1B竧\uFA1C\uFA1D綠緖\uFA1E荢\uFA1F薰"
        u"\uFA20\uFA21蠇\uFA22譿"
        u"賴赶\uFA23\uFA24\uFA25郞\uFA26鄕\uFA27\uFA28閒\uF9DC\uFA29霻靍靑\uFA2A\uFA2B\uFA2C馞髙魲\uFA2D黑" },
};

constexpr char16_t unassigned = u'.';
constexpr int cellsPerRow = 94;
constexpr char16_t firstUserDefined = 0xE000;
constexpr int userDefinedCount = 1880;
constexpr int firstShiftJisUserRow = 95;
constexpr int firstPlaneUserRow = 85;
constexpr char16_t firstHalfWidth = 0xFF61;
constexpr char16_t lastHalfWidth = 0xFF9F;
constexpr quint16 firstHalfWidthCode = 0xA1;

char16_t userDefined(int i)
{
    return static_cast<char16_t>(firstUserDefined + i);
}

enum class RowKind {
    Standard,
    Added, ///< row 13
    FirstExtension, ///< rows 89 to 92
    Extension, ///< the same characters and a few more in the rows 115 to 119
};

RowKind kindOf(int row)
{
    if (row == 13)
        return RowKind::Added;
    if (row >= 89 && row <= 92)
        return RowKind::FirstExtension;
    return row >= 115 ? RowKind::Extension : RowKind::Standard;
}

/// The same sign under another name, as input methods and other systems write it.
struct Twin {
    char16_t typed;
    char16_t encoded;
};
constexpr Twin twins[] = {
    { 0x301C, 0xFF5E }, // wave dash
    { 0x2212, 0xFF0D }, // minus sign
    { 0x2016, 0x2225 }, // double vertical line
    { 0x2014, 0x2015 }, // em dash
    { 0x00A2, 0xFFE0 }, // cent sign
    { 0x00A3, 0xFFE1 }, // pound sign
    { 0x00AC, 0xFFE2 }, // not sign
    { 0x00A6, 0xFFE4 }, // broken bar
    { 0x00A5, u'\\' }, // yen sign, in whose place ASCII has the backslash
    { 0x203E, u'~' }, // overline, in whose place ASCII has the tilde
};

void addTwins(std::array<quint16, 0x10000> &codes)
{
    for (const Twin &twin : twins) {
        if (codes[twin.typed] == 0)
            codes[twin.typed] = codes[twin.encoded];
    }
}

void addOneByteCodes(std::array<quint16, 0x10000> &codes)
{
    for (quint16 c = 0; c < 0x80; ++c)
        codes[c] = c;
    for (char16_t c = firstHalfWidth; c <= lastHalfWidth; ++c)
        codes[c] = static_cast<quint16>(firstHalfWidthCode + (c - firstHalfWidth));
}

/// Calls `visit(row, cell, character)`, row and cell from 1, for every assigned cell of one kind of rows.
template <class Visit> void forEachCell(std::span<const JisRow> rows, RowKind kind, const Visit &visit)
{
    for (const JisRow &row : rows) {
        if (kindOf(row.row) != kind)
            continue;
        for (int cell = 1; row.cells[cell - 1] != 0; ++cell) {
            if (row.cells[cell - 1] != unassigned)
                visit(row.row, cell, row.cells[cell - 1]);
        }
    }
}

/// The first code that a character gets is its usual one.
JisEntry addCode(std::array<quint16, 0x10000> &codes, OtherCodes &others, char16_t character, quint16 code)
{
    if (codes[character] != 0)
        return others.add(character);
    codes[character] = code;
    return character;
}

quint16 shiftJisCode(int row, int cell)
{
    const int pair = (row - 1) / 2;
    const int lead = pair < 31 ? 0x81 + pair : 0xC1 + pair;
    const int trail = row % 2 == 0 ? cell + 0x9E : cell + (cell <= 63 ? 0x3F : 0x40);
    return static_cast<quint16>(lead << 8 | trail);
}

quint16 jisCode(int row, int cell)
{
    return static_cast<quint16>((row + 0x20) << 8 | (cell + 0x20));
}

} // namespace

JisEntry OtherCodes::add(char16_t character)
{
    m_characters.push_back(character);
    return static_cast<JisEntry>(0xD800 + m_characters.size() - 1);
}

const ShiftJisTable &ShiftJisTable::instance()
{
    static const std::unique_ptr<const ShiftJisTable> table(new ShiftJisTable);
    return *table;
}

ShiftJisTable::ShiftJisTable()
{
    addOneByteCodes(m_codes);
    const auto add = [this](int row, int cell, char16_t character) {
        const quint16 code = shiftJisCode(row, cell);
        m_entries[code - firstCode] = addCode(m_codes, m_others, character, code);
    };
    for (const RowKind kind :
        { RowKind::Standard, RowKind::Added, RowKind::Extension, RowKind::FirstExtension })
        forEachCell(kanjiRows, kind, add);
    for (int i = 0; i < userDefinedCount; ++i)
        add(firstShiftJisUserRow + i / cellsPerRow, i % cellsPerRow + 1, userDefined(i));
    addTwins(m_codes);
}

const JisPlanes &JisPlanes::instance()
{
    static const std::unique_ptr<const JisPlanes> planes(new JisPlanes);
    return *planes;
}

JisPlanes::JisPlanes()
{
    addOneByteCodes(m_codes);
    const auto addTo = [this](std::array<JisEntry, 0x4000> &plane, quint16 flag) {
        return [this, &plane, flag](int row, int cell, char16_t character) {
            const quint16 code = jisCode(row, cell);
            JisEntry &entry = plane[index(static_cast<uchar>(code >> 8), static_cast<uchar>(code))];
            if (entry == 0)
                entry = addCode(m_codes, m_others, character, static_cast<quint16>(code | flag));
        };
    };
    const auto addKanji = addTo(m_kanji, 0);
    const auto addSupplement = addTo(m_supplement, supplementFlag);
    forEachCell(kanjiRows, RowKind::Standard, addKanji);
    forEachCell(kanjiRows, RowKind::Added, addKanji);
    forEachCell(kanjiRows, RowKind::FirstExtension, addKanji);
    forEachCell(supplementRows, RowKind::Standard, addSupplement);
    forEachCell(systemRows, RowKind::Standard, addSupplement);
    for (int i = 0; i < userDefinedCount / 2; ++i) {
        const int row = firstPlaneUserRow + i / cellsPerRow;
        const int cell = i % cellsPerRow + 1;
        if (kindOf(row) != RowKind::FirstExtension)
            addKanji(row, cell, userDefined(i));
        addSupplement(row, cell, userDefined(i + userDefinedCount / 2));
    }
    addTwins(m_codes);
}
