#include "app/frmmain.h"

#include "app/documentarea.h"
#include "app/fullscreen.h"
#include "app/keymap.h"
#include "app/translation.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "platform/freememory.h"
#include "platform/lastingfont.h"
#include "platform/qpeapplication.h"
#include "platform/resource.h"
#include "platform/screenclass.h"
#include "settings/settings.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QStackedWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize normalSize{ 640, 480 };
constexpr std::chrono::milliseconds firstDocumentDelay{ 200 };

QFont applicationFont()
{
    QFont font = QApplication::font();
    font.setPointSize(forScreen(10, 18));
    return font;
}

} // namespace

frmMain::frmMain(QWidget *parent, WindowDialogs dialogs)
    : QMainWindow(parent)
    , m_dialogs(std::move(dialogs))
    , m_fullScreen(new FullScreen(this))
{
    setObjectName(u"frmMain"_s);
    new LastingFont(applicationFont(), this);
    // Now, while there are no parts of the window that would have to measure their texts twice.
    QCoreApplication::sendPostedEvents(this, QEvent::ApplicationFontChange);
    readSettings();
    installTranslator(appSettings().Lang);
    setWindowTitle(u"Marlo!Pad QT"_s);
    setWindowIcon(Resource::loadIcon(u"marlopad"_s));
    // The tool bars hold the menus: no menu may offer to hide them.
    setContextMenuPolicy(Qt::NoContextMenu);
    createMenuBar();
    createActions();
    buildMenus();
    createToolBar();
    nameControls();
    m_documents = new DocumentArea(this);
    setCentralWidget(m_documents);
    m_firstDocumentTimer.setSingleShot(true);
    connect(&m_firstDocumentTimer, &QTimer::timeout, this, &frmMain::slotEtcFirstNewDoc);
    connect(tabBar(), &ctlTabBar::currentChanged, this, &frmMain::slotTabCurrentChanged);
    QMultiLineEdit::setDefaultTabStop(appSettings().TabLen);
    m_freeing.setSingleShot(true);
    connect(&m_freeing, &QTimer::timeout, this, giveBackFreeMemory);
    resize(normalSize.boundedTo(screen()->availableSize()));
    watchSession();
}

frmMain::~frmMain()
{
    writeSettings();
}

ctlEditer *frmMain::currentEditor() const
{
    return qobject_cast<ctlEditer *>(m_documents->stack()->currentWidget());
}

bool frmMain::isCoveringScreen() const
{
    return m_fullScreen->isOn();
}

ctlTabBar *frmMain::tabBar() const
{
    return m_documents->tabBar();
}

void frmMain::slotEtcFirstNewDoc()
{
    m_firstDocumentTimer.stop();
    m_firstDocumentDue = !isActiveWindow();
    if (m_firstDocumentDue)
        return;
    if (tabBar()->count() == 0)
        slotCmdFileNew();
    m_documents->arrange();
}

void frmMain::run(CommandSlot command)
{
    if (mayAct())
        (this->*command)();
}

bool frmMain::mayAct()
{
    if (QPEApplication::isBusy())
        return false;
    commitComposition();
    return true;
}

void frmMain::commitComposition()
{
    if (ctlEditer *editor = currentEditor())
        editor->commitPreedit();
}

void frmMain::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        // A key that is held down must not go on to close the document after leaving full screen.
        if (!event->isAutoRepeat())
            run(isCoveringScreen() ? &frmMain::slotCmdViewFull : &frmMain::slotCmdFileCloseTab);
        return;
    }
    for (const CommandSlot command : commandsForKey(*event))
        run(command);
    QWidget::keyPressEvent(event);
}

void frmMain::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    m_fullScreen->keep();
    showToolBarLabels();
    m_documents->arrange();
}

void frmMain::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_fullScreen->keep();
    m_firstDocumentTimer.start(firstDocumentDelay);
}

void frmMain::closeEvent(QCloseEvent *event)
{
    if (!confirmCloseAll(false)) {
        event->ignore();
        return;
    }
    writeSettings();
    event->accept();
    QWidget::closeEvent(event);
}

void frmMain::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && m_firstDocumentDue)
        slotEtcFirstNewDoc();
}
