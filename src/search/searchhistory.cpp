#include "search/searchhistory.h"

#include "settings/config.h"
#include "settings/recency.h"

#include <algorithm>
#include <functional>

namespace {

using Texts = std::array<QString, SearchHistory::size>;

QStringList keysOf(const QString &key)
{
    QStringList keys;
    for (std::size_t i = 0; i < SearchHistory::size; ++i)
        keys << key + QString::number(i);
    return keys;
}

/// What the file has; `preset` for a key that it has not.
Texts textsOf(const Config &config, const QString &key, const Texts &preset)
{
    const QStringList keys = keysOf(key);
    const QHash<QString, QString> values = config.readEntries(keys);
    Texts texts;
    for (std::size_t i = 0; i < texts.size(); ++i)
        texts[i] = values.value(keys[qsizetype(i)], preset[i]);
    return texts;
}

QList<QString> filled(const Texts &texts)
{
    QList<QString> filled(texts.begin(), texts.end());
    filled.removeAll(QString());
    return filled;
}

} // namespace

void SearchHistory::add(const QString &text)
{
    if (text.isEmpty())
        return;
    const auto oldest = m_texts.end() - 1;
    const auto replaced = std::find(m_texts.begin(), oldest, text);
    std::move_backward(m_texts.begin(), replaced, replaced + 1);
    m_texts.front() = text;
}

void SearchHistory::read(const Config &config, const QString &key)
{
    m_texts = textsOf(config, key, {});
    m_known = m_texts;
}

void SearchHistory::takeOver(const Config &config, const QString &key)
{
    const Texts theirs = textsOf(config, key, m_known);
    if (theirs == m_known)
        return;
    const QStringList merged = mergedRecency<QString>(
        filled(m_known), filled(m_texts), filled(theirs), qsizetype(size), std::equal_to<>());
    m_texts = {};
    std::copy(merged.begin(), merged.end(), m_texts.begin());
    m_known = theirs;
}

void SearchHistory::write(Config &config, const QString &key) const
{
    const QStringList keys = keysOf(key);
    QList<KeyFile::Entry> entries;
    for (std::size_t i = 0; i < size; ++i)
        entries.append({ keys[qsizetype(i)], m_texts[i] });
    config.writeEntries(entries);
}
