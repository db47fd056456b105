#pragma once

#include "files/fileversion.h"

/// Reads a file through, step by step, to find out what it has in it.
class ContentReading {
public:
    /// `calls` is not owned.
    ContentReading(QByteArray name, const FileCalls &calls);
    ~ContentReading();
    Q_DISABLE_COPY_MOVE(ContentReading)

    /// Reads on, a few milliseconds at memory speed; false: there is nothing more to read.
    bool step();
    qint64 bytesDone() const { return m_read; }
    /// 0 before the first step.
    qint64 bytesInAll() const { return m_stamp.size; }
    /// When all is read. Nothing where the file could not be read or was written meanwhile.
    const std::optional<SeenContent> &seen() const { return m_seen; }

private:
    bool open();
    bool readBlock();
    void finish();

    const QByteArray m_name;
    const FileCalls &m_calls;
    int m_file = -1;
    FileStamp m_stamp;
    QByteArray m_block;
    ContentHash m_hash;
    qint64 m_read = 0;
    std::optional<SeenContent> m_seen;
};
