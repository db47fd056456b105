#include "platform/rowcanvas.h"

#include <QCoreApplication>
#include <QPixmap>

#include <cmath>

namespace {

QPixmap &sharedPixmap()
{
    static QPixmap pixmap;
    return pixmap;
}

void enlargeSharedPixmap(const QSize &needed)
{
    QPixmap &pixmap = sharedPixmap();
    if (pixmap.isNull())
        qAddPostRoutine([] { sharedPixmap() = QPixmap(); });
    if (pixmap.width() < needed.width() || pixmap.height() < needed.height())
        pixmap = QPixmap(pixmap.size().expandedTo(needed));
}

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

RowCanvas::RowCanvas(
    QPainter &target, const QRectF &cell, const QRect &update, qreal scale, const QColor &background)
    : m_target(target)
    , m_scale(scale)
    , m_toDevice(deviceTransform(target, scale))
{
    const QRectF area = m_toDevice.mapRect(QRectF(update));
    const QPointF corner = m_toDevice.map(cell.topLeft());
    m_cellLeft = qRound64(corner.x());
    const int top = qRound(corner.y());
    const int height = qRound(cell.height() * scale);
    const int left = qRound(area.left());
    m_update.setCoords(left, qMax(top, qRound(area.top())), qRound(area.right()) - 1,
        qMin(top + height, qRound(area.bottom())) - 1);
    m_row = QRect(0, top - m_update.top(), m_update.width(), height);
    // An update area that holds no device pixel (it can at a fractional scale) is drawn like any other, for
    // nothing.
    enlargeSharedPixmap(m_update.size().expandedTo(QSize(1, 1)));
    m_painter.begin(&sharedPixmap());
    m_painter.fillRect(QRect(QPoint(), m_update.size()), background);
}

RowCanvas::~RowCanvas() = default;

QSize RowCanvas::pictureSize()
{
    return sharedPixmap().size();
}

int RowCanvas::toInt(qint64 place)
{
    return int(qBound(-farOutside, place, farOutside));
}

void RowCanvas::copyToTarget()
{
    m_painter.end();
    if (m_update.isEmpty())
        return;
    m_target.save();
    m_target.setClipping(false);
    m_target.setWorldTransform(m_toDevice.inverted(), true);
    m_target.drawPixmap(m_update.topLeft(), sharedPixmap(), QRect(QPoint(), m_update.size()));
    m_target.restore();
}
