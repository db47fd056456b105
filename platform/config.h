#pragma once

#include <QString>
#include <QStringList>

#include <vector>

/// The plain key file of a program: `[group]` lines and `Key = value` lines in UTF-8.
///
/// A value is taken as it stands: commas, quotes, backslashes, leading blanks and "=" survive a round trip;
/// line ends in a value are the one thing that is escaped. Lines, keys and groups of others are kept where
/// they are. Written by write() or the destructor when something changed: aside and renamed, mode 0600 for a
/// new file. Errors: a file that cannot be read is empty; a broken line is skipped; a failed write returns
/// false.
class Config {
public:
    enum Domain { User };

    /// NAME.conf in the per-user configuration folder.
    explicit Config(const QString &name, Domain domain = User);
    ~Config();
    Config(const Config &) = delete;
    Config &operator=(const Config &) = delete;

    void setGroup(const QString &group);
    bool hasKey(const QString &key) const;
    QString readEntry(const QString &key, const QString &defaultValue = {}) const;
    /// A value that is no decimal integer gives the default.
    int readNumEntry(const QString &key, int defaultValue = 0) const;
    void writeEntry(const QString &key, const QString &value);
    void writeEntry(const QString &key, int value);
    bool write();

private:
    struct Line;
    QString m_fileName;
    QString m_group;
    std::vector<Line> m_lines;
    bool m_changed = false;
};
