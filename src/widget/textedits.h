#pragma once

#include "text/textchange.h"
#include "text/undohistory.h"
#include "widget/textcursor.h"

#include <QObject>

#include <optional>

class CursorFollowers;
class CursorMoves;
class PrimarySelection;
class RowUpdates;
class TextAnnouncer;
class TextCursor;
class EditableText;
class TextView;
class ViewScrollBar;
class ViewScroller;

/// Edits a document at the cursor, as keys and commands ask for it, and shows what an edit has changed.
///
/// A document that is held refuses all of it: nothing is edited then, nor is the cursor moved.
///
/// All from the first to the last change of one operation is one: what is shown follows once, at its end,
/// with one signal. Cost: of an edit what it costs in the store; of an operation's end what a view shows.
class TextEdits : public QObject {
    Q_OBJECT
public:
    using Joining = UndoHistory::Joining;

    TextEdits(EditableText &document, TextCursor &cursor, TextView &view, RowUpdates &updates,
        ViewScroller &scroller, ViewScrollBar &verticalBar, PrimarySelection &primary,
        TextAnnouncer &announcer, CursorFollowers &followers, CursorMoves &moves);

    /// Operations nest; the outermost one counts.
    void beginOperation();
    void endOperation();
    bool isUnderWay() const { return m_operations > 0; }
    class Operation {
    public:
        explicit Operation(TextEdits &edits)
            : m_edits(edits)
        {
            m_edits.beginOperation();
        }
        ~Operation() { m_edits.endOperation(); }
        Q_DISABLE_COPY_MOVE(Operation)
    private:
        TextEdits &m_edits;
    };

    /// In place of the selection, or at the cursor, which goes behind it.
    void insert(QStringView text, Joining joining);
    void insert(const TextPiece &text);
    /// The same for a key: in overwrite mode characters replace those behind the cursor, but no line end.
    void type(const QString &text);
    /// Puts text in place of from..to; a cursor there goes to `from`, one behind goes along with its text.
    void replaceRange(TextRange range, QStringView text);
    /// In place of the selection; `replaced` units, counted from the cursor plus `start` when that is gone,
    /// go as well. One step.
    void replaceAround(qint64 start, qint64 replaced, QStringView text);
    /// Puts text in at `to`, and takes the selected text out when that is what moves there. One step; the
    /// text is selected then.
    void drop(const TextPiece &text, Offset to, bool movesSelection);

    /// False where nothing is selected.
    bool eraseSelection();
    /// The selection, or what a move from the cursor passes.
    void erase(Move move);

    void undo();
    void redo();

signals:
    /// The text changed; once for each operation.
    void textChanged();

private:
    /// What the operation under way has done to the text so far, and what there was before.
    struct Damage {
        std::optional<TextChange> change;
        qint64 rowsBefore = 0;
        qint64 linesBefore = 0;
    };

    void replace(TextRange range, QStringView text, Joining joining = Joining::Never);
    void noteChange(const TextChange &change);
    void prepareForOther();
    void showPart(const TextChange &part);
    void showStart();
    void showOther(const TextChange &change);
    void showDamage();
    void updateDamage();

    EditableText &m_document;
    const TextStore &m_store;
    TextCursor &m_cursor;
    TextView &m_view;
    RowUpdates &m_updates;
    ViewScroller &m_scroller;
    ViewScrollBar &m_verticalBar;
    PrimarySelection &m_primary;
    TextAnnouncer &m_announcer;
    CursorFollowers &m_followers;
    CursorMoves &m_moves;
    int m_operations = 0; ///< that are nested at the moment
    Damage m_damage;
    bool m_showsParts = false; ///< of a text that is still to be whole
};
