#pragma once

#include "recovery/journaledit.h"
#include "recovery/journalfile.h"
#include "recovery/texthash.h"

/// Reads once through the text that a journal's edits begin with, part by part: for its hash, by which it is
/// known again, and to keep a copy in the journal where it is not too long.
class BaseReading {
public:
    /// Texts up to this many units are kept, for when their file is changed or gone.
    static constexpr qint64 mostKept = qint64{ 8 } << 20;

    static bool isKept(const TextSnapshot &text) { return text.length() <= mostKept; }

    /// From the start, for another file: what was kept was kept in the one before.
    void restart() { *this = BaseReading(); }
    bool isDone() const { return m_isDone; }
    /// There is nothing to be read.
    void skip() { m_isDone = true; }
    /// Reads a part of the text and writes what is to be written; with the last one that all was read. False:
    /// see the file.
    bool step(const TextSnapshot &text, JournalFile &file);
    /// Tells a new file what was read for the one before; of a text that is not kept.
    bool repeat(JournalFile &file) const;

private:
    bool writeEnd(bool isTextKept, JournalFile &file) const;

    Offset m_offset;
    TextHash m_hash;
    bool m_isDone = false;
};
