#include "editor/partwisetext.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace {

/// Of one part, which is made in a few milliseconds.
constexpr qint64 partUnits = qint64{ 1 } << 18;

} // namespace

PartwiseText::PartwiseText(const TextStore &store, TextRange range, MakePart makePart)
    : m_makePart(std::move(makePart))
    , m_rest(range)
{
    m_layouts.emplace_back(store);
    m_made = TextStore::Builder(m_layouts.front()).finish();
}

TextRange PartwiseText::takeRange()
{
    const Offset start = m_rest.start;
    m_rest.start = qMin(start + partUnits, m_rest.end);
    return { start, m_rest.start };
}

void PartwiseText::makeNext(int parts, const Spread &spread)
{
    std::vector<TextRange> ranges;
    while (int(ranges.size()) < parts && !isWhole())
        ranges.push_back(takeRange());
    while (m_layouts.size() < ranges.size())
        m_layouts.push_back(m_layouts.front());
    std::vector<std::optional<TextStore>> made(ranges.size());
    spread(int(ranges.size()), [&](int i) {
        const auto part = size_t(i);
        made[part] = m_makePart(ranges[part], m_layouts[part]);
    });
    for (std::optional<TextStore> &part : made)
        m_made.append(std::move(*part));
}

bool PartwiseText::isLaidOutAs(const TextStore &store) const
{
    return isMeasured() && m_layouts.front().layout().stamp() == store.layout().stamp();
}

bool PartwiseText::isMeasured() const
{
    return std::ranges::all_of(m_layouts, &LayoutCopy::isComplete);
}

bool PartwiseText::askForWidths(const TextStore &store, QDeadlineTimer end)
{
    return std::ranges::all_of(m_layouts, [&](LayoutCopy &layout) { return layout.askFor(store, end); });
}

TextPiece PartwiseText::take()
{
    if (!isMeasured())
        m_made.forgetLayout();
    return m_made.piece({}, m_made.length());
}
