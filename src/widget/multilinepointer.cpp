#include "widget/qmultilineedit_p.h"

#include <QApplication>
#include <QGuiApplication>
#include <QInputMethod>
#include <QMouseEvent>
#include <QScroller>
#include <QStyleHints>
#include <QTabletEvent>
#include <QTouchEvent>

namespace {
constexpr int autoScrollInterval = 50; ///< ms

bool movedEnough(QPointF from, QPointF to)
{
    return (to - from).manhattanLength() >= QGuiApplication::styleHints()->startDragDistance();
}
} // namespace

TextRange QMultiLineEdit::Private::unitAt(qint64 offset, Unit unit) const
{
    switch (unit) {
    case Unit::Character:
        break;
    case Unit::Word:
        return wordAt(store, offset);
    case Unit::Line: {
        const LineIndex line = store.lineAt(offset);
        const bool last = line == store.lastLine();
        return { store.lineStart(line), last ? store.length() : store.lineStart(line + 1) };
    }
    }
    return { offset, offset };
}

void QMultiLineEdit::Private::press(QPointF at, Qt::KeyboardModifiers modifiers, Unit unit)
{
    q->commitPreedit();
    pointer.unit = unit;
    pointer.pressedAt = pointer.lastAt = at;
    const CursorPlace place = placeAtPoint(at);
    const TextRange range = marked();
    const bool inMarked = range.start <= place.offset && place.offset < range.end;
    const bool extends = unit == Unit::Character && modifiers.testFlag(Qt::ShiftModifier);
    if (unit == Unit::Character && inMarked && !extends) {
        pointer.gesture = Gesture::MaybeDrag;
        return;
    }
    pointer.gesture = Gesture::Mark;
    pointer.origin = extends ? TextRange{ anchor.offset, anchor.offset } : unitAt(place.offset, unit);
    if (unit == Unit::Character)
        moveTo(place, extends ? Marking::Extend : Marking::Drop);
    else
        mark(pointer.origin.start, pointer.origin.end);
}

QMultiLineEdit::Private::Unit QMultiLineEdit::Private::unitOfNextClick(QPointF at) const
{
    if (!pointer.nextClick.isActive() || movedEnough(pointer.pressedAt, at))
        return Unit::Character;
    return pointer.unit == Unit::Character ? Unit::Word : Unit::Line;
}

void QMultiLineEdit::Private::awaitNextClick()
{
    if (pointer.unit == Unit::Line)
        pointer.nextClick.stop();
    else
        pointer.nextClick.start(QGuiApplication::styleHints()->mouseDoubleClickInterval(), q);
}

void QMultiLineEdit::Private::drag(QPointF at)
{
    pointer.lastAt = at;
    if (movedEnough(pointer.pressedAt, at)) {
        pointer.longPress.stop();
        pointer.nextClick.stop();
    }
    if (pointer.gesture == Gesture::MaybeDrag && movedEnough(pointer.pressedAt, at)) {
        pointer.gesture = Gesture::Drag;
        startDrag();
        return;
    }
    if (pointer.gesture != Gesture::Mark)
        return;
    markTo(at);
    const bool outside = !q->viewport()->rect().contains(at.toPoint());
    if (!outside)
        pointer.autoScroll.stop();
    else if (!pointer.autoScroll.isActive())
        pointer.autoScroll.start(autoScrollInterval, q);
}

/// Marks whole units from the one that was pressed to the one at `at`.
void QMultiLineEdit::Private::markTo(QPointF at)
{
    const CursorPlace place = placeAtPoint(at);
    if (pointer.unit == Unit::Character) {
        moveTo(place, Marking::Extend);
        return;
    }
    const TextRange here = unitAt(place.offset, pointer.unit);
    if (place.offset < pointer.origin.start)
        mark(pointer.origin.end, here.start);
    else
        mark(pointer.origin.start, qMax(pointer.origin.end, here.end));
}

/// The further out the pointer, the more rows at a time.
void QMultiLineEdit::Private::autoScroll()
{
    const QRect view = q->viewport()->rect();
    const QPointF at = pointer.lastAt;
    const auto beyond = [](qreal value, int low, int high) {
        return value < low ? value - low : value > high ? value - high : 0;
    };
    const qreal down = beyond(at.y(), view.top(), view.bottom());
    const qreal right = beyond(at.x(), view.left(), view.right());
    setTop(top + qRound64(down / measure->height()) + (down > 0) - (down < 0));
    setLeft(left + qRound64(right));
    markTo(at);
}

void QMultiLineEdit::Private::release(QPointF at)
{
    pointer.autoScroll.stop();
    pointer.longPress.stop();
    if (pointer.gesture == Gesture::MaybeDrag)
        moveTo(placeAtPoint(at), Marking::Drop);
    if (pointer.gesture == Gesture::Mark)
        offerPrimary();
    pointer.gesture = Gesture::None;
}

void QMultiLineEdit::Private::longPressed()
{
    pointer.longPress.stop();
    pointer.nextClick.stop();
    pointer.autoScroll.stop();
    pointer.gesture = Gesture::Done;
    showContextMenu(q->viewport()->mapToGlobal(pointer.lastAt.toPoint()));
}

/// A pen marks like a mouse, whose double clicks the toolkit counts; held still it asks for the context menu.
/// While it drags text its events are left to the toolkit, whose drags are led by the mouse's events that it
/// makes of them.
bool QMultiLineEdit::Private::tablet(QTabletEvent &event)
{
    const bool isOurs = pointer.gesture != Gesture::None && pointer.gesture != Gesture::Drag;
    switch (event.type()) {
    case QEvent::TabletPress:
        // The mouse's press that the toolkit then makes of it closes an open menu.
        if (event.button() != Qt::LeftButton || QApplication::activePopupWidget())
            return false;
        q->setFocus(Qt::MouseFocusReason);
        press(event.position(), event.modifiers(), unitOfNextClick(event.position()));
        awaitNextClick();
        pointer.longPress.start(QGuiApplication::styleHints()->mousePressAndHoldInterval(), q);
        return true;
    case QEvent::TabletMove:
        if (isOurs)
            drag(event.position());
        return isOurs;
    case QEvent::TabletRelease: {
        const bool isTap = pointer.longPress.isActive();
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

/// Asks for the keyboard on the screen.
void QMultiLineEdit::Private::showKeyboard() const
{
    if (!readOnly)
        QGuiApplication::inputMethod()->show();
}

void QMultiLineEdit::Private::tap(QPointF at)
{
    q->commitPreedit();
    moveTo(placeAtPoint(at), Marking::Drop);
    q->setFocus(Qt::MouseFocusReason);
    showKeyboard();
}

/// The first finger scrolls and flicks, whether others go along or not; a tap of one finger places the cursor
/// and asks for the keyboard on the screen.
bool QMultiLineEdit::Private::touch(QTouchEvent &event)
{
    QScroller *const scroller = QScroller::scroller(q->viewport());
    const auto time = qint64(event.timestamp());
    if (event.type() == QEvent::TouchBegin)
        pointer.finger = event.points().constFirst().id();
    if (event.points().size() > 1)
        pointer.longPress.stop();
    const QEventPoint *const finger = event.pointById(pointer.finger);
    const QPointF at = finger ? finger->position() : pointer.lastAt;
    switch (event.type()) {
    case QEvent::TouchBegin:
        beginTouch(at);
        scroller->handleInput(QScroller::InputPress, at, time);
        break;
    case QEvent::TouchUpdate:
        moveTouch(at, time, !finger || finger->state() == QEventPoint::Released);
        break;
    case QEvent::TouchEnd:
        scroller->handleInput(QScroller::InputRelease, at, time);
        if (pointer.longPress.isActive())
            tap(at);
        endTouch();
        break;
    default:
        scroller->stop();
        endTouch();
    }
    return true;
}

void QMultiLineEdit::Private::beginTouch(QPointF at)
{
    pointer.gesture = Gesture::Scroll;
    pointer.pressedAt = pointer.lastAt = at;
    pointer.longPress.start(QGuiApplication::styleHints()->mousePressAndHoldInterval(), q);
}

void QMultiLineEdit::Private::moveTouch(QPointF at, qint64 time, bool isLifted)
{
    pointer.lastAt = at;
    if (movedEnough(pointer.pressedAt, at))
        pointer.longPress.stop();
    if (pointer.gesture != Gesture::Scroll)
        return;
    QScroller::scroller(q->viewport())
        ->handleInput(isLifted ? QScroller::InputRelease : QScroller::InputMove, at, time);
    if (isLifted)
        pointer.gesture = Gesture::Done;
}

void QMultiLineEdit::Private::endTouch()
{
    pointer.longPress.stop();
    pointer.gesture = Gesture::None;
}

bool QMultiLineEdit::Private::scrollPrepare(QScrollPrepareEvent &event)
{
    const qreal height = measure->height();
    event.setViewportSize(q->viewport()->size());
    event.setContentPosRange({ 0, 0, qreal(columns.last()), qreal(rows.last()) * height });
    event.setContentPos({ qreal(left), qreal(top) * height });
    event.accept();
    return true;
}

bool QMultiLineEdit::Private::scrollTo(QScrollEvent &event)
{
    const QPointF position = event.contentPos();
    setTop(qRound64(position.y() / measure->height()));
    setLeft(qRound64(position.x()));
    event.accept();
    return true;
}

void QMultiLineEdit::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::MiddleButton)
        d->pastePrimary(event->position());
    if (event->button() != Qt::LeftButton)
        return;
    const bool isThird = d->unitOfNextClick(event->position()) == Private::Unit::Line;
    d->pointer.nextClick.stop();
    d->press(event->position(), event->modifiers(), isThird ? Private::Unit::Line : Private::Unit::Character);
}

void QMultiLineEdit::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    d->press(event->position(), Qt::NoModifier, Private::Unit::Word);
    d->awaitNextClick();
}

void QMultiLineEdit::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() & Qt::LeftButton)
        d->drag(event->position());
}

void QMultiLineEdit::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        d->release(event->position());
}
