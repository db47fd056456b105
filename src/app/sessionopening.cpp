#include "app/sessionopening.h"

#include "app/documentarea.h"
#include "app/documentloader.h"
#include "app/recentplaces.h"
#include "document/utf16text.h"
#include "editor/ctlediter.h"
#include "files/filename.h"
#include "platform/qpeapplication.h"
#include "platform/turnlength.h"

#include <QDeadlineTimer>

#include <chrono>

#include <sys/stat.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

/// What is no file, such as a pipe, could keep the start waiting.
bool canBeRead(const RecentEntry &entry)
{
    const QByteArray name = FileName::toBytes(entry.path + entry.name);
    struct stat info;
    return ::stat(name.constData(), &info) == 0 && S_ISREG(info.st_mode)
        && ::access(name.constData(), R_OK) == 0;
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

void restore(DocumentLoader &loader, ctlEditer *editor, const SessionFile &file)
{
    const bool isLater = std::as_const(*editor).document().isHeld();
    const auto showPlace = [=] {
        if (!isLater || editor->cursorOffset() == Offset()) // else its user has gone elsewhere
            RecentPlaces::show(*editor, file.place);
    };
    whenWhole(editor, [=, &loader] {
        const auto form = formToRead(std::as_const(*editor).document().findings(), file.utf16);
        if (form && !editor->edited())
            loader.reopenUtf16(editor, *form, [=] {
                if (file.keepsUtf16)
                    editor->document().keepUtf16();
                showPlace();
            });
        else
            showPlace();
    });
}

void postponeRequests(bool postpone)
{
    if (auto *const application = qobject_cast<QPEApplication *>(qApp))
        application->postponeRequests(postpone);
}

} // namespace

SessionOpening::SessionOpening(
    SessionFiles session, DocumentArea &documents, DocumentLoader &loader, std::function<void()> ended)
    : m_session(std::move(session))
    , m_documents(documents)
    , m_loader(loader)
    , m_ended(std::move(ended))
    , m_sign(documents.notices(), nullptr, WorkNotice::Work::Opening, [this] { end(); })
{
    postponeRequests(true);
    m_turns.callOnTimeout([this] { openSome(); });
}

SessionOpening::~SessionOpening()
{
    postponeRequests(false);
}

/// Not while a dialog or a run of replacements is in the way, as for all files from outside.
void SessionOpening::openSome()
{
    const QDeadlineTimer turn(longestTurnOfShowing);
    while (m_next < m_session.files.size()) {
        if (QPEApplication::isBusy()) {
            m_turns.stop();
            m_free.await();
            return;
        }
        open(m_session.files.at(m_next++));
        if (turn.hasExpired())
            break;
    }
    if (m_next < m_session.files.size()) {
        m_sign.setProgress(int(m_next * 100 / m_session.files.size()));
        m_turns.start(0ms);
        return;
    }
    if (ctlEditer *const shown = current())
        m_documents.present(shown);
    end();
}

void SessionOpening::open(const SessionFile &file)
{
    if (!canBeRead(file.place))
        return;
    const QString name = file.place.path + file.place.name;
    const OpenedIn where = isInTheLast() ? OpenedIn::View : OpenedIn::Background;
    m_loader.open(name, file.charCode, where);
    if (where == OpenedIn::View)
        m_last = m_documents.current();
    ctlEditer *const editor = m_documents.editorOfFile(name);
    if (!editor)
        return;
    restore(m_loader, editor, file);
    if (m_next - 1 == m_session.current)
        m_current = editor;
}

/// Else its user has gone elsewhere.
bool SessionOpening::isInTheLast() const
{
    return m_documents.current() == m_last;
}

ctlEditer *SessionOpening::current() const
{
    return m_current && isInTheLast() ? m_current.data() : m_documents.current();
}

void SessionOpening::addRest(SessionFiles &session) const
{
    const bool isCurrentToCome = m_session.current >= m_next && m_session.current < m_session.files.size();
    if (isCurrentToCome && isInTheLast())
        session.current = int(session.files.size() + m_session.current - m_next);
    session.files << m_session.files.sliced(m_next);
}

void SessionOpening::setPaused(bool paused)
{
    m_free.cancel();
    if (paused)
        m_turns.stop();
    else
        m_turns.start(0ms);
}

void SessionOpening::end()
{
    m_turns.stop();
    const auto ended = m_ended;
    ended();
}
