#pragma once

#include "rows/rowcanvas.h"
#include "rows/rowlayout.h"

#include <QInputMethodEvent>

/// A row to paint, and where.
struct RowPlace {
    const TextStore &store;
    RowIndex row;
    QRectF cell; ///< the row with its margin, in the target's coordinates
    QRect update; ///< the part to paint, in the target's coordinates
    qreal margin = 0; ///< from the cell's left edge to the text
    int pictureTop = 0; ///< device pixels of the picture that the row is drawn in
};

/// The steps that painting a row of text is made of, from the background to the cursor, each drawn over the
/// ones before. Lengths are logical pixels, from the row's top-left corner unless they are a row layout's.
class RowPainter {
public:
    RowPainter(QPainter &target, const FontMeasure &measure, const RowPlace &place, const QColor &background,
        const InsertedText &inserted = {});

    const RowLayout &layout() const { return m_layout; }
    const RowCanvas &canvas() const { return m_canvas; }
    /// Draws in device pixels of the canvas.
    QPainter &painter() { return m_canvas.painter(); }
    /// Device pixel at which the cursor stands before a column, and at a place of the row layout.
    int columnX(qint64 column) const { return layoutX(m_layout.x(column)); }
    int layoutX(qreal x) const;
    /// A rectangle of logical pixels that starts `left` behind a device pixel; never thinner than one.
    QRect rect(int from, qreal left, qreal top, qreal width, qreal height) const;

    void drawText(const QColor &color);
    /// Columns begin..end - 1 on the highlight colour; an `end` behind the row's length counts the line end
    /// as selected, which widens what is highlighted by `lineEndWidth`.
    struct Selection {
        qint64 begin = 0;
        qint64 end = 0;
        qreal lineEndWidth = 0;
    };
    void drawSelection(const Selection &selection, const QColor &highlight, const QColor &highlightedText);
    /// Text that an input method is composing, at `column`: underlined, with the formats it asks for.
    void drawComposition(qint64 column, qsizetype length, const QList<QInputMethodEvent::Attribute> &formats,
        const QColor &color);
    /// A vertical bar before a column, combined with what is there.
    void drawCursor(qint64 column, const QColor &color, qreal width);
    /// A block over the character behind a column, likewise; behind the last one it is as wide as "x".
    void drawBlockCursor(qint64 column, const QColor &color);
    /// Characters of another font on a base line, placed by that font's advances.
    void drawCharacters(const FontMeasure &measure, QPoint baseline, QStringView text, const QColor &color);
    void copyToTarget() { m_canvas.copyToTarget(); }

private:
    void drawCursorRect(int left, int width, const QColor &color);
    void drawOver(const QRect &rect, const QColor &background, const QColor &color);

    const FontMeasure &m_measure;
    QColor m_background;
    qreal m_margin;
    RowCanvas m_canvas;
    RowLayout m_layout;
};
