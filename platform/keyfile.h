#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

/// Text of a key file: `[group]` lines and `Key = value` lines in UTF-8.
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
/// Cost: finding and setting a value are linear in the lines.
class KeyFile {
public:
    KeyFile() = default;
    explicit KeyFile(const QByteArray &contents);

    QByteArray contents() const;

    /// Nothing where the group has no such key.
    std::optional<QString> value(const QString &group, const QString &key) const;
    /// False when this is the value already: nothing changes then. A new key comes behind the last one of its
    /// group, a new group at the end. Names have no line end; a key has no "=", no blank around it and does
    /// not begin with "[".
    bool setValue(const QString &group, const QString &key, const QString &value);

private:
    struct Line {
        QByteArray bytes; ///< with its line end; the last line of a file may have none
        QByteArray group;
        QByteArray key; ///< empty where the line is no entry
    };

    std::optional<std::size_t> find(const QByteArray &group, const QByteArray &key) const;
    std::size_t insertionPoint(const QByteArray &group);
    void insert(std::size_t at, Line line);

    std::vector<Line> m_lines;
    QByteArray m_lineEnd = "\n";
    bool m_hasByteOrderMark = false;
};
