#include "platform/freeturn.h"

#include "platform/qpeapplication.h"

#include <QAbstractEventDispatcher>

#include <utility>

FreeTurn::FreeTurn(std::function<void()> act, QObject *parent)
    : QObject(parent)
    , m_act(std::move(act))
{
}

void FreeTurn::once(QObject *context, const std::function<void()> &act)
{
    auto *const turn = new FreeTurn({}, context);
    turn->m_act = [turn, act] {
        turn->deleteLater();
        act();
    };
    turn->await();
}

/// What is posted in each turn would wake the event loop for the next one.
void FreeTurn::await()
{
    m_isAwaited = true;
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this, &FreeTurn::look,
        Qt::UniqueConnection);
}

void FreeTurn::cancel()
{
    m_isAwaited = false;
    QAbstractEventDispatcher::instance()->disconnect(this);
}

void FreeTurn::look()
{
    if (QPEApplication::isBusy())
        return;
    QAbstractEventDispatcher::instance()->disconnect(this);
    QMetaObject::invokeMethod(this, &FreeTurn::call, Qt::QueuedConnection);
}

/// Something may have come into the way since it was posted.
void FreeTurn::call()
{
    if (!m_isAwaited)
        return;
    if (QPEApplication::isBusy()) {
        await();
        return;
    }
    m_isAwaited = false;
    const auto act = m_act;
    act();
}
