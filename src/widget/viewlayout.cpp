#include "widget/viewlayout.h"

#include "document/editabletext.h"
#include "platform/turnlength.h"
#include "widget/cursorfollowers.h"
#include "widget/rowupdates.h"
#include "widget/textcursor.h"
#include "widget/textview.h"
#include "widget/viewscroller.h"

#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>

#include <utility>

static constexpr qint64 aroundView = qint64{ 64 } << 10; ///< units that are laid out before and behind it
static constexpr qint64 wrappedView = qint64{ 256 } << 10; ///< units that fill any view with wrapped rows

/// The line that is farthest from `line`, up to `wanted`, and `fits`; or `line` itself.
template <typename Fits> static LineIndex farthest(LineIndex line, LineIndex wanted, const Fits &fits)
{
    while (wanted != line && !fits(wanted))
        wanted = line + (wanted - line) / 2;
    return wanted;
}

ViewLayout::ViewLayout(QAbstractScrollArea &editor, EditableText &document, RowFormat &format,
    TextCursor &cursor, TextView &view, RowUpdates &updates, ViewScroller &scroller,
    CursorFollowers &followers)
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
    connect(&document, &EditableText::changed, this, &ViewLayout::noteMove);
}

void ViewLayout::setStale()
{
    if (!std::exchange(m_isStale, true))
        request();
}

void ViewLayout::noteSetting()
{
    if (m_wanted && !m_wanted->change)
        m_wanted.reset();
    setStale();
}

void ViewLayout::setBarPolicy(Qt::ScrollBarPolicy policy)
{
    m_setPolicy = policy;
    noteSetting();
}

void ViewLayout::noteMove()
{
    if (m_wanted && m_wanted->change)
        request();
}

void ViewLayout::request()
{
    if (m_editor.isVisible())
        QCoreApplication::postEvent(&m_editor, new QEvent(QEvent::LayoutRequest));
}

void ViewLayout::update()
{
    if (!std::exchange(m_isStale, false))
        return;
    RowFormat format = m_format;
    format.setFont(m_editor.font(), m_editor.devicePixelRatioF());
    const bool isLaidOut = format.layoutRule() == m_document.store().layoutRule();
    if (!isLaidOut && canWaitFor(format)) {
        beginChange(format);
    } else {
        m_wanted.reset();
        layOut(format);
    }
    tellOfRows();
}

/// The rows of before can go on being shown where they were shown, and in the same device pixels.
bool ViewLayout::canWaitFor(const RowFormat &format) const
{
    return m_document.longestText() >= longText && m_measure
        && m_measure->devicePixelRatio() == format.measure().devicePixelRatio();
}

void ViewLayout::layOut(const RowFormat &format)
{
    const TextStore &store = m_document.store();
    const LayoutRule rule = format.layoutRule();
    const Offset top = topOffset();
    // Widths that lines ahead were measured by; those of the text are held until it has others.
    const RowFormat old = std::exchange(m_format, format);
    const bool keepsRows = rule == store.layoutRule() && !store.linesAhead();
    if (rule == store.layoutRule())
        m_document.dropAhead();
    else
        m_document.layOut(rule);
    m_measure = m_format.sharedMeasure();
    m_barPolicy = m_setPolicy;
    if (keepsRows) {
        m_scroller.updateBars();
        return;
    }
    showNew(top);
}

/// What was stopped is not begun anew, whoever asks about rows.
void ViewLayout::beginChange(const RowFormat &format)
{
    const LayoutRule rule = format.layoutRule();
    if (m_wanted && m_wanted->rule == rule) {
        m_wanted->barPolicy = m_setPolicy;
        m_scroller.updateBars();
        return;
    }
    const Offset top = topOffset();
    m_wanted.emplace(Wanted{
        format.sharedMeasure(), m_setPolicy, rule, LayoutChange(rule, m_document.store().layout().sizes()) });
    m_turns.start();
    showAhead(linesFrom(top));
    showNew(top);
    emit begun();
}

/// A cursor that was in view stays there.
void ViewLayout::followView()
{
    update();
    if (!m_wanted || !m_wanted->change || isViewAhead())
        return;
    const Offset top = topOffset();
    const std::optional<TextRange> lines = linesFrom(top);
    const std::optional<TextRange> ahead = m_document.store().linesAhead();
    const auto &measure = lines ? m_wanted->measure : m_measure;
    if (lines == ahead && measure == m_format.sharedMeasure())
        return;
    const bool showsCursor = m_view.isCursorRowVisible(m_view.height());
    showAhead(lines);
    show(top);
    if (showsCursor && !m_view.isCursorRowVisible(m_view.height()))
        m_scroller.showCursor();
    tellOfRows();
}

/// With the rows of a page before and behind, to which the next key may lead.
bool ViewLayout::isViewAhead() const
{
    const TextStore &store = m_document.store();
    const std::optional<TextRange> ahead = store.linesAhead();
    if (!ahead)
        return false;
    const qint64 page = m_view.visibleRows();
    const RowIndex first = qMax(RowIndex(), m_view.top() - page);
    const RowIndex last = qMin(m_view.top() + 2 * page, store.lastRow());
    return ahead->start <= store.row(first).start && store.row(last).end() <= ahead->end;
}

/// The lines in a view with that top, and some before and behind. None: they are too long.
std::optional<TextRange> ViewLayout::linesFrom(Offset top) const
{
    const TextStore &store = m_document.store();
    const qint64 page = 1 + qint64(m_view.height() / m_wanted->measure->height());
    const LineIndex line = store.lineAt(top);
    const LineIndex lowest = qMin(line + page, store.lastLine());
    const LineIndex inView = m_wanted->rule.limit == 0
        ? lowest
        : farthest(line, lowest, [&](LineIndex last) { return store.lineEnd(last) - top <= wrappedView; });
    const LineIndex first = farthest(line, qMax(LineIndex(), line - 2 * page),
        [&](LineIndex start) { return top - store.lineStart(start) <= aroundView; });
    const Offset viewEnd = store.lineEnd(inView);
    const LineIndex last = farthest(inView, qMin(inView + 2 * page, store.lastLine()),
        [&](LineIndex end) { return store.lineEnd(end) - viewEnd <= aroundView; });
    const TextRange lines = { store.lineStart(first), store.lineEnd(last) };
    return lines.length() <= TextStore::mostAhead ? std::optional(lines) : std::nullopt;
}

/// Else the rows and the font of before are shown.
void ViewLayout::showAhead(std::optional<TextRange> lines)
{
    if (lines)
        m_document.layOutAhead(*lines, *m_wanted->change);
    else
        m_document.dropAhead();
    m_format.setMeasure(lines ? m_wanted->measure : m_measure);
}

/// One turn.
bool ViewLayout::goOn(QDeadlineTimer end)
{
    update();
    if (!m_wanted)
        return true;
    const Offset top = topOffset();
    const bool isShown = m_document.store().linesAhead().has_value();
    if (!m_document.layOut(*m_wanted->change, end)) {
        tellProgress();
        return false;
    }
    m_measure = m_wanted->measure;
    m_barPolicy = m_wanted->barPolicy;
    m_format.setMeasure(m_measure);
    m_wanted.reset();
    if (isShown)
        show(top);
    else
        showNew(top);
    tellOfRows();
    return true;
}

/// What is measured by then goes, and the memory that it took.
void ViewLayout::showAsBefore()
{
    if (!m_wanted)
        return;
    const Offset top = topOffset();
    m_wanted->change.reset();
    showAhead(std::nullopt);
    showNew(top);
    tellOfRows();
}

void ViewLayout::fail()
{
    showAsBefore();
    emit ended();
    emit failed();
}

LayoutRule ViewLayout::rule() const
{
    return m_wanted ? m_document.store().layoutRule() : m_format.layoutRule();
}

void ViewLayout::stop()
{
    if (!m_turns.isUnderWay())
        return;
    showAsBefore();
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
    showAhead(std::nullopt);
    m_wanted.reset();
    setStale();
}

Offset ViewLayout::topOffset() const
{
    const TextStore &store = m_document.store();
    return store.row(qMin(m_view.top(), store.lastRow())).start;
}

/// Rows are counted anew.
void ViewLayout::show(Offset topOffset)
{
    m_view.updateLast();
    m_view.setTop(m_document.store().rowColAt(topOffset).row);
    m_scroller.updateBars();
}

/// Those that are seen are others.
void ViewLayout::showNew(Offset topOffset)
{
    m_cursor.setGoalX(std::nullopt);
    show(topOffset);
    if (m_view.isCursorRowVisible(m_view.height()))
        m_scroller.showCursor(); // which may be beside the view now
}

void ViewLayout::tellOfRows()
{
    m_editor.setHorizontalScrollBarPolicy(
        m_document.store().linesAhead() ? m_wanted->barPolicy : m_barPolicy);
    m_updates.updateAll();
    m_followers.tellInputMethod();
}
