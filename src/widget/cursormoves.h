#pragma once

#include "widget/textcursor.h"

class CursorFollowers;
class PrimarySelection;
class RowUpdates;
class EditableText;
class TextStore;
class TextView;
class ViewScroller;

/// Moves the cursor and selects, as keys, gestures and programs ask for it: the rows that look different are
/// painted, the view goes along, and everybody who follows the cursor is told.
class CursorMoves {
public:
    CursorMoves(EditableText &document, TextCursor &cursor, const TextView &view, RowUpdates &updates,
        ViewScroller &scroller, PrimarySelection &primary, CursorFollowers &followers);

    /// One step of the cursor; what is then selected by Extend is offered as the primary selection.
    void moveBy(Move move, Selecting selecting);
    /// To a place, which comes into view.
    void moveTo(CursorPlace place, Selecting selecting);
    /// Selects the text from `from` to `to`, where the cursor goes and which comes into view.
    void select(CursorPlace from, CursorPlace to);
    /// Does not scroll.
    void selectAll();

    /// While an operation is under way moves change the cursor alone; its end shows where that is.
    void setQuiet(bool quiet) { m_isQuiet = quiet; }

private:
    CursorPlace target(Move move);
    CursorPlace targetOfRows(qint64 rows);
    void set(CursorPlace place, CursorPlace anchor);

    EditableText &m_document;
    const TextStore &m_store;
    TextCursor &m_cursor;
    const TextView &m_view;
    RowUpdates &m_updates;
    ViewScroller &m_scroller;
    PrimarySelection &m_primary;
    CursorFollowers &m_followers;
    bool m_isQuiet = false;
};
