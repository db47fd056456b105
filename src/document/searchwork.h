#pragma once

#include "jobs/jobwork.h"
#include "text/textsearch.h"
#include "text/textsnapshot.h"

/// Looks for the hit of a search behind the window, in a snapshot: by several threads at once, the parts that
/// come first in its direction first.
class SearchWork : public JobWork {
public:
    /// Where the hit may begin is `range`, see searchedRange().
    SearchWork(TextSnapshot text, TextPattern pattern, SearchDirection direction, TextRange range);

    /// When it is done: where the hit begins, if there is one.
    std::optional<Offset> begin() const { return m_begin; }

    Step step(JobTurn &turn) override;

private:
    const TextSnapshot m_text;
    const TextPattern m_pattern;
    const SearchDirection m_direction;
    const qint64 m_units; ///< in all
    TextRange m_rest;
    std::optional<Offset> m_begin;
};
