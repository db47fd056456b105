#pragma once

#include "files/fileversion.h"
#include "files/oldcopy.h"

#include <QByteArrayView>

/// Writes a file in such a way that its name holds either the whole old content or the whole new one.
///
/// The new content goes to a temporary file (mode 0600, a name nobody can foresee, locked) in the same
/// folder, which commit() gives the old file's owner, group, rights, access lists and extended attributes and
/// renames over it, or puts in its place where somebody has removed it meanwhile. Symbolic links are
/// followed: the file a link names is replaced, or made where there is none yet. Where renaming would lose
/// something (further hard links, an owner that cannot be given, a folder that cannot be written) the old
/// file is overwritten in place, after a copy of it was put into the program's state folder, on the disk
/// under its name; the copy goes away when all is written, and brings the old content back when writing
/// fails. Where the program is stopped meanwhile, a later one finds it (lostCopies()), and the temporary file
/// too (removeNotedStrays()). What set-user-id and set-group-id bits writing takes away is set again.
///
/// Errors: open(), write(), sync() and commit() return false; the old file is then whole and nothing else is
/// left behind, with the one exception of keptCopy(). An object that is destroyed without commit() leaves all
/// as it was. Cost: the bytes once to the temporary file, twice more when overwriting in place; no copy in
/// memory.
class SafeFile {
public:
    /// `name` in the file system's own bytes. `calls` is not owned.
    explicit SafeFile(QByteArray name, const FileCalls &calls = FileCalls::system());
    ~SafeFile();
    Q_DISABLE_COPY_MOVE(SafeFile)

    /// Refuses what is no ordinary file (a folder, a FIFO, a device: none is opened) and a file that may not
    /// be written.
    bool open();
    /// Adds bytes at the end.
    bool write(QByteArrayView bytes);
    /// commit() is to leave a copy of the old content in the state folder, and to write nothing when there
    /// can be none: for a file whose content nobody has seen.
    void keepOldContent() { m_keepsOld = true; }
    /// The same, where the file is another one by then or was written: for a file that was looked at when it
    /// had this stamp, of none where there was none.
    void keepUnlessOf(const FileStamp &expected) { m_expected = expected; }
    /// A file that is not there yet is to be for its user alone.
    void makePrivate() { m_isPrivate = true; }
    /// Brings what was added to the disk: commit() is quick then, however much that is.
    bool sync();
    /// Puts the new content in place, on the disk, not only in memory. Where that takes copying, `watch` is
    /// told how far it is; false by it gives up, and puts back what was written over.
    bool commit(const CopyWatch &watch = copyAll);
    /// How many bytes commit() will copy, as far as is known; more are added with what is written. 0 before
    /// open().
    qint64 bytesToCopy() const;
    /// Leaves all as it was.
    void giveUp() { discard(); }

    /// The name of the file that still has the old content: when overwriting in place failed and the old
    /// content could not be put back either, and after a commit() that was to keep it; else empty.
    QByteArray keptCopy() const { return m_keptCopy; }
    /// open() or commit() failed because the state folder could not take what has to be there before the old
    /// file is overwritten.
    bool isStateFolderMissed() const { return m_isStateFolderMissed; }

    /// Of the file that was there before; of none where there was none. Right from commit() on, which other
    /// programs may have been faster than.
    const FileStamp &oldStamp() const { return m_old.stamp; }
    /// What the file is after a commit() that went well.
    const FileVersion &version() const { return m_version; }

private:
    enum class Outcome { Done, Failed, NotPossible };

    bool examineTarget();
    bool examineAgain();
    bool hasOld() const;
    bool isCopyWanted() const;
    bool stageInStateFolder(QByteArrayView fileName);
    bool isWrittenOver() const;
    bool makeCopy(const CopyWatch &watch);
    bool stage();
    bool flush();
    Outcome replace();
    bool giveAttributes();
    bool overwrite(const CopyWatch &watch);
    bool copyOver(int from, off_t size, const CopyWatch &watch);
    void restoreRights();
    void noteVersion(int fd);
    void closeFile(int *fd);
    void discard();

    const FileCalls &m_calls;
    QByteArray m_target; ///< links followed
    QByteArray m_folder; ///< the target's, ending in "/"
    struct Old {
        int fd = -1; ///< open for writing; -1 for a new file
        mode_t rights = 0;
        bool hasOtherNames = false;
        bool isGone = false; ///< somebody has removed it since it was opened
        FileStamp stamp = FileStamp();
    } m_old;
    bool m_keepsOld = false;
    std::optional<FileStamp> m_expected;
    bool m_isPrivate = false;
    struct Staged {
        QByteArray name;
        bool isBeside = true;
        int fd = -1;
        off_t size = 0; ///< bytes in it
    } m_staged;
    QByteArray m_buffer;
    ContentHash m_content; ///< of what is in the staged file
    FileVersion m_version;
    OldCopy m_copy;
    QByteArray m_keptCopy;
    bool m_isStateFolderMissed = false;
};
