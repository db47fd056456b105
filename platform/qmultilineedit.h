#pragma once

#include "platform/text/textstore.h"
#include "platform/text/undohistory.h"

#include <QAbstractScrollArea>

#include <memory>

class FontMeasure;
class QPainter;

/// A multi-line plain-text editor on a TextStore: the classic interface with its classic names.
///
/// Positions are (row, column) in display rows unless a name says line or offset. Columns are UTF-16 units. A
/// position outside the text is moved to the nearest one inside. Cost: no operation but wrapping anew depends
/// on the length of the document.
class QMultiLineEdit : public QAbstractScrollArea {
    Q_OBJECT
public:
    enum WordWrap { NoWrap, WidgetWidth, FixedPixelWidth, FixedColumnWidth };
    enum WrapPolicy { AtWhiteSpace, Anywhere };

    explicit QMultiLineEdit(QWidget *parent = nullptr);
    ~QMultiLineEdit() override;

    /// The whole text, lines joined by LF: a second copy of it.
    QString text() const;
    /// Display rows.
    qint64 numLines() const;
    /// Text of one row without its line end; null for a row that does not exist.
    QString textLine(qint64 row) const;
    /// Whether a row is the last one of its logical line.
    bool isEndOfParagraph(qint64 row) const;
    const TextStore &store() const;
    const UndoHistory &history() const;

    void getCursorPosition(qint64 *row, qint64 *column) const;
    void getCursorPosition(int *row, int *column) const;
    virtual void setCursorPosition(qint64 row, qint64 column, bool mark = false);
    RowCol cursorPosition() const;
    qint64 cursorOffset() const;

    bool hasMarkedText() const;
    QString markedText() const;
    /// First and last place of the marked text, first <= last; false when nothing is marked.
    bool getMarkedRegion(qint64 *row1, qint64 *column1, qint64 *row2, qint64 *column2) const;

    bool isUndoEnabled() const;
    /// Off: edits are not recorded; switching either way empties the history.
    void setUndoEnabled(bool enabled);
    int undoDepth() const;
    void setUndoDepth(int steps);
    bool edited() const;
    void setEdited(bool edited);
    bool isOverwriteMode() const;
    bool isReadOnly() const;
    void setReadOnly(bool readOnly);

    WordWrap wordWrap() const;
    void setWordWrap(WordWrap mode);
    /// Pixels for FixedPixelWidth, columns of "x" for FixedColumnWidth; below 1 counts as 1.
    void setWrapColumnOrWidth(int value);
    int wrapColumnOrWidth() const;
    void setWrapPolicy(WrapPolicy policy);
    WrapPolicy wrapPolicy() const;
    /// Pixels between the widget's edge and the text.
    void setHMargin(int pixels);
    int hMargin() const;
    /// Tab width of all editors of the process, in characters; below 1 counts as 1.
    static void setDefaultTabStop(int characters);
    static int defaultTabStop();

    /// View offsets in logical pixels; the vertical one is the top row times the row height.
    int xOffset() const;
    int yOffset() const;
    void setXOffset(int pixels);
    void setYOffset(int pixels);
    /// The same in rows, for documents whose pixels overflow.
    qint64 topRow() const;
    void setTopRow(qint64 row);
    /// Height of a row in logical pixels.
    int cellHeight() const;
    /// Width of the widest row and margins, at least the viewport's.
    int cellWidth() const;
    /// Replaces the whole content by a store that was built with layoutRule().
    virtual void setText(TextStore &&store);
    /// The rule new stores for this editor are to be built with.
    LayoutRule layoutRule() const;
    /// Scrolls so that the cursor is visible.
    void makeCursorVisible();

public slots:
    virtual void setText(const QString &text);
    void clear();
    /// Replaces the marked text, or inserts at the cursor.
    virtual void insert(const QString &text);
    /// Inserts at a place without touching the cursor's text; marks it when asked.
    virtual void insertAt(const QString &text, qint64 row, qint64 column, bool mark = false);
    virtual void removeLine(qint64 row);
    void selectAll();
    void deselect();
    virtual void cut();
    virtual void copy();
    virtual void paste();
    void undo();
    void redo();
    void setOverwriteMode(bool on);

signals:
    void textChanged();
    void returnPressed();
    void undoAvailable(bool available);
    void redoAvailable(bool available);
    void copyAvailable(bool available);

protected:
    /// Paints the part `update` of one row; both rectangles are in viewport coordinates, `cell` is the whole
    /// row with its margin, moved by the view's offset. Does nothing for a row that does not exist.
    virtual void paintCell(QPainter &target, qint64 row, const QRect &cell, const QRect &update);
    /// Whether the cursor is in the visible phase of its blinking.
    bool isCursorOn() const;
    std::shared_ptr<const FontMeasure> fontMeasure() const;
    /// Asks for a repaint of one row, at most once a frame.
    void updateRow(qint64 row);
};
