#include "app/frmmain.h"

#include "settings/settings.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "platform/qpeapplication.h"

#include <QSessionManager>

#include <algorithm>
#include <utility>

void frmMain::watchSession()
{
    connect(qApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager &session) {
        commitComposition();
        if (!endSession(hasEdits() && session.allowsInteraction()))
            session.cancel();
    });
    if (auto *application = qobject_cast<QPEApplication *>(qApp))
        connect(application, &QPEApplication::sessionEnded, this, &frmMain::closeUnwanted);
}

bool frmMain::endSession(bool mayAsk)
{
    m_unwanted.clear();
    if (hasEdits() && (!mayAsk || QPEApplication::isBusy()))
        return false;
    const QList<ctlEditer *> editors = tabBar()->editors();
    for (auto editor = editors.rbegin(); editor != editors.rend(); ++editor) {
        if (!(*editor)->edited())
            continue;
        tabBar()->setCurrentTab(*editor);
        if (!saveIfWanted(*editor))
            return false;
        if ((*editor)->edited())
            m_unwanted << *editor;
    }
    // The session may go on.
    if (writeSettings())
        applySettings();
    return true;
}

void frmMain::closeUnwanted()
{
    for (ctlEditer *editor : std::exchange(m_unwanted, {}))
        closeDocument(editor);
}

bool frmMain::hasEdits() const
{
    const QList<ctlEditer *> editors = tabBar()->editors();
    return std::any_of(
        editors.begin(), editors.end(), [](const ctlEditer *editor) { return editor->edited(); });
}
