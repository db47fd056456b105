#pragma once

#include <QtGlobal>

#include <limits>
#include <vector>

/// How far to the right each line of a view shows more than its background, or is about to.
///
/// Lines count from the view's top, ends are logical pixels from its left edge. An end may be further than
/// what is shown and never nearer, except where a repaint is pending already: what is right of it needs no
/// repaint when the view goes on by whole rows.
class LineInk {
public:
    static constexpr int everywhere = std::numeric_limits<int>::max();

    /// Everywhere for a line that nothing is known of.
    int end(qint64 line) const { return isKnown(line) ? m_ends[std::size_t(line)] : everywhere; }
    /// 0 <= line.
    void setEnd(qint64 line, int end);
    void forget() { m_ends.clear(); }
    /// Row `rows` further down comes to each line. Its end becomes the further one of what it showed and what
    /// it will.
    void shift(qint64 rows);

private:
    bool isKnown(qint64 line) const { return line >= 0 && line < qint64(m_ends.size()); }

    std::vector<int> m_ends;
};
