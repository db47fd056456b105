#include "app/documentjournals.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "editor/noticequeue.h"
#include "files/filename.h"
#include "files/ownfile.h"
#include "platform/qpeapplication.h"
#include "recovery/basereading.h"
#include "recovery/recoveryjournals.h"
#include "settings/moresettings.h"

#include <QGuiApplication>

#include <cerrno>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

ViewPlace placeOf(const ctlEditer &editor)
{
    const Offset top = editor.store().row(editor.topRow()).start;
    const auto anchor = editor.hasMarkedText() ? std::optional(editor.anchorOffset()) : std::nullopt;
    return { editor.cursorPlace(), anchor, top, editor.xOffset() };
}

/// Whether an end would lose a text that its user takes for saved. An edited one was asked about.
bool isTextNowhereElse(const ctlEditer &editor)
{
    return hasFile(editor) && !editor.edited() && editor.store().length() > 0
        && !FileName::exists(fullName(editor));
}

/// Logs are written anew by turns; a text as long as such a one is no text of the user's.
bool isKeptWhenWrittenOver(const ctlEditer &editor)
{
    constexpr qint64 longest = qint64{ 8 } << 20; // units
    return !editor.edited() && editor.store().length() > 0 && editor.store().length() <= longest;
}

/// The journal of a long text has its edits alone, which bring nothing back without the file.
bool isLostWithItsFile(const ctlEditer &editor)
{
    const UndoHistory &history = std::as_const(editor).document().history();
    return hasFile(editor) && editor.edited() && history.origin().length() > BaseReading::mostKept;
}

QString reasonOf(int error)
{
    if (hasNoLocks(error))
        return DocumentJournals::tr("files cannot be locked there");
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return DocumentJournals::tr("the disk is full");
    case EACCES:
    case EPERM:
    case EROFS:
        return DocumentJournals::tr("no permission to write");
    default:
        return DocumentJournals::tr("the disk cannot be written");
    }
}

} // namespace

DocumentJournals::DocumentJournals(DocumentArea &documents, RecoveryJournals &journals)
    : m_documents(documents)
    , m_journals(journals)
{
    connect(&documents, &DocumentArea::added, this, [this](ctlEditer *editor) {
        if (moreSettings().KeepTexts != 0)
            attach(editor);
    });
    connect(&documents, &DocumentArea::closed, this, &DocumentJournals::closeJournal);
    connect(&journals, &RecoveryJournals::failureChanged, this, &DocumentJournals::tellFailure);
    connect(qApp, &QGuiApplication::applicationStateChanged, this, &DocumentJournals::writeSoon);
    if (auto *application = qobject_cast<QPEApplication *>(qApp))
        connect(application, &QPEApplication::endingAtOnce, this, &DocumentJournals::lookAtAll);
}

void DocumentJournals::attach(ctlEditer *editor)
{
    m_journals.attach(editor->document(), [editor] { return placeOf(*editor); });
}

void DocumentJournals::applySettings()
{
    const bool isOn = moreSettings().KeepTexts != 0;
    for (ctlEditer *const editor : m_documents.editors()) {
        if (isOn == m_journals.isAttached(editor->document()))
            continue;
        if (!isOn) {
            m_journals.end(editor->document());
            continue;
        }
        attach(editor);
        noteLook(editor, FileChange::Unsure);
    }
}

/// A file that is as it was has the text; one that is not may be known to the user, who keeps his own.
void DocumentJournals::noteLook(ctlEditer *editor, FileChange change)
{
    const TextDocument &document = std::as_const(*editor).document();
    if (document.isHeld()) // it has no text yet, or is about to be another one
        return;
    const bool isWrittenOver = change == FileChange::Changed || change == FileChange::Replaced;
    const bool isOther = isWrittenOver || change == FileChange::Grown || !FileName::exists(fullName(*editor));
    if (isTextNowhereElse(*editor) || (isWrittenOver && isKeptWhenWrittenOver(*editor))
        || (isOther && isLostWithItsFile(*editor)))
        m_journals.keep(document, KeptFor::FileLost);
    else if (change == FileChange::None && fileNow(*editor) == document.file().version().stamp())
        m_journals.endKeeping(document, KeptFor::FileLost);
}

/// Before the journals are written for the last time: files on other machines may be gone without a word.
void DocumentJournals::lookAtAll()
{
    for (ctlEditer *const editor : m_documents.editors())
        noteLook(editor, FileChange::Unsure);
}

void DocumentJournals::closeJournal(ctlEditer *editor)
{
    if (!editor->document().isHeld() && isTextNowhereElse(*editor))
        m_journals.leave(editor->document());
    else
        m_journals.end(editor->document());
}

/// Who turns to something else may not come back.
void DocumentJournals::writeSoon()
{
    if (QGuiApplication::applicationState() != Qt::ApplicationActive)
        m_journals.flush(0ms);
}

void DocumentJournals::tellFailure()
{
    const int error = m_journals.failure();
    if (error == 0) {
        m_documents.notices().withdraw(NoticeKind::NoRecovery);
        return;
    }
    Notice notice{ NoticeKind::NoRecovery, nullptr,
        [error] { return tr("Recovery is off: %1").arg(reasonOf(error)); }, {} };
    notice.offers.push_back({ [] { return tr("Try again"); }, [this] { m_journals.retry(); } });
    m_documents.notices().put(std::move(notice));
}
