#pragma once

#include "text/textnode.h"

/// Wrapping over whole subtrees.
///
/// Where a row breaks depends on where the row before it broke, so that one key at the start of a line moves
/// every break behind it. What a text does, though, depends on the place of its first break alone, and
/// that is one of the first few hundred units. A node inside a long line keeps a table of what follows from
/// each of them: a line of any length is laid out anew by one look into the table of each child of the nodes
/// above the edit.
struct RowTable {
    struct Entry {
        quint32 breaks; ///< in the node, the first one included
        qint32 exit; ///< x at the end of the node
    };
    std::vector<Entry> entries; ///< by the unit before which the first break is
};

/// What wrapping does to the text of a tree before its first LF. Remembers its last answer.
RowFlow headFlow(const TextTree &tree, const TextLayout &layout, Subpixels fill);

/// What wrapping does to the whole text of a tree.
RowFlow flow(const TextTree &tree, const TextLayout &layout, Subpixels fill);

/// Makes the table of a node that lies inside one line, unless it has one or can have none. Loading does so
/// while the text is at hand. A node that was edited gets a new one only when it is asked a second question:
/// what it does after one key costs less without.
void prepareTable(const TextTree &tree, const TextLayout &layout);

/// Puts the summary of `next` behind that of the text before it.
void appendSummary(TextSummary &summary, const TextTree &next, const TextLayout &layout);
