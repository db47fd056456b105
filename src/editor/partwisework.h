#pragma once

#include "editor/partwisetext.h"
#include "jobs/jobwork.h"

/// Makes a long text behind the window, by several threads at once.
class PartwiseWork : public JobWork {
public:
    explicit PartwiseWork(PartwiseText text);

    Step step(JobTurn &turn) override;
    void giveUp() override;
    /// When it is done: the text.
    PartwiseText &text() { return m_text; }

private:
    PartwiseText m_text;
    const qint64 m_units; ///< in all
};
