#include "text/spellings.h"

#include <algorithm>
#include <limits>

QByteArrayView Spellings::bytes(qsizetype index) const
{
    const qsizetype begin = index == 0 ? 0 : m_spots[size_t(index - 1)].end;
    return QByteArrayView(m_bytes).sliced(begin, m_spots[size_t(index)].end - begin);
}

qsizetype Spellings::firstFrom(qint64 place) const
{
    return std::ranges::lower_bound(m_spots, place, {}, &Spot::place) - m_spots.begin();
}

void Spellings::append(qint64 place, QByteArrayView bytes)
{
    Q_ASSERT(isEmpty() || m_spots.back().place < place);
    m_bytes.append(bytes);
    m_spots.push_back({ place, m_bytes.size() });
}

void Spellings::append(const Spellings &other, qint64 from, qint64 to, qint64 shift)
{
    const qsizetype end = other.firstFrom(to);
    for (qsizetype i = other.firstFrom(from); i < end; ++i)
        append(other.place(i) + shift, other.bytes(i));
}

Spellings Spellings::part(qint64 from, qint64 to) const
{
    Spellings part;
    part.append(*this, from, to, -from);
    return part;
}

Spellings Spellings::edited(qint64 offset, qint64 removed, qint64 inserted) const
{
    Spellings left;
    left.append(*this, 0, offset, 0);
    left.append(*this, offset + removed, std::numeric_limits<qint64>::max(), inserted - removed);
    return left;
}
