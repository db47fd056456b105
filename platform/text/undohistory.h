#pragma once

#include "platform/text/textstore.h"

#include <functional>
#include <memory>

/// One entry of the undo history: an insertion or a deletion with its place and text, or a marker that opens
/// or closes a group which is undone as one step.
struct UndoCommand {
    enum class Kind { Insert, Delete, BeginGroup, EndGroup };
    Kind kind = Kind::Insert;
    qint64 offset = 0; ///< where it took place, in units of the whole text; 0 for markers
    TextPiece text; ///< what was inserted or deleted; empty for markers
    bool isMarker() const { return kind == Kind::BeginGroup || kind == Kind::EndGroup; }
};

/// Undo and redo of one text: a list of commands, each with an inverse.
///
/// A step is one command or one group. Typed characters in a row and repeated Delete or Backspace join into
/// one command. At most `depth()` steps are kept apart; beyond that the two oldest steps become one, so that
/// undoing everything always brings back the text as it was when the history was last cleared.
///
/// Cost: recording O(1) amortised; undo and redo cost what the edits themselves cost.
class UndoHistory {
public:
    /// How a new command may join the one before it.
    enum class Joining { Never, Typing, Erasing };

    explicit UndoHistory(int depth = 256);
    ~UndoHistory();

    int depth() const;
    void setDepth(int steps);
    bool canUndo() const;
    bool canRedo() const;
    /// Steps that undo() can take back.
    qint64 undoSteps() const;
    void clear();

    /// Records what was just done to the store; forgets everything that could be redone.
    void recordInsert(qint64 offset, TextPiece text, Joining joining = Joining::Never);
    void recordDelete(qint64 offset, TextPiece text, Joining joining = Joining::Never);
    /// Groups nest; only the outermost pair makes markers. An empty group leaves no trace.
    void beginGroup();
    void endGroup();
    /// The next command joins nothing (the cursor was moved, the focus changed).
    void breakJoining();

    /// One change that undo() or redo() made to the text, in the order it was made.
    using Changed = std::function<void(qint64 offset, qint64 removed, qint64 inserted)>;
    /// Takes the newest step back in `store`; returns where the cursor belongs afterwards. Asserts canUndo().
    qint64 undo(TextStore &store, const Changed &changed = {});
    qint64 redo(TextStore &store, const Changed &changed = {});

    /// Commands that can be undone, oldest first: for the jump to the last edited place.
    qint64 commandCount() const;
    const UndoCommand &command(qint64 index) const;

private:
    struct State;
    std::unique_ptr<State> d;
};
