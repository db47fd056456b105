#pragma once

#include <QtGlobal>

#include <limits>

/// Maps rows of a document to values of a scroll bar, which counts in int: one to one as long as the rows
/// fit, else each value stands for a power of two of rows.
class ScrollRange {
public:
    /// `lastTop` is the largest top row, >= 0.
    explicit ScrollRange(qint64 lastTop = 0)
        : m_lastTop(lastTop)
    {
        while ((lastTop >> m_shift) > std::numeric_limits<int>::max() / 2)
            ++m_shift;
    }
    qint64 lastTop() const { return m_lastTop; }
    int maximum() const { return toBar(m_lastTop); }
    /// Value that shows a row or a count of rows.
    int toBar(qint64 rows) const { return int(qMin(rows, m_lastTop) >> m_shift); }
    /// Steps of the bar for a page of rows, at least 1.
    int pageStep(qint64 rows) const { return int(qMax<qint64>(1, rows >> m_shift)); }
    /// First row that has a value; the largest value is the last top row.
    qint64 toRow(int value) const
    {
        return value >= maximum() ? m_lastTop : qMax<qint64>(0, qint64(value) << m_shift);
    }

private:
    qint64 m_lastTop;
    int m_shift = 0;
};
