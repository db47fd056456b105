#include "platform/shortenedpath.h"

#include <QFontMetrics>

namespace {

/// As wide as `room` if "…" is as wide beside other letters as by itself.
QString shortened(const QString &path, const QFontMetrics &metrics, int room)
{
    const qsizetype nameStart = qMax<qsizetype>(0, path.lastIndexOf(u'/'));
    const QString name = path.sliced(nameStart);
    const QString least = nameStart > 0 ? QStringLiteral(u"…") : QString();
    const int roomForFolder = room - metrics.horizontalAdvance(name);
    if (roomForFolder >= metrics.horizontalAdvance(least))
        return metrics.elidedText(path.first(nameStart), Qt::ElideMiddle, roomForFolder) + name;
    return least + metrics.elidedText(name, Qt::ElideMiddle, room - metrics.horizontalAdvance(least));
}

} // namespace

QString shortenedPath(const QString &path, const QFontMetrics &metrics, int room)
{
    QString shown = path;
    // Beside Japanese letters "…" comes from their font, and is wider.
    const int step = metrics.horizontalAdvance(u'…');
    for (int tried = room; tried > 0 && metrics.horizontalAdvance(shown) > room; tried -= step)
        shown = shortened(path, metrics, tried);
    return shown;
}
