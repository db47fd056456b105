#pragma once

#include "codec/charcode.h"

/// Bytes of a file that saving it writes as others, or not at all, though nobody has edited them.
struct RewrittenBytes {
    qint64 nul = 0; ///< 00, written as FF
    qint64 lf = 0; ///< LFs that get another line end
    qint64 cr = 0; ///< CRs that are left out
};

/// How UTF-16 lies in a file.
struct Utf16Form {
    bool isBigEndian = false;
    bool hasMark = false;
    bool operator==(const Utf16Form &) const = default;
};

/// What reading a file has found out about its bytes, beside its text.
struct ReadFindings {
    qint64 undecodableBytes = 0;
    std::optional<CharCode> fittingCode = {}; ///< another code, which all bytes fit
    RewrittenBytes rewritten = {};
    std::optional<Utf16Form> utf16 = {}; ///< it seems to be such a text, whatever it was read as
    std::optional<CharCode> givenCode = {}; ///< it was not detected
};
