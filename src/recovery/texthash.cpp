#include "recovery/texthash.h"

#include "recovery/checksum.h"

#include <QtEndian>

void TextHash::add(const TextChunk &chunk)
{
    if (chunk.spelling)
        m_spellings = checksumOf(*chunk.spelling, m_spellings ^ quint64(chunk.offset.value()));
    for (const char unit : chunk.latin1)
        add(char16_t(uchar(unit)));
    for (const QChar unit : chunk.utf16)
        add(unit.unicode());
}

void TextHash::add(char16_t unit)
{
    m_block[size_t(m_pending++)] = qToLittleEndian(quint16(unit));
    if (m_pending < blockUnits)
        return;
    m_units =
        checksumOf(QByteArrayView(reinterpret_cast<const char *>(m_block.data()), sizeof m_block), m_units);
    m_pending = 0;
}

quint64 TextHash::result() const
{
    const QByteArrayView rest(reinterpret_cast<const char *>(m_block.data()), m_pending * 2);
    return checksumOf(rest, m_units) ^ m_spellings;
}

quint64 textHashOf(const TextStore &store, qint64 length)
{
    TextHash hash;
    const Offset end(length);
    for (Offset offset; offset < end;) {
        TextChunk chunk = store.spelledChunkAt(offset);
        chunk.truncate(qMin(chunk.size(), end - offset));
        hash.add(chunk);
        offset += chunk.size();
    }
    return hash.result();
}
