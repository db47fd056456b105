#include "app/diskwatch.h"

#include <QFileInfo>

DiskWatch::DiskWatch()
{
    m_gathering.setSingleShot(true);
    m_gathering.setInterval(gatheringTime);
    connect(&m_gathering, &QTimer::timeout, this, &DiskWatch::happened);
    const auto gather = [this] {
        if (!m_gathering.isActive())
            m_gathering.start();
    };
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_gathering, gather);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_gathering, gather);
}

void DiskWatch::setFile(const QString &fileName)
{
    const QStringList before = m_watcher.files() + m_watcher.directories();
    if (!before.isEmpty())
        m_watcher.removePaths(before);
    if (fileName.isEmpty())
        return;
    const QFileInfo file(fileName);
    QStringList watched;
    if (file.exists())
        watched << fileName;
    if (QFileInfo::exists(file.path()))
        watched << file.path();
    if (!watched.isEmpty())
        m_watcher.addPaths(watched);
}
