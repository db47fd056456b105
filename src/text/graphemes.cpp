#include "text/graphemes.h"

#include "text/codepoint.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr char32_t zeroWidthJoiner = 0x200d;

/// What a code point does to its neighbours.
enum class Role : quint8 {
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

struct RoleBlock {
    char32_t first;
    char32_t last;
    Role role;
};

// In ascending order; what is not here goes by its category.
constexpr RoleBlock roleBlocks[] = {
    { 0x0600, 0x0605, Role::Prepend }, // Arabic number signs
    { 0x06dd, 0x06dd, Role::Prepend }, // Arabic end of ayah
    { 0x070f, 0x070f, Role::Prepend }, // Syriac abbreviation mark
    { 0x0890, 0x0891, Role::Prepend }, // Arabic pound and piastre marks
    { 0x08e2, 0x08e2, Role::Prepend }, // Arabic disputed end of ayah
    { 0x0e33, 0x0e33, Role::Spacing }, // Thai AM
    { 0x0eb3, 0x0eb3, Role::Spacing }, // Lao AM
    { 0x1100, 0x115f, Role::Leading }, // Hangul consonants
    { 0x1160, 0x11a7, Role::Vowel }, // Hangul vowels
    { 0x11a8, 0x11ff, Role::Trailing }, // Hangul final consonants
    { 0x1a61, 0x1a61, Role::None }, // Tai Tham vowels that stand beside
    { 0x1a63, 0x1a64, Role::None }, // the same
    { 0x200c, 0x200c, Role::Extend }, // zero width non-joiner
    { zeroWidthJoiner, zeroWidthJoiner, Role::Joiner }, // the one that joins
    { 0xa960, 0xa97c, Role::Leading }, // old Hangul consonants
    { 0xaa7b, 0xaa7b, Role::None }, // Khamti tone that stands beside
    { 0xaa7d, 0xaa7d, Role::None }, // the same
    { 0xd7b0, 0xd7c6, Role::Vowel }, // old Hangul vowels
    { 0xd7cb, 0xd7fb, Role::Trailing }, // old Hangul final consonants
    { 0x110bd, 0x110bd, Role::Prepend }, // Kaithi number sign
    { 0x110cd, 0x110cd, Role::Prepend }, // the same, above
    { 0x111c2, 0x111c3, Role::Prepend }, // Sharada
    { 0x11720, 0x11721, Role::None }, // Ahom vowels that stand beside
    { 0x1193f, 0x1193f, Role::Prepend }, // Dives Akuru
    { 0x11941, 0x11941, Role::Prepend }, // Dives Akuru
    { 0x11a3a, 0x11a3a, Role::Prepend }, // Zanabazar Square
    { 0x11a84, 0x11a89, Role::Prepend }, // Soyombo
    { 0x11d46, 0x11d46, Role::Prepend }, // Masaram Gondi
    { 0x1f1e6, 0x1f1ff, Role::Indicator }, // letters of flags
    { 0x1f3fb, 0x1f3ff, Role::Extend }, // skin tones
    { 0xe0020, 0xe007f, Role::Extend }, // tags
};

Role roleOfCategory(char32_t codePoint)
{
    switch (QChar::category(codePoint)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
        return Role::Extend;
    case QChar::Mark_SpacingCombining:
        return Role::Spacing;
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return Role::Control;
    default:
        return Role::None;
    }
}

Role roleOf(char32_t codePoint)
{
    constexpr char32_t firstSyllable = 0xac00;
    constexpr char32_t lastSyllable = 0xd7a3;
    constexpr char32_t finals = 28;
    if ((codePoint >= 0x20 && codePoint <= 0x7e) || (codePoint >= 0x3400 && codePoint <= 0x9fff))
        return Role::None;
    if (codePoint >= firstSyllable && codePoint <= lastSyllable)
        return (codePoint - firstSyllable) % finals ? Role::ClosedSyllable : Role::OpenSyllable;
    const auto *behind = std::upper_bound(std::begin(roleBlocks), std::end(roleBlocks), codePoint,
        [](char32_t c, const RoleBlock &block) { return c < block.first; });
    if (behind != std::begin(roleBlocks) && codePoint <= std::prev(behind)->last)
        return std::prev(behind)->role;
    return roleOfCategory(codePoint);
}

bool isAlone(Role role)
{
    return role <= Role::ClosedSyllable;
}

bool isPictograph(char32_t codePoint)
{
    const QChar::Category category = QChar::category(codePoint);
    return category == QChar::Symbol_Other || category == QChar::Symbol_Math
        || category == QChar::Other_NotAssigned;
}

bool isJoined(Role before, Role behind)
{
    if (before == Role::Control || behind == Role::Control)
        return false;
    if (behind == Role::Extend || behind == Role::Spacing || behind == Role::Joiner)
        return true;
    switch (before) {
    case Role::Prepend:
        return true;
    case Role::Indicator:
        return behind == Role::Indicator;
    case Role::Leading:
        return behind == Role::Leading || behind == Role::Vowel || behind == Role::OpenSyllable
            || behind == Role::ClosedSyllable;
    case Role::OpenSyllable:
    case Role::Vowel:
        return behind == Role::Vowel || behind == Role::Trailing;
    case Role::ClosedSyllable:
    case Role::Trailing:
        return behind == Role::Trailing;
    default:
        return false;
    }
}

/// Reads one character, code point by code point.
class Reader {
public:
    explicit Reader(char32_t first)
        : m_last(roleOf(first))
        , m_emoji(m_last == Role::None ? first : 0)
        , m_isHalfFlag(m_last == Role::Indicator)
    {
    }

    /// False where another character begins.
    bool take(char32_t next)
    {
        const Role role = roleOf(next);
        const bool isIndicator = role == Role::Indicator;
        const bool isJoinedEmoji = m_awaitsEmoji && role == Role::None && isPictograph(next);
        const bool isNextFlag = isIndicator && m_last == Role::Indicator && !m_isHalfFlag;
        if (!isJoinedEmoji && (isNextFlag || !isJoined(m_last, role)))
            return false;
        m_isHalfFlag = isIndicator && !m_isHalfFlag;
        m_awaitsEmoji = role == Role::Joiner && isPictograph(m_emoji);
        if (role != Role::Extend)
            m_emoji = role == Role::None ? next : 0;
        m_last = role;
        return true;
    }

private:
    Role m_last;
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
    return isJoined(roleOf(before), roleOf(behind)) || (before == zeroWidthJoiner && isPictograph(behind));
}

bool standsAlone(char16_t unit)
{
    return !QChar::isSurrogate(unit) && isAlone(roleOf(unit));
}

bool isMerged(char32_t before, char32_t behind)
{
    const auto isIndicator = [](char32_t codePoint) { return codePoint >= 0x1f1e6 && codePoint <= 0x1f1ff; };
    return before == zeroWidthJoiner || (isIndicator(before) && isIndicator(behind));
}
