#include "jobs/jobrunner.h"

#include <algorithm>
#include <chrono>

namespace {

void join(JobRunner::News &news, const JobRunner::News &later)
{
    if (later.progress)
        news.progress = later.progress;
    if (later.outcome)
        news.outcome = later.outcome;
    news.hasPart |= later.hasPart;
}

std::chrono::steady_clock::time_point timeOf(QDeadlineTimer end)
{
    // The clock's last moment would overflow in its sums.
    constexpr std::chrono::hours longest{ 24 };
    return std::chrono::steady_clock::now()
        + (end.isForever() ? longest
                           : std::min<std::chrono::nanoseconds>(longest, end.remainingTimeAsDuration()));
}

} // namespace

JobRunner::JobRunner()
{
    connect(this, &JobRunner::told, this, &JobRunner::deliver, Qt::QueuedConnection);
    m_turns.callOnTimeout(this, &JobRunner::stepHere);
}

JobRunner::~JobRunner()
{
    for (const auto &run : m_runs) {
        if (run->listener())
            run->listener()->noteNoEnd();
    }
}

JobRun *JobRunner::run(std::unique_ptr<JobWork> work, JobRun::Listener &listener)
{
    m_runs.push_back(std::make_unique<JobRun>(std::move(work), *this, listener));
    JobRun *const run = m_runs.back().get();
    m_waiting.push_back(run);
    startWaiting();
    return run;
}

bool JobRunner::wait(JobRun *run, QDeadlineTimer end)
{
    makeAllSteps(*run);
    while (isThere(run)) {
        const std::optional<News> news = awaitNewsOf(run, end);
        if (!news)
            return false;
        pass(run, *news);
    }
    return true;
}

/// In their order, which those of one thread rely upon.
void JobRunner::startWaiting()
{
    while (!m_waiting.empty() && start(*m_waiting.front()))
        m_waiting.pop_front();
    if (m_waiting.empty())
        m_turns.stop();
    else
        m_turns.start(0);
}

void JobRunner::stepHere()
{
    startWaiting();
    if (m_waiting.empty())
        return;
    JobRun *const run = m_waiting.front();
    m_waiting.pop_front();
    if (run->step())
        m_waiting.push_back(run);
}

void JobRunner::makeAllSteps(JobRun &run)
{
    while (std::ranges::find(m_waiting, &run) != m_waiting.end())
        stepHere();
}

void JobRunner::tell(JobRun &run, const News &news)
{
    bool isFirst = false;
    {
        const std::lock_guard lock(m_mutex);
        isFirst = m_news.empty();
        const auto known = std::ranges::find(m_news, &run, &RunNews::first);
        if (known == m_news.end()) {
            m_news.push_back({ &run, news });
        } else {
            join(known->second, news);
            if (news.outcome) // ends are told in the order in which they came
                std::rotate(known, known + 1, m_news.end());
        }
        m_hasNews.notify_all();
    }
    // A run that has told its end may be gone by now.
    if (isFirst)
        emit told();
}

/// One run's at a time: whoever is told may wait in an event loop of its own, and the others' are told there.
bool JobRunner::deliver()
{
    const std::optional<RunNews> news = takeNews();
    if (news)
        pass(news->first, news->second);
    return news.has_value();
}

std::optional<JobRunner::RunNews> JobRunner::takeNews()
{
    const std::lock_guard lock(m_mutex);
    if (m_news.empty())
        return std::nullopt;
    const RunNews news = m_news.front();
    m_news.erase(m_news.begin());
    if (!m_news.empty())
        emit told();
    return news;
}

std::optional<JobRunner::News> JobRunner::awaitNewsOf(const JobRun *run, QDeadlineTimer end)
{
    std::unique_lock lock(m_mutex);
    const auto find = [this, run] { return std::ranges::find(m_news, run, &RunNews::first); };
    if (!m_hasNews.wait_until(lock, timeOf(end), [this, &find] { return find() != m_news.end(); }))
        return std::nullopt;
    const auto found = find();
    const News news = found->second;
    m_news.erase(found);
    return news;
}

/// Whoever is told may destroy its job meanwhile.
void JobRunner::pass(JobRun *run, const News &news)
{
    if (news.progress && run->listener())
        run->listener()->noteProgress(*news.progress);
    if (news.hasPart && run->listener())
        run->listener()->notePart();
    if (!news.outcome)
        return;
    const std::unique_ptr<JobRun> ended = take(run);
    if (JobRun::Listener *const listener = ended->listener())
        listener->noteEnd(ended->takeWork(), *news.outcome);
}

void JobRunner::stopAll()
{
    for (const auto &run : m_runs)
        run->stop();
}

bool JobRunner::isThere(const JobRun *run) const
{
    return std::ranges::find(m_runs, run, &std::unique_ptr<JobRun>::get) != m_runs.end();
}

std::unique_ptr<JobRun> JobRunner::take(const JobRun *run)
{
    const auto found = std::ranges::find(m_runs, run, &std::unique_ptr<JobRun>::get);
    std::unique_ptr<JobRun> taken = std::move(*found);
    m_runs.erase(found);
    return taken;
}
