#include "platform/fingerscrolling.h"

#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QCoreApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QScroller>

#include <utility>

namespace {

bool canScroll(const QAbstractScrollArea &area)
{
    const auto hasRoom = [](const QScrollBar *bar) { return bar->maximum() > bar->minimum(); };
    return hasRoom(area.horizontalScrollBar()) || hasRoom(area.verticalScrollBar());
}

bool isDraggedItself(const QWidget *widget)
{
    return qobject_cast<const QAbstractSlider *>(widget) || qobject_cast<const QHeaderView *>(widget);
}

/// The nearest one that has more than it shows.
QAbstractScrollArea *areaAround(QWidget *widget)
{
    for (; widget && !widget->isWindow() && !isDraggedItself(widget); widget = widget->parentWidget()) {
        auto *const area = qobject_cast<QAbstractScrollArea *>(widget->parentWidget());
        if (area && area->viewport() == widget && !isDraggedItself(area) && canScroll(*area))
            return area;
    }
    return nullptr;
}

/// A list may count its rows instead; what is in view stays there.
void letScrollByPixels(QAbstractScrollArea *area)
{
    if (auto *const view = qobject_cast<QAbstractItemView *>(area)) {
        view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    }
}

/// By places in the area: its viewport moves a little when it is dragged beyond its end.
void scroll(QAbstractScrollArea &area, QScroller::Input input, const QMouseEvent &event)
{
    QScroller::scroller(area.viewport())
        ->handleInput(input, area.mapFromGlobal(event.globalPosition()), qint64(event.timestamp()));
}

QScroller::State stateOf(const QAbstractScrollArea &area)
{
    return QScroller::scroller(area.viewport())->state();
}

} // namespace

FingerScrolling::FingerScrolling(QObject *application)
    : QObject(application)
{
    application->installEventFilter(this);
}

FingerScrolling::~FingerScrolling() = default;

bool FingerScrolling::eventFilter(QObject *object, QEvent *event)
{
    const QEvent::Type type = event->type();
    const bool isOfMouse = type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick
        || type == QEvent::MouseMove || type == QEvent::MouseButtonRelease;
    if (!isOfMouse || !object->isWidgetType() || m_isTapping)
        return false;
    const auto &mouse = static_cast<const QMouseEvent &>(*event);
    if (mouse.pointerType() != QPointingDevice::PointerType::Finger)
        return isOfFinger(mouse);
    if (type == QEvent::MouseMove)
        return move(mouse);
    return type == QEvent::MouseButtonRelease ? release(mouse) : press(static_cast<QWidget *>(object), mouse);
}

/// Where a finger goes elsewhere than it moved last, the toolkit moves a mouse there first.
bool FingerScrolling::isOfFinger(const QMouseEvent &event)
{
    if (event.type() != QEvent::MouseMove)
        m_area.clear();
    return m_area && event.buttons() == Qt::LeftButton;
}

/// One that stops what is still moving is no tap.
bool FingerScrolling::press(QWidget *pressed, const QMouseEvent &event)
{
    m_press.reset();
    m_area = areaAround(pressed);
    if (!m_area)
        return false;
    letScrollByPixels(m_area);
    if (stateOf(*m_area) != QScroller::Scrolling) {
        m_pressed = pressed;
        m_press.reset(event.clone());
    }
    scroll(*m_area, QScroller::InputPress, event);
    return true;
}

bool FingerScrolling::move(const QMouseEvent &event)
{
    if (!m_area)
        return false;
    scroll(*m_area, QScroller::InputMove, event);
    if (m_press && (stateOf(*m_area) == QScroller::Dragging || isFar(event)))
        m_press.reset();
    return true;
}

bool FingerScrolling::release(const QMouseEvent &event)
{
    if (!m_area)
        return false;
    scroll(*m_area, QScroller::InputRelease, event);
    m_area.clear();
    return !m_press || !tap();
}

/// Also aside, where nothing scrolls.
bool FingerScrolling::isFar(const QMouseEvent &event) const
{
    const QScroller &scroller = *QScroller::scroller(m_area->viewport());
    const qreal start =
        scroller.scrollerProperties().scrollMetric(QScrollerProperties::DragStartDistance).toReal();
    const QPointF moved = event.globalPosition() - m_press->globalPosition();
    const QPointF perMetre = scroller.pixelPerMeter();
    return qAbs(moved.x()) > start * perMetre.x() || qAbs(moved.y()) > start * perMetre.y();
}

/// The press that was held back. False when what it was for is gone by that.
bool FingerScrolling::tap()
{
    const QPointer<QWidget> pressed = m_pressed;
    const std::unique_ptr<QMouseEvent> press = std::move(m_press);
    const QScopedValueRollback<bool> tapping(m_isTapping, true);
    if (pressed)
        QCoreApplication::sendEvent(pressed, press.get());
    return pressed;
}
