#pragma once

#include "text/textstore.h"
#include "text/undohistory.h"

#include <QAbstractScrollArea>
#include <QColor>

#include <functional>
#include <memory>

struct BroughtText;
class FontMeasure;
class QMenu;
class QPainter;
class RowLayout;
class RowPainter;
class TextDocument;
struct Availability;
class ViewLayout;
class ViewScrollBar;
struct Preedit;

/// A multi-line plain-text editor on a TextStore: the classic interface with its classic names.
///
/// Positions are (row, column) in display rows unless a name says line or offset. Columns are UTF-16 units. A
/// position outside the text is moved to the nearest one inside. Cost: no operation but wrapping anew depends
/// on the length of the document. However much changes that rows depend on (font, tab width, wrap), the text
/// is laid out once: before the next question about rows or, while the editor is visible, the next repaint.
/// The text at the top of the view stays there.
///
/// Keys that are not the editor's own are ignored, so that they reach the window around it; Tab and Backtab
/// never move the focus.
class QMultiLineEdit : public QAbstractScrollArea {
    Q_OBJECT
public:
    enum WordWrap { NoWrap, FixedPixelWidth };
    /// Where a row may end: between any two characters, as text without blanks between words needs it.
    enum WrapPolicy { Anywhere };

    /// Makes one operation of all changes and cursor moves while it lives: scrolling, signals and repaints
    /// come at its end, so that thousands of edits cost little more than the text they change. Batches nest.
    class Batch {
    public:
        explicit Batch(QMultiLineEdit &edit);
        ~Batch();
        Q_DISABLE_COPY_MOVE(Batch)
    private:
        QMultiLineEdit &m_edit;
    };

    explicit QMultiLineEdit(QWidget *parent = nullptr);
    ~QMultiLineEdit() override;

    /// The whole text, lines joined by LF: a second copy of it.
    QString text() const;
    /// Display rows.
    qint64 numLines() const;
    /// The document that is shown, owned by this. Its rows may still be those of an earlier font or wrap.
    TextDocument &document();
    const TextDocument &document() const;
    /// Its text for questions about rows: laid out first, where that is still to be done.
    const TextStore &store() const;
    const UndoHistory &history() const;

    void getCursorPosition(qint64 *row, qint64 *column) const;
    /// The same for callers that count in int: beyond its range the largest int is given.
    void getCursorPosition(int *row, int *column) const;
    /// Puts the cursor there and scrolls to it; `mark` extends the selection, otherwise it is dropped.
    virtual void setCursorPosition(qint64 row, qint64 column, bool mark = false);
    RowCol cursorPosition() const;
    void setCursorPosition(RowCol position, bool mark = false);
    Offset cursorOffset() const;
    /// The same in places, which need no rows.
    CursorPlace cursorPlace() const;
    void setCursorPlace(CursorPlace place);
    /// Puts the cursor there; the text up to its anchor is selected.
    void extendSelection(CursorPlace to);

    /// The end of the selection that the cursor is not at; the cursor's own offset when nothing is selected.
    Offset anchorOffset() const;
    CursorPlace anchorPlace() const;
    /// Both ends of the selection, the earlier one first; the cursor's place when nothing is selected.
    CursorPlace selectionBegin() const;
    CursorPlace selectionEnd() const;
    bool hasMarkedText() const;
    QString markedText() const;
    /// First and last place of the selection, first <= last; false when nothing is selected.
    bool getMarkedRegion(qint64 *row1, qint64 *column1, qint64 *row2, qint64 *column2) const;
    /// Selects the text from `from` to `to`, where the cursor goes, and scrolls to it.
    void select(CursorPlace from, CursorPlace to);

    bool isUndoEnabled() const;
    /// Off: edits are not recorded; switching either way empties the history.
    void setUndoEnabled(bool enabled);
    int undoDepth() const;
    /// Steps kept apart; below 1 counts as 1.
    void setUndoDepth(int steps);
    /// Set by any edit, cleared by whoever saves the text.
    bool edited() const;
    void setEdited(bool edited);
    /// Typed characters replace those they are typed before, which a block shows in place of the cursor's
    /// bar.
    bool isOverwriteMode() const;

    WordWrap wordWrap() const;
    void setWordWrap(WordWrap mode);
    /// Pixels for FixedPixelWidth; below 1 counts as 1.
    void setWrapColumnOrWidth(int value);
    int wrapColumnOrWidth() const;
    void setWrapPolicy(WrapPolicy policy);
    WrapPolicy wrapPolicy() const;
    /// Pixels between the widget's edge and the text; below 0 counts as 0.
    void setHMargin(int pixels);
    int hMargin() const;
    /// Tab width of all editors of the process, in characters; below 1 counts as 1.
    static void setDefaultTabStop(int characters);
    static int defaultTabStop();

    /// View offsets in logical pixels; the vertical one is the top row times the row height.
    qint64 xOffset() const;
    qint64 yOffset() const;
    void setXOffset(qint64 pixels);
    void setYOffset(qint64 pixels);
    /// The vertical one in rows.
    RowIndex topRow() const;
    void setTopRow(RowIndex row);
    /// Scrolls until a place is visible.
    void showPlace(CursorPlace place);
    /// Height of a row in logical pixels: whole device pixels, so a fraction at most scales.
    qreal rowHeight() const;
    /// rowHeight() as a whole number, for vertical offsets.
    int cellHeight() const;
    /// Width of the widest row and margins, at least the viewport's.
    qint64 cellWidth() const;
    /// A row with its margin in viewport coordinates, moved by the view's offsets; any row, visible or not.
    QRectF cellRect(RowIndex row) const;
    /// The cursor's place in viewport coordinates; where that is far outside, a place outside on the same
    /// side. Likewise that of the character behind an offset.
    QRect cursorRect() const;
    QRect characterRect(Offset offset) const;
    /// Offset of the cursor place nearest to a point of the viewport.
    Offset offsetAt(const QPoint &point) const;
    /// Replaces the whole content by a store that was built with layoutRule().
    virtual void setText(TextStore &&store);
    /// The rule new stores for this editor are to be built with.
    LayoutRule layoutRule() const;
    /// What lays the text out; it tells how far it is even while signals of the editor are blocked.
    ViewLayout &viewLayout() const;
    /// See TextClipboard.
    void setLongInserter(std::function<bool(const BroughtText &brought)> inserter);

    /// What an input method is composing becomes text, as if Return had been given to the input method; also
    /// where that does not answer. For whoever is about to read the text.
    void commitPreedit();

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    /// The same with a place or a length to look at, as input methods ask it.
    Q_INVOKABLE QVariant inputMethodQuery(Qt::InputMethodQuery query, const QVariant &argument) const;

public slots:
    virtual void setText(const QString &text);
    void clear();
    /// Replaces the selection, or inserts at the cursor.
    virtual void insert(const QString &text);
    /// The same, with its spellings.
    void insert(const TextPiece &text);
    /// Puts text in place of a range, wherever the cursor is, which keeps its text.
    void replace(TextRange range, const QString &text);
    void selectAll();
    void deselect();
    virtual void cut();
    virtual void copy();
    virtual void paste();
    void undo();
    void redo();
    void setOverwriteMode(bool on);

signals:
    /// The text changed; once for each operation, whatever it is made of.
    void textChanged();
    /// There is something to undo now, or no more; likewise for the next two. Never twice the same.
    void undoAvailable(bool available);
    void redoAvailable(bool available);
    void copyAvailable(bool available);
    /// Text that was pasted or dropped was not taken, and nothing is changed.
    void tooLittleMemory();

protected:
    /// The document with its text laid out, and so by the rule of what is read into it.
    TextDocument &laidOutDocument();
    /// What the last three of these signals have said last, which is theirs to know.
    Availability &announced() const;
    /// What an input method is composing, shown at the cursor; Return then ends that and breaks no line.
    const Preedit &preedit() const;
    bool isComposing() const;

    /// Paints the part `update` of one row; both rectangles are in viewport coordinates, `cell` is
    /// cellRect(row). Does nothing for a row that does not exist.
    virtual void paintCell(QPainter &target, RowIndex row, const QRectF &cell, const QRect &update);
    /// How paintCell() draws what every editor shows; the rest comes from the palette.
    struct CellLook {
        QColor text;
        qreal lineEndWidth = 0; ///< logical pixels by which a selected line end widens the selection
    };
    virtual CellLook cellLook(const RowLayout &row) const;
    struct CursorLook {
        QColor color; ///< is combined with what is there
        int width = 2; ///< logical pixels
    };
    virtual CursorLook cursorLook() const;
    /// What a kind of editor adds to a row: under its text, over text and selection but under the cursor, and
    /// over that. Only the cursor's row may show anything far behind its text.
    virtual void drawUnderText(RowPainter &row) const;
    virtual void drawOverText(RowPainter &row) const;
    virtual void drawOverCursor(RowPainter &row, const QRectF &cell) const;
    std::shared_ptr<const FontMeasure> fontMeasure() const;
    /// Asks for a repaint of one row, or of all, at most once a frame. Whatever changes how rows look has to
    /// ask by these: what it is not told of may be shown as it was.
    void updateRow(RowIndex row);
    void updateView();
    /// Undo, Redo, Cut, Copy, Paste, Select All, each enabled when it can do something; owned by the caller.
    QMenu *createContextMenu();

    bool event(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    struct Parts;
    /// The parts, with the text laid out by the present font and wrap: for whatever has to do with rows or
    /// the view.
    Parts &laidOut() const;
    /// The same, and what has come into the view of a long text is laid out before the rest: for what is
    /// painted, and for keys and pointers, which act on what is seen.
    Parts &viewLaidOut() const;
    void drawCursor(RowPainter &row) const;
    /// In the present language.
    void nameScrollBars();

    ViewScrollBar *const m_verticalBar;
    ViewScrollBar *const m_horizontalBar;
    const std::unique_ptr<Parts> d;
};
