#include "filedialog/documentsfolder.h"

#include "files/filename.h"
#include "files/statefolder.h"

#include <QDir>

#include <sys/stat.h>

QString DocumentsFolder::path()
{
    return QDir::homePath() + QStringLiteral("/Documents/");
}

bool DocumentsFolder::isMadeBySaving(const QString &folder)
{
    return folder == path() && !FileName::exists(folder);
}

void DocumentsFolder::makeForSaving(const QString &folder)
{
    if (!isMadeBySaving(folder))
        return;
    if (::mkdir(FileName::toBytes(folder).constData(), S_IRWXU | S_IRWXG | S_IRWXO) == 0)
        syncFolder(FileCalls::system(), FileName::toBytes(QDir::homePath() + u'/'));
}
