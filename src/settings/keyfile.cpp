#include "settings/keyfile.h"

#include "files/utf8.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <string_view>
#include <vector>

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

qsizetype textStart(QByteArrayView contents)
{
    return contents.startsWith(byteOrderMark) ? byteOrderMark.size() : 0;
}

/// Walks over the lines of a key file.
class Lines {
public:
    explicit Lines(const QByteArray &contents)
        : m_contents(contents)
        , m_end(textStart(contents))
    {
    }

    /// Goes on to the next line, at first to the first one; false when there is none.
    bool next()
    {
        if (m_end == m_contents.size())
            return false;
        m_start = m_end;
        m_end = behindLine();
        m_text = trimmed(withoutLineEnd(bytes()));
        if (m_text.startsWith('[') && m_text.endsWith(']'))
            m_group = m_text.sliced(1).chopped(1);
        return true;
    }

    QByteArrayView bytes() const { return m_contents.sliced(m_start, m_end - m_start); }
    qsizetype start() const { return m_start; }
    /// Behind the line end, which the last line may lack.
    qsizetype end() const { return m_end; }
    bool isEmpty() const { return withoutLineEnd(bytes()).isEmpty(); }
    /// That is in force, on its own line already.
    QByteArrayView group() const { return m_group; }
    /// Without the line end and blanks around it.
    QByteArrayView text() const { return m_text; }
    /// Empty where the line is no entry.
    QByteArrayView key() const
    {
        const bool isEntry = !m_text.isEmpty() && !m_text.startsWith('[');
        return isEntry ? trimmed(m_text.first(std::max<qsizetype>(0, m_text.indexOf('='))))
                       : QByteArrayView();
    }

private:
    qsizetype behindLine() const
    {
        // Millions of empty lines are not looked at with a call for each.
        const qsizetype end = m_contents[m_start] == '\n' ? m_start : m_contents.indexOf('\n', m_start);
        return end < 0 ? m_contents.size() : end + 1;
    }

    const QByteArrayView m_contents;
    QByteArrayView m_group;
    QByteArrayView m_text;
    qsizetype m_start = 0;
    qsizetype m_end = 0;
};

/// A part of the text.
struct Part {
    qsizetype start = 0;
    qsizetype length = 0;
};

/// Which of some keys a name is; quick about lines of others.
class KeyIndexes {
public:
    /// The keys must live as long.
    explicit KeyIndexes(const QByteArrayList &keys)
    {
        for (const QByteArray &key : keys)
            m_buckets[uchar(key.front())].emplace_back(toView(key), m_size++);
        for (Bucket &bucket : m_buckets)
            std::sort(bucket.begin(), bucket.end());
    }
    std::optional<std::size_t> ofLine(const Lines &line) const
    {
        const bool mayBeKnown = !line.text().isEmpty() && !m_buckets[uchar(line.text().front())].empty();
        const QByteArrayView name = mayBeKnown ? line.key() : QByteArrayView();
        if (name.isEmpty())
            return std::nullopt;
        const Bucket &bucket = m_buckets[uchar(name.front())];
        const auto found =
            std::lower_bound(bucket.begin(), bucket.end(), std::pair(toView(name), std::size_t(0)));
        const bool isKnown = found != bucket.end() && found->first == toView(name);
        return isKnown ? std::optional(found->second) : std::nullopt;
    }

private:
    using Bucket = std::vector<std::pair<std::string_view, std::size_t>>;

    static std::string_view toView(QByteArrayView name) { return { name.data(), std::size_t(name.size()) }; }

    std::array<Bucket, 256> m_buckets; ///< by the first byte
    std::size_t m_size = 0;
};

/// Where the entries of a group stand.
struct Places {
    std::vector<std::optional<Part>> values; ///< of each key's last line, all that is behind the "="
    std::optional<qsizetype> end; ///< of the group's last line that is not empty; none for a missing group
};

Places placesOf(const QByteArray &contents, const QByteArray &group, const QByteArrayList &keys)
{
    const KeyIndexes indexes(keys);
    Places places{ std::vector<std::optional<Part>>(std::size_t(keys.size())), {} };
    bool wasInside = false;
    for (Lines lines(contents); lines.next();) {
        const bool isInside = lines.group() == group;
        if (isInside && !(wasInside && lines.isEmpty()))
            places.end = lines.end();
        wasInside = isInside;
        const auto index = isInside ? indexes.ofLine(lines) : std::nullopt;
        if (!index)
            continue;
        const qsizetype start = lines.bytes().indexOf('=') + 1;
        places.values[*index] = Part{ lines.start() + start, withoutLineEnd(lines.bytes()).size() - start };
    }
    return places;
}

/// Of what is behind the "=": one blank there is not the value's.
QString valueOf(QByteArrayView text)
{
    return decodeValue(text.startsWith(' ') ? text.sliced(1) : text);
}

QByteArray lineEndOf(const QByteArray &contents)
{
    Lines lines(contents);
    return lines.next() && lines.bytes().endsWith("\r\n") ? "\r\n" : "\n";
}

/// What stands in the place of a part of the text.
struct Change {
    Part part;
    QByteArray text;
};

/// The changes in the order of their places.
QByteArray changed(QByteArrayView contents, const std::vector<Change> &changes)
{
    QByteArray out;
    out.reserve(std::accumulate(changes.begin(), changes.end(), contents.size(),
        [](qsizetype size, const Change &change) { return size + change.text.size(); }));
    qsizetype taken = 0;
    for (const Change &change : changes) {
        out += contents.sliced(taken, change.part.start - taken);
        out += change.text;
        taken = change.part.start + change.part.length;
    }
    return out.append(contents.sliced(taken));
}

/// New lines for a group, which is made where it is missing: at the start the one without a name, others at
/// the end.
Change insertion(
    const QByteArray &contents, const QByteArray &group, std::optional<qsizetype> groupEnd, QByteArray lines)
{
    const qsizetype first = textStart(contents);
    const qsizetype at = groupEnd.value_or(group.isEmpty() ? first : contents.size());
    const bool hasLinesBefore = at > first;
    const QByteArray lineEnd = lineEndOf(contents);
    if (!groupEnd && !group.isEmpty())
        lines.prepend((hasLinesBefore ? lineEnd : QByteArray()) + '[' + group + ']' + lineEnd);
    if (hasLinesBefore && contents[at - 1] != '\n')
        lines.prepend(lineEnd);
    return { { at, 0 }, lines };
}

[[maybe_unused]] bool isKey(const QString &key)
{
    return !key.isEmpty() && key.trimmed() == key && !key.startsWith(u'[') && !key.contains(u'=')
        && !key.contains(u'\n') && !key.contains(u'\r');
}

QByteArrayList namesOf(const QStringList &keys)
{
    Q_ASSERT(std::all_of(keys.begin(), keys.end(), isKey));
    QByteArrayList names;
    for (const QString &key : keys)
        names << key.toUtf8();
    return names;
}

} // namespace

KeyFile::KeyFile(QByteArray contents)
    : m_contents(std::move(contents))
{
}

QHash<QString, QString> KeyFile::values(const QString &group, const QStringList &keys) const
{
    const Places places = placesOf(m_contents, group.toUtf8(), namesOf(keys));
    QHash<QString, QString> values;
    for (qsizetype i = 0; i < keys.size(); ++i) {
        if (const auto &part = places.values[std::size_t(i)])
            values.insert(keys[i], valueOf(QByteArrayView(m_contents).sliced(part->start, part->length)));
    }
    return values;
}

std::optional<QString> KeyFile::value(const QString &group, const QString &key) const
{
    const QHash<QString, QString> found = values(group, { key });
    return found.isEmpty() ? std::nullopt : std::optional(found[key]);
}

bool KeyFile::setValues(const QString &group, const QList<Entry> &entries)
{
    Q_ASSERT(!group.contains(u'\n') && !group.contains(u'\r'));
    if (entries.isEmpty())
        return false;
    QStringList keys;
    for (const Entry &entry : entries)
        keys << entry.first;
    const QByteArrayList names = namesOf(keys);
    const QByteArray lineEnd = lineEndOf(m_contents);
    const Places places = placesOf(m_contents, group.toUtf8(), names);
    std::vector<Change> changes;
    QByteArray added;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const QString &value = entries[i].second;
        const auto &part = places.values[std::size_t(i)];
        if (!part)
            added += names[i] + " = " + encodeValue(value) + lineEnd;
        else if (valueOf(QByteArrayView(m_contents).sliced(part->start, part->length)) != value)
            changes.push_back({ *part, ' ' + encodeValue(value) });
    }
    std::sort(changes.begin(), changes.end(),
        [](const Change &a, const Change &b) { return a.part.start < b.part.start; });
    // Behind all entries of the group.
    if (!added.isEmpty())
        changes.push_back(insertion(m_contents, group.toUtf8(), places.end, added));
    if (!changes.empty())
        m_contents = changed(m_contents, changes);
    return !changes.empty();
}
