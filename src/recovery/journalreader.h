#pragma once

#include "files/filecalls.h"
#include "recovery/journalrecord.h"

/// Reads a journal's records from its start, as far as they are whole. Memory: a few blocks, or the longest
/// record.
class JournalReader {
public:
    /// `file` is open for reading; nothing is owned.
    JournalReader(int file, const FileCalls &calls);

    /// From the start again.
    void rewind();
    /// What follows is the start from now on.
    void startHere() { m_start = offset(); }
    /// Starts with the first record that is whole, wherever that stands: what begins the file is lost. False:
    /// there is none within the first megabytes, which are more than a disk loses at once.
    bool skipDamage();
    /// Nothing behind the last one that is whole.
    std::optional<JournalRecord> next();
    /// Bytes of the file before what is to be read next.
    qint64 offset() const { return m_offset - (m_block.size() - m_used); }
    /// Of the file; 0 where it cannot be asked.
    qint64 size() const;
    /// The file could not be read, and there may be more.
    bool hasFailed() const { return m_hasFailed; }

private:
    bool need(qint64 bytes);
    bool readMagic();

    bool isAtRecord();

    int m_file;
    const FileCalls &m_calls;
    off_t m_start = 0; ///< behind 0 no magic is expected
    off_t m_offset = 0; ///< of what is to be read next
    QByteArray m_block;
    qint64 m_used = 0; ///< bytes of it
    bool m_isStarted = false;
    bool m_hasFailed = false;
};
