#pragma once

#include <QtGlobal>

#include <limits>

/// Maps places of a view, rows or pixels, to values of a scroll bar, which counts in int: one to one as long
/// as they fit, else each value stands for a power of two of places.
class ScrollRange {
public:
    /// `last` is the last place to scroll to, >= 0.
    explicit ScrollRange(qint64 last = 0)
        : m_last(last)
    {
        while ((last >> m_shift) > std::numeric_limits<int>::max() / 2)
            ++m_shift;
    }
    qint64 last() const { return m_last; }
    int maximum() const { return toBar(m_last); }
    /// Value that shows a place.
    int toBar(qint64 place) const { return int(qMin(place, m_last) >> m_shift); }
    /// Values that a number of places takes, at least 1.
    int step(qint64 places) const { return int(qMax<qint64>(1, places >> m_shift)); }
    /// First place that has a value; the largest value is the last place.
    qint64 toPlace(int value) const
    {
        return value >= maximum() ? m_last : qMax<qint64>(0, qint64(value) << m_shift);
    }

private:
    qint64 m_last;
    int m_shift = 0;
};
