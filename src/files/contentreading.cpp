#include "files/contentreading.h"

#include "files/copycontent.h"

#include <fcntl.h>

namespace {

constexpr qint64 bytesPerStep = qint64{ 1 } << 22;

} // namespace

ContentReading::ContentReading(QByteArray name, const FileCalls &calls)
    : m_name(std::move(name))
    , m_calls(calls)
{
}

ContentReading::~ContentReading()
{
    if (m_file != -1)
        m_calls.close(m_file);
}

bool ContentReading::step()
{
    if (m_file == -1 && !open())
        return false;
    const qint64 end = qMin(m_read + bytesPerStep, m_stamp.size);
    while (m_read < end) {
        if (!readBlock())
            return false;
    }
    if (m_read < m_stamp.size)
        return true;
    finish();
    return false;
}

bool ContentReading::open()
{
    m_file = openForReading(m_calls, m_name);
    struct stat info = {};
    if (m_file == -1 || m_calls.fstat(m_file, &info) != 0 || !S_ISREG(info.st_mode))
        return false;
    m_stamp = FileStamp(info);
    m_block.resize(copiedBlock);
    return true;
}

bool ContentReading::readBlock()
{
    const auto wanted = size_t(qMin<qint64>(m_block.size(), m_stamp.size - m_read));
    const ssize_t got = retried([&] { return m_calls.pread(m_file, m_block.data(), wanted, m_read); });
    if (got <= 0)
        return false;
    m_hash.add(QByteArrayView(m_block).first(got));
    m_read += got;
    return true;
}

void ContentReading::finish()
{
    struct stat info = {};
    if (m_calls.fstat(m_file, &info) == 0 && FileStamp(info) == m_stamp)
        m_seen = SeenContent{ m_stamp, m_hash.value() };
}
