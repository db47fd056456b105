#include "widget/touchgestures.h"

#include "widget/cursormoves.h"
#include "widget/inputcomposer.h"
#include "widget/pointergestures.h"
#include "widget/pressedpointer.h"
#include "widget/textview.h"

#include <QScroller>
#include <QTouchEvent>
#include <QWidget>

#include <algorithm>

using Gesture = PressedPointer::Gesture;

TouchGestures::TouchGestures(QWidget &editor, QWidget &viewport, const TextView &view, CursorMoves &moves,
    InputComposer &composer, PressedPointer &pointer)
    : m_editor(editor)
    , m_viewport(viewport)
    , m_view(view)
    , m_moves(moves)
    , m_composer(composer)
    , m_pointer(pointer)
{
}

void TouchGestures::touch(const QTouchEvent &event)
{
    QScroller *const scroller = QScroller::scroller(&m_viewport);
    const auto time = qint64(event.timestamp());
    if (event.type() == QEvent::TouchBegin)
        m_finger = event.points().constFirst().id();
    if (event.points().size() > 1)
        m_pointer.endLongPress();
    const auto &points = event.points();
    const auto finger = std::ranges::find(points, m_finger, &QEventPoint::id);
    const bool isKnown = finger != points.end();
    const QPointF at = isKnown ? finger->position() : m_pointer.lastAt();
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
        if (m_pointer.isAwaitingLongPress())
            tap(at);
        end();
        break;
    default:
        scroller->stop();
        end();
    }
}

void TouchGestures::begin(QPointF at)
{
    m_pointer.setGesture(Gesture::Scroll);
    m_pointer.press(at);
    m_pointer.awaitLongPress();
}

/// `isLifted`: the finger that scrolls is gone, others may stay.
void TouchGestures::move(QPointF at, qint64 time, bool isLifted)
{
    m_pointer.moveTo(at);
    if (m_pointer.isFar(at))
        m_pointer.endLongPress();
    if (m_pointer.gesture() != Gesture::Scroll)
        return;
    QScroller::scroller(&m_viewport)
        ->handleInput(isLifted ? QScroller::InputRelease : QScroller::InputMove, at, time);
    if (isLifted)
        m_pointer.setGesture(Gesture::Done);
}

void TouchGestures::end()
{
    m_pointer.endLongPress();
    m_pointer.setGesture(Gesture::None);
}

void TouchGestures::tap(QPointF at)
{
    m_composer.commit();
    m_moves.moveTo(m_view.placeAt(at), Selecting::Drop);
    m_editor.setFocus(Qt::MouseFocusReason);
    showKeyboard();
}
