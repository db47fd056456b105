#include "text/rowruler.h"

#include "text/leaflayout.h"

namespace {

/// For each of 0..count the first place at or behind it for which `wanted` holds, else count.
template <typename Wanted> void nextPlaces(std::vector<qint32> &places, qint64 count, Wanted wanted)
{
    places.resize(size_t(count) + 1);
    qint32 next = qint32(count);
    for (qint64 i = count; i >= 0; --i) {
        if (i < count && wanted(i))
            next = qint32(i);
        places[size_t(i)] = next;
    }
}

} // namespace

void RowRuler::measure(const TextTree &leaf, const TextLayout &layout, qint64 count)
{
    m_limit = layout.limit();
    m_tabStop = layout.tabStop();
    m_x.resize(size_t(count) + 1);
    m_nextTab.clear();
    m_nextWide.clear();
    leafOf(leaf).visit([&](const auto *text) {
        UnitWidths widths(text, leaf.units(), layout);
        Subpixels x = 0;
        bool anyTab = false;
        bool anyFlat = false;
        for (qint64 i = 0; i < count; ++i) {
            m_x[size_t(i)] = x;
            const bool isTab = text[i] == '\t';
            x = isTab ? Reach::nextStop(x, m_tabStop) : x + widths.at(i);
            anyTab |= isTab;
            anyFlat |= x == m_x[size_t(i)];
        }
        m_x[size_t(count)] = x;
        if (anyTab)
            nextPlaces(m_nextTab, count, [&](qint64 i) { return text[i] == '\t'; });
        if (anyFlat)
            nextPlaces(m_nextWide, count, [&](qint64 i) { return m_x[size_t(i)] < m_x[size_t(i + 1)]; });
    });
}

/// The break that unit `across` causes by reaching beyond the limit: before itself, or behind it if it is the
/// row's first character; never before a unit without width.
template <bool Tabs> qint64 RowRuler::legalBreak(qint64 start, Subpixels x, qint64 across) const
{
    qint64 at = xAt<Tabs>(start, x, across) > 0 ? across : across + 1;
    if (!m_nextWide.empty())
        at = m_nextWide[size_t(at)];
    return at < count() ? at : -1;
}

template <bool Tabs> qint64 RowRuler::searchBreak(qint64 start, Subpixels x) const
{
    qint64 low = start;
    qint64 high = count();
    while (low < high) {
        const qint64 middle = (low + high) / 2;
        if (xAt<Tabs>(start, x, middle + 1) > m_limit)
            high = middle;
        else
            low = middle + 1;
    }
    return low < count() ? legalBreak<Tabs>(start, x, low) : -1;
}

/// From the end: the later a row begins, the later it ends.
template <bool Tabs> void RowRuler::follow(RowTable::Entry *rows) const
{
    const qint64 end = count();
    qint64 across = end;
    for (qint64 start = end; start >= 0; --start) {
        while (across > start && xAt<Tabs>(start, 0, across) > m_limit)
            --across;
        const qint64 next = across < end ? legalBreak<Tabs>(start, 0, across) : -1;
        rows[start] = next < 0 ? RowTable::Entry{ 0, qint32(xAt<Tabs>(start, 0, end)) }
                               : RowTable::Entry{ rows[next].breaks + 1, rows[next].exit };
    }
}

qint64 RowRuler::breakAfter(qint64 start, Subpixels x) const
{
    return m_nextTab.empty() ? searchBreak<false>(start, x) : searchBreak<true>(start, x);
}

void RowRuler::followRows(std::vector<RowTable::Entry> &rows) const
{
    rows.resize(m_x.size());
    m_nextTab.empty() ? follow<false>(rows.data()) : follow<true>(rows.data());
}
