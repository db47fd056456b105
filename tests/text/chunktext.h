#pragma once

#include "text/textstore.h"

#include <QString>

inline QString textOf(const TextChunk &chunk)
{
    return chunk.isLatin1() ? QString::fromLatin1(chunk.latin1) : chunk.utf16.toString();
}
