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
    const qreal tabStop = defaultTabStopCharacters * m_measure->xWidth();
    return { .advances = &m_measure->advances(),
        .tabStop = qMax<Subpixels>(1, m_measure->toSubpixels(tabStop)),
        .limit = m_wraps ? qMax<Subpixels>(1, m_measure->toSubpixels(m_wrapWidth)) : 0 };
}
