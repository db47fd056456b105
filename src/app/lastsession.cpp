#include "app/lastsession.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/documentloader.h"
#include "app/recentplaces.h"
#include "editor/ctltabbar.h"
#include "platform/qpeapplication.h"
#include "settings/moresettings.h"

#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace {

constexpr std::chrono::seconds gathering{ 1 }; ///< in which changes are gathered

/// What is no file, such as a pipe, could keep the start waiting.
bool canBeRead(const RecentEntry &entry)
{
    const QByteArray name = FileName::toBytes(entry.path + entry.name);
    struct stat info;
    return ::stat(name.constData(), &info) == 0 && S_ISREG(info.st_mode)
        && ::access(name.constData(), R_OK) == 0;
}

bool isWanted()
{
    return moreSettings().OpenSession != 0;
}

} // namespace

LastSession::LastSession(DocumentArea &documents, DocumentLoader &loader)
    : QObject(&documents)
    , m_documents(documents)
    , m_loader(loader)
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(gathering);
    connect(&m_soon, &QTimer::timeout, this, &LastSession::write);
    connect(&documents, &DocumentArea::added, this, &LastSession::cancelEnd);
    for (const auto signal :
        { &DocumentArea::closed, &DocumentArea::currentChanged, &DocumentArea::refreshed })
        connect(&documents, signal, this, &LastSession::noteChange);
    connect(documents.tabBar(), &QTabBar::tabMoved, this, &LastSession::noteChange);
    if (auto *const application = qobject_cast<QPEApplication *>(qApp))
        connect(application, &QPEApplication::sessionEnded, this, &LastSession::write);
}

void LastSession::open()
{
    if (std::exchange(m_hasOpened, true) || !isWanted())
        return;
    const SessionFiles session = readSessionFiles();
    ctlEditer *current = nullptr;
    for (int i = 0; i < session.files.size(); ++i) {
        const RecentEntry &entry = session.files[i];
        if (!canBeRead(entry))
            continue;
        m_loader.open(entry.path + entry.name, {});
        ctlEditer *const editor = m_documents.editorOfFile(entry.path + entry.name);
        if (editor)
            show(editor, entry);
        if (i == session.current)
            current = editor;
    }
    if (current)
        m_documents.present(current);
}

/// In a text that is still coming, when all of it is there.
void LastSession::show(ctlEditer *editor, const RecentEntry &place)
{
    if (!std::as_const(*editor).document().isHeld()) {
        RecentPlaces::show(*editor, place);
        return;
    }
    connect(
        &std::as_const(*editor).document(), &TextDocument::replaced, editor,
        [editor, place] {
            if (editor->cursorOffset() == Offset()) // else its user has gone elsewhere
                RecentPlaces::show(*editor, place);
        },
        Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

SessionFiles LastSession::openFiles() const
{
    SessionFiles session;
    for (const ctlEditer *const editor : m_documents.editors()) {
        if (!hasFile(*editor))
            continue;
        if (editor == m_documents.current())
            session.current = int(session.files.size());
        session.files << RecentPlaces::entryFor(*editor);
    }
    return session;
}

void LastSession::beginEnd()
{
    if (!m_atEnd)
        m_atEnd = openFiles();
}

void LastSession::cancelEnd()
{
    m_atEnd.reset();
    noteChange();
}

void LastSession::noteChange()
{
    if (isWanted() && !m_atEnd && !m_soon.isActive())
        m_soon.start();
}

void LastSession::write()
{
    m_soon.stop();
    if (isWanted() && m_hasOpened)
        writeSessionFiles(m_atEnd ? *m_atEnd : openFiles());
}

void LastSession::applySettings()
{
    noteChange();
}
