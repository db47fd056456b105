#include "recovery/basereading.h"

namespace {

constexpr qint64 unitsOfStep = 1 << 18;

} // namespace

bool BaseReading::step(const TextSnapshot &text, JournalFile &file)
{
    const bool keeps = isKept(text);
    const Offset end = qMin(text.end(), m_offset + unitsOfStep);
    EditWriter kept;
    while (m_offset < end || (m_offset == text.end() && !m_isDone)) {
        const TextChunk chunk = text.spelledChunkAt(m_offset);
        if (keeps)
            kept.append(chunk);
        if (chunk.size() > 0)
            m_hash.add(chunk);
        m_offset += chunk.size();
        m_isDone = chunk.size() == 0;
        if ((m_isDone || m_offset >= end || kept.isFull()) && !kept.isEmpty()) {
            if (!file.append(RecordType::BaseText, kept.content()))
                return false;
            kept.clear();
        }
    }
    return !m_isDone || writeEnd(keeps, file);
}

bool BaseReading::repeat(JournalFile &file) const
{
    return writeEnd(false, file);
}

bool BaseReading::writeEnd(bool isTextKept, JournalFile &file) const
{
    return file.append(RecordType::BaseEnd, contentOf(BaseSeen{ m_hash.result(), isTextKept }));
}
