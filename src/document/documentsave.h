#pragma once

#include "document/documentwriter.h"
#include "document/knownfile.h"
#include "files/contentreading.h"
#include "jobs/jobwork.h"

/// One save of a document under way: writes the text that it had when the save began, in any thread, and as a
/// job if wanted.
class DocumentSave : public JobWork {
public:
    /// What is to be known of the text besides that it was written.
    enum class LookFor {
        Nothing,
        Bytes, ///< whether it has undecodable bytes or spellings
    };
    DocumentSave(
        SaveTarget target, WrittenText text, LookFor lookFor, const FileCalls &calls = FileCalls::system());

    /// Some milliseconds, and what the disk takes; false: it is over. Where a file is copied, `isWanted` is
    /// asked between blocks.
    bool makeStep(const std::function<bool()> &isWanted = [] { return true; });
    /// The same, as a job's. Failed: nothing was written, see DocumentWriter.
    Step step(JobTurn &turn) override;
    void giveUp() override { m_writer.giveUp(); }

    const SaveTarget &target() const { return m_target; }
    const TextCodec &codec() const { return *m_text.code.codec; }
    /// When it is over: who was known to have written to the file when its text was taken.
    Overtaken overtaken() const { return m_overtaken; }
    /// The file of which a copy is kept because it was not the expected one when the text took its place;
    /// nothing where it was.
    std::optional<FileStamp> unexpected() const;
    bool isWritten() const { return m_step == DocumentWriter::Step::Written; }
    /// In the file system's own bytes; empty for none.
    QByteArray keptCopy() const { return m_writer.keptCopy(); }
    /// See SafeFile.
    bool isStateFolderMissed() const { return m_writer.isStateFolderMissed(); }
    const FileVersion &version() const { return m_writer.version(); }
    /// Of a text that was written and looked at.
    bool hasBytes() const { return m_hasBytes; }

private:
    JobProgress progress() const;
    void readOld();
    void look();

    const SaveTarget m_target;
    const WrittenText m_text;
    std::optional<ContentReading> m_reading; ///< of the old file, until that is done
    qint64 m_oldDone = 0; ///< bytes of the old file
    qint64 m_oldInAll = 0;
    Overtaken m_overtaken;
    DocumentWriter m_writer;
    DocumentWriter::Step m_step = DocumentWriter::Step::More;
    bool m_isLooking;
    Offset m_looked; ///< so much of the text
    bool m_hasBytes = false;
};
