#include "app/savingfile.h"

#include "editor/ctlediter.h"
#include "platform/qpeapplication.h"

SavingFile::SavingFile(
    ctlEditer &editor, std::unique_ptr<DocumentSave> save, NoticeQueue &notices, JobRunner &runner)
    : m_editor(editor)
    , m_document(editor.document())
    , m_save(save.get())
    , m_job(std::move(save), runner)
{
    m_sign.emplace(notices, &m_editor, WorkNotice::Work::Saving, [this] { m_job.stop(); });
    connect(&m_document, &TextDocument::refused, this, [this] { m_sign->refuse(); });
    connect(&m_document, &TextDocument::awaited, this, [this](auto what) { m_sign->promise(what); });
    connect(&m_job, &Job::progressed, this, &SavingFile::note);
    connect(&m_job, &Job::finished, this, [this](JobOutcome outcome) {
        m_outcome = outcome;
        end();
    });
}

SavingFile::~SavingFile() = default;

/// What is left when all is written takes as long as the disk does.
void SavingFile::note(const JobProgress &progress)
{
    m_sign->setProgress(progress.done < progress.total
            ? std::optional(int(progress.done * 100 / progress.total))
            : std::nullopt);
}

/// A box about the end could not be answered during a run of replacements.
void SavingFile::end()
{
    if (QPEApplication::isBusy()) {
        m_end.await();
        return;
    }
    m_document.disconnect(this);
    m_sign.reset();
    const SaveResult result = m_document.endSave(*m_save);
    emit ended(result, m_outcome);
}

/// Nobody breaks off what is being put in place.
bool SavingFile::giveUp(QDeadlineTimer end)
{
    disconnect(&m_job, nullptr, this, nullptr);
    m_job.stop();
    if (!m_job.wait(end) || !m_save->isWritten())
        return false;
    m_document.endSave(*m_save);
    return true;
}
