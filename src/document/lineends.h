#pragma once

#include "codec/returncode.h"
#include "document/readfindings.h"

#include <QByteArray>

/// Turns the file's line ends into LF in place, before decoding: NUL becomes FF; with CR each CR becomes LF;
/// with CR+LF each CR goes; else nothing. Returns how many bytes it is then. Cost: memory speed.
qsizetype normalizeLineEnds(char *bytes, qsizetype size, ReturnCode returnCode);
/// The same; the array is not reallocated.
void normalizeLineEnds(QByteArray &bytes, ReturnCode returnCode);

/// Counts what a save changes in a file, whose bytes come in order, cut anywhere. Cost: memory speed.
class RewrittenCount {
public:
    void add(QByteArrayView bytes);
    /// If the file is read with these line ends.
    RewrittenBytes with(ReturnCode returnCode) const;

private:
    qint64 m_nuls = 0;
    qint64 m_lineFeeds = 0;
    qint64 m_returns = 0;
    qint64 m_both = 0; ///< LFs behind a CR
    char m_last = 0;
};
