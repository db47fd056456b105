#pragma once

#include "files/filelock.h"
#include "settings/keyfile.h"

#include <QString>

#include <memory>

/// The settings of a program: a key file in the user's configuration folder.
///
/// Values are taken as they stand, and what the file holds of others is kept: see KeyFile.
///
/// The file is read once, by the constructor, and written by write() or the destructor when something
/// changed. Who writes what depends on what was read opens it with Change: no other process that does so
/// reads or writes the file then, for as long as the object lives. Who waits for that in vain, two seconds,
/// goes on without.
///
/// A write is that of a SafeFile; mode 0600 for a new file. The folder is made, with mode 0700, when
/// something is to be written. Errors: a missing file is empty; so is one that cannot be read or is larger
/// than 16 MiB, which is then never written either; a write that fails leaves the file as it was.
class Config {
public:
    enum Domain { User };
    enum Access { Read, Change };

    /// NAME.conf in the per-user configuration folder. `calls` is not owned.
    explicit Config(const QString &name, Domain domain = User, Access access = Read,
        const FileCalls &calls = FileCalls::system());
    ~Config();
    Config(const Config &) = delete;
    Config &operator=(const Config &) = delete;

    /// The group that the following calls mean; "" at first.
    void setGroup(const QString &group);
    QString readEntry(const QString &key, const QString &defaultValue = {}) const;
    /// A value that is no decimal integer gives the default.
    int readNumEntry(const QString &key, int defaultValue = 0) const;
    void writeEntry(const QString &key, const QString &value);
    void writeEntry(const QString &key, int value);
    /// The values of those of these keys that the group has. As many passes over the file as for one key.
    QHash<QString, QString> readEntries(const QStringList &keys) const;
    void writeEntries(const QList<KeyFile::Entry> &entries);
    /// True when the file holds what was written. Does nothing when nothing changed.
    bool write();

    /// The per-user configuration folder, in the file system's own bytes; ends in "/".
    static QByteArray folder();

private:
    void lock();
    void makeFolder();
    void read();
    bool readContents();

    const FileCalls &m_calls;
    const QByteArray m_fileName;
    std::unique_ptr<FileLock> m_lock; ///< null for reading
    QString m_group;
    KeyFile m_keys;
    bool m_readable = true;
    bool m_changed = false;
};
