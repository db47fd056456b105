#include "text/wordbounds.h"

#include "text/codepoint.h"

namespace {

enum class WordClass { LineEnd, Blank, Alphabetic, Hiragana, Katakana, Ideographic, Punctuation };

constexpr qint64 farthestLook = qint64(16) << 10;
constexpr int longestCluster = 32;

/// Characters that go with whatever stands before them.
bool belongsToPrevious(char32_t c)
{
    constexpr char32_t prolongedSound = 0x30fc, halfWidthProlongedSound = 0xff70, zeroWidthJoiner = 0x200d;
    return c == prolongedSound || c == halfWidthProlongedSound || c == zeroWidthJoiner || isCombiningMark(c);
}

WordClass classOf(char32_t c)
{
    if (c == U'\n')
        return WordClass::LineEnd;
    if (QChar::isSpace(c))
        return WordClass::Blank;
    switch (QChar::script(c)) {
    case QChar::Script_Hiragana:
        return WordClass::Hiragana;
    case QChar::Script_Katakana:
        return WordClass::Katakana;
    case QChar::Script_Han:
        return WordClass::Ideographic;
    default:
        break;
    }
    if (c == 0x30fc || c == 0xff70)
        return WordClass::Katakana;
    return QChar::isLetterOrNumber(c) || isCombiningMark(c) || c == U'_' ? WordClass::Alphabetic
                                                                         : WordClass::Punctuation;
}

WordClass classAt(const TextStore &store, Offset offset)
{
    char32_t c = 0;
    for (int i = 0; i < longestCluster; ++i, --offset) {
        if (offset > Offset() && QChar::isLowSurrogate(store.at(offset))
            && QChar::isHighSurrogate(store.at(offset - 1)))
            --offset;
        c = codePointFrom(offset, store.end(), [&store](Offset place) { return store.at(place); });
        if (!belongsToPrevious(c) || offset == Offset() || store.at(offset - 1) == u'\n')
            break;
    }
    return classOf(c);
}

Offset endOfClass(const TextStore &store, Offset offset, WordClass kind)
{
    const Offset limit = qMin(store.end(), offset + farthestLook);
    while (offset < limit && classAt(store, offset) == kind)
        ++offset;
    return offset;
}

Offset startOfClass(const TextStore &store, Offset offset, WordClass kind)
{
    const Offset limit = qMax(Offset(), offset - farthestLook);
    while (offset > limit && classAt(store, offset - 1) == kind)
        --offset;
    return offset;
}

} // namespace

Offset nextWordStart(const TextStore &store, Offset offset)
{
    if (offset >= store.end())
        return store.end();
    const WordClass here = classAt(store, offset);
    if (here == WordClass::LineEnd)
        return offset + 1;
    if (here != WordClass::Blank)
        offset = endOfClass(store, offset, here);
    return endOfClass(store, offset, WordClass::Blank);
}

Offset previousWordStart(const TextStore &store, Offset offset)
{
    if (offset > Offset() && store.at(offset - 1) == u'\n')
        return offset - 1;
    offset = startOfClass(store, offset, WordClass::Blank);
    if (offset == Offset())
        return offset;
    const WordClass before = classAt(store, offset - 1);
    return before == WordClass::LineEnd ? offset : startOfClass(store, offset, before);
}

TextRange wordAt(const TextStore &store, Offset offset)
{
    const bool atLineEnd = offset == store.end() || store.at(offset) == u'\n';
    if (atLineEnd && (offset == Offset() || store.at(offset - 1) == u'\n'))
        return { offset, offset };
    const WordClass kind = classAt(store, atLineEnd ? offset - 1 : offset);
    return { startOfClass(store, offset, kind), endOfClass(store, offset, kind) };
}
