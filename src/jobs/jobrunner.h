#pragma once

#include "jobs/jobrun.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>

#include <condition_variable>
#include <deque>
#include <optional>
#include <vector>

/// Decides where and when the steps of jobs are made, and brings what they tell into its own thread, which is
/// that of the window.
class JobRunner : public QObject {
    Q_OBJECT
public:
    JobRunner();
    /// Jobs that are not finished never finish. Whoever derives has ended their steps by then.
    ~JobRunner() override;

    /// Takes the work over. The run is there until its end was told to the listener, or it has none.
    JobRun *run(std::unique_ptr<JobWork> work, JobRun::Listener &listener);
    /// Until the run has ended and that was told, without an event loop. False: the time was over before.
    bool wait(JobRun *run, QDeadlineTimer end);

    /// News of a run, from any thread.
    struct News {
        std::optional<JobProgress> progress = {};
        bool hasPart = false;
        std::optional<JobOutcome> outcome = {};
    };
    void tell(JobRun &run, const News &news);

    /// See JobTurn; called in the threads of steps.
    virtual int threads() const = 0;
    virtual void spread(int count, const std::function<void(int)> &part) = 0;

signals:
    /// From any thread: there are news.
    void told();

protected:
    /// Has all steps of the run made, one after the other. False: there is no thread for it just now.
    virtual bool start(JobRun &run) = 0;
    /// Called before the window's thread waits for a run: makes what is to be made in that thread.
    virtual void makeAllSteps(JobRun &run);
    /// Tells one run's news, if there are any.
    bool deliver();
    void stopAll();

private:
    using RunNews = std::pair<JobRun *, News>;
    std::optional<RunNews> takeNews();
    std::optional<News> awaitNewsOf(const JobRun *run, QDeadlineTimer end);
    void pass(JobRun *run, const News &news);
    bool isThere(const JobRun *run) const;
    std::unique_ptr<JobRun> take(const JobRun *run);
    void startWaiting();
    void stepHere();

    std::vector<std::unique_ptr<JobRun>> m_runs; ///< of the window's thread alone
    std::deque<JobRun *> m_waiting; ///< for a thread; until then their steps are made in that one, in turn
    QTimer m_turns; ///< while there are some

    std::mutex m_mutex; ///< for what follows
    std::condition_variable m_hasNews;
    std::vector<RunNews> m_news; ///< one entry a run; the oldest first, an end as old as it is
};
