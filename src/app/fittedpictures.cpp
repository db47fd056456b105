#include "app/fittedpictures.h"

#include <QPainter>
#include <QPixmapCache>
#include <QTextDocument>
#include <QTextTable>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

/// The text keeps what it has loaded.
QPixmap pictureOf(const QTextDocument &text, const QTextFormat &format)
{
    const QUrl name(format.toImageFormat().name());
    return text.resource(QTextDocument::ImageResource, name).value<QPixmap>();
}

/// That of the text or, in a table, an equal share of it: the toolkit makes columns by their words alone.
qreal roomAt(int position, const QTextDocument &text)
{
    const qreal whole = text.textWidth() - 2 * text.documentMargin();
    const auto *const table = qobject_cast<const QTextTable *>(text.frameAt(position));
    if (!table)
        return whole;
    const QTextTableFormat format = table->format();
    const qreal beside = format.cellSpacing() + format.cellPadding() + format.border();
    return whole / table->columns() - 2 * beside;
}

QPixmap scaled(const QPixmap &picture, QSize size)
{
    if (picture.size() == size)
        return picture;
    const QString key = u"FittedPictures %1 %2"_s.arg(picture.cacheKey()).arg(size.width());
    QPixmap found;
    if (!QPixmapCache::find(key, &found)) {
        found = picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QPixmapCache::insert(key, found);
    }
    return found;
}

} // namespace

FittedPictures::FittedPictures(QTextEdit *view)
    : QObject(view)
    , m_view(*view)
{
    view->document()->documentLayout()->registerHandler(QTextFormat::ImageObject, this);
}

QSizeF FittedPictures::intrinsicSize(QTextDocument *text, int position, const QTextFormat &format)
{
    const qreal ratio = m_view.devicePixelRatioF();
    const int room = int(roomAt(position, *text) * ratio);
    QSize size = pictureOf(*text, format).size();
    if (size.width() > room)
        size.scale(room, size.height(), Qt::KeepAspectRatio);
    return QSizeF(size) / ratio;
}

void FittedPictures::drawObject(
    QPainter *painter, const QRectF &place, QTextDocument *text, int, const QTextFormat &format)
{
    const qreal ratio = m_view.devicePixelRatioF();
    QPixmap picture = scaled(pictureOf(*text, format), (place.size() * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    painter->drawPixmap(place.topLeft(), picture);
}
