#include "files/filename.h"

#include "files/byteescape.h"
#include "files/utf8.h"

#include <QChar>
#include <QDir>
#include <QStringList>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include <sys/stat.h>

namespace {

/// The folder's own name, links and ".." followed; as it is given where there is none.
QByteArray resolved(const QByteArray &folder)
{
    const std::unique_ptr<char, decltype(&std::free)> path(realpath(folder.constData(), nullptr), std::free);
    return path ? QByteArray(path.get()) : folder;
}

/// The current folder by the name its user knows it by, with the links that led there, where that still leads
/// there.
QByteArray currentFolder()
{
    const QByteArray named = qgetenv("PWD");
    struct stat here, there;
    const bool isHere = named.startsWith('/') && ::stat(".", &here) == 0
        && ::stat(named.constData(), &there) == 0 && here.st_dev == there.st_dev
        && here.st_ino == there.st_ino;
    return isHere ? named : resolved(".");
}

/// Begins or ends text with a direction of its own: after one of these "txt.exe" can look like
/// "exe.txt".
bool turnsText(QChar unit)
{
    const char16_t code = unit.unicode();
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

} // namespace

QString FileName::fromBytes(QByteArrayView bytes)
{
    QString name;
    name.reserve(bytes.size());
    while (!bytes.isEmpty()) {
        const auto character = decodeUtf8(bytes);
        const bool isWellFormed = character && !QChar::isSurrogate(character->value);
        if (isWellFormed)
            name += QChar::fromUcs4(character->value);
        else
            name += QChar(escapeOf(static_cast<uchar>(bytes.front())));
        bytes = bytes.sliced(isWellFormed ? character->length : 1);
    }
    return name;
}

QByteArray FileName::toBytes(QStringView name)
{
    QByteArray bytes;
    bytes.reserve(name.size());
    for (qsizetype i = 0; i < name.size(); ++i) {
        const QChar unit = name[i];
        if (unit.isHighSurrogate() && i + 1 < name.size() && name[i + 1].isLowSurrogate())
            appendUtf8(bytes, QChar::surrogateToUcs4(unit, name[++i]));
        else if (isByteEscape(unit.unicode()))
            bytes += static_cast<char>(escapedByte(unit.unicode()));
        else
            appendUtf8(bytes, (unit.isSurrogate() ? QChar(QChar::ReplacementCharacter) : unit).unicode());
    }
    return bytes;
}

QString FileName::absolute(QByteArrayView bytes)
{
    QByteArray path = bytes.toByteArray();
    if (!path.startsWith('/'))
        path.prepend(currentFolder() + '/');
    const qsizetype nameStart = path.lastIndexOf('/') + 1;
    const QByteArray folder = path.left(nameStart);
    if (folder.contains("/../"))
        path = resolved(folder) + '/' + path.sliced(nameStart);
    return QDir::cleanPath(fromBytes(path));
}

bool FileName::exists(QStringView name)
{
    struct stat info;
    return ::stat(toBytes(name).constData(), &info) == 0;
}

QString FileName::forDisplay(const QString &name)
{
    const auto isHidden = [](QChar unit) {
        return isByteEscape(unit.unicode()) || unit.category() == QChar::Other_Control
            || unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator || turnsText(unit);
    };
    QString shown = name;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const bool isPair = name[i].isLowSurrogate() && i > 0 && name[i - 1].isHighSurrogate();
        if (!isPair && isHidden(name[i]))
            shown[i] = QChar::ReplacementCharacter;
    }
    return shown;
}

QString FileName::forMessage(const QString &name)
{
    QStringList lines = name.split(u'\n');
    std::transform(lines.begin(), lines.end(), lines.begin(), forDisplay);
    return lines.join(u'\n');
}
