#include "app/frmmain.h"

#include "app/settings.h"
#include "platform/messagebox.h"
#include "platform/qpeapplication.h"

#include <QCoreApplication>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

enum Language { English = 0, Japanese = 1, French = 2 };

/// Empty for English, the language of the texts themselves, and for a number that is no language.
QString translationFile(int language)
{
    switch (language) {
    case Japanese:
        return QPEApplication::qpeDir() + u"/i18n/ja/marlopad2.qm"_s;
    case French:
        return QPEApplication::qpeDir() + u"/i18n/fr/marlopad2.qm"_s;
    default:
        return {};
    }
}

} // namespace

void frmMain::slotCmdViewFull()
{
    if (m_fullScreen) {
        m_fullScreen = false;
        showNormal();
        showMaximized();
    } else {
        coverScreen();
        m_fullScreen = true;
    }
}

void frmMain::slotCmdViewWinPrev()
{
    slotEtcChangeTab(0);
}

void frmMain::slotCmdViewWinNext()
{
    slotEtcChangeTab(1);
}

void frmMain::slotCmdViewSearch() { }

void frmMain::slotCmdViewSrchBefo() { }

void frmMain::slotCmdViewSrchNext() { }

void frmMain::slotCmdViewReplace() { }

void frmMain::slotCmdViewGyoJump() { }

void frmMain::slotCmdViewLastEdit() { }

void frmMain::slotCmdViewHelp() { }

void frmMain::slotCmdViewAbout()
{
    MessageBox::about(this, tr("Marlo!Pad QT"), tr("Marlo!Pad QT Ver1.76\n            2005/07/04\n\n"));
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
    nameControls();
}

/// Puts the language's translator in the place of the present one. False, with nothing changed, when its file
/// cannot be loaded.
bool frmMain::installTranslator(int language)
{
    const QString file = translationFile(language);
    auto translator = file.isEmpty() ? nullptr : std::make_unique<QTranslator>();
    if (translator && !translator->load(file))
        return false;
    if (m_translator)
        QCoreApplication::removeTranslator(m_translator.get());
    m_translator = std::move(translator);
    if (m_translator)
        QCoreApplication::installTranslator(m_translator.get());
    return true;
}
