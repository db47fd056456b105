#pragma once

#include <QtGlobal>

#include <functional>

/// How far a job is, in whatever it counts.
struct JobProgress {
    qint64 done = 0;
    qint64 total = 0; ///< 0: nobody knows yet

    friend bool operator==(const JobProgress &, const JobProgress &) = default;
};

enum class JobOutcome {
    Done,
    Stopped,
    Failed, ///< the work knows why
};

/// What a step of a work has at hand.
class JobTurn {
public:
    /// The result is not wanted any more. May be asked in any thread: a step that takes long asks it.
    virtual bool isStopped() const = 0;
    virtual void tellProgress(JobProgress progress) = 0;
    /// There is something to be taken over (Job::partReady).
    virtual void tellPart() = 0;
    /// How many parts of a step can be made at the same time.
    virtual int threads() const = 0;
    /// Calls `part` with 0 to `count` - 1, by several threads at once where some are idle, and returns when
    /// all have returned.
    virtual void spread(int count, const std::function<void(int)> &part) = 0;

protected:
    ~JobTurn() = default;
};

/// What a job computes, in steps of a few milliseconds.
///
/// It is made and destroyed in the window's thread; its steps are made in other threads, one after the other
/// and not always in the same one. So a step touches nothing that the window's thread has at the same time:
/// it reads snapshots, builds texts of its own, and hands over what it has made (HandOver).
class JobWork {
public:
    enum class Step { More, Done, Failed };

    virtual ~JobWork();
    /// Where it is stopped in the middle of a step it returns More, soon. One that throws for want of memory
    /// is given up, and the job has failed.
    virtual Step step(JobTurn &turn) = 0;
    /// It was stopped or has thrown: called instead of further steps, for what should not wait for the
    /// destructor because it takes long.
    virtual void giveUp();
};
