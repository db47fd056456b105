#include "widget/lineink.h"

void LineInk::setEnd(qint64 line, int end)
{
    Q_ASSERT(line >= 0);
    if (!isKnown(line))
        m_ends.resize(std::size_t(line) + 1, everywhere);
    m_ends[std::size_t(line)] = end;
}

void LineInk::shift(qint64 rows)
{
    const std::vector<int> before = m_ends;
    for (std::size_t line = 0; line < before.size(); ++line) {
        const qint64 from = qint64(line) + rows;
        const bool wasShown = from >= 0 && from < qint64(before.size());
        m_ends[line] = wasShown ? qMax(before[line], before[std::size_t(from)]) : everywhere;
    }
}
