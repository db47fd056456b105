#include "text/wordbounds.h"

#include <QChar>

namespace {

enum class CharClass { LineEnd, Blank, Alphabetic, Hiragana, Katakana, Ideographic, Punctuation };

constexpr qint64 longestRun = qint64(16) << 10;
constexpr int longestCluster = 32;

char32_t codePointAt(const TextStore &store, qint64 offset)
{
    const char16_t unit = store.at(offset);
    if (QChar::isHighSurrogate(unit) && offset + 1 < store.length()) {
        const char16_t low = store.at(offset + 1);
        if (QChar::isLowSurrogate(low))
            return QChar::surrogateToUcs4(unit, low);
    }
    return unit;
}

bool isMark(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
        return true;
    default:
        return false;
    }
}

/// Characters that go with whatever stands before them.
bool belongsToPrevious(char32_t c)
{
    constexpr char32_t prolongedSound = 0x30fc, halfWidthProlongedSound = 0xff70, zeroWidthJoiner = 0x200d;
    return c == prolongedSound || c == halfWidthProlongedSound || c == zeroWidthJoiner || isMark(c);
}

CharClass classOf(char32_t c)
{
    if (c == U'\n')
        return CharClass::LineEnd;
    if (QChar::isSpace(c))
        return CharClass::Blank;
    switch (QChar::script(c)) {
    case QChar::Script_Hiragana:
        return CharClass::Hiragana;
    case QChar::Script_Katakana:
        return CharClass::Katakana;
    case QChar::Script_Han:
        return CharClass::Ideographic;
    default:
        break;
    }
    if (c == 0x30fc || c == 0xff70)
        return CharClass::Katakana;
    return QChar::isLetterOrNumber(c) || isMark(c) || c == U'_' ? CharClass::Alphabetic
                                                                : CharClass::Punctuation;
}

CharClass classAt(const TextStore &store, qint64 offset)
{
    char32_t c = 0;
    for (int i = 0; i < longestCluster; ++i, --offset) {
        if (offset > 0 && QChar::isLowSurrogate(store.at(offset))
            && QChar::isHighSurrogate(store.at(offset - 1)))
            --offset;
        c = codePointAt(store, offset);
        if (!belongsToPrevious(c) || offset == 0 || store.at(offset - 1) == u'\n')
            break;
    }
    return classOf(c);
}

qint64 runEnd(const TextStore &store, qint64 offset, CharClass kind)
{
    const qint64 limit = qMin(store.length(), offset + longestRun);
    while (offset < limit && classAt(store, offset) == kind)
        ++offset;
    return offset;
}

qint64 runStart(const TextStore &store, qint64 offset, CharClass kind)
{
    const qint64 limit = qMax<qint64>(0, offset - longestRun);
    while (offset > limit && classAt(store, offset - 1) == kind)
        --offset;
    return offset;
}

} // namespace

qint64 nextWordStart(const TextStore &store, qint64 offset)
{
    if (offset >= store.length())
        return store.length();
    const CharClass here = classAt(store, offset);
    if (here == CharClass::LineEnd)
        return offset + 1;
    if (here != CharClass::Blank)
        offset = runEnd(store, offset, here);
    return runEnd(store, offset, CharClass::Blank);
}

qint64 previousWordStart(const TextStore &store, qint64 offset)
{
    if (offset > 0 && store.at(offset - 1) == u'\n')
        return offset - 1;
    offset = runStart(store, offset, CharClass::Blank);
    if (offset == 0)
        return 0;
    const CharClass before = classAt(store, offset - 1);
    return before == CharClass::LineEnd ? offset : runStart(store, offset, before);
}

TextRange wordAt(const TextStore &store, qint64 offset)
{
    const bool atLineEnd = offset == store.length() || store.at(offset) == u'\n';
    if (atLineEnd && (offset == 0 || store.at(offset - 1) == u'\n'))
        return { offset, offset };
    const CharClass kind = classAt(store, atLineEnd ? offset - 1 : offset);
    return { runStart(store, offset, kind), runEnd(store, offset, kind) };
}
