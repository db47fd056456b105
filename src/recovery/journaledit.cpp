#include "recovery/journaledit.h"

#include <QtEndian>

qint64 EditWriter::append(const TextChunk &chunk)
{
    if (chunk.spelling) {
        m_fields.number8(quint8(EditItem::Spelling));
        m_fields.bytes(*chunk.spelling);
    }
    TextChunk taken = chunk;
    taken.truncate(qMin(chunk.size(), qint64{ wantedBytes }));
    if (taken.size() == 0)
        return 0;
    m_fields.number8(quint8(taken.isLatin1() ? EditItem::Latin1 : EditItem::Utf16));
    if (taken.isLatin1())
        m_fields.bytes(taken.latin1);
    else
        m_fields.text(taken.utf16);
    return taken.size();
}

void EditWriter::copy(EditItem source, Offset offset, qint64 length)
{
    if (length == 0)
        return;
    m_fields.number8(quint8(source));
    m_fields.number64(offset.value());
    m_fields.number64(length);
}

bool EditReader::read(QByteArrayView content, Parts &parts)
{
    FieldReader fields(content);
    while (!fields.atEnd()) {
        const auto item = EditItem(fields.number8());
        if (item == EditItem::Committed || item == EditItem::Base) {
            const Offset offset(fields.number64());
            const qint64 length = fields.number64();
            if (!fields.isWhole())
                return false;
            if (item == EditItem::Committed)
                parts.copyCommitted(offset, length);
            else
                parts.copyBase(offset, length);
        } else if (item == EditItem::Utf16) {
            const QString text = fields.text();
            if (!fields.isWhole())
                return false;
            parts.text(QStringView(text));
        } else if (item == EditItem::Latin1 || item == EditItem::Spelling) {
            const QByteArrayView bytes = fields.bytes();
            if (!fields.isWhole())
                return false;
            if (item == EditItem::Latin1)
                parts.text(bytes);
            else
                parts.spelling(bytes);
        } else {
            return false;
        }
    }
    return true;
}
