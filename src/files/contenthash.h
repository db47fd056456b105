#pragma once

#include <QByteArrayView>

#include <array>

/// Hashes bytes that come in pieces; the pieces do not matter. Tells contents that differ apart, and is no
/// guard against somebody who means to deceive; the same in every process. Cost: memory speed, far above that
/// of disks.
///
/// The end of what came can be asked for alone, so that of a large file which has grown only the end of what
/// was there is to be read again.
class ContentHash {
public:
    static constexpr qint64 segment = qint64{ 8 } << 20; ///< bytes; the end is one or two of these

    void add(QByteArrayView bytes);
    qint64 size() const { return m_size; }
    quint64 value() const { return ended(m_segments); }

    qint64 endStart() const { return qMax<qint64>(0, m_size / segment - 1) * segment; }
    /// What value() is of the bytes from endStart() on.
    quint64 endValue() const;

private:
    static constexpr qsizetype blockBytes = 32;
    using Lanes = std::array<quint64, blockBytes / sizeof(quint64)>;
    static constexpr Lanes firstLanes{ 1, 2, 3, 4 };
    static constexpr quint64 noSegments = 5;

    void addBlocks(QByteArrayView blocks);
    void endSegment();
    quint64 ended(quint64 segments) const;

    qint64 m_size = 0;
    Lanes m_lanes = firstLanes; ///< each hashes one word of every block; they run beside one another
    quint64 m_segments = noSegments; ///< of those that are full
    quint64 m_lastSegment = 0;
    std::array<char, blockBytes> m_rest{}; ///< of an unfinished block
};
