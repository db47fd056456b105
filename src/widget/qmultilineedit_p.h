#pragma once

#include "rows/fontmeasure.h"
#include "widget/lineink.h"
#include "widget/qmultilineedit.h"
#include "rows/rowlayout.h"
#include "rows/rowpictures.h"
#include "widget/scrollrange.h"
#include "widget/textaccessible.h"
#include "text/wordbounds.h"

#include <QBasicTimer>
#include <QPointer>

#include <optional>

class QDrag;
class QMimeData;
class QScrollEvent;
class QScrollPrepareEvent;
class QTabletEvent;
class QTouchEvent;
class TextMimeData;
class ViewScrollBar;

enum class Marking { Drop, Extend };
enum class Move {
    CharacterBack,
    CharacterForward,
    WordBack,
    WordForward,
    RowUp,
    RowDown,
    PageUp,
    PageDown,
    RowStart,
    RowEnd,
    TextStart,
    TextEnd
};

inline constexpr int cursorWidth = 2; ///< logical pixels

/// What a QMultiLineEdit is made of. Each group of functions has a file of its own:
///
///     qmultilineedit.cpp      the public interface, the font and the layout rule
///     multilineedits.cpp      changes of the text, undo, and what follows from a change
///     multilinemoves.cpp      cursor moves and the selection
///     multilinekeys.cpp       the table of keys
///     multilineview.cpp       scrolling and geometry
///     multilinepainting.cpp   what is painted when, its rows, and the blinking cursor
///     multilinepointer.cpp    mouse, pen and touch
///     multilineclipboard.cpp  clipboard, primary selection, drag and drop, context menu
///     multilineinput.cpp      input methods
struct QMultiLineEdit::Private {
    using Joining = UndoHistory::Joining;

    explicit Private(QMultiLineEdit *edit);
    ~Private();
    QMultiLineEdit *const q;

    // The look, which the text is laid out by from the start.
    WordWrap wrap = NoWrap;
    WrapPolicy wrapPolicy = Anywhere;
    int wrapValue = 80;
    int margin = 2;

    // The text. The measure outlives the store, whose layout rule points into it; there is none before the
    // first layOut(), as an editor gets its font after it is made.
    std::shared_ptr<const FontMeasure> measure;
    TextStore store;
    UndoHistory history;
    bool undoEnabled = true;
    bool edited = false;
    bool readOnly = false;
    QByteArray byteCode; ///< see setByteCode()
    bool overwrite = false;

    // The cursor; text between it and the anchor is marked.
    CursorPlace cursor;
    CursorPlace anchor;
    std::optional<qreal> goalX; ///< from the row's start; kept by moves up and down

    LayoutRule layoutRule() const;
    /// In the present language.
    void nameScrollBars();

    // The layout.
    bool isLaidOut = false; ///< by the present font, screen, tab width, margin and wrap
    /// One of those has changed. Lays nothing out, which every further change would undo.
    void layoutChanged();
    /// Brings measure, text, view and scroll bars up to date; the same text stays at the top of the view.
    void layOut();
    void layOutBy(const LayoutRule &rule);

    // Changes of the text.

    /// Everything from the first to the last change of one operation: signals and repaints come once, at the
    /// end of the outermost one.
    class Operation {
    public:
        explicit Operation(Private &edit)
            : m_edit(edit)
        {
            m_edit.beginOperation();
        }
        ~Operation() { m_edit.endOperation(); }
        Q_DISABLE_COPY_MOVE(Operation)
    private:
        Private &m_edit;
    };
    /// What the operation under way has done to the text so far, and what there was before.
    struct Damage {
        std::optional<TextChange> change;
        qint64 rowsBefore = 0;
        qint64 linesBefore = 0;
    };
    int operations = 0; ///< that are nested at the moment
    Damage damage;
    struct Reported {
        bool undo = false;
        bool redo = false;
        bool marked = false;
    };
    Reported reported; ///< what the availability signals said last

    void beginOperation();
    void endOperation();
    /// Replaces text, records it and moves nothing but the text.
    void replace(qint64 offset, qint64 removed, QStringView inserted, Joining joining = Joining::Never);
    void replaceByPiece(qint64 offset, qint64 removed, const TextPiece &inserted);
    void noteChange(const TextChange &change);
    void repaintDamage();
    /// Emits what has become available or unavailable since the last time.
    void reportAvailability();
    /// Forgets history, cursor and view: the text is another one.
    void startAnew(TextStore &&text);

    void insertText(QStringView text, Joining joining);
    void insertPiece(const TextPiece &text);
    /// The text of a clipboard or a drag; from this program as it is, where its bytes mean the same here.
    TextPiece pieceOf(const QMimeData &data) const;
    void replaceRange(qint64 from, qint64 to, QStringView text);
    void typeText(const QString &text);
    void breakLine();
    void erase(qint64 from, qint64 to, Joining joining);
    bool eraseMarked();
    void eraseBack();
    void eraseForward();
    void eraseWordBack();
    void eraseWordForward();
    void applyHistory(qint64 (UndoHistory::*step)(TextStore &, const UndoHistory::Changed &));

    // Cursor and selection.
    RowCol rowColOf(CursorPlace place) const { return store.rowColAt(place); }
    CursorPlace placeAt(qint64 row, qint64 column) const { return store.placeAt({ row, column }); }
    CursorPlace clamped(qint64 row, qint64 column) const;
    bool hasMarked() const { return cursor.offset != anchor.offset; }
    TextRange marked() const;
    CursorPlace moved(Move move);
    CursorPlace movedByRows(qint64 rows);
    void moveBy(Move move, Marking marking);
    void scrollPage(Move move);
    /// Moves the cursor there, drops or extends the selection, and scrolls to it; likewise mark().
    void moveTo(CursorPlace place, Marking marking);
    /// Marks the text from `from` to `to`, where the cursor goes.
    void mark(qint64 from, qint64 to);
    /// Does not scroll.
    void setCursorAndAnchor(CursorPlace to, CursorPlace from);
    /// Tells everybody who follows the cursor that it has moved.
    void announceCursor();

    // The view.
    ViewScrollBar *const verticalBar; ///< q's own, likewise the next
    ViewScrollBar *const horizontalBar;
    qint64 top = 0;
    qint64 left = 0; ///< logical pixels that the view has gone to the right
    ScrollRange rows;
    ScrollRange columns; ///< of logical pixels
    qint64 dropOffset = -1; ///< where a dragged text would go; -1: nothing is dragged over the view
    QPointF dropPoint; ///< where a dragged text is now
    QBasicTimer dropScroll; ///< runs only while one is held near the view's edge and the view can go on
    QBasicTimer blinkTimer;
    int wheelRest = 0; ///< turned so far, not enough for a row
    bool followingView = false; ///< a bar is told where the view is
    bool cursorOn = true;
    LineInk ink;
    RowPictures pictures;
    bool hasMoved = false; ///< the view, since it was painted last

    /// Rows that fit completely into the view, or into that many pixels; at least 1.
    qint64 visibleRows() const;
    qint64 visibleRows(int height) const;
    bool isCursorRowVisible(int height) const;
    qint64 rowAt(qreal y) const;
    qreal textEnd() const;
    /// Whether the view shows wrapped rows over their whole width, so that it need not move to the side.
    bool rowsFit() const;
    qint64 lastLeft() const;
    /// How far a row is moved to the left beyond the others.
    qint64 composedShift(qint64 row) const;
    /// The logical pixel of a row that is at the view's left edge, counted from the row's margin.
    qreal rowLeft(qint64 row) const { return qreal(left + composedShift(row)); }
    void updateScrollBars();
    void setTop(qint64 row);
    void setLeft(qint64 pixels);
    void showOnBar(ViewScrollBar &bar, int value);
    /// Logical pixels that one step of the bar or of the wheel takes to the side.
    qint64 sideStep() const;
    void stepSideways(int action);
    /// Whether every logical pixel is a number of device pixels.
    bool isScaleWhole() const;
    /// The view goes that many rows down in the text.
    void shiftView(qint64 rowsDown);
    /// The area of rows, of which the first is the view's line `line`; complete at every scale.
    QRect linesRect(qint64 line, qint64 count, int width) const;
    /// What may change when the view goes on by whole rows.
    QRegion inkRegion() const;
    /// The row is shown as it is laid out.
    void noteInk(const RowLayout &layout);
    /// Layout of the part of a row that is in the view or, when `x` is outside it, around `x`; with the text
    /// that is composed there.
    RowLayout layoutOf(qint64 row, qreal x) const;
    /// From the row's start; the cursor's own place is inside the text that is composed.
    qreal xOf(RowCol position) const;
    qreal cursorX() const;
    CursorPlace placeAtX(qint64 row, qreal x) const;
    CursorPlace placeAtPoint(QPointF point) const;
    QRectF boxAt(qint64 row, qreal x) const;
    QRectF cursorBoxAt(qint64 row, qreal x) const;
    QRectF cursorBox() const;
    void makeCursorVisible();
    void showRow(qint64 row);
    void showX(qreal x, qreal width);
    void updateRow(qint64 row) { updateRows(row, row); }
    void updateRows(qint64 first, qint64 last);
    void updateView();
    void updateMarkedRows();
    void preparePictures(const QRect &area);
    void paintRow(QPainter &painter, qint64 row, const QRegion &area);
    void restartBlink();
    void stopBlink();
    void blink();
    void paintDropCursor(QPainter &painter) const;
    void wheel(QWheelEvent &event);

    // Keys.
    struct Command;
    bool handles(const QKeyEvent &event) const;
    bool handleKey(const QKeyEvent &event);

    // Mouse, pen and touch.
    enum class Unit { Character, Word, Line };
    enum class Gesture { None, Mark, MaybeDrag, Drag, Scroll, Done };
    struct Pointer {
        Gesture gesture = Gesture::None;
        Unit unit = Unit::Character;
        QPointF pressedAt;
        QPointF lastAt;
        TextRange origin; ///< the word or line that marking began with
        int finger = -1; ///< id of the touch point that scrolls
        QBasicTimer autoScroll; ///< runs only while marking beyond the view's edge
        QBasicTimer longPress; ///< runs only while a pen or finger is held still
        QBasicTimer nextClick; ///< runs for the time a click may follow in that marks a larger unit
    };
    Pointer pointer;

    TextRange unitAt(qint64 offset, Unit unit) const;
    void press(QPointF at, Qt::KeyboardModifiers modifiers, Unit unit);
    /// What another click or tap at a place marks that comes soon after the last one.
    Unit unitOfNextClick(QPointF at) const;
    void awaitNextClick();
    void drag(QPointF at);
    void release(QPointF at);
    void markTo(QPointF at);
    void autoScroll();
    void longPressed();
    bool tablet(QTabletEvent &event);
    bool touch(QTouchEvent &event);
    void beginTouch(QPointF at);
    /// `isLifted`: the finger that scrolls is gone, others may stay.
    void moveTouch(QPointF at, qint64 time, bool isLifted);
    void endTouch();
    void tap(QPointF at);
    void showKeyboard() const;
    bool scrollPrepare(QScrollPrepareEvent &event);
    bool scrollTo(QScrollEvent &event);

    // Clipboard, drag and drop, menu.
    QPointer<TextMimeData> primary; ///< what was offered last and still follows the marked text
    QDrag *textDrag = nullptr; ///< while marked text is being dragged from here

    bool canPaste(const QMimeData *data) const;
    void copyMarked() const;
    TextPiece markedPiece() const;
    void pasteFrom(const QMimeData *data);
    /// Offers the marked text as the primary selection.
    void offerPrimary();
    /// The marked text is about to change: the primary selection keeps what it offered.
    void freezePrimary();
    void pastePrimary(QPointF at);
    /// Returns when the text has been dropped; the editor may be gone then.
    void startDrag();
    bool acceptsDrop(const QDropEvent &event) const;
    void setDropOffset(qint64 offset);
    void dragOver(QPointF point);
    void endDragOver();
    void scrollForDrop();
    void drop(QDropEvent &event);
    void showContextMenu(const QPoint &globalPosition);
    void showContextMenuAtCursor();

    // Assistive technology.
    TextAnnouncer announcer;

    // Input methods.
    Preedit preedit;
    bool deafToInputMethod = false; ///< while it is told to forget what it composed

    void compose(const QInputMethodEvent &event);
    void setPreedit(const QInputMethodEvent &event);
    void commit(const QInputMethodEvent &event);
    void select(const QInputMethodEvent::Attribute &attribute);
    /// The text around the cursor that is shown to input methods: a part of its logical line.
    TextRange surroundings() const;
    QVariant query(Qt::InputMethodQuery query, const QVariant &argument) const;
    /// Positions and text there.
    QVariant querySurroundings(Qt::InputMethodQuery query, const QVariant &argument) const;
    void tellInputMethod();
};

inline QMultiLineEdit::Private *QMultiLineEdit::Parts::operator->() const
{
    m_parts->layOut();
    return m_parts.get();
}
