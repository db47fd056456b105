#include "text/graphemes.h"

#include "text/codepoint.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr char32_t zeroWidthJoiner = 0x200d;

/// What a code point does to its neighbours.
enum class Joining : quint8 {
    None,
    Control, ///< joins nothing
    OpenSyllable, ///< Hangul, without a final consonant
    ClosedSyllable, ///< Hangul, with one
    Extend, ///< belongs to what is before it
    Spacing, ///< the same, with a place of its own
    Joiner, ///< the same, and holds emoji together
    Prepend, ///< belongs to what is behind it
    Indicator, ///< letter of a flag
    Leading, ///< conjoining Hangul consonant or vowel
    Vowel,
    Trailing,
};

struct Range {
    char32_t first;
    char32_t last;
    Joining joining;
};

// In ascending order; what is not here goes by its category.
constexpr Range ranges[] = {
    { 0x0600, 0x0605, Joining::Prepend }, // Arabic number signs
    { 0x06dd, 0x06dd, Joining::Prepend }, // Arabic end of ayah
    { 0x070f, 0x070f, Joining::Prepend }, // Syriac abbreviation mark
    { 0x0890, 0x0891, Joining::Prepend }, // Arabic pound and piastre marks
    { 0x08e2, 0x08e2, Joining::Prepend }, // Arabic disputed end of ayah
    { 0x0e33, 0x0e33, Joining::Spacing }, // Thai AM
    { 0x0eb3, 0x0eb3, Joining::Spacing }, // Lao AM
    { 0x1100, 0x115f, Joining::Leading }, // Hangul consonants
    { 0x1160, 0x11a7, Joining::Vowel }, // Hangul vowels
    { 0x11a8, 0x11ff, Joining::Trailing }, // Hangul final consonants
    { 0x1a61, 0x1a61, Joining::None }, // Tai Tham vowels that stand beside
    { 0x1a63, 0x1a64, Joining::None }, // the same
    { 0x200c, 0x200c, Joining::Extend }, // zero width non-joiner
    { zeroWidthJoiner, zeroWidthJoiner, Joining::Joiner }, // the one that joins
    { 0xa960, 0xa97c, Joining::Leading }, // old Hangul consonants
    { 0xaa7b, 0xaa7b, Joining::None }, // Khamti tone that stands beside
    { 0xaa7d, 0xaa7d, Joining::None }, // the same
    { 0xd7b0, 0xd7c6, Joining::Vowel }, // old Hangul vowels
    { 0xd7cb, 0xd7fb, Joining::Trailing }, // old Hangul final consonants
    { 0x110bd, 0x110bd, Joining::Prepend }, // Kaithi number sign
    { 0x110cd, 0x110cd, Joining::Prepend }, // the same, above
    { 0x111c2, 0x111c3, Joining::Prepend }, // Sharada
    { 0x11720, 0x11721, Joining::None }, // Ahom vowels that stand beside
    { 0x1193f, 0x1193f, Joining::Prepend }, // Dives Akuru
    { 0x11941, 0x11941, Joining::Prepend }, // Dives Akuru
    { 0x11a3a, 0x11a3a, Joining::Prepend }, // Zanabazar Square
    { 0x11a84, 0x11a89, Joining::Prepend }, // Soyombo
    { 0x11d46, 0x11d46, Joining::Prepend }, // Masaram Gondi
    { 0x1f1e6, 0x1f1ff, Joining::Indicator }, // letters of flags
    { 0x1f3fb, 0x1f3ff, Joining::Extend }, // skin tones
    { 0xe0020, 0xe007f, Joining::Extend }, // tags
};

Joining joiningOfCategory(char32_t codePoint)
{
    switch (QChar::category(codePoint)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
        return Joining::Extend;
    case QChar::Mark_SpacingCombining:
        return Joining::Spacing;
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return Joining::Control;
    default:
        return Joining::None;
    }
}

Joining joiningOf(char32_t codePoint)
{
    constexpr char32_t firstSyllable = 0xac00;
    constexpr char32_t lastSyllable = 0xd7a3;
    constexpr char32_t finals = 28;
    if (codePoint >= 0x3400 && codePoint <= 0x9fff)
        return Joining::None;
    if (codePoint >= firstSyllable && codePoint <= lastSyllable)
        return (codePoint - firstSyllable) % finals ? Joining::ClosedSyllable : Joining::OpenSyllable;
    const auto *range = std::upper_bound(std::begin(ranges), std::end(ranges), codePoint,
        [](char32_t c, const Range &r) { return c < r.first; });
    if (range != std::begin(ranges) && codePoint <= std::prev(range)->last)
        return std::prev(range)->joining;
    return joiningOfCategory(codePoint);
}

bool standsAlone(Joining joining)
{
    return joining <= Joining::ClosedSyllable;
}

bool isPictograph(char32_t codePoint)
{
    const QChar::Category category = QChar::category(codePoint);
    return category == QChar::Symbol_Other || category == QChar::Symbol_Math
        || category == QChar::Other_NotAssigned;
}

bool isJoined(Joining before, Joining behind)
{
    if (before == Joining::Control || behind == Joining::Control)
        return false;
    if (behind == Joining::Extend || behind == Joining::Spacing || behind == Joining::Joiner)
        return true;
    switch (before) {
    case Joining::Prepend:
        return true;
    case Joining::Indicator:
        return behind == Joining::Indicator;
    case Joining::Leading:
        return behind == Joining::Leading || behind == Joining::Vowel || behind == Joining::OpenSyllable
            || behind == Joining::ClosedSyllable;
    case Joining::OpenSyllable:
    case Joining::Vowel:
        return behind == Joining::Vowel || behind == Joining::Trailing;
    case Joining::ClosedSyllable:
    case Joining::Trailing:
        return behind == Joining::Trailing;
    default:
        return false;
    }
}

/// Reads one character, code point by code point.
class Reader {
public:
    explicit Reader(char32_t first)
        : m_last(joiningOf(first))
        , m_emoji(m_last == Joining::None ? first : 0)
        , m_isHalfFlag(m_last == Joining::Indicator)
    {
    }

    /// False where another character begins.
    bool take(char32_t next)
    {
        const Joining joining = joiningOf(next);
        const bool isIndicator = joining == Joining::Indicator;
        const bool isJoinedEmoji = m_awaitsEmoji && joining == Joining::None && isPictograph(next);
        const bool isNextFlag = isIndicator && m_last == Joining::Indicator && !m_isHalfFlag;
        if (!isJoinedEmoji && (isNextFlag || !isJoined(m_last, joining)))
            return false;
        m_isHalfFlag = isIndicator && !m_isHalfFlag;
        m_awaitsEmoji = joining == Joining::Joiner && isPictograph(m_emoji);
        if (joining != Joining::Extend)
            m_emoji = joining == Joining::None ? next : 0;
        m_last = joining;
        return true;
    }

private:
    Joining m_last;
    char32_t m_emoji; ///< what may be one, with nothing but marks behind it; 0: none
    bool m_awaitsEmoji = false;
    bool m_isHalfFlag;
};

} // namespace

qsizetype graphemeEnd(QStringView text, qsizetype start)
{
    const char32_t first = codePointAt(text, start);
    qsizetype end = start + unitsOf(first);
    Reader reader(first);
    while (end < text.size()) {
        const char32_t next = codePointAt(text, end);
        if (!reader.take(next))
            break;
        end += unitsOf(next);
    }
    return end;
}

qsizetype certainStart(QStringView text, qsizetype at)
{
    const auto unit = [text](qint64 i) { return text[i].unicode(); };
    const auto isCertain = [&](qsizetype place) {
        const bool isInPair = text[place - 1].isHighSurrogate() && text[place].isLowSurrogate();
        return !isInPair && !mayJoin(codePointUpTo(place, unit), codePointAt(text, place));
    };
    // The first unit may be half a pair.
    constexpr qsizetype first = 2;
    while (at >= first && !isCertain(at))
        --at;
    return at >= first ? at : 0;
}

qsizetype graphemeStart(QStringView text, qsizetype at)
{
    if (at >= text.size())
        return at;
    qsizetype start = certainStart(text, at);
    for (qsizetype end = graphemeEnd(text, start); end <= at; end = graphemeEnd(text, start))
        start = end;
    return start;
}

std::vector<qsizetype> graphemeBoundaries(QStringView text)
{
    std::vector<qsizetype> boundaries = { 0 };
    while (boundaries.back() < text.size())
        boundaries.push_back(graphemeEnd(text, boundaries.back()));
    return boundaries;
}

bool mayJoin(char32_t before, char32_t behind)
{
    return isJoined(joiningOf(before), joiningOf(behind))
        || (before == zeroWidthJoiner && isPictograph(behind));
}

bool standsAlone(char16_t unit)
{
    return !QChar::isSurrogate(unit) && standsAlone(joiningOf(unit));
}

bool isMerged(char32_t before, char32_t behind)
{
    const auto isIndicator = [](char32_t codePoint) { return codePoint >= 0x1f1e6 && codePoint <= 0x1f1ff; };
    return before == zeroWidthJoiner || (isIndicator(before) && isIndicator(behind));
}
