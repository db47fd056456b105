#include "app/lastsession.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/documentloader.h"
#include "app/recentplaces.h"
#include "document/utf16text.h"
#include "editor/ctltabbar.h"
#include "platform/qpeapplication.h"
#include "settings/moresettings.h"

#include <sys/stat.h>
#include <unistd.h>

#include <functional>
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

/// At once, or when all of the text has come.
void whenWhole(ctlEditer *editor, const std::function<void()> &act)
{
    if (!std::as_const(*editor).document().isHeld())
        act();
    else
        QObject::connect(&std::as_const(*editor).document(), &TextDocument::replaced, editor, act,
            Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

/// As which UTF-16 text a file is to be read that was one; nothing where it is none any more.
std::optional<Utf16Form> formToRead(const ReadFindings &found, SessionFile::Utf16 before)
{
    const bool mayBe = found.utf16 || found.undecodableBytes > 0;
    if (before == SessionFile::Utf16::No || !mayBe)
        return std::nullopt;
    return found.utf16.value_or(Utf16Form{ before == SessionFile::Utf16::BigEndian, false });
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
        const SessionFile &file = session.files[i];
        if (!canBeRead(file.place))
            continue;
        const QString name = file.place.path + file.place.name;
        m_loader.open(name, file.charCode);
        ctlEditer *const editor = m_documents.editorOfFile(name);
        if (editor)
            restore(editor, file);
        if (i == session.current)
            current = editor;
    }
    if (current)
        m_documents.present(current);
}

void LastSession::restore(ctlEditer *editor, const SessionFile &file)
{
    const bool isLater = std::as_const(*editor).document().isHeld();
    const auto showPlace = [=] {
        if (!isLater || editor->cursorOffset() == Offset()) // else its user has gone elsewhere
            RecentPlaces::show(*editor, file.place);
    };
    whenWhole(editor, [=, this] {
        const auto form = formToRead(std::as_const(*editor).document().findings(), file.utf16);
        if (form && !editor->edited())
            m_loader.reopenUtf16(editor, *form, [=] {
                if (file.keepsUtf16)
                    editor->document().keepUtf16();
                showPlace();
            });
        else
            showPlace();
    });
}

SessionFiles LastSession::openFiles() const
{
    SessionFiles session;
    for (const ctlEditer *const editor : m_documents.editors()) {
        if (!hasFile(*editor))
            continue;
        if (editor == m_documents.current())
            session.current = int(session.files.size());
        session.files << fileOf(*editor);
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
