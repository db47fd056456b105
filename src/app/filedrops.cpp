#include "app/filedrops.h"

#include "files/fileaddress.h"
#include "platform/qpeapplication.h"

#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

using namespace Qt::StringLiterals;

FileDrops::FileDrops(QWidget &window)
    : m_window(window)
{
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

/// The toolkit's own addresses lose names that are no UTF-8.
QStringList FileDrops::filesIn(const QMimeData &data)
{
    QStringList files;
    for (const QByteArray &line : data.data(u"text/uri-list"_s).split('\n')) {
        if (const auto file = FileAddress::fileName(line.trimmed()))
            files << *file;
    }
    return files;
}

bool FileDrops::eventFilter(QObject *, QEvent *event)
{
    const bool isHeld = event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove;
    if (!isHeld && event->type() != QEvent::Drop)
        return false;
    auto &drop = static_cast<QDropEvent &>(*event);
    const QStringList files = filesIn(*drop.mimeData());
    if (files.isEmpty() || QPEApplication::isBusy()) {
        drop.ignore();
        return true;
    }
    // Whoever drags is not to remove them.
    drop.setDropAction(Qt::CopyAction);
    drop.accept();
    if (isHeld)
        return true;
    m_window.activateWindow();
    if (auto *const application = qobject_cast<QPEApplication *>(qApp)) {
        for (const QString &file : files)
            application->request({ file, FileRequest::From::Desktop });
    }
    return true;
}
