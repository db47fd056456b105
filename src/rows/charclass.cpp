#include "rows/charclass.h"

#include <QChar>

#include <algorithm>
#include <iterator>

namespace {

struct CharacterBlock {
    char32_t first;
    char32_t last;
};

template <std::size_t n> bool isIn(const CharacterBlock (&blocks)[n], char32_t codePoint)
{
    const auto *at = std::upper_bound(std::begin(blocks), std::end(blocks), codePoint,
        [](char32_t c, const CharacterBlock &block) { return c < block.first; });
    return at != std::begin(blocks) && codePoint <= std::prev(at)->last;
}

// Blocks whose letters change their form or place with their neighbours, in ascending order.
constexpr CharacterBlock complexBlocks[] = {
    { 0x0900, 0x109f }, // Devanagari … Tibetan, Myanmar
    { 0x1100, 0x115f }, // conjoining initial consonants
    { 0x1700, 0x18af }, // Tagalog … Khmer, Mongolian
    { 0x1900, 0x19df }, // Limbu … New Tai Lue
    { 0x1a00, 0x1aad }, // Buginese, Tai Tham
    { 0x1b00, 0x1c4f }, // Balinese … Lepcha
    { 0xa800, 0xa82f }, // Syloti Nagri
    { 0xa840, 0xa95f }, // Phags-pa … Rejang
    { 0xa960, 0xa97c }, // conjoining initial consonants
    { 0xa980, 0xaadf }, // Javanese … Tai Viet
    { 0xaae0, 0xaaff }, // Meetei Mayek
    { 0xabc0, 0xabff }, // Meetei Mayek
    { 0x10a00, 0x10a5f }, // Kharoshthi
    { 0x11000, 0x11fff }, // Brahmi … Tamil supplement
    { 0x1f1e6, 0x1f1ff }, // regional indicators, in pairs a flag
};

// Conjoining vowels and final consonants; skin tones; tags.
constexpr CharacterBlock zeroWidthBlocks[] = {
    { 0x1160, 0x11ff },
    { 0x200c, 0x200d },
    { 0xd7b0, 0xd7fb },
    { 0x1f3fb, 0x1f3ff },
    { 0xe0020, 0xe007f },
};

constexpr CharacterBlock ideographBlocks[] = {
    { 0x3400, 0x4dbf },
    { 0x4e00, 0x9fff },
    { 0xac00, 0xd7a3 },
    { 0x20000, 0x3134f },
};

} // namespace

CharClass charClass(char32_t codePoint)
{
    if (codePoint < 0x300)
        return codePoint < 0x20 || (codePoint >= 0x7f && codePoint < 0xa0) ? CharClass::HexBox
                                                                           : CharClass::Plain;
    if (isIdeograph(codePoint))
        return CharClass::Plain;
    if (isIn(zeroWidthBlocks, codePoint))
        return CharClass::Extend;
    const QChar::Direction direction = QChar::direction(codePoint);
    switch (QChar::category(codePoint)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Mark_SpacingCombining:
        return CharClass::Extend;
    case QChar::Other_Format:
        if (direction != QChar::DirAN && direction != QChar::DirAL && !isIn(complexBlocks, codePoint))
            return CharClass::HexBox;
        break;
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return CharClass::HexBox;
    default:
        break;
    }
    if (direction == QChar::DirR || direction == QChar::DirAL || direction == QChar::DirAN)
        return CharClass::RightToLeft;
    return isIn(complexBlocks, codePoint) ? CharClass::Complex : CharClass::Plain;
}

bool isZeroWidth(char32_t codePoint)
{
    if (isIn(zeroWidthBlocks, codePoint))
        return true;
    const QChar::Category category = QChar::category(codePoint);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing;
}

bool isIdeograph(char32_t codePoint)
{
    return codePoint >= ideographBlocks[0].first && isIn(ideographBlocks, codePoint);
}

bool isNeutral(char32_t codePoint)
{
    switch (QChar::direction(codePoint)) {
    case QChar::DirL:
    case QChar::DirR:
    case QChar::DirAL:
        return false;
    default:
        return true;
    }
}
