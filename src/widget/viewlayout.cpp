#include "widget/viewlayout.h"

#include "document/editabletext.h"
#include "platform/turnlength.h"
#include "widget/cursorfollowers.h"
#include "widget/rowupdates.h"
#include "widget/textcursor.h"
#include "widget/textview.h"
#include "widget/viewscroller.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QWidget>

#include <utility>

ViewLayout::ViewLayout(QWidget &editor, EditableText &document, RowFormat &format, TextCursor &cursor,
    TextView &view, RowUpdates &updates, ViewScroller &scroller, CursorFollowers &followers)
    : m_editor(editor)
    , m_document(document)
    , m_format(format)
    , m_cursor(cursor)
    , m_view(view)
    , m_updates(updates)
    , m_scroller(scroller)
    , m_followers(followers)
    , m_turns(
          this, longestTurn, [this](QDeadlineTimer end) { return goOn(end); }, [this] { emit ended(); },
          [this] { fail(); })
{
    connect(&document, &EditableText::aboutToReplace, this, &ViewLayout::prepareForOtherText);
}

void ViewLayout::setStale()
{
    if (!std::exchange(m_isStale, true) && m_editor.isVisible())
        QCoreApplication::postEvent(&m_editor, new QEvent(QEvent::LayoutRequest));
}

void ViewLayout::update()
{
    if (!std::exchange(m_isStale, false))
        return;
    RowFormat format = m_format;
    const auto old = format.setFont(m_editor.font(), m_editor.devicePixelRatioF());
    const bool isLaidOut = format.layoutRule() == m_document.store().layoutRule();
    if (!isLaidOut && canWaitFor(format)) {
        beginChange(format);
    } else {
        m_wanted.reset();
        layOut(format);
    }
    m_updates.updateAll();
    m_followers.tellInputMethod();
}

/// The rows of before can go on being shown where they were shown, and in the same device pixels.
bool ViewLayout::canWaitFor(const RowFormat &format) const
{
    return m_document.longestText() >= longText && m_format.sharedMeasure()
        && m_format.measure().devicePixelRatio() == format.measure().devicePixelRatio();
}

void ViewLayout::layOut(const RowFormat &format)
{
    // The old measure holds the widths that the text is laid out by until the new rule is set.
    const RowFormat old = std::exchange(m_format, format);
    const LayoutRule rule = format.layoutRule();
    if (rule == m_document.store().layoutRule()) {
        m_scroller.updateBars();
        return;
    }
    const Offset top = topOffset();
    m_document.layOut(rule);
    show(top);
}

/// What was stopped is not begun anew, whoever asks for the same.
void ViewLayout::beginChange(const RowFormat &format)
{
    m_scroller.updateBars();
    const LayoutRule rule = format.layoutRule();
    if (m_wanted && m_wanted->rule == rule) {
        m_wanted->format = format;
        return;
    }
    m_wanted.emplace(Wanted{ format, rule, LayoutChange(rule, m_document.store().layout().sizes()) });
    m_turns.start();
    emit begun();
}

/// One turn.
bool ViewLayout::goOn(QDeadlineTimer end)
{
    update();
    if (!m_wanted)
        return true;
    const Offset top = topOffset();
    if (!m_document.layOut(*m_wanted->change, end)) {
        tellProgress();
        return false;
    }
    m_format = m_wanted->format;
    m_wanted.reset();
    show(top);
    m_updates.updateAll();
    m_followers.tellInputMethod();
    return true;
}

/// What is measured by then goes, and the memory that it took.
void ViewLayout::fail()
{
    if (m_wanted)
        m_wanted->change.reset();
    emit ended();
    emit failed();
}

void ViewLayout::stop()
{
    if (!m_turns.isUnderWay())
        return;
    if (m_wanted)
        m_wanted->change.reset();
    m_turns.stop();
    emit ended();
}

/// Of the longest text, with which others that are kept for undoing share most of theirs.
void ViewLayout::tellProgress()
{
    const qint64 measured = qMin(m_wanted->change->measured(), m_document.longestText());
    emit progressed(int(measured * 100 / m_document.longestText()));
}

/// It has no rows yet that it could keep.
void ViewLayout::prepareForOtherText()
{
    if (!m_wanted)
        return;
    m_wanted.reset();
    setStale();
}

Offset ViewLayout::topOffset() const
{
    const TextStore &store = m_document.store();
    return store.row(qMin(m_view.top(), store.lastRow())).start;
}

/// After a change of layout.
void ViewLayout::show(Offset topOffset)
{
    m_cursor.setGoalX(std::nullopt);
    m_view.updateLast();
    m_view.setTop(m_document.store().rowColAt(topOffset).row);
    m_scroller.updateBars();
    if (m_view.isCursorRowVisible(m_view.height()))
        m_scroller.showCursor(); // which may be beside the view now
}
