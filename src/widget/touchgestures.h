#pragma once

#include <QPointF>

class PointerGestures;
class PressedPointer;
class QTouchEvent;
class QWidget;
class SelectionHandles;

/// Scrolling, flicking, tapping and selecting by fingers.
class TouchGestures {
public:
    TouchGestures(QWidget &editor, QWidget &viewport, PressedPointer &pressed, PointerGestures &pointer,
        SelectionHandles &handles);

    /// The first finger scrolls and flicks, whether others go along or not. A tap of one finger places the
    /// cursor and asks for the keyboard on the screen; a second one soon after it selects the word, a third
    /// the line. A finger that is held still selects the word, and more when it then moves; when it does not,
    /// it asks for the context menu as it goes.
    void touch(const QTouchEvent &event);

private:
    void begin(QPointF at);
    void move(QPointF at, qint64 time, bool isLifted);
    void hold();
    void dragHeld(QPointF at);
    void letGo(QPointF at);
    void end();
    void tap(QPointF at, qint64 time);
    int tapsWith(QPointF at, qint64 time) const;

    QWidget &m_editor;
    QWidget &m_viewport;
    PressedPointer &m_pressed;
    PointerGestures &m_pointer;
    SelectionHandles &m_handles;
    int m_finger = -1; ///< id of the touch point that scrolls
    bool m_isHeld = false; ///< was held still, and selects
    bool m_hasMoved = false; ///< since then
    int m_taps = 0; ///< at one place, each soon after the one before
    QPointF m_tappedAt;
    qint64 m_tappedTime = 0; ///< ms
};
