#include "platform/filename.h"

#include <QChar>
#include <QDir>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>

#include <sys/stat.h>

namespace {

constexpr char16_t firstEscape = 0xDC80;
constexpr char16_t lastEscape = 0xDCFF;
constexpr char16_t byteToEscape = 0xDC00;

struct Utf8Form {
    uchar firstLead;
    uchar lastLead;
    uchar firstSecond; ///< narrower than 80..BF where that keeps out overlong forms, surrogates, > U+10FFFF
    uchar lastSecond;
    int length;
};

/// Well-formed byte sequences of more than one byte: table 3-7 of the Unicode Standard.
constexpr std::array<Utf8Form, 8> utf8Forms{ {
    { 0xC2, 0xDF, 0x80, 0xBF, 2 },
    { 0xE0, 0xE0, 0xA0, 0xBF, 3 },
    { 0xE1, 0xEC, 0x80, 0xBF, 3 },
    { 0xED, 0xED, 0x80, 0x9F, 3 },
    { 0xEE, 0xEF, 0x80, 0xBF, 3 },
    { 0xF0, 0xF0, 0x90, 0xBF, 4 },
    { 0xF1, 0xF3, 0x80, 0xBF, 4 },
    { 0xF4, 0xF4, 0x80, 0x8F, 4 },
} };

bool isBetween(uchar byte, uchar first, uchar last)
{
    return byte >= first && byte <= last;
}

/// Length of the well-formed sequence at the start of `bytes`; 0 where there is none.
int sequenceLength(QByteArrayView bytes)
{
    const auto byte = [bytes](qsizetype i) { return static_cast<uchar>(bytes[i]); };
    if (byte(0) < 0x80)
        return 1;
    for (const Utf8Form &form : utf8Forms) {
        if (!isBetween(byte(0), form.firstLead, form.lastLead))
            continue;
        if (bytes.size() < form.length || !isBetween(byte(1), form.firstSecond, form.lastSecond))
            return 0;
        for (int i = 2; i < form.length; ++i) {
            if (!isBetween(byte(i), 0x80, 0xBF))
                return 0;
        }
        return form.length;
    }
    return 0;
}

char32_t codePoint(QByteArrayView sequence)
{
    constexpr std::array<uchar, 5> leadMask{ 0, 0x7F, 0x1F, 0x0F, 0x07 };
    char32_t value = static_cast<uchar>(sequence[0]) & leadMask.at(size_t(sequence.size()));
    for (qsizetype i = 1; i < sequence.size(); ++i)
        value = value << 6 | (static_cast<uchar>(sequence[i]) & 0x3F);
    return value;
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

} // namespace

QString FileName::fromBytes(QByteArrayView bytes)
{
    if (std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<uchar>(byte) < 0x80; }))
        return QString::fromLatin1(bytes);
    QString name;
    name.reserve(bytes.size());
    while (!bytes.isEmpty()) {
        const int length = sequenceLength(bytes);
        if (length == 0)
            name += QChar(char16_t(byteToEscape | static_cast<uchar>(bytes[0])));
        else
            name += QChar::fromUcs4(codePoint(bytes.first(length)));
        bytes = bytes.sliced(std::max(length, 1));
    }
    return name;
}

QByteArray FileName::toBytes(QStringView name)
{
    QByteArray bytes;
    bytes.reserve(name.size());
    qsizetype plain = 0; // start of the part that is not yet written
    for (qsizetype i = 0; i < name.size(); ++i) {
        const bool isPair = name[i].isHighSurrogate() && i + 1 < name.size() && name[i + 1].isLowSurrogate();
        if (isPair) {
            ++i;
        } else if (isEscape(name[i])) {
            bytes += name.sliced(plain, i - plain).toUtf8();
            bytes += char(name[i].unicode() & 0xFF);
            plain = i + 1;
        } else if (name[i].isSurrogate()) {
            bytes += name.sliced(plain, i - plain).toUtf8();
            bytes += "\xEF\xBF\xBD";
            plain = i + 1;
        }
    }
    return bytes += name.sliced(plain).toUtf8();
}

QString FileName::absolute(QByteArrayView bytes)
{
    QByteArray path = bytes.toByteArray();
    if (!path.startsWith('/'))
        path.prepend(resolved(".") + '/');
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
            || unit == QChar::ParagraphSeparator;
    };
    QString shown = name;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const bool isPair = name[i].isLowSurrogate() && i > 0 && name[i - 1].isHighSurrogate();
        if (!isPair && isHidden(name[i]))
            shown[i] = QChar::ReplacementCharacter;
    }
    return shown;
}
