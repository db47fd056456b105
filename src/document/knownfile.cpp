#include "document/knownfile.h"

#include "files/filename.h"

KnownFile::KnownFile(const FileCalls &calls)
    : m_calls(&calls)
    , m_version(calls)
{
}

bool KnownFile::isNew() const
{
    return !m_path.isEmpty() && !m_isUnread && version().stamp().inode == 0;
}

QByteArray KnownFile::ownName() const
{
    return FileName::toBytes(m_path + m_name);
}

FileChange KnownFile::change(const std::optional<SeenContent> &seen)
{
    if (seen)
        m_version.noteSeen(*seen);
    const bool isUnknown = m_isUnread && version().stamp().inode == 0;
    return isUnknown ? FileChange::None : m_version.change(ownName());
}

void KnownFile::acknowledge()
{
    m_version.acknowledge(ownName());
}

void KnownFile::setName(const QString &path, const QString &name)
{
    *this = KnownFile(*m_calls);
    m_path = path;
    m_name = name;
}

void KnownFile::beginReading(const QString &path, const QString &name)
{
    if (path + name != m_path + m_name)
        m_version.setUnread();
    m_path = path;
    m_name = name;
    m_isUnread = true;
}

void KnownFile::endReading(const FileVersion &version)
{
    m_isUnread = false;
    m_isToBeKept = false;
    m_version.setRead(version);
}

SaveTarget KnownFile::beginWriting(const QString &path, const QString &name)
{
    SaveTarget target{ path, name };
    const bool isOwn = path + name == m_path + m_name;
    target.before = m_version.beginWriting(FileName::toBytes(path + name), ownName());
    target.wasToBeKept = isOwn && m_isToBeKept;
    target.keepsOldContent = isOwn && (m_isToBeKept || m_isUnread);
    return target;
}

void KnownFile::endWriting(const SaveTarget &target, const FileVersion &version)
{
    m_version.endWriting(FileName::toBytes(target.path + target.name), version);
    m_path = target.path;
    m_name = target.name;
    m_isUnread = false;
    m_isToBeKept &= !target.wasToBeKept;
}
