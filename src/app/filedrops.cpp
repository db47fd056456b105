#include "app/filedrops.h"

#include "platform/qpeapplication.h"
#include "platform/windowsystem.h"

#include <QDropEvent>
#include <QMimeData>
#include <QRubberBand>
#include <QWidget>

using namespace Qt::StringLiterals;

FileDrops::FileDrops(QWidget &window)
    : m_window(window)
{
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

FileDrops::~FileDrops() = default;

/// There only while it is shown: a hidden one is a control without a name to assistive tools.
void FileDrops::mark(bool isMarked)
{
    if (!isMarked)
        return m_target.reset();
    if (!m_target)
        m_target = std::make_unique<QRubberBand>(QRubberBand::Rectangle, &m_window);
    m_target->setGeometry(m_window.rect());
    m_target->show();
}

/// The toolkit's own addresses lose names that are no UTF-8.
QList<QByteArray> FileDrops::addressesIn(const QMimeData &data)
{
    QList<QByteArray> addresses;
    for (const QByteArray &line : data.data(u"text/uri-list"_s).split('\n')) {
        const QByteArray address = line.trimmed();
        if (!address.isEmpty() && !address.startsWith('#'))
            addresses << address;
    }
    return addresses;
}

bool FileDrops::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::DragLeave)
        mark(false);
    const bool isHeld = event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove;
    if (!isHeld && event->type() != QEvent::Drop)
        return false;
    auto &drop = static_cast<QDropEvent &>(*event);
    const FileRequests requests = requestsByAddresses(addressesIn(*drop.mimeData()));
    const bool hasFiles = !requests.isEmpty() && requests.first().from == FileRequest::From::Desktop;
    const bool isTaken = hasFiles && !QPEApplication::isBusy();
    mark(isHeld && isTaken);
    if (!isTaken) {
        drop.ignore();
        return true;
    }
    // Whoever drags is not to remove them.
    drop.setDropAction(Qt::CopyAction);
    drop.accept();
    if (isHeld)
        return true;
    WindowSystem::activate(m_window);
    if (auto *const application = qobject_cast<QPEApplication *>(qApp)) {
        for (const FileRequest &request : requests)
            application->request(request);
    }
    return true;
}
