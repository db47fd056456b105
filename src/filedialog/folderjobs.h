#pragma once

#include <chrono>

class JobRunner;

/// How a list has its folders read.
struct FolderJobs {
    /// Not owned. Null: threads of the process's own. A disk that does not answer keeps its thread, and
    /// nobody waits for that.
    JobRunner *runner = nullptr;
    /// What is read or sorted within this time is shown at once; with none, all of it comes later.
    std::chrono::milliseconds patience{ 20 };

    JobRunner &threads() const;
};
