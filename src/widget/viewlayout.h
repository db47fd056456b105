#pragma once

class CursorFollowers;
class QWidget;
class RowFormat;
class RowUpdates;
class TextCursor;
class EditableText;
class TextView;
class ViewScroller;
struct LayoutRule;

/// Keeps the rows of a document those of the present font, screen, tab width, margin and wrap.
///
/// A change of these lays nothing out, which every further change would undo: that is done once, by whoever
/// next asks about rows, or, while the editor is visible, before the next paint.
class ViewLayout {
public:
    ViewLayout(QWidget &editor, EditableText &document, RowFormat &format, TextCursor &cursor, TextView &view,
        RowUpdates &updates, ViewScroller &scroller, CursorFollowers &followers);

    /// One of those has changed. A visible editor is sent a LayoutRequest.
    void setStale();
    /// Brings rows, view and scroll bars up to date; the same text stays at the top of the view. Costs a test
    /// where they are, else the length of the document.
    void update();

private:
    void layOut(const LayoutRule &rule);

    QWidget &m_editor;
    EditableText &m_document;
    RowFormat &m_format;
    TextCursor &m_cursor;
    TextView &m_view;
    RowUpdates &m_updates;
    ViewScroller &m_scroller;
    CursorFollowers &m_followers;
    bool m_isStale = true;
};
