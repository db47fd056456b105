#include "widget/viewscroller.h"

#include "widget/rowformat.h"
#include "widget/rowupdates.h"
#include "widget/textcursor.h"
#include "widget/textview.h"
#include "widget/viewscrollbar.h"

#include <QApplication>
#include <QScopedValueRollback>
#include <QScrollEvent>
#include <QWheelEvent>

#include <cmath>

static constexpr int wheelNotch = 120; ///< eighths of a degree

ViewScroller::ViewScroller(ViewScrollBar &verticalBar, ViewScrollBar &horizontalBar, const RowFormat &format,
    const TextCursor &cursor, TextView &view, RowUpdates &updates)
    : m_verticalBar(verticalBar)
    , m_horizontalBar(horizontalBar)
    , m_format(format)
    , m_cursor(cursor)
    , m_view(view)
    , m_updates(updates)
{
}

void ViewScroller::updateBars()
{
    m_view.updateLast();
    m_rows = ScrollRange(m_view.lastTop().value());
    m_columns = ScrollRange(m_view.lastLeft());
    {
        const QScopedValueRollback telling(m_isTellingBars, true);
        m_verticalBar.setPageStep(m_rows.step(m_view.visibleRows()));
        m_verticalBar.setLast(m_rows.maximum());
        m_horizontalBar.setPageStep(m_columns.step(m_view.width()));
        m_horizontalBar.setSingleStep(m_columns.step(sideStep()));
        m_horizontalBar.setLast(m_columns.maximum());
    }
    setTop(m_view.top());
    setLeft(m_view.left());
}

void ViewScroller::showOnBar(ViewScrollBar &bar, int value)
{
    const QScopedValueRollback telling(m_isTellingBars, true);
    bar.setValue(value);
}

void ViewScroller::setTop(RowIndex row)
{
    const RowIndex before = m_view.top();
    m_view.setTop(row);
    showOnBar(m_verticalBar, m_rows.toBar(m_view.top().value()));
    if (m_view.top() != before)
        m_updates.viewMoved(m_view.top() - before);
}

void ViewScroller::setLeft(qint64 pixels)
{
    const qint64 before = m_view.left();
    m_view.setLeft(pixels);
    showOnBar(m_horizontalBar, m_columns.toBar(m_view.left()));
    if (m_view.left() != before)
        m_updates.updateAll();
}

void ViewScroller::scrollRows(qint64 rows)
{
    setTop(m_view.top() + rows);
}

qint64 ViewScroller::rowsOfPage() const
{
    return qMax<qint64>(1, m_view.visibleRows() - 1);
}

void ViewScroller::turnPage(int pages)
{
    scrollRows(pages * rowsOfPage());
}

/// Logical pixels that one step of the bar or of the wheel takes to the side.
qint64 ViewScroller::sideStep() const
{
    return qMax(1, qRound(2 * m_format.measure().xWidth()));
}

/// Steps and pages of the bar are as long as those of a short row where a value of it stands for many pixels.
void ViewScroller::stepSideways(int action)
{
    const qint64 left = m_view.left();
    const qint64 page = m_view.width();
    switch (action) {
    case QAbstractSlider::SliderSingleStepAdd:
        return setLeft(left + sideStep());
    case QAbstractSlider::SliderSingleStepSub:
        return setLeft(left - sideStep());
    case QAbstractSlider::SliderPageStepAdd:
        return setLeft(left + page);
    case QAbstractSlider::SliderPageStepSub:
        return setLeft(left - page);
    default:
        break;
    }
}

void ViewScroller::followVerticalBar()
{
    if (!m_isTellingBars)
        setTop(RowIndex(m_rows.toPlace(m_verticalBar.value())));
}

void ViewScroller::followHorizontalBar()
{
    if (!m_isTellingBars)
        setLeft(m_columns.toPlace(m_horizontalBar.value()));
}

void ViewScroller::showCursor()
{
    showRow(m_cursor.row());
    showX(m_view.cursorX(), m_cursor.overwrites() ? m_format.measure().xWidth() : cursorWidth);
}

void ViewScroller::showRow(RowIndex row)
{
    const RowIndex top = m_view.top();
    const qint64 page = m_view.visibleRows();
    const RowIndex last = top + page - 1;
    if (row >= top && row <= last)
        return;
    const bool far = row < top - page || row > last + page;
    if (far)
        setTop(row - page / 2);
    else
        setTop(row < top ? row : row - page + 1);
}

void ViewScroller::showX(qreal x, qreal width)
{
    const int view = m_view.width();
    const int margin = m_format.margin();
    const qreal shown = margin + x - qreal(m_view.left());
    if (shown < margin)
        setLeft(qint64(std::floor(x - scrollReserve(view))));
    else if (shown + width > view)
        setLeft(qint64(std::ceil(margin + x + width - view + scrollReserve(view))));
}

void ViewScroller::showPlace(RowCol place)
{
    showRow(place.row);
    showX(m_view.xOf(place), 1);
}

void ViewScroller::wheel(const QWheelEvent &event)
{
    QPoint turned = event.angleDelta();
    if (event.modifiers().testFlag(Qt::ShiftModifier) && turned.x() == 0)
        turned = turned.transposed();
    if (event.phase() == Qt::ScrollBegin || turned.y() * m_wheelRest < 0)
        m_wheelRest = 0;
    const int linesOfNotch = QApplication::wheelScrollLines();
    m_wheelRest += turned.y() * linesOfNotch;
    const int rowsTurned = m_wheelRest / wheelNotch;
    m_wheelRest -= rowsTurned * wheelNotch;
    const qreal pixels = turned.x() * linesOfNotch * 2 * m_format.measure().xWidth() / wheelNotch;
    setTop(m_view.top() - rowsTurned);
    setLeft(m_view.left() - qRound(pixels));
}

void ViewScroller::prepare(QScrollPrepareEvent &event) const
{
    const qreal height = m_view.rowHeight();
    event.setViewportSize(QSizeF(m_view.width(), m_view.height()));
    event.setContentPosRange({ 0, 0, qreal(m_view.lastLeft()), qreal(m_view.lastTop().value()) * height });
    event.setContentPos({ qreal(m_view.left()), qreal(m_view.top().value()) * height });
}

void ViewScroller::scrollTo(const QScrollEvent &event)
{
    const QPointF position = event.contentPos();
    setTop(RowIndex(qRound64(position.y() / m_view.rowHeight())));
    setLeft(qRound64(position.x()));
}
