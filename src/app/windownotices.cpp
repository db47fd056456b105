#include "app/windownotices.h"

#include "app/documentjournals.h"
#include "editor/ctlediter.h"
#include "filedialog/folderjobs.h"
#include "recovery/recoveryjournals.h"

WindowNotices::WindowNotices(QWidget &window, DocumentArea &documents, DocumentLoader &loader,
    DocumentSaver &saver, const WindowJobs &jobs, RecoveryJournals &journals,
    DocumentJournals &documentJournals)
    : m_writing(documents, saver)
    , m_reading(documents, loader)
    , m_disk(window, documents, loader, saver, jobs)
    , m_obstacles(documents, saver)
    , m_interruptedSaves(documents, loader, FolderJobs().threads())
    , m_keptFiles(documents, loader)
{
    // Behind the save, which ends the journal of what was before.
    QObject::connect(&m_writing, &WritingNotices::substituted, &journals,
        [&journals](ctlEditer *editor) { journals.keep(editor->document(), KeptFor::Substitution); });
    QObject::connect(&m_writing, &WritingNotices::settled, &journals,
        [&journals](ctlEditer *editor) { journals.endKeeping(editor->document(), KeptFor::Substitution); });
    QObject::connect(&m_disk, &DiskNotices::looked, &documentJournals, &DocumentJournals::noteLook);
}

void WindowNotices::tellOfEarlierRuns()
{
    m_interruptedSaves.tell();
    m_keptFiles.tell();
}
