#pragma once

#include "text/asciiwords.h"

/// What the decoders share in whose codes a byte below 80 is ASCII unless it goes on from one above 7F. See
/// BlockDecoder.
struct StatelessDecoder {
    static bool isAscii() { return true; }
    static bool isSpecial(uchar byte) { return byte >= 0x80; }
    static quint64 special(quint64 word) { return asciiwords::highBytes(word); }
    static bool endsOpen() { return false; }
};
