#pragma once

#include "rows/rowlayout.h"
#include "text/textstore.h"
#include "text/wordbounds.h"

#include <QRectF>
#include <QWidget>

#include <optional>

struct Preedit;
class FontMeasure;
class RowFormat;
class TextCursor;

inline constexpr int cursorWidth = 2; ///< logical pixels

/// Which part of a text a viewport shows, and where in it each place of the text stands.
///
/// To the side the view counts logical pixels, downwards rows. Points and rectangles are the viewport's, in
/// logical pixels; an `x` is counted from the start of its row. What an input method is composing stands in
/// the cursor's row as if it was text; it takes part in every x, and has no places of its own. Cost: what a
/// view shows of a row.
class TextView {
public:
    TextView(const QWidget &viewport, const TextStore &store, const RowFormat &format,
        const TextCursor &cursor, const Preedit &preedit);

    /// The row in the first slot, and the logical pixels that the view has gone to the right.
    RowIndex top() const { return m_top; }
    qint64 left() const { return m_left; }
    /// How far both may go.
    RowIndex lastTop() const { return m_lastTop; }
    qint64 lastLeft() const { return m_lastLeft; }
    /// Go there, or as far as the view may. Nothing is repainted.
    void setTop(RowIndex row) { m_top = qBound(RowIndex(), row, m_lastTop); }
    void setLeft(qint64 pixels) { m_left = qBound<qint64>(0, pixels, m_lastLeft); }
    /// The text has grown or shrunk, or the viewport has: looks anew how far the view may go.
    void updateLast();

    int width() const { return m_viewport.width(); }
    int height() const { return m_viewport.height(); }
    qreal rowHeight() const;
    /// Whether every logical pixel is a number of device pixels.
    bool isScaleWhole() const;
    /// Rows that fit completely into the view, or into that many pixels; at least 1.
    qint64 visibleRows() const { return visibleRows(height()); }
    qint64 visibleRows(int height) const;
    bool isCursorRowVisible(int height) const;
    /// The row at a height, which need not exist.
    RowIndex rowAt(qreal y) const;
    /// A row with its margin, any row, visible or not.
    QRectF cellRect(RowIndex row) const;
    /// Width of the widest row and the margin, at least the view's.
    qint64 cellWidth() const { return m_lastLeft + width(); }

    /// What is composed in a row, and the columns of it, with what is composed, that are selected: one behind
    /// its length where the line end is.
    InsertedText composedInRow(RowIndex row) const;
    struct Columns {
        qint64 begin = 0;
        qint64 end = 0;
    };
    std::optional<Columns> selectedInRow(RowIndex row) const;

    qreal xOf(RowCol position) const;
    /// The cursor's own place is inside the text that is composed.
    qreal cursorX() const;
    CursorPlace placeAtX(RowIndex row, qreal x) const;
    /// The place that is nearest to a point.
    CursorPlace placeAt(QPointF point) const;
    /// A place in a row, as wide as a cursor; where that is far outside, a place outside on the same side.
    QRectF boxAt(RowIndex row, qreal x) const;
    QRectF cursorBoxAt(RowIndex row, qreal x) const;
    QRectF cursorBox() const;
    /// The character behind an offset; as wide as a cursor at a row's end.
    QRectF characterBox(Offset offset) const;

private:
    bool isComposing() const;
    qreal textEnd() const;
    bool rowsFit() const;
    qint64 farthestLeft() const;
    qint64 composedShift(RowIndex row) const;
    qreal rowLeft(RowIndex row) const { return qreal(m_left + composedShift(row)); }
    RowLayout layoutOf(RowIndex row, qreal x) const;

    const QWidget &m_viewport;
    const TextStore &m_store;
    const RowFormat &m_format;
    const TextCursor &m_cursor;
    const Preedit &m_preedit;
    RowIndex m_top;
    RowIndex m_lastTop;
    qint64 m_left = 0;
    qint64 m_lastLeft = 0;
};

/// Pixels that stay free beside a cursor that is scrolled to, so that the next keys need not scroll again.
constexpr int scrollReserve(int viewWidth)
{
    return viewWidth / 4;
}
