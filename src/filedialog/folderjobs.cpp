#include "filedialog/folderjobs.h"

#include "jobs/threadrunner.h"

#include <QCoreApplication>

#include <utility>

namespace {

ThreadRunner *s_threads = nullptr;

/// The end of the process takes a thread away that a disk keeps.
void endThreads()
{
    using namespace std::chrono_literals;
    if (s_threads->endWithin(1s))
        delete std::exchange(s_threads, nullptr);
}

} // namespace

JobRunner &FolderJobs::threads() const
{
    if (runner)
        return *runner;
    if (!s_threads) {
        s_threads = new ThreadRunner;
        qAddPostRoutine(endThreads);
    }
    return *s_threads;
}
