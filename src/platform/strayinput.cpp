#include "platform/strayinput.h"

#include "platform/heldkeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QStyleHints>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// The window of the object an event is sent to; null for a popup, and for what is in no window.
const QObject *windowOf(const QObject *object)
{
    const auto *widget = qobject_cast<const QWidget *>(object);
    const auto *window = widget ? widget->window()->windowHandle() : qobject_cast<const QWindow *>(object);
    const bool isPopup =
        widget ? widget->window()->windowType() == Qt::Popup : window && window->type() == Qt::Popup;
    return isPopup ? nullptr : window;
}

/// By its place on the keyboard: what it types changes with Shift. Events that no keyboard made have none.
quint64 idOf(const QKeyEvent &event)
{
    constexpr quint64 madeKey = quint64(1) << 32;
    return event.nativeScanCode() != 0 ? event.nativeScanCode() : madeKey | quint64(event.key());
}

} // namespace

StrayInput &StrayInput::instance()
{
    static QPointer<StrayInput> input;
    if (!input)
        input = new StrayInput(qApp);
    return *input;
}

StrayInput::StrayInput(QObject *parent)
    : QObject(parent)
{
    qApp->installEventFilter(this);
}

void StrayInput::letBeRead(QWidget *window)
{
    m_read = window;
    m_isPainted = false;
    m_shown.start();
}

bool StrayInput::eventFilter(QObject *object, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
        return isStray(static_cast<const QPointerEvent &>(*event), windowOf(object));
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress: {
        const bool stray = isStray(static_cast<const QKeyEvent &>(*event), windowOf(object));
        if (stray)
            event->accept(); // else it would be looked up among the shortcuts
        return stray;
    }
    case QEvent::Paint:
        if (object == m_read && !std::exchange(m_isPainted, true))
            m_shown.start();
        return false;
    default:
        return false;
    }
}

bool StrayInput::isToBeRead(const QObject *window) const
{
    return window && m_read && m_read->windowHandle() == window;
}

bool StrayInput::isUnread(const QObject *window) const
{
    return isToBeRead(window)
        && m_shown.elapsed() < QGuiApplication::styleHints()->mouseDoubleClickInterval();
}

bool StrayInput::isStray(const QPointerEvent &event, const QObject *window)
{
    if (!window || isUnread(window))
        return window;
    const QStyleHints *const hints = QGuiApplication::styleHints();
    const QPointF position = event.points().constFirst().globalPosition();
    const QPointF moved = position - m_press.position;
    const bool isSecond = m_press.time != 0
        && event.timestamp() - m_press.time < quint64(hints->mouseDoubleClickInterval())
        && std::max(std::abs(moved.x()), std::abs(moved.y())) <= hints->touchDoubleTapDistance();
    const bool isStrayed = isSecond && m_press.window != window;
    if (!isStrayed)
        m_press.window = window;
    m_press.position = position;
    m_press.time = event.timestamp();
    return isStrayed;
}

bool StrayInput::isStray(const QKeyEvent &event, const QObject *window)
{
    if (!window)
        return false;
    const quint64 key = idOf(event);
    if (isUnread(window)) {
        m_pressedIn[key] = nullptr;
        return true;
    }
    if (!HeldKeys::isHeld(event)) {
        m_pressedIn[key] = window;
        return false;
    }
    // The press of a key that is not known went to another program, or to an input method.
    const auto pressedIn = m_pressedIn.constFind(key);
    return isToBeRead(window) || (pressedIn != m_pressedIn.constEnd() && *pressedIn != window);
}
