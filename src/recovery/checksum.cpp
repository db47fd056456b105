#include "recovery/checksum.h"

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

quint64 checksumOf(QByteArrayView bytes, quint64 seed)
{
    quint64 sum = step(seed, quint64(bytes.size()));
    const char *at = bytes.data();
    qsizetype left = bytes.size();
    for (; left >= 8; left -= 8, at += 8)
        sum = step(sum, qFromLittleEndian<quint64>(at));
    if (left > 0) {
        char last[8] = {};
        memcpy(last, at, size_t(left));
        sum = step(sum, qFromLittleEndian<quint64>(last));
    }
    return step(sum, factor);
}
