#pragma once

#include "text/undohistory.h"

#include <QObject>

#include <optional>

/// A text that is edited, with its history. It knows nothing of files, and shows nothing.
///
/// Whoever shows the text listens to the signals, which come when all is as they say.
///
/// Cost: an edit costs what it costs in the store; laying out anew depends on the length of the text.
class EditableText : public QObject {
    Q_OBJECT
public:
    using Joining = UndoHistory::Joining;

    const TextStore &store() const { return m_store; }
    /// What can be undone and redone.
    const UndoHistory &history() const { return m_history; }
    /// The same for whoever says how edits become steps, and how many are kept. Only the text plays them.
    UndoHistory &history() { return m_history; }
    /// The text differs from what was loaded or saved, or from what was there when it was last called
    /// unedited: after an edit, until it is undone with all before it.
    bool isEdited() const { return m_isEdited; }
    void setEdited(bool edited) { m_isEdited = edited; }

    /// Lays the text out anew; it stays the same, and nothing is emitted.
    void layOut(const LayoutRule &rule) { m_store.setLayoutRule(rule); }
    /// The same, some of it at a time, see TextStore::setLayout(), with what is kept for undoing.
    bool layOut(LayoutChange &change, QDeadlineTimer end);
    /// Lays lines out ahead of all others by what a change comes to, see TextStore::layOutAhead().
    void layOutAhead(TextRange lines, const LayoutChange &change);
    void dropAhead() { m_store.dropAhead(); }
    /// Units of the longest text that would be laid out.
    qint64 longestText() const { return qMax(m_store.length(), m_history.longestText()); }

    /// Puts `inserted` in place of `removed` units at `offset`; nothing when both are empty.
    void replace(Offset offset, qint64 removed, QStringView inserted, Joining joining = Joining::Never);
    /// The same, with its spellings.
    void replace(Offset offset, qint64 removed, const TextPiece &inserted);
    /// Takes a step back, or makes it once more; returns the offset where the cursor belongs then. Asserts
    /// that history() has one.
    Offset undo();
    Offset redo();

    /// While it is held, something is done to all of the text behind the window: nobody may change it, read
    /// it again or save it. To be asked by whoever is about to, on behalf of a user: false where it may not
    /// be, which refused() tells.
    bool requestChange();
    bool isHeld() const { return m_isHeld; }
    void setHeld(bool held);
    /// Its user has gone to the end of what there is. While it is held more may come, so endSought() tells.
    void seekEnd();
    /// What is to be done when it is not held any more.
    enum class Awaited { Jump, Closing };
    /// Tells awaited(), for the user to see that it was understood.
    void await(Awaited what) { emit awaited(what); }

    /// The next part of a text that comes part by part, see TextStore::append(). Only grew() is told.
    void takePart(TextStore &&part);

signals:
    /// After each edit, undo and redo; what they are made of comes one by one.
    void changed(const TextChange &change);
    /// The text is about to become another one: for whoever keeps something of this one.
    void aboutToReplace();
    /// The text is another one, or was read again: places in the one before say nothing any more. `change` is
    /// from the whole of one to the whole of the other.
    void replaced(const TextChange &change);
    /// A part of a text that is still to be whole has come, behind what was there.
    void grew(const TextChange &change);
    /// A change was asked for that has to wait, see requestChange().
    void refused();
    /// See seekEnd().
    void endSought();
    /// See await().
    void awaited(Awaited what);
    /// The text was held, and is no more.
    void released();

protected:
    /// The text goes, with its history, and another one is on its way: there may be no room for both.
    void dropText();
    /// Whether that has happened, and the other one is not whole yet.
    bool isDropped() const { return m_dropped.has_value(); }
    /// It comes at once, after dropText().
    void setText(TextStore &&text, bool isEdited);
    /// It comes part by part, after dropText(): the text is held until then. `start` is what has come
    /// already, and says how parts are laid out.
    void beginParts(TextStore &&start);
    void endParts();
    /// Puts a text behind the one that is there and forgets the history; `removed` units at the end go. It is
    /// as edited as before.
    void appendUnedited(qint64 removed, const TextPiece &added);

private:
    Offset applyStep(Offset (UndoHistory::*step)(TextStore &, const UndoHistory::Changed &));
    void noteEdit(const TextChange &change);
    void tellReplaced();

    TextStore m_store;
    UndoHistory m_history;
    bool m_isEdited = false;
    bool m_isHeld = false;
    std::optional<qint64> m_dropped; ///< units of the text that is gone already, while another one is made
};
