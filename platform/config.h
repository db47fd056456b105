#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

/// The plain key file of a program: `[group]` lines and `Key = value` lines in UTF-8.
///
/// A value is all that stands between "=" and the end of its line, less one space after the "=": commas,
/// quotes, backslashes, further blanks and "=" survive a round trip. Only what would end the line or is no
/// UTF-8 is written in another way, in byte sequences that UTF-8 itself never has, so that no value needs
/// escaping for the sake of the escapes: LF and CR as the over-long C0 8A and C0 8D, a lone surrogate (a byte
/// of a file name, U+DC80..U+DCFF) as ED and two more bytes. Any other invalid byte is read as U+DC00 + byte.
///
/// Lines, keys and groups of others are kept byte for byte where they are, a byte-order mark and CR+LF line
/// ends too. Where a key stands twice in a group the last one counts. Keys before the first group line belong
/// to the group "". A line without "=" and without a whole group name is skipped.
///
/// The file is read once, by the constructor, and written by write() or the destructor when something
/// changed: aside and renamed; mode 0600 for a new file, its own mode for one that exists; through symbolic
/// links. Errors: a missing file is empty; so is one that cannot be read, which is then never written either.
/// Cost: finding a key is linear in the lines of the file.
class Config {
public:
    enum Domain { User };

    /// NAME.conf in the per-user configuration folder.
    explicit Config(const QString &name, Domain domain = User);
    ~Config();
    Config(const Config &) = delete;
    Config &operator=(const Config &) = delete;

    /// The group that the following calls mean; "" at first.
    void setGroup(const QString &group);
    bool hasKey(const QString &key) const;
    QString readEntry(const QString &key, const QString &defaultValue = {}) const;
    /// A value that is no decimal integer gives the default.
    int readNumEntry(const QString &key, int defaultValue = 0) const;
    /// A key has no "=", no line end, no blank around it and does not begin with "[".
    void writeEntry(const QString &key, const QString &value);
    void writeEntry(const QString &key, int value);
    /// True when the file holds what was written. Does nothing when nothing changed.
    bool write();

private:
    struct Line {
        QByteArray bytes; ///< with its line end; the last line of a file may have none
        QByteArray group;
        QByteArray key; ///< empty where the line is no entry
    };

    void read();
    void parse(const QByteArray &contents);
    const Line *find(const QByteArray &key) const;
    std::size_t insertionPoint();
    void insertLine(std::size_t at, const QByteArray &text);

    QString m_fileName;
    QByteArray m_group;
    QByteArray m_lineEnd = "\n";
    std::vector<Line> m_lines;
    bool m_hasByteOrderMark = false;
    bool m_readable = true;
    bool m_changed = false;
};
