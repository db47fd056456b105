#include "platform/text/textlayout.h"

#include <algorithm>

namespace {

quint64 newStamp()
{
    static quint64 last = 0;
    return ++last;
}

const AdvanceTable &onePixelEach()
{
    static const AdvanceTable table([](char32_t) { return int(subpixelsPerPixel); });
    return table;
}

} // namespace

TextLayout::TextLayout(const LayoutRule &rule)
    : m_rule(rule)
    , m_advances(rule.advances ? rule.advances : &onePixelEach())
    , m_stamp(newStamp())
    , m_latin1(m_advances->latin1())
{
    Q_ASSERT(rule.tabStop > 0 && rule.limit >= 0);
    const auto first = m_latin1.begin() + ' ';
    const auto end = m_latin1.begin() + 0x7f;
    if (std::all_of(first, end, [&](quint16 width) { return width == *first; }))
        m_asciiWidth = *first;
}

bool TextLayout::isWithinLimit(QStringView text) const
{
    if (!text.isEmpty() && text.back().isHighSurrogate())
        return false;
    Subpixels x = 0;
    for (qsizetype i = 0; i < text.size() && x <= limit(); ++i)
        x += text[i] == u'\t' ? tabStop() : width(text.utf16(), text.size(), i);
    return x <= limit();
}

int TextLayout::surrogateWidth(const char16_t *text, qint64 size, qint64 i) const
{
    if (QChar::isLowSurrogate(text[i]) && i > 0 && QChar::isHighSurrogate(text[i - 1]))
        return 0;
    const bool pair = QChar::isHighSurrogate(text[i]) && i + 1 < size && QChar::isLowSurrogate(text[i + 1]);
    if (!pair)
        return width(text[i]);
    return m_advances->advanceOf(QChar::surrogateToUcs4(text[i], text[i + 1]));
}
