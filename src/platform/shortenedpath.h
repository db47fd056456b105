#pragma once

#include <QString>

class QFontMetrics;

/// `path` in at most `room` pixels, for people to read. The folder loses its middle first, so that the file's
/// own name stays whole; where that has no room either it loses its middle, too. A text without "/" is all
/// name.
QString shortenedPath(const QString &path, const QFontMetrics &metrics, int room);
