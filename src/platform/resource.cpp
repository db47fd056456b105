#include "platform/resource.h"

#include "platform/picture.h"
#include "platform/pictureengine.h"

#include <QGuiApplication>

QPixmap Resource::loadPixmap(const QString &name)
{
    const Picture &picture = Picture::named(name);
    const qreal scale = qGuiApp->devicePixelRatio();
    QPixmap pixmap = picture.render((QSizeF(picture.size()) * scale).toSize());
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}

QIcon Resource::loadIcon(const QString &name, const QString &disabledName)
{
    return QIcon(new PictureEngine(name, disabledName));
}
