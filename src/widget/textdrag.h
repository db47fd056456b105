#pragma once

#include "text/units.h"

#include <QPointF>
#include <QTimer>

#include <optional>

class QDrag;
class QDropEvent;
class QPainter;
class QWidget;
class RowFormat;
class RowUpdates;
class TextClipboard;
class TextCursor;
class TextEdits;
class TextExchange;
class TextStore;
class TextView;
class ViewScroller;

/// Text that is dragged out of an editor, or over it and dropped.
class TextDrag {
public:
    TextDrag(QWidget &editor, QWidget &viewport, const TextStore &store, const RowFormat &format,
        const TextCursor &cursor, const TextView &view, RowUpdates &updates, ViewScroller &scroller,
        const TextExchange &exchange, const TextClipboard &clipboard, TextEdits &edits);

    /// Drags the selected text; returns when it has been dropped. Other events go on meanwhile, which may
    /// close the editor: false then, and this is gone.
    bool start();

    /// Whether an event brings text to drop. Files are the window's to open, even when they come with their
    /// names as text.
    static bool accepts(const QDropEvent &event);
    /// Text is held over the view, as a move or a copy; over its edge the view goes on.
    Qt::DropAction actionOf(const QDropEvent &event) const;
    void moveOver(QPointF point);
    void leave();
    void drop(const QDropEvent &event);

    /// Where the text would go, if any is held over the view.
    void paintDropPlace(QPainter &painter, const QColor &color) const;

private:
    void setDropOffset(std::optional<Offset> offset);
    void scroll();

    QWidget &m_editor;
    QWidget &m_viewport;
    const TextStore &m_store;
    const RowFormat &m_format;
    const TextCursor &m_cursor;
    const TextView &m_view;
    RowUpdates &m_updates;
    ViewScroller &m_scroller;
    const TextExchange &m_exchange;
    const TextClipboard &m_clipboard;
    TextEdits &m_edits;
    QDrag *m_drag = nullptr; ///< while text is dragged from here
    std::optional<Offset> m_dropOffset; ///< where text would go, if any is held over the view
    QPointF m_dropPoint; ///< where it is held now
    QTimer m_scrolling; ///< runs only while it is held near the view's edge and the view can go on
};
