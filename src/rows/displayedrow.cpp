#include "rows/displayedrow.h"

#include "text/characterstart.h"
#include "text/codepoint.h"
#include "text/textlayout.h"

namespace {

constexpr qint64 segmentLength = 2048;
constexpr qint64 segmentSlack = 64;

qint64 devicePixels(Subpixels width)
{
    return width / subpixelsPerPixel;
}

bool standsAlone(QChar unit, const FontMeasure &measure)
{
    const CharClass found = measure.charClass(unit.unicode());
    return unit == u'\t'
        || (!unit.isSurrogate() && (found == CharClass::Plain || found == CharClass::HexBox));
}

} // namespace

DisplayedRow::DisplayedRow(
    const TextStore &store, RowIndex row, const FontMeasure &measure, const InsertedText &inserted)
    : m_store(store)
    , m_row(row)
    , m_place(store.row(row))
    , m_measure(measure)
    , m_inserted(inserted)
    , m_tabStop(qMax<qint64>(1, devicePixels(store.layoutAt(m_place.start).tabStop())))
{
    Q_ASSERT(inserted.column >= 0 && inserted.column <= m_place.length);
    for (qsizetype at = 0; at < inserted.text.size(); at += unitsOf(codePointAt(inserted.text, at)))
        m_insertedWidth += advance(codePointAt(inserted.text, at));
    const QString start = text(0, qMin<qint64>(length(), 2));
    if (start.isEmpty() || start[0] == u'\t')
        return;
    m_bearing = qRound64(measure.leftBearing(codePointAt(start, 0)) * measure.devicePixelRatio());
    if (m_bearing)
        m_hasTabAtStart = text(0, qMin(length(), segmentLength)).contains(u'\t');
}

QString DisplayedRow::text(qint64 column, qint64 count) const
{
    if (count == 0)
        return {};
    const qint64 insertedEnd = m_inserted.column + m_inserted.text.size();
    const qint64 end = column + count;
    if (m_inserted.text.isEmpty() || end <= m_inserted.column)
        return m_store.text(m_place.start + column, count);
    if (column >= insertedEnd)
        return m_store.text(m_place.start + column - m_inserted.text.size(), count);
    const qint64 from = qMax(column, m_inserted.column);
    const qint64 to = qMin(end, insertedEnd);
    return text(column, from - column) + m_inserted.text.mid(from - m_inserted.column, to - from)
        + text(to, end - to);
}

qint64 DisplayedRow::advance(char32_t codePoint) const
{
    const AdvanceTable &advances = m_measure.advances();
    const bool isUnit = codePoint < 0x10000 && !QChar::isSurrogate(codePoint);
    return devicePixels(isUnit ? advances.advance(char16_t(codePoint)) : advances.advanceOf(codePoint));
}

qint64 DisplayedRow::segmentStart(qint64 segment) const
{
    const qint64 place = segment * segmentLength;
    if (place <= 0 || place >= length())
        return qBound<qint64>(0, place, length());
    const QString before = text(place - segmentSlack, segmentSlack + 1);
    for (qsizetype at = before.size() - 1; at > 0; --at) {
        if (standsAlone(before[at - 1], m_measure) && standsAlone(before[at], m_measure))
            return place - segmentSlack + at;
    }
    return characterStart(place, length(), [this](qint64 from, qint64 count) { return text(from, count); });
}

qint64 DisplayedRow::segmentOf(qint64 column) const
{
    const qint64 inside = qMax<qint64>(0, qMin(column, length() - 1));
    qint64 segment = inside / segmentLength;
    while (inside > 0 && segmentStart(segment + 1) <= inside)
        ++segment;
    return segment;
}

qint64 DisplayedRow::nominalX(qint64 column) const
{
    const qint64 insertedEnd = m_inserted.column + m_inserted.text.size();
    const auto stored = [this](
                            qint64 at) { return devicePixels(m_store.xAt({ .row = m_row, .column = at })); };
    if (column <= m_inserted.column)
        return stored(column);
    if (column >= insertedEnd)
        return stored(column - m_inserted.text.size()) + m_insertedWidth;
    qint64 x = stored(m_inserted.column);
    for (qsizetype at = 0; at < column - m_inserted.column; at += unitsOf(codePointAt(m_inserted.text, at)))
        x += advance(codePointAt(m_inserted.text, at));
    return x;
}

qint64 DisplayedRow::nominalColumn(qint64 x) const
{
    const auto stored = [this](qint64 at) {
        return m_store.columnAt(m_row, qMax<qint64>(0, at) * subpixelsPerPixel);
    };
    const qint64 column = stored(x);
    if (m_inserted.text.isEmpty() || column < m_inserted.column)
        return column;
    return qMax(m_inserted.column, stored(x - m_insertedWidth));
}
