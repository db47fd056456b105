#include "platform/keyfile.h"

#include "platform/utf8.h"

#include <algorithm>
#include <utility>

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

} // namespace

KeyFile::KeyFile(const QByteArray &contents)
    : m_hasByteOrderMark(contents.startsWith(byteOrderMark))
{
    QByteArray group;
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

QByteArray KeyFile::contents() const
{
    QByteArray out;
    if (m_hasByteOrderMark)
        out += byteOrderMark;
    for (const Line &line : m_lines)
        out += line.bytes;
    return out;
}

std::optional<QString> KeyFile::value(const QString &group, const QString &key) const
{
    Q_ASSERT(isKey(key));
    const auto at = find(group.toUtf8(), key.toUtf8());
    return at ? std::optional(valueOf(m_lines[*at].bytes)) : std::nullopt;
}

bool KeyFile::setValue(const QString &group, const QString &key, const QString &value)
{
    Q_ASSERT(isKey(key) && !group.contains(u'\n') && !group.contains(u'\r'));
    const QByteArray groupName = group.toUtf8();
    const QByteArray keyName = key.toUtf8();
    const auto at = find(groupName, keyName);
    if (!at) {
        const std::size_t end = insertionPoint(groupName);
        insert(end, { keyName + " = " + encodeValue(value), groupName, keyName });
        return true;
    }
    QByteArray &bytes = m_lines[*at].bytes;
    if (valueOf(bytes) == value)
        return false;
    const qsizetype start = bytes.indexOf('=') + 1;
    bytes.replace(start, withoutLineEnd(bytes).size() - start, ' ' + encodeValue(value));
    return true;
}

std::optional<std::size_t> KeyFile::find(const QByteArray &group, const QByteArray &key) const
{
    const auto line = std::find_if(m_lines.rbegin(), m_lines.rend(),
        [&](const Line &candidate) { return candidate.key == key && candidate.group == group; });
    return line == m_lines.rend() ? std::nullopt
                                  : std::optional(static_cast<std::size_t>(m_lines.rend() - line - 1));
}

// Behind the last line of the group that is not empty; a group that is missing is made at the end.
std::size_t KeyFile::insertionPoint(const QByteArray &group)
{
    const auto isOfGroup = [&group](const Line &line) { return line.group == group; };
    auto last = std::find_if(m_lines.rbegin(), m_lines.rend(), isOfGroup);
    if (last != m_lines.rend()) {
        while (withoutLineEnd(last->bytes).isEmpty() && std::next(last) != m_lines.rend()
            && isOfGroup(*std::next(last)))
            ++last;
        return static_cast<std::size_t>(m_lines.rend() - last);
    }
    if (group.isEmpty())
        return 0;
    if (!m_lines.empty())
        insert(m_lines.size(), { {}, m_lines.back().group, {} });
    insert(m_lines.size(), { '[' + group + ']', group, {} });
    return m_lines.size();
}

void KeyFile::insert(std::size_t at, Line line)
{
    if (at > 0 && !m_lines[at - 1].bytes.endsWith('\n'))
        m_lines[at - 1].bytes += m_lineEnd;
    line.bytes += m_lineEnd;
    m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(at), std::move(line));
}
