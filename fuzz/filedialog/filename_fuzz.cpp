// Names of any bytes come back from strings and can be shown, and a filter lets pass what its patterns say.

#include "filedialog/namefilter.h"
#include "files/filename.h"
#include "fuzz/bytes.h"

#include <algorithm>

namespace {

/// What a pattern means, character by character; by Unicode's characters, as "?" stands for one.
bool matches(const QList<uint> &pattern, const QList<uint> &name)
{
    QList<bool> reached(name.size() + 1, false); // the parts of the name that the pattern so far matches
    reached[0] = true;
    for (const uint wanted : pattern) {
        QList<bool> next(name.size() + 1, false);
        for (qsizetype i = 0; i <= name.size(); ++i) {
            if (wanted == U'*')
                next[i] = reached[i] || (i > 0 && next[i - 1]);
            else
                next[i] = i > 0 && reached[i - 1] && (wanted == U'?' || wanted == name[i - 1]);
        }
        reached = next;
    }
    return reached.last();
}

QList<uint> charactersOf(const QString &text)
{
    QList<uint> characters;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        characters << (isPair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode());
        i += isPair;
    }
    return characters;
}

void checkFilter(const QString &patterns, const QString &name)
{
    const QStringList each = patterns.split(u';', Qt::SkipEmptyParts);
    const bool passes = std::ranges::any_of(
        each, [&](const QString &pattern) { return matches(charactersOf(pattern), charactersOf(name)); });
    require(NameFilter(patterns).matches(name) == (passes || each.isEmpty()));
}

} // namespace

/// The first byte says how many bytes are a filter.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Bytes input(data, size);
    const QString patterns = FileName::fromBytes(input.take(input.below(32)));
    const QByteArray bytes = input.take(qMin<qint64>(qint64(size), 2000));
    const QString name = FileName::fromBytes(bytes);
    require(FileName::toBytes(name) == bytes);
    const QString shown = FileName::forDisplay(name);
    require(shown.size() == name.size() && FileName::forDisplay(shown) == shown);
    require(FileName::forMessage(name).count(u'\n') == name.count(u'\n'));
    require(NameFilter(QStringLiteral("*")).matches(name));
    checkFilter(patterns, name);
    return 0;
}
