#include "widget/pressedpointer.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QStyleHints>
#include <QWidget>

PressedPointer::PressedPointer(QWidget &viewport)
    : m_viewport(viewport)
    , m_longPress(&viewport)
    , m_nextPress(&viewport)
{
    m_longPress.setSingleShot(true);
    m_nextPress.setSingleShot(true);
    QObject::connect(&m_longPress, &QTimer::timeout, &m_longPress, [this] { m_held(); });
}

void PressedPointer::press(QPointF at)
{
    m_pressedAt = m_lastAt = at;
}

bool PressedPointer::isFar(QPointF at) const
{
    return (at - m_pressedAt).manhattanLength() >= QGuiApplication::styleHints()->startDragDistance();
}

void PressedPointer::awaitLongPress()
{
    awaitLongPress([this] {
        m_nextPress.stop();
        m_gesture = Gesture::Done;
        askForMenu();
    });
}

void PressedPointer::awaitLongPress(std::function<void()> held)
{
    m_held = std::move(held);
    m_longPress.start(QGuiApplication::styleHints()->mousePressAndHoldInterval());
}

void PressedPointer::awaitNextPress()
{
    m_nextPress.start(QGuiApplication::styleHints()->mouseDoubleClickInterval());
}

void PressedPointer::askForMenu()
{
    const QPoint at = m_lastAt.toPoint();
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, m_viewport.mapToGlobal(at));
    QCoreApplication::sendEvent(&m_viewport, &event);
}
