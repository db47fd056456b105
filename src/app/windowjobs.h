#pragma once

#include "jobs/jobrunner.h"
#include "platform/turnlength.h"

#include <memory>

/// How a window has done what takes long.
struct WindowJobs {
    /// Null: in threads.
    std::unique_ptr<JobRunner> runner = {};
    /// Files and texts of fewer bytes or units are read and written in one go: what that takes nobody
    /// notices, and a sign of it would only flicker.
    qint64 fewest = qint64{ 8 } << 20;
    /// The window's thread takes over what a file brings in turns of this length, and gets on in each.
    std::chrono::milliseconds turn = longestTurn;
    /// For what other programs may keep waiting for ever. Null: in threads of their own.
    std::unique_ptr<JobRunner> inputRunner = {};
};
