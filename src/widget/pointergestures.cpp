#include "widget/pointergestures.h"

#include "text/textstore.h"
#include "widget/cursormoves.h"
#include "widget/inputcomposer.h"
#include "widget/pressedpointer.h"
#include "widget/primaryselection.h"
#include "widget/textdrag.h"
#include "widget/textview.h"
#include "widget/viewscroller.h"

#include <QApplication>
#include <QInputMethod>
#include <QMouseEvent>
#include <QTabletEvent>
#include <QWidget>

using Gesture = PressedPointer::Gesture;

static constexpr int autoScrollInterval = 50; ///< ms

void showKeyboard()
{
    QGuiApplication::inputMethod()->show();
}

PointerGestures::PointerGestures(QWidget &editor, const TextStore &store, const TextCursor &cursor,
    const TextView &view, ViewScroller &scroller, PrimarySelection &primary, CursorMoves &moves,
    InputComposer &composer, TextDrag &textDrag, PressedPointer &pointer)
    : m_editor(editor)
    , m_store(store)
    , m_cursor(cursor)
    , m_view(view)
    , m_scroller(scroller)
    , m_primary(primary)
    , m_moves(moves)
    , m_composer(composer)
    , m_textDrag(textDrag)
    , m_pointer(pointer)
    , m_autoScroll(&editor)
{
    m_autoScroll.setInterval(autoScrollInterval);
    QObject::connect(&m_autoScroll, &QTimer::timeout, &m_autoScroll, [this] { autoScroll(); });
}

void PointerGestures::press(const QMouseEvent &event)
{
    const bool isThird = unitOfNextClick(event.position()) == Unit::Line;
    m_pointer.endNextPress();
    press(event.position(), event.modifiers(), isThird ? Unit::Line : Unit::Character);
}

void PointerGestures::doubleClick(const QMouseEvent &event)
{
    press(event.position(), Qt::NoModifier, Unit::Word);
    awaitNextClick();
}

void PointerGestures::press(QPointF at, Qt::KeyboardModifiers modifiers, Unit unit)
{
    m_composer.commit();
    m_unit = unit;
    m_pointer.press(at);
    const CursorPlace place = m_view.placeAt(at);
    const bool extends = unit == Unit::Character && modifiers.testFlag(Qt::ShiftModifier);
    if (unit == Unit::Character && isSelected(place.offset) && !extends) {
        m_pointer.setGesture(Gesture::MaybeDrag);
        return;
    }
    m_pointer.setGesture(Gesture::Select);
    const Offset anchor = m_cursor.anchor().offset;
    m_origin = extends ? TextRange{ anchor, anchor } : unitAt(place.offset);
    if (unit == Unit::Character)
        m_moves.moveTo(place, extends ? Selecting::Extend : Selecting::Drop);
    else
        m_moves.select({ m_origin.start }, { m_origin.end });
}

void PointerGestures::select(QPointF at, Unit unit)
{
    press(at, Qt::NoModifier, unit);
}

void PointerGestures::hold(QPointF at)
{
    m_composer.commit();
    if (isSelected(m_view.placeAt(at).offset))
        m_pointer.setGesture(Gesture::Done);
    else
        select(at, Unit::Word);
}

bool PointerGestures::isSelected(Offset offset) const
{
    const TextRange selected = m_cursor.selection();
    return selected.start <= offset && offset < selected.end;
}

TextRange PointerGestures::unitAt(Offset offset) const
{
    switch (m_unit) {
    case Unit::Character:
        break;
    case Unit::Word:
        return wordAt(m_store, offset);
    case Unit::Line:
        return wholeLineAt(m_store, offset);
    }
    return { offset, offset };
}

/// What another click or tap at a place selects that comes soon after the last one.
PointerGestures::Unit PointerGestures::unitOfNextClick(QPointF at) const
{
    if (!m_pointer.isNextPress(at))
        return Unit::Character;
    return m_unit == Unit::Character ? Unit::Word : Unit::Line;
}

void PointerGestures::awaitNextClick()
{
    if (m_unit == Unit::Line)
        m_pointer.endNextPress();
    else
        m_pointer.awaitNextPress();
}

void PointerGestures::move(QPointF at)
{
    m_pointer.moveTo(at);
    if (m_pointer.isFar(at)) {
        m_pointer.endLongPress();
        m_pointer.endNextPress();
    }
    if (m_pointer.gesture() == Gesture::MaybeDrag && m_pointer.isFar(at)) {
        m_pointer.setGesture(Gesture::Drag);
        if (m_textDrag.start())
            m_pointer.setGesture(Gesture::None);
        return;
    }
    if (m_pointer.gesture() != Gesture::Select)
        return;
    selectTo(at);
    const bool outside = !QRect(0, 0, m_view.width(), m_view.height()).contains(at.toPoint());
    if (!outside)
        m_autoScroll.stop();
    else if (!m_autoScroll.isActive())
        m_autoScroll.start();
}

/// Selects whole units from the one that was pressed to the one at `at`.
void PointerGestures::selectTo(QPointF at)
{
    const CursorPlace place = m_view.placeAt(at);
    if (m_unit == Unit::Character) {
        m_moves.moveTo(place, Selecting::Extend);
        return;
    }
    const TextRange here = unitAt(place.offset);
    if (place.offset < m_origin.start)
        m_moves.select({ m_origin.end }, { here.start });
    else
        m_moves.select({ m_origin.start }, { qMax(m_origin.end, here.end) });
}

/// The further out the pointer, the more rows at a time.
void PointerGestures::autoScroll()
{
    if (m_pointer.gesture() != Gesture::Select) {
        m_autoScroll.stop();
        return;
    }
    const QPointF at = m_pointer.lastAt();
    const auto beyond = [](qreal value, int high) {
        return value < 0 ? value : value > high ? value - high : 0;
    };
    const qreal down = beyond(at.y(), m_view.height() - 1);
    const qreal right = beyond(at.x(), m_view.width() - 1);
    const qint64 rows = qRound64(down / m_view.rowHeight()) + (down > 0) - (down < 0);
    m_scroller.setTop(m_view.top() + rows);
    m_scroller.setLeft(m_view.left() + qRound64(right));
    selectTo(at);
}

void PointerGestures::release(QPointF at)
{
    m_autoScroll.stop();
    m_pointer.endLongPress();
    if (m_pointer.gesture() == Gesture::MaybeDrag)
        m_moves.moveTo(m_view.placeAt(at), Selecting::Drop);
    if (m_pointer.gesture() == Gesture::Select)
        m_primary.offer();
    m_pointer.setGesture(Gesture::None);
}

/// A pen selects like a mouse, whose double clicks the toolkit counts; held still it asks for the context
/// menu. While it drags text its events are left to the toolkit, whose drags are led by the mouse's events
/// that it makes of them.
bool PointerGestures::tablet(const QTabletEvent &event)
{
    const bool isOurs = m_pointer.gesture() != Gesture::None && m_pointer.gesture() != Gesture::Drag;
    switch (event.type()) {
    case QEvent::TabletPress:
        return pressPen(event);
    case QEvent::TabletMove:
        if (isOurs)
            move(event.position());
        return isOurs;
    case QEvent::TabletRelease: {
        const bool isTap = m_pointer.isAwaitingLongPress();
        if (isOurs)
            release(event.position());
        if (isTap)
            showKeyboard();
        return isOurs;
    }
    default:
        return false;
    }
}

bool PointerGestures::pressPen(const QTabletEvent &event)
{
    // The mouse's press that the toolkit then makes of it closes an open menu.
    if (event.button() != Qt::LeftButton || QApplication::activePopupWidget())
        return false;
    m_editor.setFocus(Qt::MouseFocusReason);
    press(event.position(), event.modifiers(), unitOfNextClick(event.position()));
    awaitNextClick();
    m_pointer.awaitLongPress();
    return true;
}
