#pragma once

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <unistd.h>

/// Whatever is open of a file reads no more. False: nothing is.
inline bool breakReading(const QString &file)
{
    int broken = 0;
    for (const QFileInfo &open :
        QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files | QDir::System)) {
        if (open.symLinkTarget() != file)
            continue;
        const int unreadable = ::open(QFile::encodeName(file).constData(), O_WRONLY | O_CLOEXEC);
        if (unreadable != -1 && ::dup3(unreadable, open.fileName().toInt(), O_CLOEXEC) != -1)
            ++broken;
        ::close(unreadable);
    }
    return broken > 0;
}
