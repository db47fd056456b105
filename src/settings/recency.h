#pragma once

#include <QList>

#include <algorithm>

/// Merges two descendants of a list that has its most recent item first, at most `capacity` of them.
///
/// Both began with `base`; an item that is used goes to the front. What was used in `mine` comes first, then
/// `theirs` as it is, less what was taken out of `mine`: what either has taken out stays out, unless the
/// other has used it since. `isSame` tells whether two items are one, `==` whether it was used in between.
/// Items that fell off the end of a full list were not taken out.
template <typename Item, typename IsSame>
QList<Item> mergedRecency(const QList<Item> &base, const QList<Item> &mine, const QList<Item> &theirs,
    qsizetype capacity, const IsSame &isSame)
{
    const auto has = [&](const QList<Item> &list, const Item &item) {
        return std::any_of(list.begin(), list.end(), [&](const Item &other) { return isSame(item, other); });
    };
    // What nobody used stands at the end, in the old order.
    auto unused = mine.rbegin();
    for (auto old = base.rbegin(); old != base.rend() && unused != mine.rend(); ++old)
        unused += *old == *unused ? 1 : 0;
    QList<Item> merged(mine.begin(), unused.base());
    for (const Item &item : theirs) {
        const bool isTakenOut = mine.size() < capacity && has(base, item) && !has(mine, item);
        if (!isTakenOut && !has(merged, item))
            merged << item;
    }
    return merged.first(qMin(capacity, merged.size()));
}
