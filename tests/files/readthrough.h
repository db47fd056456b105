#pragma once

#include "files/contentreading.h"

inline std::optional<SeenContent> readThrough(const QByteArray &name)
{
    ContentReading reading(name, FileCalls::system());
    while (reading.step()) { }
    return reading.seen();
}
