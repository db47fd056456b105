#include "platform/text/advancetable.h"

#include <algorithm>

AdvanceTable::AdvanceTable(Measure measure)
    : m_measure(std::move(measure))
{
    static const auto unseen = [] {
        std::array<quint16, 256> page;
        page.fill(unknown);
        return page;
    }();
    m_pages.fill(unseen.data());
    for (size_t unit = 0; unit < m_latin1.size(); ++unit) {
        if (unit != '\t' && unit != '\n')
            m_latin1[unit] = quint16(advance(char16_t(unit)));
    }
}

int AdvanceTable::advanceOf(char32_t codePoint) const
{
    if (codePoint <= 0xffff)
        return advance(char16_t(codePoint));
    if (const auto known = m_supplementary.find(codePoint); known != m_supplementary.end())
        return known->second;
    return m_supplementary[codePoint] = measured(codePoint);
}

int AdvanceTable::measureUnit(char16_t unit) const
{
    std::unique_ptr<quint16[]> &page = m_seenPages[unit >> 8];
    if (!page) {
        page = std::make_unique_for_overwrite<quint16[]>(256);
        std::copy_n(m_pages[unit >> 8], 256, page.get());
        m_pages[unit >> 8] = page.get();
    }
    const int width = measured(unit);
    page[unit & 0xff] = quint16(width);
    return width;
}

int AdvanceTable::measured(char32_t codePoint) const
{
    const int width = m_measure(codePoint);
    Q_ASSERT(width >= 0 && width < unknown);
    return width;
}
