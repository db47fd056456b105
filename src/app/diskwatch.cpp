#include "app/diskwatch.h"

#include <QFileInfo>

#include <utility>

DiskWatch::DiskWatch()
{
    m_gathering.setSingleShot(true);
    m_gathering.setInterval(gatheringTime);
    connect(&m_gathering, &QTimer::timeout, this, &DiskWatch::tell);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &DiskWatch::gather);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &DiskWatch::gather);
}

void DiskWatch::gather(const QString &path)
{
    m_happened << path;
    if (!m_gathering.isActive())
        m_gathering.start();
}

void DiskWatch::tell()
{
    const QSet<QString> happenedTo = std::exchange(m_happened, {});
    if (happenedTo.contains(m_file) || happenedTo.contains(QFileInfo(m_file).path()))
        emit happened();
    if (const QSet<QString> folders = happenedTo & m_folders; !folders.isEmpty())
        emit happenedIn(folders);
}

/// Watched anew: another file, or another folder, may have the name.
void DiskWatch::setFile(const QString &fileName)
{
    const QStringList before{ m_file, QFileInfo(m_file).path() };
    if (!m_file.isEmpty())
        m_watcher.removePaths(before);
    m_file = fileName;
    update();
}

void DiskWatch::setFolders(const QSet<QString> &folders)
{
    m_folders = folders;
    update();
}

void DiskWatch::addFolder(const QString &folder)
{
    m_folders << folder;
    if (!m_watcher.directories().contains(folder))
        update();
}

void DiskWatch::update()
{
    QSet<QString> wanted = m_folders;
    if (!m_file.isEmpty())
        wanted << m_file << QFileInfo(m_file).path();
    const QStringList paths = m_watcher.files() + m_watcher.directories();
    const QSet<QString> watched(paths.begin(), paths.end());
    if (const QSet<QString> unwanted = watched - wanted; !unwanted.isEmpty())
        m_watcher.removePaths(unwanted.values());
    QStringList added;
    for (const QString &path : wanted - watched) {
        if (QFileInfo::exists(path))
            added << path;
    }
    if (!added.isEmpty())
        m_watcher.addPaths(added);
}
