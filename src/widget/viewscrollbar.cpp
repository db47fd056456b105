#include "widget/viewscrollbar.h"

#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionSlider>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Logical pixels at either end of a slider that look otherwise than its middle: outline and rounded corners.
constexpr int endLength = 4;

bool drawsPlainSlider(const QStyle &style)
{
    return style.name() == u"fusion"_s || style.name() == u"windows"_s;
}

} // namespace

ViewScrollBar::OneChange::OneChange(ViewScrollBar &bar)
    : m_bar(bar)
{
    Q_ASSERT(!bar.m_isChanging);
    m_bar.m_isChanging = true;
    m_bar.m_hasChanged = false;
}

ViewScrollBar::OneChange::~OneChange()
{
    m_bar.m_isChanging = false;
    if (m_bar.m_hasChanged)
        m_bar.sliderChange(SliderValueChange);
}

ViewScrollBar::ViewScrollBar(Qt::Orientation orientation, QWidget *parent)
    : QScrollBar(orientation, parent)
{
    // Opaque: what is below need not be painted with it.
    setAutoFillBackground(true);
}

void ViewScrollBar::setLast(int last)
{
    const bool comesOrGoes = (last > 0) != (maximum() > 0);
    setValue(qMin(value(), last));
    const QSignalBlocker quiet(comesOrGoes ? nullptr : this);
    setRange(0, last);
}

QRect ViewScrollBar::sliderRect() const
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    return style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
}

void ViewScrollBar::sliderChange(SliderChange change)
{
    m_hasChanged = true;
    if (m_isChanging)
        return;
    const QRect before = std::exchange(m_slider, sliderRect());
    const bool scrolled = std::exchange(m_scrolls, minimum() < maximum());
    if (scrolled != m_scrolls || !drawsPlainSlider(*style())) {
        QScrollBar::sliderChange(change);
    } else if (orientation() == Qt::Vertical) {
        updateEnds(before.top(), m_slider.top());
        updateEnds(before.bottom(), m_slider.bottom());
    } else {
        updateEnds(before.left(), m_slider.left());
        updateEnds(before.right(), m_slider.right());
    }
}

/// An end of the slider went from one place along the bar to another.
void ViewScrollBar::updateEnds(int before, int after)
{
    if (before == after)
        return;
    const int from = qMin(before, after) - endLength;
    const int length = qMax(before, after) + endLength - from;
    update(
        orientation() == Qt::Vertical ? QRect(0, from, width(), length) : QRect(from, 0, length, height()));
}

void ViewScrollBar::resizeEvent(QResizeEvent *event)
{
    QScrollBar::resizeEvent(event);
    m_slider = sliderRect();
}
