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

bool DocumentsFolder::isMadeBySaving(const QString &folder)
{
    struct stat info;
    const QByteArray name = FileName::toBytes(folder.chopped(folder.endsWith(u'/') ? 1 : 0));
    return folder == path() && ::lstat(name.constData(), &info) != 0
        && ::faccessat(AT_FDCWD, FileName::toBytes(QDir::homePath()).constData(), W_OK | X_OK, AT_EACCESS)
        == 0;
}

void DocumentsFolder::makeForSaving(const QString &folder)
{
    if (!isMadeBySaving(folder))
        return;
    if (::mkdir(FileName::toBytes(folder).constData(), S_IRWXU | S_IRWXG | S_IRWXO) == 0)
        syncFolder(FileCalls::system(), FileName::toBytes(QDir::homePath() + u'/'));
}
