#include "document/textcounts.h"

#include "text/textsnapshot.h"

#include <span>

namespace {

constexpr bool isHalfWidthKatakana(char16_t c)
{
    return c >= u'\uFF61' && c <= u'\uFF9E';
}

constexpr bool isDoubleByte(char16_t c)
{
    return c >= 0x80 && !isHalfWidthKatakana(c);
}

/// A chunk is short: its counts fit into 32 bits, of which the processor adds up many at a time.
template <typename Units> void count(const Units &units, TextCounts &counts)
{
    quint32 lineFeeds = 0;
    quint32 doubleByte = 0;
    for (const char16_t c : units) {
        lineFeeds += c == u'\n';
        doubleByte += isDoubleByte(c);
    }
    counts.lineFeeds += lineFeeds;
    counts.doubleByteChars += doubleByte;
    counts.singleByteChars += qint64(units.size()) - lineFeeds - doubleByte;
}

} // namespace

TextCounts &TextCounts::operator+=(const TextCounts &more)
{
    lineFeeds += more.lineFeeds;
    singleByteChars += more.singleByteChars;
    doubleByteChars += more.doubleByteChars;
    return *this;
}

template <class Text> TextCounts countText(const Text &text, TextRange range)
{
    TextCounts counts;
    for (Offset offset = range.start; offset < range.end;) {
        TextChunk chunk = text.chunkAt(offset);
        chunk.truncate(qMin(chunk.size(), range.end - offset));
        if (chunk.isLatin1())
            count(std::span(reinterpret_cast<const uchar *>(chunk.latin1.data()), size_t(chunk.size())),
                counts);
        else
            count(std::span(chunk.utf16.utf16(), size_t(chunk.size())), counts);
        offset += chunk.size();
    }
    return counts;
}

template TextCounts countText(const TextStore &text, TextRange range);
template TextCounts countText(const TextSnapshot &text, TextRange range);

TextCounts countText(const TextStore &text)
{
    return countText(text, { {}, text.end() });
}

qint64 fileSize(const TextCounts &counts, CharCode charCode, ReturnCode returnCode)
{
    const CharCodeInfo &code = infoOf(charCode);
    const qint64 lineEnds = counts.lineFeeds * infoOf(returnCode).bytes.size();
    return (lineEnds + counts.singleByteChars) * code.bytesOfNarrow
        + counts.doubleByteChars * code.bytesOfWide;
}
