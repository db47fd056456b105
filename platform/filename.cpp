#include "platform/filename.h"

#include "platform/text/textcodec.h"

#include <QChar>
#include <QDir>
#include <QStringList>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include <sys/stat.h>

namespace {

constexpr char16_t firstEscape = 0xDC80;
constexpr char16_t lastEscape = 0xDCFF;

/// The one whose text has a unit for every byte that is no UTF-8.
const TextCodec &codec()
{
    return *TextCodec::codecForName("UTF8");
}

bool isEscape(QChar unit)
{
    return unit.unicode() >= firstEscape && unit.unicode() <= lastEscape;
}

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

/// Begins or ends a stretch of text with a direction of its own: after one of these "txt.exe" can look like
/// "exe.txt".
bool turnsText(QChar unit)
{
    const char16_t code = unit.unicode();
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

} // namespace

QString FileName::fromBytes(QByteArrayView bytes)
{
    return codec().toUnicode(bytes);
}

QByteArray FileName::toBytes(QStringView name)
{
    return codec().fromUnicode(name);
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

bool FileName::isFolder(QStringView name)
{
    struct stat info;
    return ::stat(toBytes(name).constData(), &info) == 0 && S_ISDIR(info.st_mode);
}

QString FileName::forDisplay(const QString &name)
{
    const auto isHidden = [](QChar unit) {
        return isEscape(unit) || unit.category() == QChar::Other_Control || unit == QChar::LineSeparator
            || unit == QChar::ParagraphSeparator || turnsText(unit);
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
