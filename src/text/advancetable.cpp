#include "text/advancetable.h"

#include "text/graphemes.h"

#include <QChar>

#include <algorithm>

namespace {

constexpr size_t unitCount = 0x10000;

std::unique_ptr<quint16[]> unknownWidths()
{
    auto widths = std::make_unique_for_overwrite<quint16[]>(unitCount);
    std::fill_n(widths.get(), unitCount, AdvanceTable::unknown);
    return widths;
}

std::unique_ptr<quint16[]> copyOf(const std::unique_ptr<quint16[]> &widths)
{
    if (!widths)
        return {};
    auto copy = std::make_unique_for_overwrite<quint16[]>(unitCount);
    std::copy_n(widths.get(), unitCount, copy.get());
    return copy;
}

} // namespace

AdvanceTable::AdvanceTable(Measure measure)
    : m_measure(std::move(measure))
    , m_units(unknownWidths())
{
    for (size_t unit = 0; unit < m_latin1.size(); ++unit) {
        if (unit != '\t' && unit != '\n')
            m_latin1[unit] = quint16(advance(char16_t(unit)));
    }
}

AdvanceTable::AdvanceTable(const AdvanceTable &known, Measure measure)
    : m_measure(std::move(measure))
    , m_latin1(known.m_latin1)
    , m_units(copyOf(known.m_units))
    , m_others(copyOf(known.m_others))
    , m_supplementary(known.m_supplementary)
{
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
    if (m_others && m_others[unit] != unknown)
        return m_others[unit];
    const auto width = quint16(measured(unit));
    if (standsAlone(unit))
        return m_units[unit] = width;
    if (!m_others)
        m_others = unknownWidths();
    return m_others[unit] = width;
}

int AdvanceTable::measured(char32_t codePoint) const
{
    const int width = m_measure(codePoint);
    Q_ASSERT(width >= 0 && width < unknown);
    return width;
}
