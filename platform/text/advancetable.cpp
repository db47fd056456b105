#include "platform/text/advancetable.h"

#include <QChar>

#include <algorithm>

namespace {

constexpr size_t unitCount = 0x10000;

} // namespace

AdvanceTable::AdvanceTable(Measure measure)
    : m_measure(std::move(measure))
    , m_units(std::make_unique_for_overwrite<quint16[]>(unitCount))
{
    std::fill_n(m_units.get(), unitCount, unknown);
    m_surrogates.fill(unknown);
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
    if (unit == u'\t' || unit == u'\n')
        return measured(unit);
    quint16 &width = QChar::isSurrogate(unit) ? m_surrogates[unit - 0xd800] : m_units[unit];
    if (width == unknown)
        width = quint16(measured(unit));
    return width;
}

int AdvanceTable::measured(char32_t codePoint) const
{
    const int width = m_measure(codePoint);
    Q_ASSERT(width >= 0 && width < unknown);
    return width;
}
