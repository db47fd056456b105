#pragma once

#include "files/fileversion.h"

#include <QByteArray>

#include <optional>
#include <utility>

/// Who has written to a document's file since the document has read or written it.
enum class Overtaken { No, ByDocument, ByProgram };

/// Knows whether what a document would write over is news to it: several documents of the program may write
/// to one file, and so may other programs. A file is its device and inode, whatever its name; names are in
/// the file system's own bytes.
///
/// Memory: what the program has written is remembered for its whole run, a few words for each file.
class DocumentVersion {
public:
    /// A document that begins now, empty. `calls` is not owned.
    explicit DocumentVersion(const FileCalls &calls = FileCalls::system());

    /// The document was read from its file.
    void setRead(const FileVersion &version);
    /// More of the file was read, or it is known by other times.
    void setReadOn(const FileVersion &version) { m_version = version; }
    /// The document was to be read from a file that could not be read.
    void setUnread() { setReadOn({}); }
    const FileVersion &known() const { return m_version; }

    /// What another program has done to the file `own` since the document was read or written, by this one or
    /// another of the program's, and that is not acknowledged. Cost: one call where nothing has happened.
    FileChange change(const QByteArray &own);
    /// Somebody has read through the file, for change() was unsure.
    void noteSeen(const SeenContent &seen);
    /// The user knows what the file is now, and keeps the document as it is. A save still counts as one over
    /// what another program has written.
    void acknowledge(const QByteArray &own);

    /// Call before and, if it went well, after the document is written as `target`. `own` is the name it had
    /// until then, empty for none. The result: whether another document has written to the target since this
    /// one read or wrote it or, where it is not this one's own file, since this one began; or whether another
    /// program has changed its own file, or may have. Cost: where its times say that it may have, the file is
    /// read.
    Overtaken beginWriting(const QByteArray &target, const QByteArray &own);
    void endWriting(const QByteArray &target, const FileVersion &written);

private:
    using FileId = std::pair<dev_t, ino_t>;
    std::optional<FileId> idOf(const QByteArray &name) const;
    FileChange changeByOthers(const QByteArray &own, FileVersion::Reading reading);

    const FileCalls *m_calls;
    qint64 m_document; ///< which it is; read again it is another one
    FileVersion m_version;
    std::optional<FileStamp> m_acknowledged; ///< of no file, when it was deleted
    FileId m_target;
    qint64 m_begun; ///< the number of writes of all documents at that time; likewise the next
    qint64 m_inStep;
};
