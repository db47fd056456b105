#include "filedialog/documentsfolder.h"

#include "files/filename.h"
#include "files/statefolder.h"

#include <QDir>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

QString DocumentsFolder::path()
{
    return QDir::home().filePath(QStringLiteral("Documents/"));
}

static QByteArray nameWithoutEnd(const QString &folder)
{
    return FileName::toBytes(folder.chopped(folder.endsWith(u'/') ? 1 : 0));
}

bool DocumentsFolder::isMadeBySaving(const QString &folder)
{
    struct stat info;
    return folder == path() && ::lstat(nameWithoutEnd(folder).constData(), &info) != 0
        && ::faccessat(AT_FDCWD, FileName::toBytes(QDir::homePath()).constData(), W_OK | X_OK, AT_EACCESS)
        == 0;
}

bool DocumentsFolder::isFileInstead(const QString &folder)
{
    struct stat info;
    return folder == path() && ::stat(nameWithoutEnd(folder).constData(), &info) == 0
        && !S_ISDIR(info.st_mode);
}

void DocumentsFolder::makeForSaving(const QString &folder)
{
    if (!isMadeBySaving(folder))
        return;
    if (::mkdir(FileName::toBytes(folder).constData(), S_IRWXU | S_IRWXG | S_IRWXO) == 0)
        syncFolder(FileCalls::system(), FileName::toBytes(QDir::homePath() + u'/'));
}
