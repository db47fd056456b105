#pragma once

#include <QPainter>
#include <QRect>

/// One row's off-screen picture: composed in device pixels and copied to the screen 1:1 in one operation.
///
/// All canvases of the process draw into one pixmap, which is made larger when a row needs it and never
/// smaller: there is one canvas at a time. Arguments are logical pixels from the row's top-left corner,
/// rounded to device pixels edge by edge, so that what touches at one scale touches at every scale.
class RowCanvas {
public:
    /// The part `update` of a row at `cell`, both in the target's coordinates; `scale` is device pixels per
    /// logical one. Filled with `background`.
    RowCanvas(
        QPainter &target, const QRectF &cell, const QRect &update, qreal scale, const QColor &background);
    ~RowCanvas();
    Q_DISABLE_COPY_MOVE(RowCanvas)
    /// Size of the one shared picture.
    static QSize pictureSize();

    /// Draws in device pixels; its origin is the update area's corner.
    QPainter &painter() { return m_painter; }
    /// Device pixel of the painter at a distance from the row's start; where that is far outside, one just
    /// outside.
    int x(qreal logical) const { return toInt(origin(logical)); }
    int y(qreal logical) const { return toInt(qRound64(logical * m_scale) + m_row.top()); }
    /// x() wherever it is.
    qint64 origin(qreal logical) const { return qRound64(logical * m_scale) + m_cellLeft - m_update.left(); }
    static int toInt(qint64 place);
    /// Device pixels of a length, and of a stroke, which is never thinner than one.
    int pixels(qreal logical) const { return qRound(logical * m_scale); }
    int thickness(qreal logical) const { return qMax(1, pixels(logical)); }
    qreal scale() const { return m_scale; }
    /// Logical pixels of the row.
    qreal rowHeight() const { return m_row.height() / m_scale; }
    /// The row's device pixels, over the whole width of the update.
    QRect rowRect() const { return m_row; }
    bool isEmpty() const { return m_update.isEmpty(); }

    /// Copies what was drawn to the target. Nothing is drawn afterwards.
    void copyToTarget();

private:
    QPainter &m_target;
    qreal m_scale;
    QTransform m_toDevice; ///< from the target's coordinates
    QRect m_update; ///< device pixels of the target
    QRect m_row; ///< the row's height over the update's width, from the update's corner
    qint64 m_cellLeft = 0; ///< device pixels of the target
    QPainter m_painter;
};
