#include "app/contentreader.h"

#include "app/documentfile.h"
#include "files/contentreading.h"
#include "files/filename.h"

namespace {

class ContentWork : public JobWork {
public:
    ContentWork(const QByteArray &name, const FileCalls &calls)
        : m_reading(name, calls)
    {
    }
    Step step(JobTurn &) override { return m_reading.step() ? Step::More : Step::Done; }
    const std::optional<SeenContent> &seen() const { return m_reading.seen(); }

private:
    ContentReading m_reading;
};

} // namespace

ContentReader::ContentReader(JobRunner &jobs, const FileCalls &calls)
    : m_jobs(jobs)
    , m_calls(calls)
{
}

void ContentReader::read(ctlEditer *editor)
{
    const auto reading = m_readings.find(editor);
    if (reading != m_readings.end()) {
        reading->second.isAskedAgain = true;
        return;
    }
    connect(editor, &QObject::destroyed, this, &ContentReader::forget, Qt::UniqueConnection);
    start(editor);
}

void ContentReader::forget(const QObject *document)
{
    m_readings.erase(document);
}

void ContentReader::start(ctlEditer *editor)
{
    const QString file = fullName(*editor);
    auto work = std::make_unique<ContentWork>(FileName::toBytes(file), m_calls);
    const ContentWork &reading = *work;
    Reading &started = m_readings[editor];
    started.job = std::make_unique<Job>(std::move(work), m_jobs);
    connect(started.job.get(), &Job::finished, this,
        [this, editor, file, &reading] { finish(editor, file, reading.seen()); });
}

void ContentReader::finish(ctlEditer *editor, const QString &file, const std::optional<SeenContent> &content)
{
    const Reading over = std::move(m_readings.extract(editor).mapped());
    if (content && fullName(*editor) == file)
        emit seen(editor, *content);
    else if (over.isAskedAgain)
        read(editor);
}
