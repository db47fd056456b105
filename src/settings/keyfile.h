#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>

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
/// Names have no line end; a key has no "=", no blank around it and does not begin with "[".
///
/// Cost: each call is one pass over the text, however many keys it is about. Memory: the text alone.
class KeyFile {
public:
    using Entry = std::pair<QString, QString>; ///< key and value

    KeyFile() = default;
    explicit KeyFile(QByteArray contents);

    const QByteArray &contents() const { return m_contents; }

    /// The values of those of these keys that the group has.
    QHash<QString, QString> values(const QString &group, const QStringList &keys) const;
    /// Nothing where the group has no such key.
    std::optional<QString> value(const QString &group, const QString &key) const;
    /// False when these are the values already: nothing changes then. New keys come behind the last one of
    /// their group, in their order, a new group at the end. No key may be given twice.
    bool setValues(const QString &group, const QList<Entry> &entries);

private:
    QByteArray m_contents;
};
