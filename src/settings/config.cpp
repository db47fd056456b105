#include "settings/config.h"

#include "files/copycontent.h"
#include "files/filename.h"
#include "files/safefile.h"
#include "files/statefolder.h"

#include <QStandardPaths>

#include <fcntl.h>

namespace {

constexpr qint64 largestFile = qint64{ 16 } << 20;
constexpr std::chrono::seconds lockTimeout{ 2 };

} // namespace

QByteArray Config::folder()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return FileName::toBytes(folder) + '/';
}

Config::Config(const QString &name, Domain, Access access, const FileCalls &calls)
    : m_calls(calls)
    , m_fileName(folder() + FileName::toBytes(name) + ".conf")
{
    Q_ASSERT(!name.isEmpty() && !name.contains(u'/'));
    if (access == Change)
        lock();
    read();
}

Config::~Config()
{
    write();
}

void Config::lock()
{
    makeFolder();
    m_lock = std::make_unique<FileLock>(m_fileName + ".lock", m_calls);
    m_lock->lock(lockTimeout);
}

/// One that is there is not put on the disk anew, which would take time at every write.
void Config::makeFolder()
{
    struct stat info = {};
    if (m_calls.stat(folder().constData(), &info) != 0)
        makePrivateFolder(m_calls, folder());
}

void Config::read()
{
    struct stat info = {};
    if (m_calls.stat(m_fileName.constData(), &info) != 0)
        m_readable = errno == ENOENT || errno == ENOTDIR;
    else
        m_readable = S_ISREG(info.st_mode) && info.st_size <= largestFile && readContents();
}

bool Config::readContents()
{
    const int fd = retried([&] {
        return m_calls.open(m_fileName.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0);
    });
    if (fd == -1)
        return false;
    QByteArray contents;
    const bool isRead = readAll(m_calls, fd, largestFile, &contents);
    m_calls.close(fd);
    if (isRead)
        m_keys = KeyFile(contents);
    return isRead;
}

void Config::setGroup(const QString &group)
{
    m_group = group;
}

QString Config::readEntry(const QString &key, const QString &defaultValue) const
{
    return m_keys.value(m_group, key).value_or(defaultValue);
}

int Config::readNumEntry(const QString &key, int defaultValue) const
{
    bool isNumber = false;
    const int number = readEntry(key).toInt(&isNumber);
    return isNumber ? number : defaultValue;
}

void Config::writeEntry(const QString &key, const QString &value)
{
    writeEntries({ { key, value } });
}

void Config::writeEntry(const QString &key, int value)
{
    writeEntry(key, QString::number(value));
}

QHash<QString, QString> Config::readEntries(const QStringList &keys) const
{
    return m_keys.values(m_group, keys);
}

void Config::writeEntries(const QList<KeyFile::Entry> &entries)
{
    if (m_keys.setValues(m_group, entries))
        m_changed = true;
}

bool Config::write()
{
    if (!m_changed)
        return true;
    if (!m_readable)
        return false;
    makeFolder();
    SafeFile file(m_fileName, m_calls);
    file.makePrivate();
    m_changed = !file.open() || !file.write(m_keys.contents()) || !file.commit();
    return !m_changed;
}
