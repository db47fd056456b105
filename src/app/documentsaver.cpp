#include "app/documentsaver.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/editruns.h"
#include "app/recentplaces.h"
#include "app/windowjobs.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "filedialog/documentsfolder.h"
#include "platform/qcop.h"

#include <QEventLoop>

using namespace Qt::StringLiterals;

namespace {

/// Tells the file explorer, when it runs, that a file has changed.
void announceSaved(const ctlEditer &editor)
{
    const QString channel = u"QPE/Application/corvex"_s;
    if (!QCopChannel::isRegistered(channel))
        return;
    QCopEnvelope message(channel, u"refreshListItem(QString,QString)"_s);
    message << editor.path() << editor.name();
}

} // namespace

DocumentSaver::DocumentSaver(QWidget &window, const WindowDialogs &dialogs, DocumentArea &documents,
    RecentPlaces &places, EditRuns &edits, const WindowJobs &jobs)
    : m_window(window)
    , m_dialogs(dialogs)
    , m_documents(documents)
    , m_places(places)
    , m_edits(edits)
    , m_jobs(jobs)
{
    connect(&documents, &DocumentArea::closed, this, [this](const ctlEditer *editor) {
        const auto closed = m_saving.extract(editor);
        for (const Then &then : closed ? closed.mapped().then : std::vector<Then>())
            then(false);
    });
}

DocumentSaver::~DocumentSaver() = default;

void DocumentSaver::beginSave(ctlEditer *editor, const Then &then)
{
    beginSaveTo(editor, { editor->path(), editor->name() }, then);
}

void DocumentSaver::beginSaveTo(ctlEditer *editor, const FileChoice &file, const Then &then)
{
    if (file.folder.isEmpty())
        beginSaveAs(editor, {}, then);
    else if (isLarge(*editor))
        saveBehind(editor, file, then);
    else
        finish(editor, editor->saveFile(file.folder, file.name, file.charCode, file.returnCode), then);
}

/// Its file may have to be read through before.
bool DocumentSaver::isLarge(const ctlEditer &editor) const
{
    return editor.document().store().length() >= m_jobs.fewest
        || (hasFile(editor) && fileNow(editor).size >= m_jobs.fewest);
}

void DocumentSaver::saveBehind(ctlEditer *editor, const FileChoice &file, const Then &then)
{
    TextDocument &document = editor->document();
    if (!document.requestChange())
        return then ? then(false) : void();
    auto save = document.beginSave(file.folder, file.name, file.charCode, file.returnCode);
    if (!save) {
        editor->noteSaved({ SaveResult::Outcome::Binary, Overtaken::No, false, {} });
        return finish(editor, false, then);
    }
    m_documents.refresh(editor);
    UnderWay &begun = m_saving[editor];
    begun.file =
        std::make_unique<SavingFile>(*editor, std::move(save), m_documents.notices(), *m_jobs.runner);
    if (then)
        begun.then.push_back(then);
    connect(begun.file.get(), &SavingFile::ended, this,
        [this, editor](const SaveResult &result, JobOutcome outcome) { endBehind(editor, result, outcome); });
}

/// Who has stopped it needs no box.
void DocumentSaver::endBehind(ctlEditer *editor, const SaveResult &result, JobOutcome outcome)
{
    const UnderWay over = std::move(m_saving.extract(editor).mapped());
    const QPointer<ctlEditer> document = editor;
    if (outcome != JobOutcome::Stopped)
        editor->noteSaved(result);
    emit m_documents.workEnded();
    const bool isSaved = document && result.outcome == SaveResult::Outcome::Written;
    if (document)
        finish(editor, isSaved, {});
    for (const Then &then : over.then)
        then(isSaved);
}

/// Codes that were chosen are the document's also when it could not be written.
void DocumentSaver::finish(ctlEditer *editor, bool isSaved, const Then &then)
{
    m_documents.refresh(editor);
    if (isSaved) {
        m_places.dropCarried(*editor);
        announceSaved(*editor);
    }
    if (then)
        then(isSaved);
}

void DocumentSaver::beginSaveAs(ctlEditer *editor, std::optional<CharCode> charCode, const Then &then)
{
    if (!editor->document().requestChange())
        return then ? then(false) : void();
    FileChoice start = startFor(editor);
    start.charCode = charCode;
    askAgain(editor, start, then);
}

void DocumentSaver::beginSaveAsIn(
    ctlEditer *editor, std::optional<CharCode> charCode, std::optional<ReturnCode> returnCode)
{
    if (!editor->document().requestChange())
        return;
    FileChoice start = startFor(editor);
    start.charCode = charCode;
    start.returnCode = returnCode;
    askAgain(editor, start, {});
}

std::optional<FileChoice> DocumentSaver::askForName(ctlEditer *editor)
{
    return askForName(editor, startFor(editor));
}

std::optional<FileChoice> DocumentSaver::askForName(ctlEditer *editor, const FileChoice &start)
{
    m_documents.setCurrent(editor);
    return m_dialogs.chooseFile(&m_window, frmFileDialog::SaveAs, start);
}

void DocumentSaver::askAgain(ctlEditer *editor, const FileChoice &start, const Then &then)
{
    if (const auto file = askForName(editor, start))
        beginSaveUnder(editor, *file, then);
    else if (then)
        then(false);
}

/// What was chosen is not lost when it cannot be written, and can be mended. Binary text cannot be saved
/// anywhere.
void DocumentSaver::beginSaveUnder(ctlEditer *editor, const FileChoice &file, const Then &then)
{
    DocumentsFolder::makeForSaving(file.folder);
    beginSaveTo(editor, file, [this, then, file, document = QPointer(editor)](bool isSaved) {
        if (!isSaved && document && document->document().charCode() != CharCode::Binary)
            askAgain(document, file, then);
        else if (then)
            then(isSaved);
    });
}

bool DocumentSaver::save(ctlEditer *editor)
{
    return wait([&](const Then &then) { beginSave(editor, then); });
}

bool DocumentSaver::saveTo(ctlEditer *editor, const FileChoice &file)
{
    return wait([&](const Then &then) { beginSaveTo(editor, file, then); });
}

bool DocumentSaver::saveAs(ctlEditer *editor, std::optional<CharCode> charCode)
{
    return wait([&](const Then &then) { beginSaveAs(editor, charCode, then); });
}

void DocumentSaver::saveAll()
{
    if (ctlEditer *const before = m_documents.current())
        saveRest(m_documents.tabBar()->ids(), before);
}

/// A document that asks something is shown for that; where saving stops, it stays so. Who has gone elsewhere
/// while a long text was written stays there.
void DocumentSaver::saveRest(QList<int> ids, const QPointer<ctlEditer> &before)
{
    while (!ids.isEmpty()) {
        ctlEditer *const editor = m_documents.tabBar()->editorOf(ids.constFirst());
        if (editor && m_edits.isUnderWay(editor)) {
            m_edits.whenEnded(editor, [this, ids](bool isMade) {
                if (isMade)
                    saveRest(ids, {});
            });
            return;
        }
        ids.removeFirst();
        if (!editor || !editor->edited())
            continue;
        beginSave(
            editor, [this, ids, back = isLarge(*editor) ? QPointer<ctlEditer>() : before](bool isSaved) {
                if (isSaved)
                    saveRest(ids, back);
            });
        return;
    }
    if (before)
        m_documents.setCurrent(before);
}

void DocumentSaver::whenSaved(const ctlEditer *editor, const Then &then)
{
    m_saving.at(editor).then.push_back(then);
}

bool DocumentSaver::wait(const std::function<void(const Then &)> &begin)
{
    struct Waiting {
        QEventLoop loop;
        bool isOver = false;
        bool isSaved = false;
    };
    const auto waiting = std::make_shared<Waiting>();
    begin([waiting](bool isSaved) {
        waiting->isOver = true;
        waiting->isSaved = isSaved;
        waiting->loop.quit();
    });
    if (!waiting->isOver)
        waiting->loop.exec();
    return waiting->isSaved;
}

void DocumentSaver::waitForAll()
{
    while (!m_saving.empty()) {
        const ctlEditer *const editor = m_saving.begin()->first;
        wait([this, editor](const Then &then) { whenSaved(editor, then); });
    }
}

bool DocumentSaver::giveUp(QDeadlineTimer end)
{
    bool isAnySaved = false;
    for (auto &[editor, underWay] : m_saving)
        isAnySaved |= underWay.file->giveUp(end);
    return isAnySaved;
}
