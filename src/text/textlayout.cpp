#include "text/textlayout.h"

#include "text/codepoint.h"
#include "text/graphemes.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace {

/// In any thread: a job that is given up empties its text in its own.
quint64 newStamp()
{
    static std::atomic<quint64> last = 0;
    return ++last;
}

const AdvanceTable &onePixelEach()
{
    static const AdvanceTable table(
        [](char32_t codePoint) { return mayJoin(U'x', codePoint) ? 0 : int(subpixelsPerPixel); });
    return table;
}

} // namespace

TextLayout::TextLayout(const LayoutRule &rule, const NodeSizes &sizes)
    : m_rule(rule)
    , m_sizes(sizes)
    , m_advances(rule.advances ? rule.advances : &onePixelEach())
    , m_stamp(newStamp())
    , m_latin1(m_advances->latin1())
{
    Q_ASSERT(rule.tabStop > 0 && rule.tabStop <= LayoutRule::widest);
    Q_ASSERT(rule.limit >= 0 && rule.limit <= LayoutRule::widest);
    Q_ASSERT(sizes.leafUnits >= 4 && sizes.leafUnits <= 0x4000);
    Q_ASSERT(sizes.children >= 4 && sizes.children <= NodeSizes().children);
    const auto first = m_latin1.begin() + ' ';
    const auto end = m_latin1.begin() + 0x7f;
    if (std::all_of(first, end, [&](quint16 width) { return width == *first; }))
        m_asciiWidth = *first;
}

TextLayout::TextLayout(const TextLayout &other, const AdvanceTable &advances)
    : TextLayout(other)
{
    m_rule.advances = m_advances = &advances;
}

bool TextLayout::isWithinLimit(QStringView text) const
{
    Subpixels x = 0;
    char32_t codePoint = 0;
    for (qsizetype i = 0; i < text.size() && x <= limit(); i += unitsOf(codePoint)) {
        codePoint = codePointAt(text, i);
        x += codePoint == U'\t' ? tabStop() : m_advances->advanceOf(codePoint);
    }
    return x <= limit();
}

TextLayout::Character TextLayout::character(const char16_t *text, qint64 size, qint64 i) const
{
    const QStringView view(text, size);
    const qint64 end = graphemeEnd(view, i);
    char32_t last = codePointAt(view, i);
    int width = m_advances->advanceOf(last);
    for (i += unitsOf(last); i < end; i += unitsOf(last)) {
        const char32_t before = std::exchange(last, codePointAt(view, i));
        if (!isMerged(before, last))
            width += m_advances->advanceOf(last);
    }
    return { end, width };
}
