#pragma once

#include "codec/charcode.h"

#include <QList>

/// All codes that there are, by their numbers.
inline QList<CharCode> everyCharCode()
{
    QList<CharCode> codes;
    for (CharCode code = CharCode(0); infoOf(code).code == code; code = CharCode(codes.size()))
        codes << code;
    return codes;
}
