#include "widget/rowformat.h"

#include <utility>

static int defaultTabStopCharacters = 8;

std::shared_ptr<const FontMeasure> RowFormat::setFont(const QFont &font, qreal devicePixelRatio)
{
    return std::exchange(m_measure, FontMeasure::forFont(font, devicePixelRatio));
}

int RowFormat::defaultTabStop()
{
    return defaultTabStopCharacters;
}

void RowFormat::setDefaultTabStop(int characters)
{
    defaultTabStopCharacters = qMax(1, characters);
}

LayoutRule RowFormat::layoutRule() const
{
    const qreal tabStop = defaultTabStopCharacters * m_measure->xWidth();
    return { .advances = &m_measure->advances(),
        .tabStop = qMax<Subpixels>(1, m_measure->toSubpixels(tabStop)),
        .limit = m_wraps ? qMax<Subpixels>(1, m_measure->toSubpixels(m_wrapWidth)) : 0 };
}
