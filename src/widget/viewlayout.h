#pragma once

#include "text/layoutchange.h"
#include "widget/rowformat.h"

#include <QTimer>

#include <optional>

class CursorFollowers;
class EditableText;
class QWidget;
class RowUpdates;
class TextCursor;
class TextView;
class ViewScroller;

/// Keeps the rows of a document those of the present font, screen, tab width, margin and wrap.
///
/// A change of these lays nothing out, which every further change would undo: that is done once, by whoever
/// next asks about rows, or, while the editor is visible, before the next paint. A long text is measured anew
/// in turns of the event loop, and its rows stay those of before until all of it is.
class ViewLayout {
public:
    ViewLayout(QWidget &editor, EditableText &document, RowFormat &format, TextCursor &cursor, TextView &view,
        RowUpdates &updates, ViewScroller &scroller, CursorFollowers &followers);

    /// One of those has changed. A visible editor is sent a LayoutRequest.
    void setStale();
    /// Brings rows, view and scroll bars up to date, or begins to; the same text stays at the top of the
    /// view. Costs a test where they are, else no more than a short text.
    void update();
    /// A text of so many units takes a noticeable time to be laid out.
    static constexpr qint64 longText = qint64{ 4 } << 20;

private:
    /// A layout that a long text is on its way to.
    struct Wanted {
        RowFormat format; ///< outlives the change, which measures by it
        LayoutChange change;
    };
    bool canWaitFor(const RowFormat &format) const;
    void layOut(const RowFormat &format);
    void beginChange(const RowFormat &format);
    void goOn();
    Offset topOffset() const;
    void show(Offset topOffset);

    QWidget &m_editor;
    EditableText &m_document;
    RowFormat &m_format;
    TextCursor &m_cursor;
    TextView &m_view;
    RowUpdates &m_updates;
    ViewScroller &m_scroller;
    CursorFollowers &m_followers;
    bool m_isStale = true;
    std::optional<Wanted> m_wanted;
    QTimer m_turns; ///< while there is a layout wanted
};
