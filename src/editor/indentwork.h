#pragma once

#include "editor/indentedblock.h"
#include "jobs/jobwork.h"

/// Moves the lines of a block behind the window, by several threads at once.
class IndentWork : public JobWork {
public:
    /// See indented().
    IndentWork(const TextStore &store, TextRange range, Indentation direction);

    Step step(JobTurn &turn) override;
    void giveUp() override;
    /// When it is done, see IndentedBlock.
    TextPiece take() { return m_block.take(); }
    bool isLaidOutAs(const TextStore &store) const { return m_block.isLaidOutAs(store); }

private:
    IndentedBlock m_block;
    const qint64 m_units; ///< in all
};
