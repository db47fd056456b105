#include "document/placesintext.h"

#include <algorithm>

/// All places before `offset` go in front, all others behind.
void PlacesInText::partAt(Offset offset)
{
    while (!m_before.empty() && m_before.back() >= offset) {
        m_behind.push_back(m_textEnd - m_before.back());
        m_before.pop_back();
    }
    while (!m_behind.empty() && m_textEnd - m_behind.back() < offset) {
        m_before.push_back(m_textEnd - m_behind.back());
        m_behind.pop_back();
    }
}

void PlacesInText::follow(const TextChange &change)
{
    drop(change.offset, change.offset + change.removed);
    m_textEnd += change.inserted - change.removed;
}

void PlacesInText::drop(Offset from, Offset to)
{
    partAt(from);
    while (!m_behind.empty() && m_textEnd - m_behind.back() < to)
        m_behind.pop_back();
}

void PlacesInText::add(Offset offset)
{
    partAt(offset);
    m_before.push_back(offset);
}

Offset PlacesInText::at(qint64 index) const
{
    const auto before = qint64(m_before.size());
    return index < before ? m_before[std::size_t(index)]
                          : m_textEnd - m_behind[m_behind.size() - 1 - std::size_t(index - before)];
}

qint64 PlacesInText::indexBehind(Offset offset) const
{
    const auto found = std::ranges::lower_bound(m_before, offset);
    if (found != m_before.end())
        return found - m_before.begin();
    // The distances from the end rise towards the start of the text.
    const auto first = std::ranges::upper_bound(m_behind, m_textEnd - offset);
    return count() - (first - m_behind.begin());
}
