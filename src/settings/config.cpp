#include "settings/config.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QStandardPaths>

namespace {

constexpr qint64 largestFile = qint64{ 16 } << 20;
constexpr int lockTimeout = 2000; // ms

QString userFile(const QString &name)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return folder + u'/' + name + QLatin1String(".conf");
}

void makeFolder(const QString &folder)
{
    const QDir parent(QFileInfo(folder).path());
    parent.mkpath(QStringLiteral("."));
    parent.mkdir(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

} // namespace

Config::Config(const QString &name, Domain, Access access)
    : m_fileName(userFile(name))
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
    makeFolder(QFileInfo(m_fileName).path());
    m_lock = std::make_unique<QLockFile>(m_fileName + QLatin1String(".lock"));
    m_lock->tryLock(lockTimeout);
}

void Config::read()
{
    const QFileInfo info(m_fileName);
    if (!info.exists())
        return;
    QFile file(m_fileName);
    m_readable = info.isFile() && info.size() <= largestFile && file.open(QIODevice::ReadOnly);
    if (!m_readable)
        return;
    const QByteArray contents = file.readAll();
    m_readable = file.error() == QFile::NoError;
    if (m_readable)
        m_keys = KeyFile(contents);
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
    makeFolder(QFileInfo(m_fileName).path());
    QSaveFile file(m_fileName);
    const bool isNew = !QFileInfo::exists(m_fileName);
    // commit() does not look whether the rest of a buffer could be written.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return false;
    if (isNew)
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    const QByteArray &contents = m_keys.contents();
    m_changed = file.write(contents) != contents.size() || !file.commit();
    return !m_changed;
}
