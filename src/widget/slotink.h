#pragma once

#include <QtGlobal>

#include <limits>
#include <vector>

/// How far to the right each slot of a view shows more than its background, or is about to.
///
/// Ends are logical pixels from the view's left edge. An end may be further than what is shown and never
/// nearer, except where a repaint is pending already: what is right of it needs no repaint when the view goes
/// on by whole rows.
class SlotInk {
public:
    static constexpr int everywhere = std::numeric_limits<int>::max();

    /// Everywhere for a slot that nothing is known of.
    int end(qint64 slot) const { return isKnown(slot) ? m_ends[std::size_t(slot)] : everywhere; }
    /// 0 <= slot.
    void setEnd(qint64 slot, int end);
    void forget() { m_ends.clear(); }
    /// The row `rows` further down comes to each slot. Its end becomes the further one of what it showed and
    /// what it will.
    void shift(qint64 rows);

private:
    bool isKnown(qint64 slot) const { return slot >= 0 && slot < qint64(m_ends.size()); }

    std::vector<int> m_ends;
};
