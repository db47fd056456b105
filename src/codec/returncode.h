#pragma once

#include <QByteArrayView>
#include <QLatin1StringView>

#include <optional>

/// Line ends of files; the values are those of settings and requests.
enum class ReturnCode : int {
    None = 0, ///< of a file that is not taken for text
    Cr = 1,
    CrLf = 2,
    Lf = 3,
};

/// What there is to know about a line end.
struct ReturnCodeInfo {
    ReturnCode code;
    QLatin1StringView name; ///< in titles, properties and dialogs, the same in every language
    QByteArrayView bytes; ///< what is written for an LF
};

/// A value outside the enumeration is as None: named "??" and written as LF.
const ReturnCodeInfo &infoOf(ReturnCode code);

/// A request as callers in int make it, where 0 means to keep.
std::optional<ReturnCode> requestedReturnCode(int code);
