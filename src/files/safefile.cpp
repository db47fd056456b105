#include "files/safefile.h"

#include "files/fileattributes.h"
#include "files/statefolder.h"

#include <QRandomGenerator>

#include <climits>

#include <fcntl.h>

namespace {

constexpr qsizetype blockSize = 1 << 18;
constexpr mode_t privateFile = 0600;
constexpr mode_t setIdBits = S_ISUID | S_ISGID;

/// Errors that say "not like this", where writing in place may still go.
bool isRefusal(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY || error == EXDEV;
}

} // namespace

SafeFile::SafeFile(QByteArray name, const FileCalls &calls)
    : m_calls(calls)
    , m_target(std::move(name))
{
}

SafeFile::~SafeFile()
{
    discard();
}

bool SafeFile::open()
{
    const bool opened = followLinks() && examineTarget() && stage();
    if (!opened)
        discard();
    return opened;
}

bool SafeFile::followLinks()
{
    constexpr int mostLinks = 40;
    for (int links = 0; links < mostLinks; ++links) {
        QByteArray link(PATH_MAX, Qt::Uninitialized);
        const ssize_t size = m_calls.readlink(m_target.constData(), link.data(), size_t(link.size()));
        m_folder = folderOf(m_target);
        if (size < 0)
            return errno == EINVAL || errno == ENOENT;
        link.truncate(size);
        m_target = link.startsWith('/') ? link : m_folder + link;
    }
    return false;
}

bool SafeFile::examineTarget()
{
    struct stat info;
    if (m_calls.stat(m_target.constData(), &info) != 0)
        return errno == ENOENT && !m_target.endsWith('/');
    if (!S_ISREG(info.st_mode))
        return false;
    // Opened although it may only be replaced: who may not write a file may not replace it either.
    m_old = retried([&] {
        return m_calls.open(m_target.constData(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW, 0);
    });
    if (m_old == -1 || m_calls.fstat(m_old, &info) != 0)
        return false;
    m_hasOtherNames = info.st_nlink > 1;
    m_oldRights = info.st_mode & permissionBits;
    return S_ISREG(info.st_mode);
}

bool SafeFile::stage()
{
    m_staged = createIn(m_folder, &m_stagedName);
    if (m_staged != -1)
        return true;
    if (m_old == -1 || !isRefusal(errno) || !makePrivateFolder(m_calls, stateFolder()))
        return false;
    m_stagedBeside = false;
    m_staged = createIn(stateFolder(), &m_stagedName);
    return m_staged != -1;
}

int SafeFile::createIn(const QByteArray &folder, QByteArray *name)
{
    constexpr int mostAttempts = 16;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const quint64 random = QRandomGenerator::system()->generate64();
        const QByteArray candidate = folder + ".marlopad-" + QByteArray::number(random, 36);
        const int fd = retried([&] {
            return m_calls.open(candidate.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, privateFile);
        });
        if (fd != -1)
            *name = candidate;
        if (fd != -1 || errno != EEXIST)
            return fd;
    }
    return -1;
}

bool SafeFile::write(QByteArrayView bytes)
{
    if (m_staged == -1)
        return false;
    m_buffer.append(bytes);
    return m_buffer.size() < blockSize || flush();
}

bool SafeFile::flush()
{
    const bool written = writeAt(m_staged, m_buffer, m_size);
    m_size += m_buffer.size();
    m_buffer.resize(0);
    if (!written)
        discard();
    return written;
}

bool SafeFile::writeAt(int fd, QByteArrayView bytes, off_t offset)
{
    while (!bytes.isEmpty()) {
        const ssize_t written =
            retried([&] { return m_calls.pwrite(fd, bytes.data(), size_t(bytes.size()), offset); });
        if (written <= 0)
            return false;
        bytes = bytes.sliced(written);
        offset += written;
    }
    return true;
}

bool SafeFile::commit()
{
    QByteArray aside;
    if (m_staged == -1 || !flush() || !putAside(&aside)) {
        discard();
        return false;
    }
    const bool mayReplace = m_old == -1 || (m_stagedBeside && !m_hasOtherNames);
    const Outcome outcome = mayReplace && giveAttributes() ? replace() : Outcome::NotPossible;
    const bool done =
        outcome == Outcome::Done || (outcome == Outcome::NotPossible && m_old != -1 && overwrite());
    discard();
    if (done)
        m_keptCopy = aside;
    else if (!aside.isEmpty())
        m_calls.unlink(aside.constData());
    return done;
}

/// Makes the copy that keepOldContent() asks for; there is nothing to copy of a new file.
bool SafeFile::putAside(QByteArray *name)
{
    if (!m_keepsOld || m_old == -1)
        return true;
    off_t size = 0;
    int copy = copyOldContent(name, &size);
    const bool isCopied = copy != -1;
    closeFile(&copy);
    return isCopied;
}

bool SafeFile::giveAttributes()
{
    if (m_old != -1)
        return copyAttributes(m_calls, m_old, m_staged);
    int folder = m_calls.open(m_folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    const mode_t mode = modeOfNewFile(m_calls, folder);
    closeFile(&folder);
    return retried([&] { return m_calls.fchmod(m_staged, mode); }) == 0;
}

SafeFile::Outcome SafeFile::replace()
{
    if (retried([&] { return m_calls.fsync(m_staged); }) != 0)
        return Outcome::Failed;
    if (m_calls.rename(m_stagedName.constData(), m_target.constData()) != 0)
        return isRefusal(errno) ? Outcome::NotPossible : Outcome::Failed;
    m_stagedName.clear();
    // The new file has its name by now and there is nothing to take back.
    syncFolder(m_calls, m_folder);
    return Outcome::Done;
}

bool SafeFile::overwrite()
{
    QByteArray keptName;
    off_t oldSize = 0;
    int kept = copyOldContent(&keptName, &oldSize);
    if (kept == -1)
        return false;
    const bool written = copyOver(m_staged, m_size);
    if (written || copyOver(kept, oldSize))
        m_calls.unlink(keptName.constData());
    else
        m_keptCopy = keptName;
    closeFile(&kept);
    return written;
}

int SafeFile::copyOldContent(QByteArray *name, off_t *size)
{
    int old =
        retried([&] { return m_calls.open(m_target.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW, 0); });
    int kept = old != -1 && makePrivateFolder(m_calls, stateFolder()) ? createIn(stateFolder(), name) : -1;
    if (kept != -1
        && (!copyAll(old, kept, size) || retried([&] { return m_calls.fsync(kept); }) != 0
            || !syncFolder(m_calls, stateFolder()))) {
        m_calls.unlink(name->constData());
        closeFile(&kept);
    }
    closeFile(&old);
    return kept;
}

bool SafeFile::copyAll(int from, int to, off_t *size)
{
    QByteArray block(blockSize, Qt::Uninitialized);
    for (*size = 0;;) {
        const ssize_t got =
            retried([&] { return m_calls.pread(from, block.data(), size_t(block.size()), *size); });
        if (got <= 0)
            return got == 0;
        if (!writeAt(to, QByteArrayView(block).first(got), *size))
            return false;
        *size += got;
    }
}

/// Puts a whole file's content in the place of the old file's.
bool SafeFile::copyOver(int from, off_t size)
{
    off_t copied = 0;
    const bool isCopied = copyAll(from, m_old, &copied) && copied == size
        && retried([&] { return m_calls.ftruncate(m_old, size); }) == 0;
    if (isCopied)
        restoreRights();
    return isCopied && retried([&] { return m_calls.fsync(m_old); }) == 0;
}

/// The system takes set-user-id and set-group-id away when anybody but root writes. Who may write a file but
/// does not own it cannot set them; that is no reason to take the content back.
void SafeFile::restoreRights()
{
    if (m_oldRights & setIdBits)
        retried([&] { return m_calls.fchmod(m_old, m_oldRights); });
}

void SafeFile::closeFile(int *fd)
{
    if (*fd != -1)
        m_calls.close(*fd);
    *fd = -1;
}

void SafeFile::discard()
{
    closeFile(&m_staged);
    closeFile(&m_old);
    if (!m_stagedName.isEmpty())
        m_calls.unlink(m_stagedName.constData());
    m_stagedName.clear();
}
