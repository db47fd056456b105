#pragma once

#include <QByteArrayView>

#include <memory>

struct XXH3_state_s;

/// Hashes bytes that come in parts; how they were cut does not matter. Tells contents that differ apart, and
/// is no guard against somebody who means to deceive; the same in every process. Cost: memory speed, far
/// above that of disks.
///
/// The end of what came can be asked for alone, so that of a large file which has grown only the end of what
/// was there is to be read again.
class ContentHash {
public:
    static constexpr qint64 segment = qint64{ 8 } << 20; ///< bytes; the end is one or two of these

    void add(QByteArrayView bytes);
    qint64 size() const { return m_size; }
    quint64 value() const { return m_current.hash(m_segments); }

    qint64 endStart() const { return qMax<qint64>(0, m_size / segment - 1) * segment; }
    /// What value() is of the bytes from endStart() on.
    quint64 endValue() const;

private:
    /// The library's state of a hash, as a value.
    class State {
    public:
        State();
        State(const State &other);
        State &operator=(const State &other);
        ~State();

        void add(QByteArrayView bytes);
        /// Of what was added behind what has the hash `before`.
        quint64 hash(quint64 before) const;

    private:
        struct Freed {
            void operator()(XXH3_state_s *state) const;
        };
        std::unique_ptr<XXH3_state_s, Freed> m_state;
    };
    static constexpr quint64 noSegments = 0;

    void endSegment();

    qint64 m_size = 0;
    State m_current; ///< of the bytes behind the full segments
    quint64 m_segments = noSegments; ///< hash of those that are full
    quint64 m_lastSegment = noSegments; ///< of the last one of them alone
};
