#pragma once

#include "text/units.h"
#include "widget/scrollrange.h"

class QScrollEvent;
class QScrollPrepareEvent;
class QWheelEvent;
class RowFormat;
class RowUpdates;
class TextCursor;
class TextView;
class ViewScrollBar;

/// Moves a view over its text: by its scroll bars, the wheel, a finger, and to whatever is to be seen.
///
/// The bars show where the view is; they are not its owner. Cost: what comes into view is painted.
class ViewScroller {
public:
    ViewScroller(ViewScrollBar &verticalBar, ViewScrollBar &horizontalBar, const RowFormat &format,
        const TextCursor &cursor, TextView &view, RowUpdates &updates);

    void setTop(RowIndex row);
    void setLeft(qint64 pixels);
    /// Down, or up below 0.
    void scrollRows(qint64 rows);
    /// A page up or down; one row of the last one stays.
    void turnPage(int pages);
    qint64 rowsOfPage() const;
    /// The text, the viewport or what is composed has another size.
    void updateBars();

    void showCursor();
    /// Scrolls as little as needed; a row further away than a page comes to the middle.
    void showRow(RowIndex row);
    /// Scrolls by a quarter of the view at a time, so that typing at its edge does not repaint it with every
    /// key. `x` counts from the row's start, as for TextView.
    void showX(qreal x, qreal width);
    void showPlace(RowCol place);

    /// A bar was moved, or a step or a page of the horizontal one was asked for (a QAbstractSlider's action).
    void followVerticalBar();
    void followHorizontalBar();
    void stepSideways(int action);
    /// Rows for turns of the wheel, with Shift pixels to the side; parts of a row add up.
    void wheel(const QWheelEvent &event);
    /// A finger that scrolls asks how far it may, and where it is.
    void prepare(QScrollPrepareEvent &event) const;
    void scrollTo(const QScrollEvent &event);

private:
    qint64 sideStep() const;
    void showOnBar(ViewScrollBar &bar, int value);

    ViewScrollBar &m_verticalBar;
    ViewScrollBar &m_horizontalBar;
    const RowFormat &m_format;
    const TextCursor &m_cursor;
    TextView &m_view;
    RowUpdates &m_updates;
    ScrollRange m_rows;
    ScrollRange m_columns; ///< of logical pixels
    int m_wheelRest = 0; ///< turned so far, not enough for a row
    bool m_isTellingBars = false; ///< where the view is, which is no reason to move it
};
