#pragma once

#include "files/copycontent.h"

#include <QByteArray>
#include <QList>

/// A copy of a file's old content, in the state folder while the file is written over in place.
///
/// Two files: `.marlopad-copy-DIGITS` has the content. A second one, the same name and ".of", comes when all
/// of that is on the disk, and has the name of the file that it is of, with a NUL behind it. So a copy
/// without a name was not finished, and the file is whole.
class OldCopy {
public:
    /// `calls` is not owned.
    explicit OldCopy(const FileCalls &calls);
    ~OldCopy() { remove(); }
    Q_DISABLE_COPY_MOVE(OldCopy)

    /// Copies the content of `file`, which is not a link, and puts it on the disk. False: nothing is left.
    bool make(const QByteArray &file, const CopyWatch &watch = copyAll);
    bool isMade() const { return m_fd != -1; }
    /// make() failed because the file cannot be opened, which the state folder has no part in.
    bool isFileMissed() const { return m_isFileMissed; }
    /// The copy, open for reading.
    int fd() const { return m_fd; }
    off_t size() const { return m_size; }
    /// Also without one.
    void remove();
    /// Leaves the copy where it is, to be found by the next start; returns its name.
    QByteArray leave();
    /// The same under a name that tells the user what it is. Whether the user was told of it is noted beside
    /// it from the first moment on; see files/untoldcopy.h.
    QByteArray keep();

private:
    bool nameFile(const QByteArray &file);
    void forget();

    const FileCalls &m_calls;
    QByteArray m_name;
    QByteArray m_file;
    int m_fd = -1;
    off_t m_size = 0;
    bool m_isFileMissed = false;
};

/// A copy whose program was stopped while it wrote over the file, so that it may be all that is left of it.
struct LostCopy {
    QByteArray name;
    QByteArray file; ///< empty: not known
    qint64 size = 0;
    qint64 time = 0; ///< when it was made, in milliseconds since 1970
};

/// A copy that is to be kept under this name does not have it yet.
bool isBeingKept(const QByteArray &kept, const FileCalls &calls = FileCalls::system());

/// Those in the state folder, the newest first. Removes what is there of saves that came to nothing.
QList<LostCopy> lostCopies(const FileCalls &calls = FileCalls::system());
void removeLostCopy(const QByteArray &name, const FileCalls &calls = FileCalls::system());
