#pragma once

#include <QPointF>
#include <QTimer>

#include <functional>

class QWidget;

/// The mouse, pen or finger that is pressed on an editor's viewport, and what it does: one at a time, the
/// last one that was pressed.
class PressedPointer {
public:
    enum class Gesture { None, Select, MaybeDrag, Drag, Scroll, Done };

    explicit PressedPointer(QWidget &viewport);

    Gesture gesture() const { return m_gesture; }
    void setGesture(Gesture gesture) { m_gesture = gesture; }
    /// Points are the viewport's.
    void press(QPointF at);
    void moveTo(QPointF at) { m_lastAt = at; }
    QPointF lastAt() const { return m_lastAt; }
    /// Whether a point is so far from where it was pressed that more than trembling is meant.
    bool isFar(QPointF at) const;

    /// A pen that is held still from now on asks for the context menu, and does nothing more.
    void awaitLongPress();
    /// What is held still from now on does that.
    void awaitLongPress(std::function<void()> held);
    void endLongPress() { m_longPress.stop(); }
    bool isAwaitingLongPress() const { return m_longPress.isActive(); }

    /// Another press that comes soon, and near, may mean more than the first.
    void awaitNextPress();
    void endNextPress() { m_nextPress.stop(); }
    bool isNextPress(QPointF at) const { return m_nextPress.isActive() && !isFar(at); }

    /// Where it is.
    void askForMenu();

private:
    QWidget &m_viewport;
    Gesture m_gesture = Gesture::None;
    QPointF m_pressedAt;
    QPointF m_lastAt;
    std::function<void()> m_held; ///< what a long press does
    QTimer m_longPress; ///< runs only while a pen or finger is held still
    QTimer m_nextPress; ///< runs for the time another press may come in
};
