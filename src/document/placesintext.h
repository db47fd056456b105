#pragma once

#include "text/textchange.h"

#include <vector>

/// A set of offsets into a text that follow its edits, in ascending order.
///
/// Those before the last edit are kept as distances from the start of the text, those behind it as distances
/// from its end. So an edit costs what lies between it and the one before; much typing at one place costs
/// nothing to speak of, however many there are.
class PlacesInText {
public:
    explicit PlacesInText(qint64 textLength = 0)
        : m_textEnd(textLength)
    {
    }

    /// The text was changed. Places in what was removed are dropped.
    void follow(const TextChange &change);
    /// Drops those at `from` or behind it, but before `to`.
    void drop(Offset from, Offset to);
    /// Adds a place that is not there yet.
    void add(Offset offset);

    qint64 count() const { return qint64(m_before.size()) + qint64(m_behind.size()); }
    /// 0 <= index < count().
    Offset at(qint64 index) const;
    /// Index of the first place at `offset` or behind it; count() when there is none.
    qint64 indexBehind(Offset offset) const;

private:
    void partAt(Offset offset);

    Offset m_textEnd;
    std::vector<Offset> m_before;
    std::vector<qint64> m_behind; ///< distances from the end; the first place is the last one here
};
