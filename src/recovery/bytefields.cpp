#include "recovery/bytefields.h"

#include <QtEndian>

#include <algorithm>

void FieldWriter::number32(quint32 value)
{
    const quint32 little = qToLittleEndian(value);
    m_bytes.append(reinterpret_cast<const char *>(&little), sizeof little);
}

void FieldWriter::number64(qint64 value)
{
    const qint64 little = qToLittleEndian(value);
    m_bytes.append(reinterpret_cast<const char *>(&little), sizeof little);
}

void FieldWriter::bytes(QByteArrayView value)
{
    number32(quint32(value.size()));
    m_bytes.append(value);
}

void FieldWriter::text(QStringView value)
{
    number32(quint32(value.size()));
    if (value.isEmpty())
        return;
    const qsizetype start = m_bytes.size();
    m_bytes.resize(start + value.size() * 2);
    qToLittleEndian<quint16>(value.utf16(), value.size(), m_bytes.data() + start);
}

QByteArrayView FieldReader::take(qint64 size)
{
    if (size > m_left.size()) {
        m_isWhole = false;
        m_left = {};
        return {};
    }
    const QByteArrayView taken = m_left.first(size);
    m_left = m_left.sliced(size);
    return taken;
}

quint8 FieldReader::number8()
{
    const QByteArrayView taken = take(1);
    return taken.isEmpty() ? 0 : quint8(taken[0]);
}

quint32 FieldReader::number32()
{
    const QByteArrayView taken = take(4);
    return taken.isEmpty() ? 0 : qFromLittleEndian<quint32>(taken.data());
}

qint64 FieldReader::number64()
{
    const QByteArrayView taken = take(8);
    return taken.isEmpty() ? 0 : qFromLittleEndian<qint64>(taken.data());
}

QByteArrayView FieldReader::bytes()
{
    return take(number32());
}

QString FieldReader::text()
{
    const QByteArrayView taken = take(qint64{ 2 } * number32());
    QString text(taken.size() / 2, Qt::Uninitialized);
    if (!text.isEmpty())
        qFromLittleEndian<quint16>(taken.data(), text.size(), text.data());
    return text;
}
