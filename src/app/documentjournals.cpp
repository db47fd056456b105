#include "app/documentjournals.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "editor/noticequeue.h"
#include "files/filename.h"
#include "files/ownfile.h"
#include "platform/qpeapplication.h"
#include "recovery/recoveryjournals.h"

#include <QGuiApplication>

#include <cerrno>
#include <chrono>

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
        m_journals.attach(editor->document(), [editor] { return placeOf(*editor); });
    });
    connect(&documents, &DocumentArea::closed, this, &DocumentJournals::closeJournal);
    connect(&journals, &RecoveryJournals::failureChanged, this, &DocumentJournals::tellFailure);
    connect(qApp, &QGuiApplication::applicationStateChanged, this, &DocumentJournals::writeSoon);
    if (auto *application = qobject_cast<QPEApplication *>(qApp))
        connect(application, &QPEApplication::endingAtOnce, this, &DocumentJournals::lookAtAll);
}

void DocumentJournals::noteLook(const ctlEditer *editor)
{
    if (isTextNowhereElse(*editor))
        m_journals.keep(editor->document(), KeptFor::Deletion);
    else if (hasFile(*editor) && FileName::exists(fullName(*editor)))
        m_journals.endKeeping(editor->document(), KeptFor::Deletion);
}

/// Before the journals are written for the last time: files of documents that are not shown may be gone too.
void DocumentJournals::lookAtAll()
{
    for (const ctlEditer *const editor : m_documents.editors())
        noteLook(editor);
}

void DocumentJournals::closeJournal(ctlEditer *editor)
{
    if (isTextNowhereElse(*editor))
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
