#include "recovery/texthash.h"

#include "recovery/checksum.h"

#include <QtEndian>

void TextHash::add(const TextChunk &chunk)
{
    if (chunk.spelling)
        m_spellings = checksumOf(*chunk.spelling, m_spellings ^ quint64(chunk.offset.value()));
    if (chunk.isLatin1())
        add(reinterpret_cast<const uchar *>(chunk.latin1.data()), chunk.size());
    else
        add(chunk.utf16.utf16(), chunk.size());
}

void TextHash::add(const TextSnapshot &text, TextRange range)
{
    for (Offset offset = range.start; offset < range.end;) {
        TextChunk chunk = text.spelledChunkAt(offset);
        chunk.truncate(qMin(chunk.size(), range.end - offset));
        add(chunk);
        offset += chunk.size();
    }
}

template <typename Unit> void TextHash::add(const Unit *units, qint64 count)
{
    while (count > 0) {
        const qint64 taken = qMin(count, blockUnits - m_pending);
        quint16 *const block = m_block.data() + m_pending;
        for (qint64 i = 0; i < taken; ++i)
            block[i] = qToLittleEndian(quint16(units[i]));
        m_pending += taken;
        units += taken;
        count -= taken;
        if (m_pending < blockUnits)
            return;
        m_units = checksumOf(
            QByteArrayView(reinterpret_cast<const char *>(m_block.data()), sizeof m_block), m_units);
        m_pending = 0;
    }
}

quint64 TextHash::result() const
{
    const QByteArrayView rest(reinterpret_cast<const char *>(m_block.data()), m_pending * 2);
    return checksumOf(rest, m_units) ^ m_spellings;
}

quint64 textHashOf(const TextStore &store, qint64 length)
{
    TextHash hash;
    hash.add(TextSnapshot(store), { {}, Offset(length) });
    return hash.result();
}
