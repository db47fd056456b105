#include "app/lastsession.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/recentplaces.h"
#include "document/utf16text.h"
#include "editor/ctltabbar.h"
#include "platform/qpeapplication.h"
#include "settings/moresettings.h"

#include <utility>

namespace {

constexpr std::chrono::seconds gathering{ 1 }; ///< in which changes are gathered

bool isWanted()
{
    return moreSettings().OpenSession != 0;
}

SessionFile::Utf16 orderOf(const TextDocument &document)
{
    const auto form = utf16FormOf(document);
    if (!form)
        return SessionFile::Utf16::No;
    return form->isBigEndian ? SessionFile::Utf16::BigEndian : SessionFile::Utf16::LittleEndian;
}

/// The code that the user has chosen, unless the file is saved in another one.
std::optional<CharCode> chosenCode(const TextDocument &document)
{
    const auto given = document.findings().givenCode;
    return given == document.charCode() ? given : std::nullopt;
}

SessionFile fileOf(const ctlEditer &editor)
{
    const TextDocument &document = editor.document();
    return { RecentPlaces::entryFor(editor), chosenCode(document), orderOf(document), keepsUtf16(document) };
}

} // namespace

LastSession::LastSession(DocumentArea &documents, DocumentLoader &loader)
    : m_documents(documents)
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
    m_opening.emplace(readSessionFiles(), m_documents, m_loader, [this] {
        m_opening.reset();
        noteChange();
    });
    m_opening->begin();
}

/// And those that are still to be opened.
SessionFiles LastSession::openFiles() const
{
    SessionFiles session;
    const ctlEditer *const current = m_opening ? m_opening->current() : m_documents.current();
    for (const ctlEditer *const editor : m_documents.editors()) {
        if (!hasFile(*editor))
            continue;
        if (editor == current)
            session.current = int(session.files.size());
        session.files << fileOf(*editor);
    }
    if (m_opening)
        m_opening->addRest(session);
    return session;
}

void LastSession::beginEnd()
{
    if (!m_atEnd)
        m_atEnd = openFiles();
    if (m_opening)
        m_opening->setPaused(true);
}

void LastSession::cancelEnd()
{
    m_atEnd.reset();
    if (m_opening)
        m_opening->setPaused(false);
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
