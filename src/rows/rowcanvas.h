#pragma once

#include <QPainter>
#include <QRect>

/// Where a part of a row is, in device pixels: in what it is painted on, and in the picture it is drawn in.
///
/// Edges are rounded one by one, so that what touches at one scale touches at every scale.
class RowFrame {
public:
    /// The part `update` of a row at `cell`, both in the target's coordinates; `scale` is device pixels per
    /// logical one; the row's place in the picture begins `pictureTop` device pixels from its top.
    RowFrame(const QPainter &target, const QRectF &cell, const QRect &update, qreal scale, int pictureTop);

    /// The part, in the target and in the picture.
    QRect update() const { return m_update; }
    QRect pictured() const;
    /// The row's height over the part's width, from the part's corner.
    QRect row() const { return { 0, m_top - m_update.top(), m_update.width(), m_height }; }
    /// From the part's left edge to the row's start.
    qint64 rowStart() const { return m_rowLeft - m_update.left(); }
    qreal scale() const { return m_scale; }

    /// Copies what the picture holds to the target in one operation, 1:1.
    void copyTo(QPainter &target) const;

private:
    qreal m_scale;
    QTransform m_toDevice; ///< from the target's coordinates
    QRect m_update; ///< the following are device pixels of the target, too
    qint64 m_rowLeft = 0;
    int m_viewLeft = 0;
    int m_top = 0;
    int m_height = 0;
    int m_pictureTop; ///< of the row
};

/// One row's off-screen picture: composed in device pixels in the picture that all rows share, then copied to
/// the screen. There is one canvas at a time. Arguments are logical pixels from the row's top-left corner,
/// rounded to device pixels edge by edge.
class RowCanvas {
public:
    /// Filled with `background`.
    RowCanvas(QPainter &target, const RowFrame &frame, const QColor &background);
    ~RowCanvas();
    Q_DISABLE_COPY_MOVE(RowCanvas)

    /// Draws in device pixels; its origin is the update area's corner.
    QPainter &painter() { return m_painter; }
    /// Device pixel of the painter at a distance from the row's start; where that is far outside, one just
    /// outside.
    int x(qreal logical) const { return toInt(origin(logical)); }
    int y(qreal logical) const { return toInt(qRound64(logical * scale()) + m_frame.row().top()); }
    /// x() wherever it is.
    qint64 origin(qreal logical) const { return qRound64(logical * scale()) + m_frame.rowStart(); }
    static int toInt(qint64 place);
    /// Device pixels of a length, and of a stroke, which is never thinner than one.
    int pixels(qreal logical) const { return qRound(logical * scale()); }
    int thickness(qreal logical) const { return qMax(1, pixels(logical)); }
    qreal scale() const { return m_frame.scale(); }
    /// Logical pixels of the row.
    qreal rowHeight() const { return m_frame.row().height() / scale(); }
    /// The row's device pixels, over the whole width of the update.
    QRect rowRect() const { return m_frame.row(); }

    /// Copies what was drawn to the target. Nothing is drawn afterwards.
    void copyToTarget();

private:
    QPainter &m_target;
    RowFrame m_frame;
    QPainter m_painter;
};
