#include "platform/pictureengine.h"

#include "platform/picture.h"

#include <QApplication>
#include <QPainter>
#include <QPixmapCache>
#include <QStyle>
#include <QStyleOption>

namespace {

QPixmap greyed(const QPixmap &pixmap)
{
    QStyleOption option;
    option.palette = QApplication::palette();
    return QApplication::style()->generatedIconPixmap(QIcon::Disabled, pixmap, &option);
}

} // namespace

PictureEngine::PictureEngine(const QString &name, const QString &disabledName)
    : m_name(name)
    , m_disabledName(disabledName)
{
}

void PictureEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State)
{
    const qreal scale = painter->device()->devicePixelRatio();
    QPixmap pixmap = draw((QSizeF(rect.size()) * scale).toSize(), mode);
    if (pixmap.isNull())
        return;
    pixmap.setDevicePixelRatio(scale);
    const QSizeF size = pixmap.deviceIndependentSize();
    const QPointF margin((rect.width() - size.width()) / 2, (rect.height() - size.height()) / 2);
    painter->drawPixmap(rect.topLeft() + margin, pixmap);
}

QSize PictureEngine::actualSize(const QSize &size, QIcon::Mode, QIcon::State)
{
    const Picture &picture = Picture::named(m_name);
    return picture.isNull() ? QSize() : picture.size().scaled(size, Qt::KeepAspectRatio);
}

QPixmap PictureEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State)
{
    return draw(size, mode);
}

QPixmap PictureEngine::scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State, qreal)
{
    return draw(size, mode);
}

QList<QSize> PictureEngine::availableSizes(QIcon::Mode, QIcon::State)
{
    const Picture &picture = Picture::named(m_name);
    return picture.isNull() ? QList<QSize>() : QList<QSize>{ picture.size() };
}

QIconEngine *PictureEngine::clone() const
{
    return new PictureEngine(*this);
}

QString PictureEngine::key() const
{
    return QStringLiteral("picture");
}

QString PictureEngine::iconName()
{
    return m_name;
}

bool PictureEngine::isNull()
{
    return Picture::named(m_name).isNull();
}

QPixmap PictureEngine::draw(const QSize &devicePixels, QIcon::Mode mode)
{
    const bool isDisabled = mode == QIcon::Disabled;
    const bool isGreyed = isDisabled && Picture::named(m_disabledName).isNull();
    const QString &name = isDisabled && !isGreyed ? m_disabledName : m_name;
    const QString key = QStringLiteral("picture:%1:%2x%3:%4")
                            .arg(name)
                            .arg(devicePixels.width())
                            .arg(devicePixels.height())
                            .arg(isGreyed);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    pixmap = Picture::named(name).render(devicePixels);
    if (isGreyed && !pixmap.isNull())
        pixmap = greyed(pixmap);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}
