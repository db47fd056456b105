#pragma once

#include "text/texttree.h"

/// Questions to a tree, each answered by one descent, or by two. Any offset may be that of the text's end.

/// Rows that end before `offset` or with it.
qint64 rowsBefore(const TextTree &tree, const TextLayout &layout, qint64 offset);

/// The end of a row: the offset at which the next row begins, and how it comes about.
struct RowEnd {
    qint64 next = 0;
    bool isLineEnd = false;
};
/// The end of row number `row`, which must not be the last one.
RowEnd rowEnd(const TextTree &tree, const TextLayout &layout, qint64 row);
/// The same where it is known at which offset the row begins: no text before that is looked at, unless the
/// row goes on in another leaf.
RowEnd rowEnd(const TextTree &tree, const TextLayout &layout, qint64 row, qint64 start);

/// LFs before `offset`.
qint64 linesBefore(const TextTree &tree, qint64 offset);
/// The offset behind LF number `count`, counted from 1; 0 for none.
qint64 behindLine(const TextTree &tree, qint64 count);

/// x behind the text from `from` to `to`, none of it an LF, when it is `x` before it.
Subpixels xAcross(const TextTree &tree, const TextLayout &layout, qint64 from, qint64 to, Subpixels x);
/// The last offset of `from`..`to` at which x is not beyond `target`, when it is 0 at `from`.
qint64 offsetAcross(const TextTree &tree, const TextLayout &layout, qint64 from, qint64 to, Subpixels target);
