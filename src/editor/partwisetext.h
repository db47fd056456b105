#pragma once

#include "jobs/spread.h"
#include "text/layoutcopy.h"
#include "text/textstore.h"

#include <functional>
#include <vector>

/// A long text that is made of another one, part by part, each of which is built and measured in whatever
/// thread: what is to take the place of lines that are moved, or is pasted.
class PartwiseText {
public:
    /// The text that a range of the other one becomes, for Builder(layout).
    using MakePart = std::function<TextStore(TextRange range, const LayoutCopy &layout)>;
    /// For `store`. `range` is that of the other text, which whoever makes the parts has.
    PartwiseText(const TextStore &store, TextRange range, MakePart makePart);

    bool isWhole() const { return m_rest.isEmpty(); }
    /// Units of the other text of which nothing is made yet.
    qint64 left() const { return m_rest.length(); }
    /// Makes the next parts, at most so many, of a few milliseconds each.
    void makeNext(int parts, const Spread &spread);
    /// The whole; O(log n) where it goes into the store.
    TextPiece take();
    /// Else the store would measure all of it anew.
    bool isLaidOutAs(const TextStore &store) const;
    /// Where it is not for want of widths, a text that is made anew has them then. In the store's thread.
    /// Where the time is over before they are known, false, the next call goes on.
    bool askForWidths(const TextStore &store, QDeadlineTimer end);
    /// What was made is not wanted; in whatever thread.
    void drop() { m_made = TextStore(); }

private:
    TextRange takeRange();
    bool isMeasured() const;

    MakePart m_makePart;
    TextRange m_rest;
    std::vector<LayoutCopy> m_layouts; ///< one for each part that is made at the same time
    TextStore m_made;
};
