#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// Of the one file of a test that needs no more.
inline const QString fileName = QStringLiteral("a.txt");

/// Files of one test, in a folder that goes away with it.
class DocumentFolder {
public:
    /// The folder as documents name theirs: ending in "/".
    QString path() const { return m_dir.path() + u'/'; }

    bool write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path() + name);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }
    QByteArray read(const QString &name) const
    {
        QFile file(path() + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
    }
    QStringList names() const
    {
        return QDir(m_dir.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

private:
    QTemporaryDir m_dir;
};
