#pragma once

#include "files/filecalls.h"
#include "recovery/journalrecord.h"

/// The file of a journal, while its program writes it. It is locked as long as it is open, so others know by
/// the lock whether somebody still writes it; and it has a journal's name only once it is one, whole and on
/// the disk.
///
/// Errors: false, and error() tells why; the object is of no use then. A file that was not published goes
/// away with it, a published one stays.
class JournalFile {
public:
    /// `calls` is not owned.
    explicit JournalFile(const FileCalls &calls);
    ~JournalFile();
    Q_DISABLE_COPY_MOVE(JournalFile)

    /// Makes the folder (ends in "/"; nobody else may look into it) and a file in it without a journal's
    /// name.
    bool create(const QByteArray &folder);
    bool append(RecordType type, QByteArrayView content);
    /// What was appended is on the disk.
    bool sync();
    /// Gives the file, which is on the disk, a name, in place of another of that name.
    bool publish(const QByteArray &name);
    bool isPublished() const { return m_isPublished; }
    /// It still has a name: nobody has removed it or its folder.
    bool hasName() const;

    qint64 size() const { return m_size + m_buffer.size(); }
    int error() const { return m_error; }

private:
    bool openFolder(const QByteArray &folder);
    bool createOnce(const QByteArray &folder);
    bool flush();
    bool fail();

    const FileCalls &m_calls;
    QByteArray m_name;
    bool m_isPublished = false;
    int m_file = -1;
    qint64 m_size = 0; ///< in the file
    QByteArray m_buffer;
    int m_error = 0;
};
