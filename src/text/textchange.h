#pragma once

#include "text/units.h"

/// A range of text that another one took the place of: what one edit does, or many come to.
struct TextChange {
    Offset offset; ///< where both begin
    qint64 removed = 0; ///< units that were there
    qint64 inserted = 0; ///< units that are there now

    /// This change and then another one, as one range that holds what either changed.
    TextChange then(const TextChange &next) const
    {
        const Offset begin = qMin(offset, next.offset);
        const Offset end = qMax(offset + inserted, next.offset + next.removed); // between the two
        return { begin, end - (inserted - removed) - begin, end + (next.inserted - next.removed) - begin };
    }
    TextChange inverse() const { return { offset, inserted, removed }; }
};
