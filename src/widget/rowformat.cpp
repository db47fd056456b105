#include "widget/rowformat.h"

static int defaultTabStopCharacters = 8;

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
    const auto ruled = [this](qreal width) {
        return qBound<Subpixels>(1, m_measure->toSubpixels(width), LayoutRule::widest);
    };
    return { .advances = &m_measure->advances(),
        .tabStop = ruled(defaultTabStopCharacters * m_measure->xWidth()),
        .limit = m_wraps ? ruled(m_wrapWidth) : 0 };
}
