#include "widget/touchgestures.h"

#include "widget/pointergestures.h"
#include "widget/pressedpointer.h"
#include "widget/selectionhandles.h"

#include <QGuiApplication>
#include <QScroller>
#include <QStyleHints>
#include <QTouchEvent>
#include <QWidget>

#include <algorithm>

using Gesture = PressedPointer::Gesture;
using Unit = PointerGestures::Unit;

static constexpr Unit unitOfTaps[] = { Unit::Character, Unit::Word, Unit::Line };

TouchGestures::TouchGestures(QWidget &editor, QWidget &viewport, PressedPointer &pressed,
    PointerGestures &pointer, SelectionHandles &handles)
    : m_editor(editor)
    , m_viewport(viewport)
    , m_pressed(pressed)
    , m_pointer(pointer)
    , m_handles(handles)
{
}

void TouchGestures::touch(const QTouchEvent &event)
{
    QScroller *const scroller = QScroller::scroller(&m_viewport);
    const auto time = qint64(event.timestamp());
    if (event.type() == QEvent::TouchBegin)
        m_finger = event.points().constFirst().id();
    if (event.points().size() > 1)
        m_pressed.endLongPress();
    const auto &points = event.points();
    const auto finger = std::ranges::find(points, m_finger, &QEventPoint::id);
    const bool isKnown = finger != points.end();
    const QPointF at = isKnown ? finger->position() : m_pressed.lastAt();
    switch (event.type()) {
    case QEvent::TouchBegin:
        begin(at);
        scroller->handleInput(QScroller::InputPress, at, time);
        break;
    case QEvent::TouchUpdate:
        move(at, time, !isKnown || finger->state() == QEventPoint::Released);
        break;
    case QEvent::TouchEnd:
        scroller->handleInput(QScroller::InputRelease, at, time);
        if (m_isHeld)
            letGo(at);
        else if (m_pressed.isAwaitingLongPress())
            tap(at, time);
        end();
        break;
    default:
        scroller->stop();
        end();
    }
}

void TouchGestures::begin(QPointF at)
{
    m_pressed.setGesture(Gesture::Scroll);
    m_pressed.press(at);
    m_pressed.awaitLongPress([this] { hold(); });
}

/// `isLifted`: the finger that scrolls is gone, others may stay.
void TouchGestures::move(QPointF at, qint64 time, bool isLifted)
{
    if (m_isHeld) {
        isLifted ? letGo(at) : dragHeld(at);
        return;
    }
    m_pressed.moveTo(at);
    if (m_pressed.isFar(at))
        m_pressed.endLongPress();
    if (m_pressed.gesture() != Gesture::Scroll)
        return;
    QScroller::scroller(&m_viewport)
        ->handleInput(isLifted ? QScroller::InputRelease : QScroller::InputMove, at, time);
    if (isLifted)
        m_pressed.setGesture(Gesture::Done);
}

void TouchGestures::hold()
{
    QScroller::scroller(&m_viewport)->stop();
    m_editor.setFocus(Qt::MouseFocusReason);
    m_isHeld = true;
    m_hasMoved = false;
    m_pointer.hold(m_pressed.lastAt());
    m_handles.show();
}

/// Trembling does not change what was selected.
void TouchGestures::dragHeld(QPointF at)
{
    m_hasMoved = m_hasMoved || m_pressed.isFar(at);
    if (m_hasMoved)
        m_pointer.move(at);
}

void TouchGestures::letGo(QPointF at)
{
    m_isHeld = false;
    m_pointer.release(at);
    m_pressed.setGesture(Gesture::Done);
    if (!m_hasMoved)
        m_pressed.askForMenu();
}

void TouchGestures::end()
{
    if (m_isHeld)
        m_pointer.release(m_pressed.lastAt());
    m_isHeld = false;
    m_pressed.endLongPress();
    m_pressed.setGesture(Gesture::None);
}

void TouchGestures::tap(QPointF at, qint64 time)
{
    m_taps = tapsWith(at, time);
    m_tappedAt = at;
    m_tappedTime = time;
    m_pointer.select(at, unitOfTaps[m_taps - 1]);
    m_pointer.release(at);
    if (m_taps > 1)
        m_handles.show();
    m_editor.setFocus(Qt::MouseFocusReason);
    showKeyboard();
}

int TouchGestures::tapsWith(QPointF at, qint64 time) const
{
    const QStyleHints &hints = *QGuiApplication::styleHints();
    const bool isNear = (at - m_tappedAt).manhattanLength() < hints.startDragDistance();
    const bool isSoon = time - m_tappedTime < hints.mouseDoubleClickInterval();
    return isNear && isSoon && m_taps > 0 ? m_taps % int(std::size(unitOfTaps)) + 1 : 1;
}
