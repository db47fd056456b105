#include "platform/requestqueue.h"

#include "platform/turnlength.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDeadlineTimer>
#include <QScopedValueRollback>
#include <QWidget>
#include <QWindow>

RequestQueue::RequestQueue(QObject *parent)
    : QObject(parent)
{
    m_nextTurn.setSingleShot(true);
    m_nextTurn.callOnTimeout(this, &RequestQueue::schedule);
}

void RequestQueue::setReceiver(QWidget *window)
{
    m_receiver = window;
    m_wasOnScreen = false;
    schedule();
}

void RequestQueue::setHeld(bool held)
{
    m_held = held;
    schedule();
}

void RequestQueue::setPostponed(bool postponed)
{
    m_postponed = postponed;
    schedule();
}

void RequestQueue::drop()
{
    m_requests.clear();
    stopWatching();
}

void RequestQueue::add(const FileRequest &request)
{
    m_requests << request;
    watch();
    schedule();
}

bool RequestQueue::isBusy() const
{
    return m_held || QApplication::activeModalWidget();
}

bool RequestQueue::isReady()
{
    if (!m_wasOnScreen && m_receiver && m_receiver->windowHandle())
        m_wasOnScreen = m_receiver->windowHandle()->isExposed();
    return m_wasOnScreen && m_receiver && !m_postponed && !isBusy() && !m_delivering
        && !QApplication::activePopupWidget();
}

// A dialog's end is not enough to go by: it comes before exec() has returned to its caller.
void RequestQueue::watch()
{
    const auto *dispatcher = QAbstractEventDispatcher::instance(thread());
    Q_ASSERT(dispatcher);
    connect(
        dispatcher, &QAbstractEventDispatcher::awake, this, &RequestQueue::schedule, Qt::UniqueConnection);
    connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, &RequestQueue::schedule,
        Qt::UniqueConnection);
}

void RequestQueue::stopWatching()
{
    if (m_requests.isEmpty())
        QAbstractEventDispatcher::instance(thread())->disconnect(this);
}

void RequestQueue::schedule()
{
    if (m_scheduled || m_requests.isEmpty() || !isReady())
        return;
    m_scheduled = true;
    QMetaObject::invokeMethod(this, &RequestQueue::deliver, Qt::QueuedConnection);
}

/// Those that come by the hundred let others have their turn in between.
void RequestQueue::deliver()
{
    const QDeadlineTimer end(longestTurnOfShowing);
    m_scheduled = false;
    while (!m_requests.isEmpty() && isReady()) {
        const QScopedValueRollback delivering(m_delivering, true);
        give(m_requests.takeFirst());
        emit delivered(m_requests.size());
        if (end.hasExpired())
            break;
    }
    if (!m_requests.isEmpty())
        m_nextTurn.start();
    stopWatching();
}

void RequestQueue::give(const FileRequest &request)
{
    const bool isPlain = request.from == FileRequest::From::Launcher;
    [[maybe_unused]] const bool isTaken = isPlain ? QMetaObject::invokeMethod(m_receiver, "setDocument",
                                              Qt::DirectConnection, Q_ARG(QString, request.fileName))
                                                  : QMetaObject::invokeMethod(m_receiver, "openRequested",
                                                      Qt::DirectConnection, Q_ARG(FileRequest, request));
    Q_ASSERT(isTaken);
}
