#pragma once

#include "document/textcounts.h"
#include "jobs/jobwork.h"
#include "text/textsnapshot.h"

/// Counts a text behind the window, by several threads at once.
class CountWork : public JobWork {
public:
    explicit CountWork(TextSnapshot text)
        : m_text(std::move(text))
    {
    }

    /// When it is done.
    const TextCounts &counts() const { return m_counts; }

    Step step(JobTurn &turn) override;

private:
    const TextSnapshot m_text;
    Offset m_at; ///< what comes before is counted
    TextCounts m_counts;
};
