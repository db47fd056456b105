#include "rows/rowcanvas.h"

#include "rows/rowpictures.h"

#include <cmath>

namespace {

/// The toolkit tells a device's scale in steps of 1/65536.
constexpr qreal scaleTolerance = 1e-4;

/// From a painter's coordinates to device pixels: its own ones, or where it paints at another scale, as for a
/// printed picture of the window, those the row is made for.
QTransform deviceTransform(const QPainter &painter, qreal scale)
{
    const QTransform own = painter.deviceTransform();
    const auto isScale = [scale](qreal factor) { return std::abs(factor - scale) < scaleTolerance; };
    const bool isSameScale = own.type() <= QTransform::TxScale && isScale(own.m11()) && isScale(own.m22());
    return isSameScale ? own : QTransform::fromScale(scale, scale);
}

/// Nearer to the picture than this is told exactly; beyond it nothing shows.
constexpr qint64 farOutside = 1 << 20;

} // namespace

RowFrame::RowFrame(
    const QPainter &target, const QRectF &cell, const QRect &update, qreal scale, int pictureTop)
    : m_scale(scale)
    , m_toDevice(deviceTransform(target, scale))
    , m_pictureTop(pictureTop)
{
    const QRectF area = m_toDevice.mapRect(QRectF(update));
    const QPointF view = m_toDevice.map(QPointF());
    // By the scale that the row is laid out at: over a very long row the tolerance would come to many pixels.
    m_rowLeft = qRound64(view.x() + cell.x() * scale);
    m_viewLeft = qRound(view.x());
    m_top = qRound(m_toDevice.map(cell.topLeft()).y());
    m_height = qRound(cell.height() * scale);
    m_update.setCoords(qRound(area.left()), qMax(m_top, qRound(area.top())), qRound(area.right()) - 1,
        qMin(m_top + m_height, qRound(area.bottom())) - 1);
}

QRect RowFrame::pictured() const
{
    return m_update.translated(-m_viewLeft, m_pictureTop - m_top);
}

void RowFrame::copyTo(QPainter &target) const
{
    if (m_update.isEmpty())
        return;
    target.save();
    target.setClipping(false);
    target.setWorldTransform(m_toDevice.inverted(), true);
    target.drawPixmap(m_update.topLeft(), RowPictures::picture(QSize()), pictured());
    target.restore();
}

RowCanvas::RowCanvas(QPainter &target, const RowFrame &frame, const QColor &background)
    : m_target(target)
    , m_frame(frame)
{
    // An update area that holds no device pixel (it can at a fractional scale) is drawn like any other, for
    // nothing.
    const QRect area = m_frame.pictured();
    m_painter.begin(&RowPictures::picture(QSize(qMax(1, area.right() + 1), qMax(1, area.bottom() + 1))));
    m_painter.translate(area.topLeft());
    const QRect whole(QPoint(), area.size());
    m_painter.setClipRect(whole);
    m_painter.fillRect(whole, background);
}

RowCanvas::~RowCanvas() = default;

int RowCanvas::toInt(qint64 place)
{
    return int(qBound(-farOutside, place, farOutside));
}

void RowCanvas::copyToTarget()
{
    m_painter.end();
    m_frame.copyTo(m_target);
}
