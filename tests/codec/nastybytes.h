#pragma once

#include <QByteArray>
#include <QRandomGenerator>

#include <initializer_list>
#include <iterator>

inline QByteArray bytesFrom(std::initializer_list<int> values)
{
    QByteArray bytes;
    for (const int value : values)
        bytes += static_cast<char>(value);
    return bytes;
}

/// Bytes of which codecs make mistakes first: leads, trails, shifts, escape sequences and parts of them.
inline QByteArray nastyBytes(QRandomGenerator &random, int most = 60)
{
    static constexpr uchar single[] = { 0x1B, '$', '(', 'B', '@', 'I', 'J', 'D', 'H', 0x0E, 0x0F, ' ', 0x21,
        0x29, 0x30, 0x5C, 0x60, 0x79, 0x7E, 0x7F, '\n', 'a', 0x81, 0x85, 0x87, 0x8E, 0x8F, 0x9F, 0xA1, 0xA2,
        0xA9, 0xAD, 0xB0, 0xCA, 0xE1, 0xE3, 0xED, 0xEE, 0xF0, 0xF4, 0xF9, 0xFA, 0xFC, 0x80, 0xBF, 0xFF,
        0xFE };
    static constexpr const char *sequences[] = { "\x1B(B", "\x1B(J", "\x1B(I", "\x1B$B", "\x1B$@", "\x1B$(D",
        "\x1B(H", "\x1B$(B", "\x1B[0m", "\x81\xCA", "\xEE\xF9", "\xFA\x54", "\xED\x40", "\xF9\xA1",
        "\x8F\xA2\xB7", "0!", "-p" };
    QByteArray bytes;
    for (int left = random.bounded(most); left > 0; --left) {
        const int kind = random.bounded(10);
        if (kind == 0)
            bytes += static_cast<char>(random.bounded(256));
        else if (kind < 4)
            bytes += sequences[random.bounded(int{ std::size(sequences) })];
        else
            bytes += static_cast<char>(single[random.bounded(int{ std::size(single) })]);
    }
    return bytes;
}

/// The same where none is ASCII but CR now and then: only from the start can be told where a character
/// begins.
inline QByteArray nastyHighBytes(QRandomGenerator &random, int most = 60)
{
    static constexpr const char *parts[] = { "\xA4\xA2", "\x8E\xB1", "\x8F\xB0\xA1", "\xE0\x9F", "\x81\x80",
        "\xF0\x90\x80\x80", "\xE3\x81\x82", "\xC3\xA9", "\x8F", "\x8E", "\x81", "\xE0", "\xFC", "\xA0",
        "\x80", "\xA9", "\xAD", "\xFE", "\xF4", "\r" };
    const int kinds = 1 + random.bounded(int{ std::size(parts) });
    const int from = random.bounded(int{ std::size(parts) });
    QByteArray bytes;
    for (int left = random.bounded(most); left > 0; --left)
        bytes += parts[size_t(from + random.bounded(kinds)) % std::size(parts)];
    return bytes;
}
