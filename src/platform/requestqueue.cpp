#include "platform/requestqueue.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDialog>
#include <QMessageBox>
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

void RequestQueue::addClose()
{
    m_closing = true;
    watch();
    schedule();
}

void RequestQueue::removeClose()
{
    m_closing = false;
    stopWatching();
    schedule();
}

bool RequestQueue::isBusy() const
{
    return m_held || QApplication::activeModalWidget();
}

bool RequestQueue::isFree() const
{
    return m_receiver && !isBusy() && !m_delivering && !QApplication::activePopupWidget();
}

bool RequestQueue::isReady()
{
    if (!m_wasOnScreen && m_receiver && m_receiver->windowHandle())
        m_wasOnScreen = m_receiver->windowHandle()->isExposed();
    return m_wasOnScreen && isFree();
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
    if (!isWaiting())
        QAbstractEventDispatcher::instance(thread())->disconnect(this);
}

void RequestQueue::schedule()
{
    if (m_closing && !m_delivering && cancelDialog())
        return;
    const bool mayDeliver = m_closing ? isFree() : isReady();
    if (m_scheduled || !isWaiting() || !mayDeliver)
        return;
    m_scheduled = true;
    QMetaObject::invokeMethod(this, &RequestQueue::deliver, Qt::QueuedConnection);
}

void RequestQueue::deliver()
{
    m_scheduled = false;
    if (m_closing && isFree())
        deliverClose();
    // The end may be requested while a file's questions are open.
    while (!m_closing && !m_fileNames.isEmpty() && isReady()) {
        const QScopedValueRollback delivering(m_delivering, true);
        [[maybe_unused]] const bool isTaken = QMetaObject::invokeMethod(
            m_receiver, "setDocument", Qt::DirectConnection, Q_ARG(QString, m_fileNames.takeFirst()));
        Q_ASSERT(isTaken);
    }
    stopWatching();
}

/// False if there was nothing to cancel. What is cancelled ends when its caller goes on, and may uncover
/// another dialog: the next look at the queue sees to both.
bool RequestQueue::cancelDialog()
{
    QWidget *const popup = QApplication::activePopupWidget();
    if (popup)
        popup->close();
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    const bool isCancelled = dialog && !qobject_cast<QMessageBox *>(dialog);
    if (isCancelled)
        dialog->reject();
    return popup || isCancelled;
}

void RequestQueue::deliverClose()
{
    const QScopedValueRollback delivering(m_delivering, true);
    m_closing = false;
    if (m_receiver->close())
        m_fileNames.clear();
}
