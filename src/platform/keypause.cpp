#include "platform/keypause.h"

#include "platform/heldkeys.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodQueryEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QTimerEvent>

#include <algorithm>

namespace {

/// One in which the keys come that were pressed meanwhile and the result is drawn, one for the keys that were
/// pressed while it was drawn, and one more because the first may have begun already.
constexpr int turnsUntilShown = 3;

} // namespace

void KeyPause::begin(std::chrono::milliseconds longer)
{
    instance().start(longer);
}

KeyPause &KeyPause::instance()
{
    static QPointer<KeyPause> pause;
    if (!pause)
        pause = new KeyPause(QCoreApplication::instance());
    return *pause;
}

void KeyPause::start(std::chrono::milliseconds longer)
{
    QCoreApplication::instance()->installEventFilter(this);
    m_turns = turnsUntilShown;
    m_noticed = std::max(m_noticed, QDeadlineTimer(longer));
    m_turn.start(int(m_noticed.remainingTime()), Qt::PreciseTimer, this);
    // An input method would take the keys before any window, and answer when all is over.
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
}

void KeyPause::timerEvent(QTimerEvent *event)
{
    Q_UNUSED(event)
    if (--m_turns > 0) {
        m_turn.start(0, this);
        return;
    }
    m_turn.stop();
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
}

bool KeyPause::eventFilter(QObject *receiver, QEvent *event)
{
    if (m_turn.isActive() && event->type() == QEvent::InputMethodQuery) {
        static_cast<QInputMethodQueryEvent *>(event)->setValue(Qt::ImEnabled, false);
        return true;
    }
    return isDropped(*receiver, *event);
}

/// Keys of the window system come to windows first, and from there to widgets.
bool KeyPause::isDropped(const QObject &receiver, const QEvent &event)
{
    switch (event.type()) {
    case QEvent::KeyPress:
        return receiver.isWindowType() && isDropped(static_cast<const QKeyEvent &>(event));
    case QEvent::Shortcut:
    case QEvent::InputMethod:
        return m_turn.isActive();
    default:
        return false;
    }
}

bool KeyPause::isDropped(const QKeyEvent &press)
{
    if (!m_turn.isActive() && !HeldKeys::isHeld(press)) {
        QCoreApplication::instance()->removeEventFilter(this);
        return false;
    }
    if (!press.isAutoRepeat())
        emit dropped(press);
    return true;
}
