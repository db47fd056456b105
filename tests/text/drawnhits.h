#pragma once

#include "tests/text/naivesearch.h"

/// Hits drawn alike, whether a store or a model had them: "row,column-row,column", or "none".

inline QString drawn(RowCol begin, RowCol end)
{
    return QStringLiteral("%1,%2-%3,%4")
        .arg(begin.row.value())
        .arg(begin.column)
        .arg(end.row.value())
        .arg(end.column);
}

inline QString drawn(const TextStore &store, const std::optional<SearchHit> &hit)
{
    return hit ? drawn(store.rowColAt(hit->begin), store.rowColAt(hit->end)) : QStringLiteral("none");
}

/// A column behind the last one of its row is that one.
inline QString drawn(const ModelStore &model, const std::optional<RowHit> &hit)
{
    const auto inside = [&](RowCol place) {
        return RowCol{ place.row, qMin(place.column, model.row(place.row).length) };
    };
    return hit ? drawn(inside(hit->begin), inside(hit->end)) : QStringLiteral("none");
}
