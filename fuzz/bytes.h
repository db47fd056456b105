#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// The bytes that tell a fuzz target what to do, from first to last; behind their end they are 0. Not owned.
class Bytes {
public:
    Bytes(const std::uint8_t *data, std::size_t size)
        : m_next(data)
        , m_end(data + size)
    {
    }
    bool atEnd() const { return m_next == m_end; }
    quint8 next() { return atEnd() ? quint8(0) : *m_next++; }
    qint64 below(qint64 bound) { return next() % bound; }
    /// The next ones, `size` or as many as there are.
    QByteArray take(qint64 size)
    {
        const QByteArray taken(reinterpret_cast<const char *>(m_next), qMin<qint64>(size, m_end - m_next));
        m_next += taken.size();
        return taken;
    }

private:
    const std::uint8_t *m_next;
    const std::uint8_t *m_end;
};

/// Ends the program, which a fuzzer takes for a finding, where the condition does not hold, and says where it
/// stands.
inline void require(
    bool condition, const char *file = __builtin_FILE(), unsigned line = unsigned(__builtin_LINE()))
{
    if (condition)
        return;
    std::fprintf(stderr, "%s:%u: required\n", file, line);
    std::abort();
}
