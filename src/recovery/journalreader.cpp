#include "recovery/journalreader.h"

namespace {

constexpr qint64 blockSize = 1 << 16;

} // namespace

JournalReader::JournalReader(int file, const FileCalls &calls)
    : m_file(file)
    , m_calls(calls)
{
}

void JournalReader::rewind()
{
    m_offset = m_start;
    m_block.clear();
    m_used = 0;
    m_isStarted = m_start > 0;
}

qint64 JournalReader::size() const
{
    struct stat info { };
    return m_calls.fstat(m_file, &info) == 0 ? info.st_size : 0;
}

bool JournalReader::skipDamage()
{
    constexpr qint64 mostDamage = 1 << 22;
    m_start = 0;
    rewind();
    m_isStarted = true;
    for (qint64 skipped = 0; skipped < mostDamage && need(JournalRecord::headSize); ++skipped) {
        if (isAtRecord()) {
            startHere();
            return true;
        }
        ++m_used;
    }
    return false;
}

/// Looks like one, and so is read, only what is no longer than those that are written.
bool JournalReader::isAtRecord()
{
    constexpr qint64 mostWritten = 1 << 24;
    const QByteArrayView head = QByteArrayView(m_block).sliced(m_used, JournalRecord::headSize);
    const qint64 size = recordSize(head);
    return isRecordHead(head) && size <= mostWritten && need(size)
        && firstRecord(QByteArrayView(m_block).sliced(m_used, size));
}

/// Whether so many unused bytes are in the block, when they have been read. A length that is not true costs
/// no more memory than the file is long.
bool JournalReader::need(qint64 bytes)
{
    if (m_used > 0 && m_block.size() - m_used < bytes) {
        m_block.remove(0, m_used);
        m_used = 0;
    }
    while (m_block.size() - m_used < bytes) {
        const qint64 size = m_block.size();
        m_block.resize(size + blockSize);
        const ssize_t got =
            retried([&] { return m_calls.pread(m_file, m_block.data() + size, blockSize, m_offset); });
        m_block.resize(size + qMax<ssize_t>(got, 0));
        m_hasFailed = m_hasFailed || got < 0;
        if (got <= 0)
            return false;
        m_offset += got;
    }
    return true;
}

bool JournalReader::readMagic()
{
    const QByteArrayView magic = journalMagic();
    if (!need(magic.size()) || !m_block.startsWith(magic))
        return false;
    m_used = magic.size();
    m_isStarted = true;
    return true;
}

std::optional<JournalRecord> JournalReader::next()
{
    if ((!m_isStarted && !readMagic()) || !need(JournalRecord::headSize))
        return std::nullopt;
    const qint64 size = recordSize(QByteArrayView(m_block).sliced(m_used));
    if (size > JournalRecord::headSize + JournalRecord::mostBytes || !need(size))
        return std::nullopt;
    auto record = firstRecord(QByteArrayView(m_block).sliced(m_used, size));
    if (record)
        m_used += size;
    return record;
}
