#pragma once

#include "text/wordbounds.h"

#include <QPointF>
#include <QTimer>

class CursorMoves;
class InputComposer;
class PressedPointer;
class PrimarySelection;
class QMouseEvent;
class QTabletEvent;
class QWidget;
class TextCursor;
class TextDrag;
class TextStore;
class TextView;
class ViewScroller;

/// Asks for the keyboard on the screen.
void showKeyboard();

/// Selecting and dragging by mouse and pen.
class PointerGestures {
public:
    enum class Unit { Character, Word, Line };

    PointerGestures(QWidget &editor, const TextStore &store, const TextCursor &cursor, const TextView &view,
        ViewScroller &scroller, PrimarySelection &primary, CursorMoves &moves, InputComposer &composer,
        TextDrag &textDrag, PressedPointer &pointer);

    /// The left button. A second press soon after one selects a word, a third a line.
    void press(const QMouseEvent &event);
    void doubleClick(const QMouseEvent &event);
    /// What is at a point; move() goes on by such units, release() ends it.
    void select(QPointF at, Unit unit);
    /// A finger is held still: selects the word there, with which move() goes on, or nothing in a selection.
    void hold(QPointF at);
    void move(QPointF at);
    void release(QPointF at);
    /// False for what is the toolkit's to make a mouse's event of.
    bool tablet(const QTabletEvent &event);

private:
    void press(QPointF at, Qt::KeyboardModifiers modifiers, Unit unit);
    bool pressPen(const QTabletEvent &event);
    bool isSelected(Offset offset) const;
    Unit unitOfNextClick(QPointF at) const;
    void awaitNextClick();
    TextRange unitAt(Offset offset) const;
    void selectTo(QPointF at);
    void autoScroll();

    QWidget &m_editor;
    const TextStore &m_store;
    const TextCursor &m_cursor;
    const TextView &m_view;
    ViewScroller &m_scroller;
    PrimarySelection &m_primary;
    CursorMoves &m_moves;
    InputComposer &m_composer;
    TextDrag &m_textDrag;
    PressedPointer &m_pointer;
    Unit m_unit = Unit::Character;
    TextRange m_origin; ///< the word or line that selecting began with
    QTimer m_autoScroll; ///< runs only while selecting beyond the view's edge
};
