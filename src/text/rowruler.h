#pragma once

#include "text/rowflow.h"

/// Lays the start of one leaf out from any place and x without looking at the text again.
///
/// Holds x at each unit for a row that begins with the leaf. Behind a TAB x is a multiple of the tab stop, so
/// that differences between two places hold for every row, except from a row's start to its first TAB.
class RowRuler {
public:
    /// Takes the first `count` units of a leaf without LF.
    void measure(const TextTree &leaf, const TextLayout &layout, qint64 count);

    /// The first unit at or behind `start` before which wrapping ends a row that has come to `start` with
    /// `x`; -1 if no row ends in the units measured. O(log n).
    qint64 breakAfter(qint64 start, Subpixels x) const;

    /// For a row that begins at unit 0, 1, … count: how many rows end behind that, and x at the end. O(n).
    void followRows(std::vector<RowTable::Entry> &rows) const;

private:
    qint64 count() const { return qint64(m_x.size()) - 1; }
    template <bool Tabs> Subpixels xAt(qint64 start, Subpixels x, qint64 i) const
    {
        if (!Tabs || i <= m_nextTab[size_t(start)])
            return x + m_x[size_t(i)] - m_x[size_t(start)];
        const size_t tab = size_t(m_nextTab[size_t(start)]);
        return Reach::nextStop(x + m_x[tab] - m_x[size_t(start)], m_tabStop) + m_x[size_t(i)] - m_x[tab + 1];
    }
    template <bool Tabs> qint64 legalBreak(qint64 start, Subpixels x, qint64 across) const;
    template <bool Tabs> qint64 searchBreak(qint64 start, Subpixels x) const;
    template <bool Tabs> void follow(RowTable::Entry *rows) const;

    Subpixels m_limit = 0;
    Subpixels m_tabStop = 1;
    std::vector<Subpixels> m_x; ///< before each unit, and behind the last one
    std::vector<qint32> m_nextTab; ///< the first TAB at or behind each unit; empty if there is none at all
    std::vector<qint32> m_nextWide; ///< the same for a unit that is not 0 wide; empty if all are
};
