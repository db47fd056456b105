#include "app/interruptedsaves.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/documentloader.h"
#include "files/filename.h"
#include "files/stagedfile.h"
#include "files/stagedfolders.h"
#include "files/statefolder.h"
#include "settings/config.h"

namespace {

class StrayRemoval : public JobWork {
public:
    Step step(JobTurn &) override
    {
        removeNotedStrays();
        return Step::Done;
    }
};

void removeStraysBeside(const ctlEditer &editor)
{
    const FileCalls &calls = FileCalls::system();
    if (const auto file =
            hasFile(editor) ? followedLinks(FileName::toBytes(fullName(editor)), calls) : std::nullopt)
        removeStagedStraysOnce(folderOf(*file), calls);
}

QString nameOf(const LostCopy &copy)
{
    return FileName::forDisplay(FileName::fromBytes(copy.file.sliced(copy.file.lastIndexOf('/') + 1)));
}

} // namespace

InterruptedSaves::InterruptedSaves(DocumentArea &documents, DocumentLoader &loader, JobRunner &jobs)
    : m_documents(documents)
    , m_loader(loader)
    , m_jobs(jobs)
{
    // Later: what is read is shown first, and a program that saves has its own file there.
    connect(&documents, &DocumentArea::added, this, [](ctlEditer *editor) {
        const auto clean = [editor] { removeStraysBeside(*editor); };
        connect(&editor->document(), &TextDocument::replaced, editor, clean, Qt::QueuedConnection);
        connect(&editor->document(), &TextDocument::saved, editor, clean, Qt::QueuedConnection);
    });
}

void InterruptedSaves::tell()
{
    m_copies = lostCopies();
    removeStagedStraysOnce(Config::folder());
    m_removal = std::make_unique<Job>(std::make_unique<StrayRemoval>(), m_jobs);
    tellNext();
}

void InterruptedSaves::tellNext()
{
    m_documents.notices().withdraw(NoticeKind::InterruptedSave);
    if (m_copies.isEmpty())
        return;
    Notice notice{ NoticeKind::InterruptedSave, nullptr, [this] { return text(); }, {} };
    const bool isFileKnown = !m_copies.first().file.isEmpty();
    notice.offers.push_back(
        { [isFileKnown] { return isFileKnown ? tr("Open both") : tr("Open it"); }, [this] { openBoth(); } });
    notice.offers.push_back({ [] { return tr("Delete the copy"); }, [this] { remove(); } });
    notice.offers.push_back({ [] { return tr("Later"); }, [this] { goOn(); } });
    notice.dismissed = [this] { goOn(); };
    m_documents.notices().put(std::move(notice));
}

QString InterruptedSaves::text() const
{
    const LostCopy &copy = m_copies.first();
    return copy.file.isEmpty() ? tr("A save was interrupted. The old text of its file is kept.")
                               : tr("Saving %1 was interrupted. Its old text is kept.").arg(nameOf(copy));
}

/// The copy stays: what is opened is not on the disk under a name of the user's yet.
void InterruptedSaves::openBoth()
{
    const LostCopy copy = m_copies.first();
    const QString file = FileName::fromBytes(copy.file);
    if (!file.isEmpty() && FileName::exists(file))
        m_loader.open(file, {});
    const QString name = file.isEmpty() ? tr("Old text") : tr("%1 before").arg(nameOf(copy));
    m_loader.openUnsaved(FileName::fromBytes(copy.name), name, {});
}

void InterruptedSaves::remove()
{
    removeLostCopy(m_copies.first().name);
    goOn();
}

void InterruptedSaves::goOn()
{
    m_copies.removeFirst();
    tellNext();
}
