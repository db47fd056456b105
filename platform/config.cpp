#include "platform/config.h"

#include "platform/utf8.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

namespace {

constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

// Over-long, so that no text has it.
QByteArray escapedLineEnd(char c)
{
    return { QByteArray("\xC0") + static_cast<char>(0x80 | c) };
}

QByteArray encodeValue(QStringView value)
{
    QByteArray out;
    out.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value[i];
        if (c == u'\n' || c == u'\r') {
            out += escapedLineEnd(c.toLatin1());
        } else if (c.isHighSurrogate() && i + 1 < value.size() && value[i + 1].isLowSurrogate()) {
            appendUtf8(out, QChar::surrogateToUcs4(c, value[++i]));
        } else {
            appendUtf8(out, c.unicode());
        }
    }
    return out;
}

Utf8Character decodeCharacter(QByteArrayView bytes)
{
    for (const char lineEnd : { '\n', '\r' }) {
        if (bytes.startsWith(escapedLineEnd(lineEnd)))
            return { static_cast<char32_t>(lineEnd), 2 };
    }
    const auto escapedByte = static_cast<char32_t>(0xDC00 + static_cast<unsigned char>(bytes.front()));
    return decodeUtf8(bytes).value_or(Utf8Character{ escapedByte, 1 });
}

QString decodeValue(QByteArrayView bytes)
{
    QString out;
    out.reserve(bytes.size());
    while (!bytes.isEmpty()) {
        const Utf8Character c = decodeCharacter(bytes);
        out += QChar::fromUcs4(c.value);
        bytes = bytes.sliced(c.length);
    }
    return out;
}

QByteArrayView withoutLineEnd(QByteArrayView line)
{
    if (line.endsWith('\n'))
        line.chop(1);
    if (line.endsWith('\r'))
        line.chop(1);
    return line;
}

QByteArrayView trimmed(QByteArrayView bytes)
{
    while (!bytes.isEmpty() && isBlank(bytes.front()))
        bytes = bytes.sliced(1);
    while (!bytes.isEmpty() && isBlank(bytes.back()))
        bytes.chop(1);
    return bytes;
}

// Where the value of an entry's line begins: behind "=" and one blank.
qsizetype valueStart(QByteArrayView line)
{
    const qsizetype start = line.indexOf('=') + 1;
    const bool hasBlank = start < line.size() && line[start] == ' ';
    return start + (hasBlank ? 1 : 0);
}

QString valueOf(QByteArrayView line)
{
    const QByteArrayView text = withoutLineEnd(line);
    return decodeValue(text.sliced(valueStart(text)));
}

[[maybe_unused]] bool isKey(const QString &key)
{
    return !key.isEmpty() && key.trimmed() == key && !key.startsWith(u'[') && !key.contains(u'=')
        && !key.contains(u'\n') && !key.contains(u'\r');
}

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

Config::Config(const QString &name, Domain)
    : m_fileName(userFile(name))
{
    Q_ASSERT(!name.isEmpty() && !name.contains(u'/'));
    read();
}

Config::~Config()
{
    write();
}

void Config::read()
{
    const QFileInfo info(m_fileName);
    if (!info.exists())
        return;
    QFile file(m_fileName);
    m_readable = info.isFile() && file.open(QIODevice::ReadOnly);
    if (!m_readable)
        return;
    const QByteArray contents = file.readAll();
    m_readable = file.error() == QFile::NoError;
    if (m_readable)
        parse(contents);
}

void Config::parse(const QByteArray &contents)
{
    QByteArray group;
    m_hasByteOrderMark = contents.startsWith(byteOrderMark);
    qsizetype start = m_hasByteOrderMark ? byteOrderMark.size() : 0;
    while (start < contents.size()) {
        const qsizetype end = contents.indexOf('\n', start);
        const qsizetype next = end < 0 ? contents.size() : end + 1;
        const QByteArray bytes = contents.sliced(start, next - start);
        const QByteArrayView text = trimmed(withoutLineEnd(bytes));
        QByteArray key;
        if (text.startsWith('[')) {
            if (text.endsWith(']'))
                group = text.sliced(1).chopped(1).toByteArray();
        } else if (const qsizetype equals = text.indexOf('='); equals > 0) {
            key = trimmed(text.first(equals)).toByteArray();
        }
        m_lines.push_back({ bytes, group, key });
        start = next;
    }
    if (!m_lines.empty() && m_lines.front().bytes.endsWith("\r\n"))
        m_lineEnd = "\r\n";
}

void Config::setGroup(const QString &group)
{
    Q_ASSERT(!group.contains(u'\n') && !group.contains(u'\r'));
    m_group = group.toUtf8();
}

const Config::Line *Config::find(const QByteArray &key) const
{
    const auto line = std::find_if(m_lines.rbegin(), m_lines.rend(),
        [&](const Line &candidate) { return candidate.key == key && candidate.group == m_group; });
    return line == m_lines.rend() ? nullptr : &*line;
}

bool Config::hasKey(const QString &key) const
{
    Q_ASSERT(isKey(key));
    return find(key.toUtf8()) != nullptr;
}

QString Config::readEntry(const QString &key, const QString &defaultValue) const
{
    Q_ASSERT(isKey(key));
    const Line *line = find(key.toUtf8());
    return line ? valueOf(line->bytes) : defaultValue;
}

int Config::readNumEntry(const QString &key, int defaultValue) const
{
    bool isNumber = false;
    const int number = readEntry(key).toInt(&isNumber);
    return isNumber ? number : defaultValue;
}

void Config::writeEntry(const QString &key, const QString &value)
{
    Q_ASSERT(isKey(key));
    const QByteArray name = key.toUtf8();
    if (const Line *line = find(name)) {
        if (valueOf(line->bytes) == value)
            return;
        QByteArray &bytes = m_lines[static_cast<std::size_t>(line - m_lines.data())].bytes;
        const qsizetype textLength = withoutLineEnd(bytes).size();
        const qsizetype equals = bytes.indexOf('=') + 1;
        bytes.replace(equals, textLength - equals, ' ' + encodeValue(value));
    } else {
        const std::size_t at = insertionPoint();
        insertLine(at, name + " = " + encodeValue(value));
        m_lines[at].key = name;
    }
    m_changed = true;
}

void Config::writeEntry(const QString &key, int value)
{
    writeEntry(key, QString::number(value));
}

// Behind the last entry of the group, or behind its group line; a group that is missing is made at the end.
std::size_t Config::insertionPoint()
{
    const auto isOfGroup = [this](const Line &line) { return line.group == m_group; };
    auto last = std::find_if(m_lines.rbegin(), m_lines.rend(), isOfGroup);
    if (last != m_lines.rend()) {
        while (std::next(last) != m_lines.rend() && isOfGroup(*std::next(last))
            && withoutLineEnd(last->bytes).isEmpty())
            ++last;
        return static_cast<std::size_t>(m_lines.rend() - last);
    }
    if (m_group.isEmpty())
        return 0;
    if (!m_lines.empty())
        insertLine(m_lines.size(), {});
    insertLine(m_lines.size(), '[' + m_group + ']');
    return m_lines.size();
}

void Config::insertLine(std::size_t at, const QByteArray &text)
{
    if (at > 0 && !m_lines[at - 1].bytes.endsWith('\n'))
        m_lines[at - 1].bytes += m_lineEnd;
    m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(at), { text + m_lineEnd, m_group, {} });
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
    if (!file.open(QIODevice::WriteOnly))
        return false;
    if (isNew)
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    if (m_hasByteOrderMark)
        file.write(byteOrderMark.data(), byteOrderMark.size());
    for (const Line &line : m_lines)
        file.write(line.bytes);
    m_changed = !file.commit();
    return !m_changed;
}
