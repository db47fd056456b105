#pragma once

#include "jobs/workturns.h"
#include "text/layoutchange.h"
#include "widget/rowformat.h"

#include <QObject>

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
/// in turns of the event loop, and its rows stay those of before until all of it is; or, where that is
/// stopped, until another layout is wanted, or the text is another one.
class ViewLayout : public QObject {
    Q_OBJECT
public:
    ViewLayout(QWidget &editor, EditableText &document, RowFormat &format, TextCursor &cursor, TextView &view,
        RowUpdates &updates, ViewScroller &scroller, CursorFollowers &followers);

    /// One of those has changed. A visible editor is sent a LayoutRequest.
    void setStale();
    /// Brings rows, view and scroll bars up to date, or begins to; the same text stays at the top of the
    /// view. Costs a test where they are, else no more than a short text.
    void update();
    /// Leaves a long text that is measured the rows that it has; nothing where none is.
    void stop();
    /// A text of so many units takes a noticeable time to be laid out.
    static constexpr qint64 longText = qint64{ 4 } << 20;

signals:
    /// A long text is to be measured, or is to be measured by another rule now. Comes whenever somebody asks
    /// about rows.
    void begun();
    /// After a turn; 0 to 100.
    void progressed(int percent);
    /// It is measured no more: it has the new rows, or keeps the old ones.
    void ended();
    /// Comes behind that, where it keeps them for want of memory.
    void failed();

private:
    /// A layout that a long text is on its way to, or would be if it had not been stopped.
    struct Wanted {
        RowFormat format; ///< outlives the rule, which points into it
        LayoutRule rule;
        std::optional<LayoutChange> change; ///< none: it was stopped
    };
    bool canWaitFor(const RowFormat &format) const;
    void layOut(const RowFormat &format);
    void beginChange(const RowFormat &format);
    bool goOn(QDeadlineTimer end);
    void fail();
    void tellProgress();
    void prepareForOtherText();
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
    WorkTurns m_turns; ///< while there is a change
};
