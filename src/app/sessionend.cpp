#include "app/sessionend.h"

#include "app/documentarea.h"
#include "app/documentcloser.h"
#include "editor/ctlediter.h"
#include "platform/qpeapplication.h"
#include "recovery/recoveryjournals.h"
#include "settings/settings.h"

#include <QSessionManager>

#include <algorithm>
#include <utility>

SessionEnd::SessionEnd(DocumentArea &documents, DocumentCloser &closer, RecoveryJournals &journals)
    : QObject(&documents)
    , m_documents(documents)
    , m_closer(closer)
    , m_journals(journals)
{
    connect(&documents, &DocumentArea::closed, this, &SessionEnd::forget);
    connect(&documents, &DocumentArea::added, this, [this](ctlEditer *editor) {
        connect(editor, &ctlEditer::textChanged, this, [this, editor] { forget(editor); });
    });
    connect(qApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager &session) {
        m_documents.commitComposition();
        if (!prepare(hasEdits() && session.allowsInteraction()))
            session.cancel();
    });
    if (auto *application = qobject_cast<QPEApplication *>(qApp))
        connect(application, &QPEApplication::sessionEnded, this, &SessionEnd::closeUnwanted);
}

bool SessionEnd::prepare(bool mayAsk)
{
    m_unwanted.clear();
    // What is busy may be beneath this, and no save or edit ends before it does.
    if (!QPEApplication::isBusy())
        m_closer.waitForWork();
    else if (m_closer.isTextComing())
        return false;
    const bool isReady =
        !hasEdits() || (mayAsk ? askAll() : m_journals.flush(RecoveryJournals::longestFlush));
    // The session may go on.
    if (isReady && writeSettings())
        emit settingsTakenOver();
    return isReady;
}

bool SessionEnd::askAll()
{
    if (QPEApplication::isBusy())
        return false;
    const QList<ctlEditer *> editors = m_documents.editors();
    for (auto editor = editors.rbegin(); editor != editors.rend(); ++editor) {
        // Its user may have closed it while another one was saved.
        if (!m_documents.editors().contains(*editor) || !(*editor)->edited())
            continue;
        m_documents.setCurrent(*editor);
        if (!m_closer.saveIfWanted(*editor))
            return false;
        if (m_documents.editors().contains(*editor) && (*editor)->edited())
            m_unwanted << *editor;
    }
    return true;
}

bool SessionEnd::hasEdits() const
{
    const QList<ctlEditer *> editors = m_documents.editors();
    return m_closer.isTextComing()
        || std::any_of(
            editors.begin(), editors.end(), [](const ctlEditer *editor) { return editor->edited(); });
}

void SessionEnd::forget(ctlEditer *editor)
{
    m_unwanted.removeOne(editor);
}

void SessionEnd::closeUnwanted()
{
    for (ctlEditer *editor : std::exchange(m_unwanted, {}))
        m_closer.close(editor);
}
