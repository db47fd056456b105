#pragma once

#include "text/texttree.h"

/// Questions to a tree, each answered by one descent, or by two. Any offset may be that of the text's end.

/// The row that holds `offset`; that at which a row begins belongs to it and not to the one above.
RowIndex rowAt(const TextTree &tree, const TextLayout &layout, Offset offset);

/// The end of a row: the offset at which the next row begins, and how it comes about.
struct RowEnd {
    Offset next;
    bool isLineEnd = false;
};
/// The end of a row that is not the last one.
RowEnd rowEnd(const TextTree &tree, const TextLayout &layout, RowIndex row);
/// The same where it is known at which offset the row begins: no text before that is looked at, unless the
/// row goes on in another leaf.
RowEnd rowEnd(const TextTree &tree, const TextLayout &layout, RowIndex row, Offset start);

/// The line that holds `offset`: one for each LF before it.
LineIndex lineAt(const TextTree &tree, Offset offset);
Offset lineStart(const TextTree &tree, LineIndex line);

/// x behind the text from `from` to `to`, none of it an LF, when it is `x` before it.
Subpixels xAcross(const TextTree &tree, const TextLayout &layout, Offset from, Offset to, Subpixels x);
/// The last offset of `from`..`to` at which x is not beyond `target`, when it is 0 at `from`.
Offset offsetAcross(const TextTree &tree, const TextLayout &layout, Offset from, Offset to, Subpixels target);
