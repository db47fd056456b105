#pragma once

#include <qglobal.h>

class CursorMoves;
class QKeyEvent;
class QMultiLineEdit;
class TextEdits;
class ViewScroller;

/// What the keys of an editor do: two tables, of moves and of everything else, and text to write.
class KeyBindings {
public:
    /// Of `edit` the commands are called that a kind of editor may do in its own way.
    KeyBindings(QMultiLineEdit &edit, ViewScroller &scroller, CursorMoves &moves, TextEdits &edits);

    /// Whether a key is the editor's.
    bool handles(const QKeyEvent &event) const;
    /// Does what a key stands for; false where it is not the editor's.
    bool handle(const QKeyEvent &event);

private:
    struct Command;

    QMultiLineEdit &m_edit;
    ViewScroller &m_scroller;
    CursorMoves &m_moves;
    TextEdits &m_edits;
};
