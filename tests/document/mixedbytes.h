#pragma once

#include "tests/codec/nastybytes.h"

#include <QByteArrayList>

/// Text in several codes, line ends of all kinds, and what is none.
inline QByteArray mixedBytes(QRandomGenerator &random)
{
    using namespace Qt::StringLiterals;
    static const QByteArrayList parts{ "a"_ba, "word "_ba, "\n"_ba, "\r\n"_ba, "\r"_ba, "\r\r"_ba,
        QByteArray(1, '\0'), "かな漢字"_ba, "é"_ba, "😀"_ba, "\xE3\x81"_ba, "\x82\xA0\x83\x5C"_ba,
        "\xB1\xB2"_ba, "\x3D\xD8"_ba, "\x00\xDE"_ba, "\xA4\xA2\x8F\xA2\xB7"_ba, "\x1B$B$\"\x1B(B"_ba,
        "\x1B"_ba, "e\u0301"_ba, "\t"_ba };
    static const QByteArrayList marks{ {}, {}, {}, "\xFF\xFE"_ba, "\xFE\xFF"_ba, "\xEF\xBB\xBF"_ba,
        "\0\xFE"_ba };
    const int kinds = 2 + random.bounded(int(parts.size()) - 1);
    QByteArray bytes = marks.at(random.bounded(int(marks.size())));
    for (int left = random.bounded(60); left > 0; --left)
        bytes += random.bounded(12) == 0 ? nastyBytes(random, 4) : parts.at(random.bounded(kinds));
    return bytes;
}
