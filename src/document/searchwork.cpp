#include "document/searchwork.h"

#include <vector>

namespace {

/// Of one part: a few milliseconds at most, and not less than what is read again of a long pattern.
constexpr qint64 fewestUnits = qint64{ 1 } << 19;

} // namespace

SearchWork::SearchWork(TextSnapshot text, TextPattern pattern, SearchDirection direction, TextRange range)
    : m_text(std::move(text))
    , m_pattern(std::move(pattern))
    , m_direction(direction)
    , m_units(range.length())
    , m_rest(range)
{
}

JobWork::Step SearchWork::step(JobTurn &turn)
{
    const qint64 units = qMax(fewestUnits, m_pattern.length());
    TextRange rest = m_rest;
    std::vector<TextRange> parts;
    while (int(parts.size()) < turn.threads() && !rest.isEmpty())
        parts.push_back(takeFirst(rest, m_direction, units));
    std::vector<std::optional<Offset>> begins(parts.size());
    turn.spread(int(parts.size()),
        [&](int i) { begins[size_t(i)] = beginOfHit(m_text, m_pattern, m_direction, parts[size_t(i)]); });
    m_rest = rest;
    for (const std::optional<Offset> &begin : begins) {
        m_begin = begin;
        if (m_begin)
            return Step::Done;
    }
    turn.tellProgress({ m_units - m_rest.length(), m_units });
    return m_rest.isEmpty() ? Step::Done : Step::More;
}
