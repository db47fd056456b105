#include "app/frmmain.h"

#include "app/fullscreen.h"
#include "settings/settings.h"
#include "app/translation.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "platform/messagebox.h"

using namespace Qt::StringLiterals;

void frmMain::slotCmdViewFull()
{
    m_fullScreen->toggle();
}

void frmMain::slotCmdViewWinPrev()
{
    slotEtcChangeTab(0);
}

void frmMain::slotCmdViewWinNext()
{
    slotEtcChangeTab(1);
}

void frmMain::slotCmdViewHelp() { }

void frmMain::slotCmdViewAbout()
{
    const QString contact = u"support@marlopad.example\nhttps://marlopad.example/"_s;
    MessageBox::about(
        this, tr("Marlo!Pad QT"), tr("Marlo!Pad QT Ver1.76\n            2005/07/04\n\n") + contact);
}

void frmMain::slotCmdViewLangJa()
{
    changeLanguage(Japanese, tr("A japanese translation file is not found."));
}

void frmMain::slotCmdViewLangEn()
{
    changeLanguage(English, {});
}

void frmMain::slotCmdViewLangFr()
{
    changeLanguage(French, tr("A french translation file not found."));
}

void frmMain::changeLanguage(int language, const QString &missingFileText)
{
    if (!installTranslator(language)) {
        MessageBox::critical(this, tr("Marlo!Pad QT"), missingFileText);
        return;
    }
    appSettings().Lang = language;
    buildMenus();
    showToolBarLabels();
    nameControls();
    for (ctlEditer *editor : tabBar()->editors()) {
        editor->retranslateName();
        updateTabText(editor);
    }
}

/// Puts the language's texts in the place of the present ones. False, with nothing changed, when their file
/// cannot be loaded.
bool frmMain::installTranslator(int language)
{
    const bool isNeeded = Translation::isNeeded(language);
    std::unique_ptr<Translation> translation = isNeeded ? Translation::load(language) : nullptr;
    if (isNeeded && !translation)
        return false;
    m_translation = std::move(translation);
    if (m_translation)
        m_translation->install();
    return true;
}
