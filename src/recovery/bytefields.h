#pragma once

#include <QByteArray>
#include <QString>

/// Writes numbers and texts one behind the other, little-endian.
class FieldWriter {
public:
    void number8(quint8 value) { m_bytes.append(char(value)); }
    void number32(quint32 value);
    void number64(qint64 value);
    void bytes(QByteArrayView value); ///< with their count
    void text(QStringView value); ///< with the count of its units, any of them

    const QByteArray &result() const { return m_bytes; }
    qsizetype size() const { return m_bytes.size(); }
    void clear() { m_bytes.resize(0); }

private:
    QByteArray m_bytes;
};

/// Reads what FieldWriter wrote. What is not there reads as nothing, and isWhole() says so.
class FieldReader {
public:
    explicit FieldReader(QByteArrayView bytes)
        : m_left(bytes)
    {
    }
    quint8 number8();
    quint32 number32();
    qint64 number64();
    QByteArrayView bytes();
    QString text();

    bool atEnd() const { return m_left.isEmpty(); }
    /// Nothing that was asked for was missing.
    bool isWhole() const { return m_isWhole; }

private:
    QByteArrayView take(qint64 size);

    QByteArrayView m_left;
    bool m_isWhole = true;
};
