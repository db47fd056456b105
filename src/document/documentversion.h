#pragma once

#include "files/fileversion.h"

#include <QByteArray>
#include <QList>

#include <optional>
#include <utility>

/// Who has written to a document's file since the document has read or written it.
enum class Overtaken { No, ByDocument, ByProgram };

/// A file that a document is about to be written over.
struct BeforeWriting {
    FileStamp stamp = FileStamp(); ///< that it has; of no file where there is none
    /// Another document, since this one read or wrote the file or, where it is not this one's own, since this
    /// one began; or another program its own file, or it may have.
    Overtaken overtaken = Overtaken::No;
    /// Who reads the file through (ContentReading) knows more.
    struct Doubt {
        QList<quint64> hashes;
        Overtaken overtaken = Overtaken::No; ///< where it has content of one of these hashes
    };
    std::optional<Doubt> doubt = {};
};

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
    /// until then, empty for none. Cost: a few calls and, where its times say that it may have been changed,
    /// what can be read of the file in passing.
    BeforeWriting beginWriting(const QByteArray &target, const QByteArray &own);
    void endWriting(const QByteArray &target, const FileVersion &written);
    /// Who made such a file out of the one that there was when beginWriting() was called.
    Overtaken writerOf(const FileStamp &file) const;

private:
    using FileId = std::pair<dev_t, ino_t>;
    std::optional<FileStamp> stampAt(const QByteArray &name) const;
    FileChange changeByOthers(const QByteArray &own, FileChange unanswered);

    const FileCalls *m_calls;
    qint64 m_document; ///< which it is; read again it is another one
    FileVersion m_version;
    std::optional<FileStamp> m_acknowledged; ///< of no file, when it was deleted
    FileId m_target;
    qint64 m_begun; ///< the number of writes of all documents at that time; likewise the next
    qint64 m_inStep;
};
