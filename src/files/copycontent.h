#pragma once

#include "files/filecalls.h"

#include <QByteArray>
#include <QByteArrayView>

#include <functional>

inline constexpr qsizetype copiedBlock = 1 << 18; ///< bytes that are moved at once

/// A file's descriptor, or -1; nothing waits for the other end of a pipe.
int openForReading(const FileCalls &calls, const QByteArray &name);
/// Writes all of `bytes`.
bool writeAt(const FileCalls &calls, int fd, QByteArrayView bytes, off_t offset);
/// Reads all of a file, which is at most that long. False: it is longer, or cannot be read.
bool readAll(const FileCalls &calls, int fd, qint64 most, QByteArray *bytes);
/// Is told how many more bytes were copied; false: the rest is not wanted.
using CopyWatch = std::function<bool(qint64 bytes)>;
/// For what is copied in any case.
bool copyAll(qint64 bytes);
/// Copies a file's content from its start; `size` is how much that was. False also where the rest was not
/// wanted.
bool copyContent(const FileCalls &calls, int from, int to, off_t *size, const CopyWatch &watch = copyAll);
