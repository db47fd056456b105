#include "search/searchhistory.h"

#include "platform/config.h"

#include <algorithm>

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
    for (std::size_t i = 0; i < size; ++i)
        m_texts[i] = config.readEntry(key + QString::number(i));
}

void SearchHistory::write(Config &config, const QString &key) const
{
    for (std::size_t i = 0; i < size; ++i)
        config.writeEntry(key + QString::number(i), m_texts[i]);
}
