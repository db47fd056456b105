#include "platform/pendingevents.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

PendingEvents::Clock::time_point PendingEvents::process()
{
    const Clock::time_point now = Clock::now();
    if (now < m_nextLook) {
        QCoreApplication::sendPostedEvents();
        return now;
    }
    const bool wereAny = QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
    m_nextLook = wereAny ? now : now + m_interval;
    return now;
}
