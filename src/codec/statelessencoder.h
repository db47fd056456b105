#pragma once

#include "files/byteescape.h"
#include "text/asciiwords.h"

#include <QByteArrayView>

/// What the encoders share whose characters have the same bytes wherever they stand, and that have no code
/// for what UTF-16 writes as a pair. See BlockEncoder.
struct StatelessEncoder {
    static constexpr bool hasByteOrderMark = false;
    static bool isAscii() { return true; }
    static quint64 special(quint64 word) { return asciiwords::highBytes(word); }
    static void unknown(uchar *&out) { *out++ = '?'; }
    static void pair(char16_t, char16_t, uchar *&out) { unknown(out); }
    static void byte(uchar b, uchar *&out) { *out++ = b; }
    static void lone(char16_t, uchar *&out) { unknown(out); }
    static constexpr bool writesPairs = false;
    static bool isEscape(char16_t c) { return isByteEscape(c); }
    static bool admits(char16_t, QByteArrayView, uchar *&) { return true; }
    static void finish(uchar *&) { }
};
