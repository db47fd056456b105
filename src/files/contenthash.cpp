#include "files/contenthash.h"

#include <QtEndian>

#include <cstring>

namespace {

/// Odd, its bits well mixed; each step can be undone, so no change of one word is ever lost.
constexpr quint64 factor = 0x9E3779B97F4A7C15;

quint64 step(quint64 sum, quint64 word)
{
    const quint64 mixed = (sum ^ word) * factor;
    return mixed ^ (mixed >> 32);
}

} // namespace

void ContentHash::add(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const qsizetype pending = m_size % blockBytes;
        const qint64 room = segment - m_size % segment;
        const qsizetype whole = pending == 0 ? qMin<qint64>(room, bytes.size()) / blockBytes * blockBytes : 0;
        const qsizetype taken = whole > 0 ? whole : qMin(blockBytes - pending, bytes.size());
        if (whole > 0) {
            addBlocks(bytes.first(whole));
        } else {
            memcpy(m_rest.data() + pending, bytes.data(), size_t(taken));
            if (pending + taken == blockBytes)
                addBlocks(m_rest);
        }
        m_size += taken;
        bytes = bytes.sliced(taken);
        if (taken == room)
            endSegment();
    }
}

/// Written out, so that the lanes stay in registers.
void ContentHash::addBlocks(QByteArrayView blocks)
{
    auto [one, two, three, four] = m_lanes;
    for (const char *at = blocks.begin(); at < blocks.end(); at += blockBytes) {
        one = step(one, qFromLittleEndian<quint64>(at));
        two = step(two, qFromLittleEndian<quint64>(at + 8));
        three = step(three, qFromLittleEndian<quint64>(at + 16));
        four = step(four, qFromLittleEndian<quint64>(at + 24));
    }
    m_lanes = { one, two, three, four };
}

void ContentHash::endSegment()
{
    m_lastSegment = 0;
    for (const quint64 lane : m_lanes)
        m_lastSegment = step(m_lastSegment, lane);
    m_segments = step(m_segments, m_lastSegment);
    m_lanes = firstLanes;
}

quint64 ContentHash::ended(quint64 segments) const
{
    quint64 sum = segments;
    for (const quint64 lane : m_lanes)
        sum = step(sum, lane);
    const qsizetype pending = m_size % blockBytes;
    std::array<char, blockBytes> rest{};
    memcpy(rest.data(), m_rest.data(), size_t(pending));
    for (size_t i = 0; i < m_lanes.size(); ++i)
        sum = step(sum, qFromLittleEndian<quint64>(rest.data() + i * sizeof(quint64)));
    return step(sum, quint64(pending));
}

quint64 ContentHash::endValue() const
{
    return ended(m_size >= segment ? step(noSegments, m_lastSegment) : noSegments);
}
