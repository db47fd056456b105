#pragma once

#include <QtEndian>

#include <bit>
#include <cstring>

/// Eight bytes or four UTF-16 units at a time: most of any text is ASCII, and this is where it goes fast.
namespace asciiwords {

constexpr int wordSize = 8;

inline quint64 loadWord(const void *from)
{
    quint64 word;
    std::memcpy(&word, from, sizeof word);
    return qFromLittleEndian(word);
}

/// The high bit of each byte that is above 7F.
constexpr quint64 highBytes(quint64 word)
{
    return word & 0x8080808080808080ULL;
}

/// Has a high bit for each byte that equals `byte`; above the lowest such byte others may be flagged too.
constexpr quint64 bytesEqual(quint64 word, uchar byte)
{
    const quint64 difference = word ^ (0x0101010101010101ULL * byte);
    return (difference - 0x0101010101010101ULL) & ~difference & 0x8080808080808080ULL;
}

/// Not 0 when a byte of `word` is below `limit` (<= 0x80); no byte of `word` may be above 7F.
constexpr quint64 bytesLess(quint64 word, uchar limit)
{
    return ~(word + 0x0101010101010101ULL * (0x80U - limit)) & 0x8080808080808080ULL;
}

/// How many bytes lie below the lowest flagged one; 8 when none is flagged.
inline int bytesBelow(quint64 flags)
{
    return std::countr_zero(flags) / wordSize;
}

/// Whether four UTF-16 units are all below 0x80.
constexpr bool isAscii4(quint64 units)
{
    return (units & 0xFF80FF80FF80FF80ULL) == 0;
}

/// From bytes to units or back, in one or two vector instructions.
template <int count, class From, class To> inline void copy(const From *from, To *to)
{
    using Taken __attribute__((vector_size(count * sizeof(From)))) = From;
    using Given __attribute__((vector_size(count * sizeof(To)))) = To;
    Taken taken;
    std::memcpy(&taken, from, sizeof taken);
    const Given given = __builtin_convertvector(taken, Given);
    std::memcpy(to, &given, sizeof given);
}

} // namespace asciiwords
