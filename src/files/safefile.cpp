#include "files/safefile.h"

#include "files/endorder.h"
#include "files/fileattributes.h"
#include "files/ownfile.h"
#include "files/stagedfile.h"
#include "files/stagedfolders.h"
#include "files/statefolder.h"

#include <climits>

#include <fcntl.h>

namespace {

constexpr mode_t setIdBits = S_ISUID | S_ISGID;

/// The name of an open file as it is by now; empty where nobody knows.
QByteArray nameNow(const FileCalls &calls, int fd)
{
    const QByteArray link = "/proc/self/fd/" + QByteArray::number(fd);
    QByteArray name(PATH_MAX, Qt::Uninitialized);
    const ssize_t size = calls.readlink(link.constData(), name.data(), size_t(name.size()));
    return size > 0 ? name.first(size) : QByteArray();
}

/// Removes an open file of our own, whose folder somebody may have renamed since it was made.
void removeOwn(const FileCalls &calls, const QByteArray &name, int fd)
{
    if (calls.unlink(name.constData()) == 0 || errno != ENOENT || fd == -1)
        return;
    const QByteArray now = nameNow(calls, fd);
    if (!ownFilePrefix(now).isNull()) // else it has no name any more
        calls.unlink(now.constData());
}

} // namespace

SafeFile::SafeFile(QByteArray name, const FileCalls &calls)
    : m_calls(calls)
    , m_target(std::move(name))
    , m_copy(calls)
{
}

SafeFile::~SafeFile()
{
    discard();
}

bool SafeFile::open()
{
    const auto target = followedLinks(m_target, m_calls);
    if (!target)
        return false;
    m_target = *target;
    m_folder = folderOf(m_target);
    const bool opened = examineTarget() && stage();
    if (!opened)
        discard();
    return opened;
}

bool SafeFile::examineTarget()
{
    struct stat info;
    if (m_calls.stat(m_target.constData(), &info) != 0)
        return errno == ENOENT && !m_target.endsWith('/');
    if (!S_ISREG(info.st_mode))
        return false;
    // Opened although it may only be replaced: who may not write a file may not replace it either.
    m_old.fd = retried([&] {
        return m_calls.open(m_target.constData(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW, 0);
    });
    if (m_old.fd == -1 || m_calls.fstat(m_old.fd, &info) != 0)
        return false;
    m_old.hasOtherNames = info.st_nlink > 1;
    m_old.rights = info.st_mode & permissionBits;
    m_old.stamp = FileStamp(info);
    return S_ISREG(info.st_mode);
}

/// Other programs had all the time that writing took.
bool SafeFile::examineAgain()
{
    struct stat info;
    const bool isThere = m_calls.stat(m_target.constData(), &info) == 0;
    if (isThere && FileStamp(info) == m_old.stamp)
        return true;
    if (!isThere && m_old.fd != -1) {
        m_old.isGone = errno == ENOENT;
        return m_old.isGone;
    }
    closeFile(&m_old.fd);
    m_old = {};
    return examineTarget();
}

bool SafeFile::hasOld() const
{
    return m_old.fd != -1 && !m_old.isGone;
}

bool SafeFile::isCopyWanted() const
{
    return hasOld() && (m_keepsOld || (m_expected && m_old.stamp != *m_expected));
}

/// As far as is known before it is tried.
bool SafeFile::isWrittenOver() const
{
    return hasOld() && (!m_staged.isBeside || m_old.hasOtherNames);
}

qint64 SafeFile::bytesToCopy() const
{
    const qint64 copy = isCopyWanted() || isWrittenOver() ? m_old.stamp.size : 0;
    return copy + (isWrittenOver() ? m_staged.size : 0);
}

bool SafeFile::stage()
{
    const QByteArrayView fileName = QByteArrayView(m_target).sliced(m_target.lastIndexOf('/') + 1);
    noteStagedFolder(m_folder, m_calls);
    m_staged.fd = createOwnFile(m_calls, stagedPrefix(m_folder, fileName), &m_staged.name);
    if (m_staged.fd != -1)
        return true;
    if (m_old.fd == -1 || !isRefusal(errno))
        return false;
    m_isStateFolderMissed = !stageInStateFolder(fileName);
    return !m_isStateFolderMissed;
}

bool SafeFile::stageInStateFolder(QByteArrayView fileName)
{
    m_staged.isBeside = false;
    if (makePrivateFolder(m_calls, stateFolder()))
        m_staged.fd = createOwnFile(m_calls, stagedPrefix(stateFolder(), fileName), &m_staged.name);
    return m_staged.fd != -1;
}

bool SafeFile::makeCopy(const CopyWatch &watch)
{
    const bool isMade = m_copy.make(m_target, watch);
    m_isStateFolderMissed = !isMade && !m_copy.isFileMissed();
    return isMade;
}

bool SafeFile::write(QByteArrayView bytes)
{
    if (m_staged.fd == -1)
        return false;
    m_buffer.append(bytes);
    return m_buffer.size() < copiedBlock || flush();
}

bool SafeFile::flush()
{
    const bool written = writeAt(m_calls, m_staged.fd, m_buffer, m_staged.size);
    m_staged.size += m_buffer.size();
    m_content.add(m_buffer);
    m_buffer.resize(0);
    if (!written)
        discard();
    return written;
}

bool SafeFile::sync()
{
    if (m_staged.fd == -1 || !flush())
        return false;
    if (retried([&] { return m_calls.fsync(m_staged.fd); }) == 0)
        return true;
    discard();
    return false;
}

bool SafeFile::commit(const CopyWatch &watch)
{
    const bool isReady = m_staged.fd != -1 && flush() && examineAgain();
    const bool keepsCopy = isCopyWanted();
    if (!isReady || (keepsCopy && !makeCopy(watch))) {
        discard();
        return false;
    }
    const Outcome outcome = !isWrittenOver() && giveAttributes() ? replace() : Outcome::NotPossible;
    const bool done =
        outcome == Outcome::Done || (outcome == Outcome::NotPossible && hasOld() && overwrite(watch));
    if (done)
        noteVersion(outcome == Outcome::Done ? m_staged.fd : m_old.fd);
    if (done && keepsCopy)
        m_keptCopy = m_copy.keep();
    discard();
    return done;
}

bool SafeFile::giveAttributes()
{
    if (m_old.fd != -1 && copyAttributes(m_calls, m_old.fd, m_staged.fd))
        return true;
    if (hasOld())
        return false;
    if (m_isPrivate) // as the staged file is
        return true;
    int folder = m_calls.open(m_folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    const mode_t mode = modeOfNewFile(m_calls, folder);
    closeFile(&folder);
    return retried([&] { return m_calls.fchmod(m_staged.fd, mode); }) == 0;
}

SafeFile::Outcome SafeFile::replace()
{
    if (retried([&] { return m_calls.fsync(m_staged.fd); }) != 0)
        return Outcome::Failed;
    if (m_calls.rename(m_staged.name.constData(), m_target.constData()) != 0)
        return isRefusal(errno) ? Outcome::NotPossible : Outcome::Failed;
    m_staged.name.clear();
    // The new file has its name by now and there is nothing to take back.
    syncFolder(m_calls, m_folder);
    return Outcome::Done;
}

bool SafeFile::overwrite(const CopyWatch &watch)
{
    if (!m_copy.isMade() && !makeCopy(watch))
        return false;
    const EndOrder::Delay delay; // the file is neither the old nor the new one meanwhile
    const bool written = copyOver(m_staged.fd, m_staged.size, watch);
    if (!written && !copyOver(m_copy.fd(), m_copy.size(), copyAll))
        m_keptCopy = m_copy.leave();
    return written;
}

/// Puts a whole file's content in the place of the old file's. When all of it is there nobody is asked.
bool SafeFile::copyOver(int from, off_t size, const CopyWatch &watch)
{
    qint64 left = size;
    off_t copied = 0;
    const auto watchTheRest = [&](qint64 bytes) {
        left -= bytes;
        return watch(bytes) || left <= 0;
    };
    const bool isCopied = copyContent(m_calls, from, m_old.fd, &copied, watchTheRest) && copied == size
        && retried([&] { return m_calls.ftruncate(m_old.fd, size); }) == 0;
    if (isCopied)
        restoreRights();
    return isCopied && retried([&] { return m_calls.fsync(m_old.fd); }) == 0;
}

/// The system takes set-user-id and set-group-id away when anybody but root writes. Who may write a file but
/// does not own it cannot set them; that is no reason to take the content back.
void SafeFile::restoreRights()
{
    if (m_old.rights & setIdBits)
        retried([&] { return m_calls.fchmod(m_old.fd, m_old.rights); });
}

void SafeFile::noteVersion(int fd)
{
    struct stat info;
    if (m_calls.fstat(fd, &info) == 0)
        m_version = FileVersion(FileStamp(info), m_content);
}

void SafeFile::closeFile(int *fd)
{
    if (*fd != -1)
        m_calls.close(*fd);
    *fd = -1;
}

void SafeFile::discard()
{
    if (!m_staged.name.isEmpty())
        removeOwn(m_calls, m_staged.name, m_staged.fd);
    m_staged.name.clear();
    closeFile(&m_staged.fd);
    closeFile(&m_old.fd);
    m_copy.remove();
}
