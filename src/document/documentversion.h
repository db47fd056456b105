#pragma once

#include <QByteArray>

#include <utility>

#include <sys/types.h>

/// Knows whether what a document would write over is news to it: several documents of the program may write
/// to one file. A file is its device and inode, whatever its name; names are in the file system's own bytes.
///
/// Memory: what the program has written is remembered for its whole run, a few words for each file.
class DocumentVersion {
public:
    /// A document that begins now, empty.
    DocumentVersion();

    /// The document was read from its file.
    void setRead();
    /// Call before and, if it went well, after the document is written as `target`. `own` is the name it had
    /// until then, empty for none. The result: whether another document has written to the target since this
    /// one read or wrote it or, where it is not this one's own file, since this one began.
    bool beginWriting(const QByteArray &target, const QByteArray &own);
    void endWriting(const QByteArray &target);

private:
    using FileId = std::pair<dev_t, ino_t>;
    static FileId idOf(const QByteArray &name);

    qint64 m_document; ///< which it is; read again it is another one
    FileId m_target;
    qint64 m_begun; ///< the number of writes of all documents at that time; likewise the next
    qint64 m_inStep;
};
