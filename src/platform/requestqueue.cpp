#include "platform/requestqueue.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QScopedValueRollback>
#include <QWidget>
#include <QWindow>

RequestQueue::RequestQueue(QObject *parent)
    : QObject(parent)
{
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

void RequestQueue::add(const QString &fileName)
{
    m_fileNames << fileName;
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
    return m_wasOnScreen && m_receiver && !isBusy() && !m_delivering && !QApplication::activePopupWidget();
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
    if (m_fileNames.isEmpty())
        QAbstractEventDispatcher::instance(thread())->disconnect(this);
}

void RequestQueue::schedule()
{
    if (m_scheduled || m_fileNames.isEmpty() || !isReady())
        return;
    m_scheduled = true;
    QMetaObject::invokeMethod(this, &RequestQueue::deliver, Qt::QueuedConnection);
}

void RequestQueue::deliver()
{
    m_scheduled = false;
    while (!m_fileNames.isEmpty() && isReady()) {
        const QScopedValueRollback delivering(m_delivering, true);
        [[maybe_unused]] const bool isTaken = QMetaObject::invokeMethod(
            m_receiver, "setDocument", Qt::DirectConnection, Q_ARG(QString, m_fileNames.takeFirst()));
        Q_ASSERT(isTaken);
    }
    stopWatching();
}
