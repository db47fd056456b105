#include "app/savingfile.h"

#include "editor/ctlediter.h"
#include "platform/qpeapplication.h"

namespace {

/// What is over by then needs no sign, which would only flicker.
constexpr std::chrono::milliseconds untold{ 100 };

} // namespace

SavingFile::SavingFile(
    ctlEditer &editor, std::unique_ptr<DocumentSave> save, NoticeQueue &notices, JobRunner &runner)
    : m_editor(editor)
    , m_document(editor.document())
    , m_notices(notices)
    , m_save(save.get())
    , m_job(std::move(save), runner)
{
    m_telling.setSingleShot(true);
    m_telling.callOnTimeout(this, &SavingFile::tell);
    m_telling.start(untold);
    connect(&m_document, &TextDocument::refused, this, [this] {
        tell();
        m_notice->refuse();
    });
    connect(&m_job, &Job::progressed, this, &SavingFile::note);
    connect(&m_job, &Job::finished, this, [this](JobOutcome outcome) {
        m_outcome = outcome;
        end();
    });
}

SavingFile::~SavingFile() = default;

void SavingFile::tell()
{
    m_telling.stop();
    if (m_notice)
        return;
    m_notice.emplace(m_notices, m_editor, WorkNotice::Work::Saving, [this] { m_job.stop(); });
    m_notice->setProgress(m_percent);
}

/// What is left when all is written takes as long as the disk does.
void SavingFile::note(const JobProgress &progress)
{
    m_percent = progress.done < progress.total ? std::optional(int(progress.done * 100 / progress.total))
                                               : std::nullopt;
    if (m_notice)
        m_notice->setProgress(m_percent);
}

/// A box about the end could not be answered during a run of replacements.
void SavingFile::end()
{
    if (QPEApplication::isBusy()) {
        m_end.await();
        return;
    }
    m_telling.stop();
    m_notice.reset();
    const SaveResult result = m_document.endSave(*m_save);
    emit ended(result, m_outcome);
}

void SavingFile::giveUp(QDeadlineTimer end)
{
    disconnect(&m_job, nullptr, this, nullptr);
    m_job.stop();
    m_job.wait(end);
}
