#pragma once

#include "text/textsnapshot.h"

#include <QString>

/// What a snapshot holds, as a string.
inline QString textOf(const TextSnapshot &snapshot)
{
    QString text;
    for (Offset at; at < snapshot.end();) {
        const TextChunk chunk = snapshot.spelledChunkAt(at);
        text += chunk.isLatin1() ? QString::fromLatin1(chunk.latin1) : chunk.utf16.toString();
        at += chunk.size();
    }
    return text;
}
