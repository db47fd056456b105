// A key file of any bytes comes out as it came in. Every value that is set is read back, also from what was
// written, and changes neither another value nor another line.

#include "fuzz/bytes.h"
#include "settings/keyfile.h"

#include <algorithm>

namespace {

struct Key {
    QString group;
    QString name;
};

/// Of those that files of the corpus have, too.
const QList<Key> &keys()
{
    static const QList<Key> keys{ { {}, QStringLiteral("b") }, { QStringLiteral("a"), QStringLiteral("b") },
        { QStringLiteral("a"), QStringLiteral("bc d") }, { QStringLiteral("Main"), QStringLiteral("b") } };
    return keys;
}

QList<std::optional<QString>> valuesOf(const KeyFile &file)
{
    QList<std::optional<QString>> values;
    for (const Key &key : keys())
        values << file.value(key.group, key.name);
    return values;
}

/// Latin-1, or any UTF-16, lone surrogates too.
QString randomValue(Bytes &bytes)
{
    const bool isWide = bytes.below(2) == 0;
    const QByteArray value = bytes.take(bytes.below(40));
    if (!isWide)
        return QString::fromLatin1(value);
    return QString::fromUtf16(reinterpret_cast<const char16_t *>(value.constData()), value.size() / 2);
}

/// What one set value may do: put something in the place of a part of one line, or between lines.
void checkLines(const QByteArray &before, const QByteArray &after)
{
    const qsizetype shared = std::min(before.size(), after.size());
    const auto start =
        std::mismatch(before.begin(), before.begin() + shared, after.begin()).first - before.begin();
    const auto end = std::mismatch(before.rbegin(), before.rbegin() + (shared - start), after.rbegin()).first
        - before.rbegin();
    require(!before.sliced(start).chopped(end).contains('\n'));
}

void setValue(KeyFile &file, qsizetype index, const QString &value)
{
    const Key &key = keys().at(index);
    const QByteArray before = file.contents();
    auto expected = valuesOf(file);
    const bool isNew = expected.at(index) != value;
    require(file.setValues(key.group, { { key.name, value } }) == isNew);
    require(isNew || file.contents() == before);
    expected[index] = value;
    require(valuesOf(file) == expected);
    checkLines(before, file.contents());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Bytes bytes(data, size);
    QList<std::pair<qsizetype, QString>> values;
    for (qint64 count = bytes.below(4); count > 0; --count) {
        const qsizetype index = bytes.below(keys().size());
        values.emplace_back(index, randomValue(bytes));
    }
    const QByteArray contents = bytes.take(qint64(size));
    KeyFile file(contents);
    require(file.contents() == contents);
    for (const auto &[index, value] : values)
        setValue(file, index, value);
    const KeyFile again(file.contents());
    require(again.contents() == file.contents() && valuesOf(again) == valuesOf(file));
    return 0;
}
