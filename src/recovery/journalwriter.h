#pragma once

#include "recovery/basereading.h"
#include "recovery/journalfile.h"
#include "recovery/journalwrite.h"

/// Writes the journal of one document, step by step: a long write lets those of other documents come in
/// between. Lives in the thread that writes.
///
/// What failed is not built upon: the write after it makes the file anew, and so does one that finds it much
/// longer than it has to be. A new file takes the old one's name when it is whole and on the disk.
class JournalWriter {
public:
    /// `folder` and `calls` are not owned.
    JournalWriter(const QByteArray &folder, const FileCalls &calls);
    Q_DISABLE_COPY_MOVE(JournalWriter)

    enum class Progress { More, Done, Failed };

    /// Begins a write, which must live until the next one is begun; always of the same base.
    void begin(const JournalWrite &write);
    /// A step of it, of bounded length. Done: it is on the disk. Failed: see error().
    Progress step();
    int error() const { return m_error; }
    /// For a step that was broken off otherwise: some of a record may wait to be written.
    Progress failed(int error);

    /// There is something to do that can wait: to read through the base.
    bool hasLeisureWork() const { return m_write && m_file && !m_hasFailed && !m_baseReading.isDone(); }
    Progress stepAtLeisure();

    /// Gives the write up, and no other is to come.
    void rest();
    /// The same, and others may find the journal.
    void leave();
    /// The document needs its journal no longer.
    void remove();

private:
    bool mustBeNew() const;
    void plan();
    void planParts(const TextChange &change, const TextSnapshot &before, bool fromBase);
    void addPart(const TextPart &part);
    bool startNewFile();
    bool writeSomeParts();
    void writePart(EditWriter &edit);
    bool finish();
    JournalFile &target() { return m_next ? *m_next : *m_file; }

    enum class Source { Committed = 0, Base = 1 };
    enum class Stage { Start, KeepBase, Parts };

    const QByteArray &m_folder;
    const FileCalls &m_calls;
    QByteArray m_name; ///< of the journal; empty until there is to be one
    std::unique_ptr<JournalFile> m_file;
    std::unique_ptr<JournalFile> m_next; ///< that takes the file's place when it is done
    const JournalWrite *m_write = nullptr;
    Stage m_stage = Stage::Start;
    std::vector<TextPart> m_parts; ///< that are still to be written, the next one last
    bool m_hasFailed = false;
    BaseReading m_baseReading;
    qint64 m_compactSize = 0; ///< of the file when it had no more than it has to
    int m_error = 0;
};
