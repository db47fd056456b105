#include "document/countwork.h"

#include <vector>

namespace {

/// Of one part: a few milliseconds at most.
constexpr qint64 partUnits = qint64{ 1 } << 20;

} // namespace

JobWork::Step CountWork::step(JobTurn &turn)
{
    std::vector<TextRange> parts;
    while (int(parts.size()) < turn.threads() && m_at < m_text.end()) {
        parts.push_back({ m_at, qMin(m_at + partUnits, m_text.end()) });
        m_at = parts.back().end;
    }
    std::vector<TextCounts> counts(parts.size());
    turn.spread(int(parts.size()), [&](int i) { counts[size_t(i)] = countText(m_text, parts[size_t(i)]); });
    for (const TextCounts &part : counts)
        m_counts += part;
    turn.tellProgress({ m_at.value(), m_text.length() });
    return m_at < m_text.end() ? Step::More : Step::Done;
}
