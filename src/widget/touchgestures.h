#pragma once

#include <QPointF>

class CursorMoves;
class InputComposer;
class PressedPointer;
class QTouchEvent;
class QWidget;
class TextView;

/// Scrolling, flicking and tapping by fingers.
class TouchGestures {
public:
    TouchGestures(QWidget &editor, QWidget &viewport, const TextView &view, CursorMoves &moves,
        InputComposer &composer, PressedPointer &pointer);

    /// The first finger scrolls and flicks, whether others go along or not; a tap of one finger places the
    /// cursor and asks for the keyboard on the screen.
    void touch(const QTouchEvent &event);

private:
    void begin(QPointF at);
    void move(QPointF at, qint64 time, bool isLifted);
    void end();
    void tap(QPointF at);

    QWidget &m_editor;
    QWidget &m_viewport;
    const TextView &m_view;
    CursorMoves &m_moves;
    InputComposer &m_composer;
    PressedPointer &m_pointer;
    int m_finger = -1; ///< id of the touch point that scrolls
};
