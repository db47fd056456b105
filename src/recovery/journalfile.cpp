#include "recovery/journalfile.h"

#include "files/copycontent.h"
#include "files/filelock.h"
#include "files/statefolder.h"
#include "recovery/journalfolder.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr qsizetype bufferSize = 1 << 18;
constexpr mode_t privateFile = 0600;

} // namespace

JournalFile::JournalFile(const FileCalls &calls)
    : m_calls(calls)
{
}

JournalFile::~JournalFile()
{
    if (m_file == -1)
        return;
    if (!m_isPublished)
        m_calls.unlink(m_name.constData());
    m_calls.close(m_file);
}

bool JournalFile::fail()
{
    m_error = errno;
    return false;
}

bool JournalFile::create(const QByteArray &folder)
{
    if (!makePrivateFolder(m_calls, folder) || !isPrivateFolder(m_calls, folder))
        return fail();
    constexpr int mostAttempts = 16;
    for (int attempt = 0; attempt < mostAttempts && m_file == -1; ++attempt) {
        if (!createOnce(folder) && errno != EEXIST && errno != EWOULDBLOCK)
            return fail();
    }
    if (m_file == -1)
        return fail();
    m_buffer = journalMagic().toByteArray();
    return true;
}

/// Who tidies up may have come between the making and the locking.
bool JournalFile::createOnce(const QByteArray &folder)
{
    const QByteArray name = folder + newUnfinishedName();
    const int file = retried([&] {
        return m_calls.open(
            name.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, privateFile);
    });
    if (file == -1)
        return false;
    if (lockNamed(m_calls, file)) {
        m_file = file;
        m_name = name;
        return true;
    }
    const int error = errno;
    m_calls.unlink(name.constData());
    m_calls.close(file);
    errno = error;
    return false;
}

bool JournalFile::hasName() const
{
    struct stat info = {};
    return m_calls.fstat(m_file, &info) == 0 && info.st_nlink > 0;
}

bool JournalFile::append(RecordType type, QByteArrayView content)
{
    appendRecord(m_buffer, type, content);
    return m_buffer.size() < bufferSize || flush();
}

bool JournalFile::flush()
{
    if (!writeAt(m_calls, m_file, m_buffer, m_size))
        return fail();
    m_size += m_buffer.size();
    m_buffer.resize(0);
    return true;
}

bool JournalFile::sync()
{
    return flush() && (retried([&] { return m_calls.fsync(m_file); }) == 0 || fail());
}

bool JournalFile::publish(const QByteArray &name)
{
    if (m_calls.rename(m_name.constData(), name.constData()) != 0)
        return fail();
    m_name = name;
    m_isPublished = true;
    return syncFolder(m_calls, folderOf(name)) || fail();
}
