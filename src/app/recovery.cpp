#include "app/recovery.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/documentloader.h"
#include "app/frmrecovery.h"
#include "app/windowjobs.h"
#include "editor/noticequeue.h"
#include "files/filename.h"
#include "platform/freeturn.h"
#include "platform/keypause.h"
#include "platform/messagebox.h"
#include "platform/qpeapplication.h"
#include "platform/windowsystem.h"
#include "recovery/recoveryjournals.h"

#include <QWidget>
#include <QWindow>

#include <utility>

namespace {

QString nameOf(const LeftBehind &text)
{
    return text.name.isEmpty() ? ctlEditer::nameOfUnnamed() : text.name;
}

QString shownName(const LeftBehind &text)
{
    return FileName::forMessage(nameOf(text));
}

UnsavedText shown(const LeftBehind &text)
{
    return { nameOf(text), text.path, QDateTime::fromMSecsSinceEpoch(text.time), text.length };
}

/// Cursor, selection and view, which are within the text.
void showPlace(ctlEditer &editor, const ViewPlace &place)
{
    if (place.anchor)
        editor.select({ *place.anchor }, place.cursor);
    else
        editor.setCursorPlace(place.cursor);
    editor.setTopRow(editor.store().rowColAt(place.top).row);
    editor.setXOffset(place.left);
}

/// Whatever has become of the file's times.
bool hasRead(const ctlEditer &editor, std::optional<quint64> contentHash)
{
    const FileVersion &file = editor.document().file().version();
    return contentHash && file.stamp().inode != 0 && file.content().value() == *contentHash;
}

std::function<QString()> whyApart(bool isWhole, bool isFileThere)
{
    if (!isWhole)
        return [] { return Recovery::tr("Parts are missing; a line with dots stands for each"); };
    if (isFileThere)
        return [] { return Recovery::tr("The file has changed; this text is in no file yet"); };
    return [] { return Recovery::tr("The file is gone; this text is in no file yet"); };
}

} // namespace

Recovery::Recovery(QWidget &window, DocumentArea &documents, DocumentLoader &loader,
    RecoveryJournals &journals, const WindowJobs &jobs)
    : m_window(window)
    , m_documents(documents)
    , m_loader(loader)
    , m_journals(journals)
    , m_jobs(jobs)
{
    connect(&journals, &RecoveryJournals::leftBehindChanged, &journals, &RecoveryJournals::lookForLeftBehind);
    connect(&journals, &RecoveryJournals::foundLeftBehind, this, &Recovery::tell);
    connect(&documents, &DocumentArea::closed, this, &Recovery::noteClosed);
    if (auto *application = qobject_cast<QPEApplication *>(qApp))
        connect(application, &QPEApplication::endingAtOnce, this, &Recovery::giveUp);
}

Recovery::~Recovery() = default;

void Recovery::lookWhenShown()
{
    if (QWindow *const shown = m_window.windowHandle(); shown && !std::exchange(m_hasLooked, true))
        shown->installEventFilter(this);
}

bool Recovery::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Expose && m_window.windowHandle()->isExposed()) {
        object->removeEventFilter(this);
        m_journals.lookForLeftBehind();
    }
    return false;
}

void Recovery::tell(const std::vector<LeftBehind> &found)
{
    m_found = found;
    NoticeQueue &notices = m_documents.notices();
    if (m_found.empty()) {
        notices.withdraw(NoticeKind::Unsaved);
        return;
    }
    const int count = int(m_found.size());
    Notice notice{ NoticeKind::Unsaved, nullptr,
        [count] {
            return count == 1 ? tr("1 document was not saved")
                              : tr("%n documents were not saved", nullptr, count);
        },
        {} };
    notice.offers.push_back({ [] { return tr("Restore"); }, [this] { ask(); } });
    notice.offers.push_back(
        { [] { return tr("Later"); }, [this] { m_documents.notices().withdraw(NoticeKind::Unsaved); } });
    notice.isDismissable = false; // "Later" says it
    notices.put(std::move(notice));
}

void Recovery::ask()
{
    const std::vector<LeftBehind> found = m_found; // meanwhile there may be more
    QList<UnsavedText> texts;
    for (const LeftBehind &text : found)
        texts << shown(text);
    frmRecovery form(&m_window, texts);
    const int result = form.exec();
    WindowSystem::activate(m_window);
    m_documents.notices().withdraw(NoticeKind::Unsaved);
    if (result == frmRecovery::Later)
        return;
    std::vector<LeftBehind> chosen;
    for (const int row : form.chosen())
        chosen.push_back(found[size_t(row)]);
    result == frmRecovery::Restore ? restoreAll(chosen) : discardAll(chosen);
    m_journals.lookForLeftBehind();
}

/// Each in a document of its own, of which the first is shown.
void Recovery::restoreAll(const std::vector<LeftBehind> &texts)
{
    m_documents.commitComposition();
    ctlEditer *first = nullptr;
    for (const LeftBehind &text : texts) {
        KeyPause::begin();
        ctlEditer *const editor = isLong(text) ? restoreLong(text) : restore(text);
        first = first ? first : editor;
    }
    if (first)
        m_documents.present(first);
    tellLost();
}

bool Recovery::isLong(const LeftBehind &text) const
{
    return text.length >= m_jobs.fewest || (text.readAs && m_loader.isLong(text.path + text.name));
}

/// The document that has it then; null when it could not be restored.
ctlEditer *Recovery::restore(const LeftBehind &text)
{
    const Place place = placeFor(text, freshInView());
    Restored restored;
    {
        const QMultiLineEdit::Batch batch(*place.editor);
        restored = m_journals.restore(text, place.editor->document());
    }
    return take(text, place, restored);
}

/// The document that will have it, when its turn is now.
ctlEditer *Recovery::restoreLong(const LeftBehind &text)
{
    LongText next{ text, m_journals.claim(text), {} };
    if (next.claimed)
        next.journal = openAgain(next.claimed);
    if (!next.journal) {
        addLost(text);
        return nullptr;
    }
    m_waiting.push_back(std::move(next));
    if (m_current)
        return nullptr;
    beginNext(freshInView());
    return m_current->place.editor;
}

void Recovery::beginNext(ctlEditer *fresh)
{
    LongText next = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_current = { next.found, placeFor(next.found, fresh) };
    m_current->restoring = std::make_unique<LongRestoring>(*m_current->place.editor, std::move(next),
        LongRestoring::Parts{ m_documents, m_loader, m_journals, m_jobs });
    const LongRestoring *const restoring = m_current->restoring.get();
    connect(restoring, &LongRestoring::stopped, this, &Recovery::stopLong);
    connect(restoring, &LongRestoring::failed, this, &Recovery::failLong);
    connect(restoring, &LongRestoring::ended, this, &Recovery::endLong);
    m_documents.arrange();
}

/// What its user does in other documents meanwhile goes on: none is shown in their place.
Recovery::Current Recovery::takeCurrent()
{
    Current ended = std::move(*m_current);
    m_current.reset();
    if (m_documents.current() == ended.place.editor)
        KeyPause::begin();
    return ended;
}

void Recovery::endLong(const Restored &restored)
{
    const Current ended = takeCurrent();
    take(ended.text, ended.place, restored);
    goOn();
}

/// It is to be found again at once, with what waits.
void Recovery::stopLong()
{
    Current stopped = takeCurrent();
    stopped.place.giveBack();
    stopped.restoring.reset();
    m_waiting.clear();
    goOn();
}

/// So is this one. Others may be shorter.
void Recovery::failLong()
{
    Current failed = takeCurrent();
    failed.place.giveBack();
    failed.restoring.reset();
    m_tooLarge << shownName(failed.text);
    goOn();
}

/// The program ends, and the next start is to find what was to come back.
void Recovery::giveUp()
{
    m_current.reset();
    m_waiting.clear();
}

void Recovery::goOn()
{
    emit m_documents.workEnded();
    if (!m_waiting.empty())
        beginNext(nullptr);
    m_journals.lookForLeftBehind();
    FreeTurn::once(this, [this] { tellLost(); });
}

void Recovery::noteClosed(const ctlEditer *editor)
{
    if (!m_current || m_current->place.editor != editor)
        return;
    giveUp();
    m_journals.lookForLeftBehind();
    FreeTurn::once(this, [this] { tellLost(); });
}

/// The document that has it; null where it was not restored.
ctlEditer *Recovery::take(const LeftBehind &text, const Place &place, const Restored &restored)
{
    ctlEditer *const editor = place.editor;
    if (!restored.isRestored()) {
        addLost(text);
        place.giveBack();
        return nullptr;
    }
    const QString file = text.path + text.name;
    using Outcome = Restored::Outcome;
    const bool isOfFile = !editor->path().isEmpty();
    const bool isOneTooMany =
        isOfFile && place.ofFile && place.ofFile != editor && fullName(*place.ofFile) == file;
    if (restored.outcome == Outcome::Saved && isOneTooMany) {
        place.giveBack();
        tellSaved(*place.ofFile);
        return place.ofFile;
    }
    showPlace(*editor, restored.place);
    if (isOneTooMany)
        editor->document().detachFromFile(tr("%1 (other edits)").arg(text.name));
    m_documents.refresh(editor);
    if (isOneTooMany)
        tellApart(
            *editor, [] { return tr("The file has other edits in its tab; these are in no file yet"); },
            file);
    else if (restored.outcome == Outcome::Saved)
        tellSaved(*editor);
    else if (restored.outcome != Outcome::Edited && !isOfFile && !text.path.isEmpty())
        tellApart(*editor, whyApart(restored.outcome == Outcome::New, FileName::exists(file)), file);
    return editor;
}

void Recovery::addLost(const LeftBehind &text)
{
    m_lost << shownName(text);
}

/// When all that was to be restored is there or lost.
void Recovery::tellLost()
{
    if (m_current || !m_waiting.empty())
        return;
    tellNames(m_lost, tr("These texts could not be restored:\n%1"));
    tellNames(m_tooLarge, tr("There is not enough memory to restore these texts:\n%1"));
}

void Recovery::tellNames(QStringList &texts, const QString &message)
{
    if (texts.isEmpty())
        return;
    const QString names = std::exchange(texts, {}).join(u'\n');
    MessageBox::critical(&m_window, tr("Restore"), message.arg(names));
}

/// Until it is saved.
void Recovery::tellApart(ctlEditer &editor, const std::function<QString()> &why, const QString &file)
{
    Notice notice{ NoticeKind::RestoredApart, &editor, why, {} };
    if (FileName::exists(file))
        notice.offers.push_back({ [] { return tr("Open the file"); }, [this, file] { showFile(file); } });
    m_documents.notices().put(std::move(notice));
    connect(
        &std::as_const(editor).document(), &TextDocument::saved, &editor,
        [this, &editor] { m_documents.notices().withdraw(NoticeKind::RestoredApart, &editor); },
        Qt::SingleShotConnection);
}

/// Until it is edited.
void Recovery::tellSaved(ctlEditer &editor)
{
    m_documents.notices().put({ NoticeKind::RestoredApart, &editor,
        [] { return tr("Nothing is missing; this text was saved already"); }, {} });
    connect(
        &std::as_const(editor).document(), &TextDocument::changed, &editor,
        [this, &editor] { m_documents.notices().withdraw(NoticeKind::RestoredApart, &editor); },
        Qt::SingleShotConnection);
}

/// What is edited in its tab stays as it is.
void Recovery::showFile(const QString &file)
{
    if (ctlEditer *const open = m_documents.editorOfFile(file))
        m_documents.present(open);
    else
        m_loader.open(file, {});
}

/// A document in view that nobody would miss; null for none.
ctlEditer *Recovery::freshInView() const
{
    ctlEditer *const current = m_documents.current();
    return current && isFresh(*current) ? current : nullptr;
}

/// The document of the same file, if it has nothing to lose; else the fresh one, if there is one, or a new
/// one.
Recovery::Place Recovery::placeFor(const LeftBehind &text, ctlEditer *fresh)
{
    ctlEditer *const ofFile = m_documents.editorOfFile(text.path + text.name);
    if (ofFile && isToBeTaken(*ofFile, text))
        return { ofFile, ofFile, [] {} };
    if (fresh)
        return { fresh, ofFile, m_loader.freshAgain(fresh) };
    ctlEditer *const made = m_documents.add(FileName::forDisplay(text.name));
    return { made, ofFile, [this, made] { m_documents.close(made); } };
}

bool Recovery::isToBeTaken(const ctlEditer &ofFile, const LeftBehind &text)
{
    return !ofFile.edited() && !ofFile.document().isHeld()
        && (text.isFileUnchanged || hasRead(ofFile, text.contentHash) || ofFile.document().file().isNew());
}

void Recovery::discardAll(const std::vector<LeftBehind> &texts)
{
    for (const LeftBehind &text : texts)
        m_journals.discard(text);
}
