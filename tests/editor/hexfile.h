#pragma once

#include <QByteArray>
#include <QString>

/// Of the file that a test loads and saves.
inline const QString name = QStringLiteral("file.txt");

inline QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}
