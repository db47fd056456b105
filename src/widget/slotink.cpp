#include "widget/slotink.h"

void SlotInk::setEnd(qint64 slot, int end)
{
    Q_ASSERT(slot >= 0);
    if (!isKnown(slot))
        m_ends.resize(std::size_t(slot) + 1, everywhere);
    m_ends[std::size_t(slot)] = end;
}

void SlotInk::shift(qint64 rows)
{
    const std::vector<int> before = m_ends;
    for (std::size_t slot = 0; slot < before.size(); ++slot) {
        const qint64 from = qint64(slot) + rows;
        const bool wasShown = from >= 0 && from < qint64(before.size());
        m_ends[slot] = wasShown ? qMax(before[slot], before[std::size_t(from)]) : everywhere;
    }
}
