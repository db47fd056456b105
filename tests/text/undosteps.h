#pragma once

#include "text/undohistory.h"

/// Steps that can be undone, counted by their commands: one for each group and for each command in none.
inline qint64 undoSteps(const UndoHistory &history)
{
    qint64 steps = 0;
    bool isInGroup = false;
    for (const UndoCommand *const command : history.commands()) {
        if (!isInGroup)
            ++steps;
        if (command->isStepBoundary())
            isInGroup = command->kind == UndoCommand::Kind::BeginStep;
    }
    return steps;
}
