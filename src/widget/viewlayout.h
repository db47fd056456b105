#pragma once

#include "jobs/workturns.h"
#include "text/layoutchange.h"
#include "widget/rowformat.h"

#include <QObject>

#include <optional>

class CursorFollowers;
class EditableText;
class QAbstractScrollArea;
class RowUpdates;
class TextCursor;
class TextView;
class ViewScroller;

/// Keeps the rows of a document those of the present font, screen, tab width, margin and wrap, and the
/// horizontal scroll bar the one that goes with the rows that are shown.
///
/// A change of these lays nothing out, which every further change would undo: that is done once, by whoever
/// next asks about rows, or, while the editor is visible, before the next paint.
///
/// A long text is measured anew in turns of the event loop. The lines in the view, and some around them, are
/// laid out ahead at once, wherever it goes meanwhile, and the editor has the new font and bar; all other
/// rows stay those of before until the whole text is measured. Where a line in the view is too long for that,
/// the rows, the font and the bar of before are shown. Where measuring is stopped, these come back until
/// another layout is wanted, or the text is another one.
class ViewLayout : public QObject {
    Q_OBJECT
public:
    ViewLayout(QAbstractScrollArea &editor, EditableText &document, RowFormat &format, TextCursor &cursor,
        TextView &view, RowUpdates &updates, ViewScroller &scroller, CursorFollowers &followers);

    /// One of those has changed. A visible editor is sent a LayoutRequest.
    void setStale();
    /// Somebody has set one of those, were it to what it was: a layout that was stopped is begun anew.
    void noteSetting();
    /// When there is a bar beside rows of the present wrap; likewise a setting.
    void setBarPolicy(Qt::ScrollBarPolicy policy);
    /// The view may have gone to other rows. Likewise, where a long text is measured.
    void noteMove();
    /// Brings rows, view and scroll bars up to date, or begins to; the same text stays at the top of the
    /// view. Costs a test where they are, else no more than a short text.
    void update();
    /// The same, and what the view has come to is laid out ahead: before it is painted, and before a key or
    /// the mouse acts on it. Rows are counted anew then, so nobody may be in the middle of something.
    void followView();
    /// By which a text that comes in place of the present one is laid out.
    LayoutRule rule() const;
    /// Leaves a long text that is measured the rows that it has; nothing where none is.
    void stop();
    /// A text of so many units takes a noticeable time to be laid out.
    static constexpr qint64 longText = TextStore::mostAhead;

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
        std::shared_ptr<const FontMeasure> measure; ///< outlives the rule, which points into it
        Qt::ScrollBarPolicy barPolicy;
        LayoutRule rule;
        std::optional<LayoutChange> change; ///< none: it was stopped
    };
    void request();
    bool canWaitFor(const RowFormat &format) const;
    void layOut(const RowFormat &format);
    void beginChange(const RowFormat &format);
    bool goOn(QDeadlineTimer end);
    void showAsBefore();
    void fail();
    void tellProgress();
    void prepareForOtherText();
    bool isViewAhead() const;
    std::optional<TextRange> linesFrom(Offset top) const;
    void showAhead(std::optional<TextRange> lines);
    Offset topOffset() const;
    void show(Offset topOffset);
    void showNew(Offset topOffset);
    void tellOfRows();

    QAbstractScrollArea &m_editor;
    EditableText &m_document;
    RowFormat &m_format;
    TextCursor &m_cursor;
    TextView &m_view;
    RowUpdates &m_updates;
    ViewScroller &m_scroller;
    CursorFollowers &m_followers;
    bool m_isStale = true;
    Qt::ScrollBarPolicy m_setPolicy = Qt::ScrollBarAsNeeded; ///< that was set last
    Qt::ScrollBarPolicy m_barPolicy = Qt::ScrollBarAsNeeded; ///< of the text's rows
    std::shared_ptr<const FontMeasure> m_measure; ///< the text's; the format may have that of lines ahead
    std::optional<Wanted> m_wanted;
    WorkTurns m_turns; ///< while there is a change
};
