#pragma once

#include "text/textchange.h"
#include "text/textstore.h"

#include <functional>
#include <memory>
#include <vector>

/// One entry of the undo history: an insertion or a deletion with its place and text, or a step boundary:
/// the beginning or the end of a group, which is undone as one step.
struct UndoCommand {
    enum class Kind { Insert, Delete, BeginStep, EndStep };
    Kind kind = Kind::Insert;
    Offset offset; ///< where it took place; 0 for step boundaries
    TextPiece text; ///< what was inserted or deleted; empty for step boundaries
    bool isStepBoundary() const { return kind == Kind::BeginStep || kind == Kind::EndStep; }
};

/// Undo and redo of one text: a list of commands, each with an inverse.
///
/// A step is one command or one group. Typed characters in a row and repeated Delete or Backspace join into
/// one command, and what is typed over other text into one group of the text gone and the text typed. At most
/// `depth()` steps are kept apart; beyond that the two oldest steps become one, so that undoing everything
/// always brings back the text as it was when the history was last cleared.
///
/// Steps that became one are not played back: they are the text before them, which shares with the store
/// whatever has not changed since. Of their commands only the newest is kept.
///
/// Cost: an edit costs what it costs in the store; undo and redo likewise, but O(log n) where steps became
/// one, however many.
class UndoHistory {
public:
    /// How a new command may join the one before it.
    enum class Joining { Never, Typing, Erasing };

    explicit UndoHistory(int depth = 256);
    ~UndoHistory();

    bool isEnabled() const;
    /// Off: edits are not recorded; switching either way forgets all that was.
    void setEnabled(bool enabled);
    /// Steps kept apart; below 1 counts as 1.
    int depth() const;
    void setDepth(int steps);
    bool canUndo() const;
    bool canRedo() const;
    /// The text before the oldest step that can be undone; while there is one.
    const TextPiece &origin() const;
    void clear();

    /// Edits the store and records it: a deletion, an insertion, or one and the other as a group. Forgets
    /// everything that could be redone. Always the same store, changed by nobody else until clear().
    void replace(TextStore &store, Offset offset, qint64 removed, QStringView inserted,
        Joining joining = Joining::Never);
    void replace(TextStore &store, Offset offset, qint64 removed, const TextPiece &inserted,
        Joining joining = Joining::Never);
    /// Groups nest; only the outermost pair makes step boundaries. An empty group leaves no trace.
    void beginGroup();
    void endGroup();
    /// The next command joins nothing (the cursor was moved, the focus changed).
    void breakJoining();

    /// One change that undo() or redo() made to the text, in the order it was made.
    using Changed = std::function<void(const TextChange &change)>;
    /// Takes the newest step back in `store`; returns where the cursor belongs afterwards. Asserts canUndo().
    Offset undo(TextStore &store, const Changed &changed = {});
    Offset redo(TextStore &store, const Changed &changed = {});

    /// Goes on measuring for so long what is kept, by the layout that the store is on the way to; whether all
    /// is measured. See LayoutChange: undoing a long step would measure it in one go.
    bool measure(LayoutChange &change, QDeadlineTimer end) const;
    /// The store has that layout now.
    void setLayout(const LayoutChange &change);
    /// Units of the longest text that is kept.
    qint64 longestText() const;

    /// Commands that are kept and can be undone, oldest first: for the jump to the last edited place. Valid
    /// until the history changes. O(depth()).
    std::vector<const UndoCommand *> commands() const;

private:
    struct State;
    std::unique_ptr<State> d;
};
