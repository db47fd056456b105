#include "app/arrivinginput.h"

#include "editor/ctlediter.h"
#include "files/inputreading.h"

class InputWork : public JobWork {
public:
    explicit InputWork(const SharedFd &input)
        : reading(input)
    {
    }

    Step step(JobTurn &) override
    {
        switch (reading.step()) {
        case InputReading::Step::More:
            return Step::More;
        case InputReading::Step::Done:
            return Step::Done;
        case InputReading::Step::Failed:
            return Step::Failed;
        }
        Q_UNREACHABLE();
    }

    InputReading reading;
};

ArrivingInput::ArrivingInput(
    ctlEditer &editor, const SharedFd &input, NoticeQueue &notices, JobRunner &runner)
{
    TextDocument &document = editor.document();
    auto work = std::make_unique<InputWork>(input);
    m_work = work.get();
    m_sign.emplace(notices, &editor, WorkNotice::Work::Loading, [this] { m_work->reading.end(); });
    connect(&document, &TextDocument::refused, this, [this] {
        if (m_sign)
            m_sign->refuse();
    });
    document.setHeld(true);
    m_job.emplace(std::move(work), runner);
    connect(&*m_job, &Job::finished, this, &ArrivingInput::finish);
}

ArrivingInput::~ArrivingInput() = default;

void ArrivingInput::finish(JobOutcome outcome)
{
    m_sign.reset();
    const InputReading &reading = m_work->reading;
    emit ended(reading.kept(), reading.size(), outcome == JobOutcome::Done);
}
