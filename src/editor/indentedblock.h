#pragma once

#include "editor/indentation.h"
#include "jobs/spread.h"
#include "text/layoutcopy.h"
#include "text/textsnapshot.h"

#include <vector>

/// Makes the lines of a block anew, part by part, each of which is built and measured in whatever thread.
class IndentedBlock {
public:
    /// See indented().
    IndentedBlock(const TextStore &store, TextRange range, Indentation direction);

    bool isWhole() const { return m_rest.isEmpty(); }
    /// Units of the old block that are still to be made.
    qint64 left() const { return m_rest.length(); }
    /// Makes the next parts, at most so many, of a few milliseconds each.
    void makeNext(int parts, const Spread &spread);
    /// The whole block; O(log n) where it goes into the store.
    TextPiece take();
    /// Else the store would measure the block anew.
    bool isLaidOutAs(const TextStore &store) const;
    /// What was made is not wanted; in whatever thread.
    void drop() { m_block = TextStore(); }

private:
    TextRange takeRange();

    const TextSnapshot m_text;
    const Indentation m_direction;
    TextRange m_rest;
    std::vector<LayoutCopy> m_layouts; ///< one for each part that is made at the same time
    TextStore m_block;
};
