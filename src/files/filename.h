#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

/// File names as strings, without losing any.
///
/// A name is a row of bytes to the system, usually UTF-8. A byte that is not part of well-formed UTF-8 (old
/// memory cards carry Shift-JIS names) travels through strings as the lone surrogate U+DC80..U+DCFF of its
/// value, and becomes that byte again. The toolkit's own file classes lose such names: use these functions
/// and the system's calls for every name a user may choose.
namespace FileName {

/// For any bytes b: toBytes(fromBytes(b)) == b. A byte-order mark is kept.
QString fromBytes(QByteArrayView bytes);
/// Lone surrogates other than U+DC80..U+DCFF, which no name on a disk gives, become U+FFFD.
QByteArray toBytes(QStringView name);

/// The absolute name of a file that was named from the current folder, without "." and doubled "/". The
/// current folder is named by $PWD where that is the same folder. A ".." is followed as the system does,
/// through links, where the folder exists.
QString absolute(QByteArrayView bytes);

/// Whether there is something of that name, a folder too; a symbolic link counts as what it leads to.
bool exists(QStringView name);

/// The name as it may be shown in one line: every undecodable byte, every control character, and every one
/// that gives what follows another direction (U+202A to U+202E, U+2066 to U+2069) is U+FFFD. So none looks
/// like another name, or turns the text around it.
QString forDisplay(const QString &name);
/// The same for texts of several lines, such as those of message boxes: a line feed in the name stays one.
QString forMessage(const QString &name);

} // namespace FileName
