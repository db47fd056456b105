#include "app/translation.h"
#include "editor/noticestrip.h"
#include "tests/app/forms.h"
#include "tests/app/testwindow.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"
#include "tests/textfit.h"

#include <QScreen>
#include <QSet>
#include <QTemporaryFile>

using namespace Qt::StringLiterals;

namespace {

/// One screen of the size that the environment asks for, as "240x320".
QByteArray walkedScreen()
{
    const QList<QByteArray> size = qgetenv("WALKED_SCREEN").split('x');
    return R"({"screens": [{"name": "walked", "x": 0, "y": 0, "width": )" + size.value(0) + R"(, "height": )"
        + size.value(1) + R"(, "logicalDpi": 72, "logicalBaseDpi": 72, "dpr": 1}]})";
}

bool takesTab(const QWidget &control)
{
    return control.isVisible() && control.isEnabled() && control.focusPolicy() & Qt::TabFocus
        && !control.focusProxy();
}

/// A frame may take the outermost pixels.
bool isOnScreen(const QWidget &dialog)
{
    constexpr int frame = 4;
    const QRect screen = dialog.screen()->geometry().adjusted(-frame, 0, frame, frame);
    return screen.contains(dialog.geometry());
}

/// What Tab comes to, beginning with what has the focus; links in a text count with the text.
QSet<const QWidget *> reachedByTab(const QWidget &dialog)
{
    constexpr int patience = 50; // presses without anything new
    QSet<const QWidget *> reached;
    for (int inVain = 0; inVain < patience; ++inVain) {
        QWidget *const focused = dialog.window()->focusWidget();
        if (!focused)
            break;
        if (!reached.contains(focused))
            inVain = 0;
        reached << focused;
        QTest::keyClick(focused, Qt::Key_Tab);
    }
    return reached;
}

/// Looks at every dialog that is shown while it lives, and leaves it.
class DialogInspector : public QObject {
public:
    DialogInspector() { qApp->installEventFilter(this); }

    QStringList faults;
    QSet<QString> titles;

    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *const window = qobject_cast<QWidget *>(object);
        if (event->type() == QEvent::Show && window && window->isWindow()
            && window->windowFlags().testFlag(Qt::Dialog))
            QTimer::singleShot(0, window, [this, window] { look(*window); });
        return false;
    }

private:
    void look(QWidget &dialog)
    {
        titles << dialog.windowTitle();
        if (!QTest::qWaitForWindowActive(&dialog))
            tell(dialog, u"is not active"_s);
        auto *const pages = dialog.findChild<QTabWidget *>();
        for (int page = 0; page < (pages ? pages->count() : 1); ++page) {
            if (pages)
                pages->setCurrentIndex(page);
            lookAtPage(dialog);
        }
        leave(dialog);
    }
    void lookAtPage(const QWidget &dialog)
    {
        settle();
        for (const QString &fault : TextFit(dialog).faults())
            tell(dialog, fault);
        if (!isOnScreen(dialog))
            tell(dialog,
                u"%1 x %2 at %3, %4"_s.arg(dialog.width())
                    .arg(dialog.height())
                    .arg(dialog.x())
                    .arg(dialog.y()));
        const QSet<const QWidget *> reached = reachedByTab(dialog);
        for (const QWidget *const control : dialog.findChildren<QWidget *>()) {
            if (takesTab(*control) && !reached.contains(control))
                tell(dialog,
                    u"Tab misses "_s + QLatin1StringView(control->metaObject()->className()) + u' '
                        + control->accessibleName());
        }
    }
    void tell(const QWidget &dialog, const QString &fault)
    {
        faults << dialog.windowTitle() + u": "_s + fault;
    }
    static void leave(QWidget &dialog)
    {
        if (auto *const box = qobject_cast<QMessageBox *>(&dialog))
            box->buttons().constLast()->click();
        else if (auto *const form = qobject_cast<QDialog *>(&dialog))
            form->reject();
        else
            dialog.hide();
    }

    NoTimeToRead m_noTimeToRead;
};

/// Not what leaves the document, ends the program or changes the screen, nor what does nothing.
bool isWalked(const Command &command)
{
    static const QList<CommandSlot> others{ &frmMain::slotCmdFileNew, &frmMain::slotCmdFileQuitNoSave,
        &frmMain::slotCmdFileQuitSave, &frmMain::slotCmdViewFull, &frmMain::slotCmdViewHelp,
        &frmMain::slotCmdViewLangEn, &frmMain::slotCmdViewLangFr, &frmMain::slotCmdViewLangJa };
    return command.slot && !others.contains(command.slot);
}

} // namespace

/// Every dialog that the window's commands open is whole on a small screen, and the keys reach all of it.
class DialogWalkTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void everyDialogIsWhole_data() { addLanguages(); }
    void everyDialogIsWhole();
    void everyMenuIsOnTheScreen_data() { addLanguages(); }
    void everyMenuIsOnTheScreen();
    void windowWithANoticeIsWhole_data() { addLanguages(); }
    void windowWithANoticeIsWhole();

private:
    static void addLanguages();
    static void checkMenu(QMenu *menu);

    TestFiles m_files;
    std::unique_ptr<frmMain> m_window;
};

void DialogWalkTest::addLanguages()
{
    QTest::addColumn<int>("language");
    for (const auto &[language, name] : languages)
        QTest::newRow(name) << language;
}

/// A window with an edited document, in the language of the row.
void DialogWalkTest::init()
{
    resetSettings();
    qputenv("QPEDIR", BUILT_QPE_DIR);
    QFETCH(int, language);
    appSettings().Lang = language;
    writeSettings();
    m_window = std::make_unique<frmMain>();
    m_window->showMaximized();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_window->setDocument(m_files.write(u"a.txt"_s, "text\n"));
    QTRY_VERIFY(takesKeys());
}

void DialogWalkTest::everyDialogIsWhole()
{
    DialogInspector watch;
    for (const MenuId menu : { MenuId::File, MenuId::Edit, MenuId::View }) {
        for (const Command &command : commandsOf(menu)) {
            QTest::keyClicks(m_window->currentEditor(), u"x"_s);
            if (isWalked(command))
                (m_window.get()->*command.slot)();
            settle();
        }
    }
    m_window->slotEtcKeys();
    m_window->slotEtcMoreOptions();
    QCOMPARE(watch.faults.join(u'\n'), QString());
    // Open, Save As, reload, close, properties, options, search, replace, line, about, guide, more options.
    QVERIFY2(watch.titles.size() == 12, qPrintable(watch.titles.values().join(u", "_s)));
    for (ctlEditer *const editor : m_window->tabBar()->editors())
        editor->setEdited(false);
}

void DialogWalkTest::checkMenu(QMenu *menu)
{
    QVERIFY(menu);
    QTRY_VERIFY(menu->isVisible());
    const QRect place = menu->geometry();
    QVERIFY2(menu->screen()->geometry().contains(place), qPrintable(menu->title()));
    QVERIFY(menu->width() >= menu->sizeHint().width());
    menu->close();
}

void DialogWalkTest::everyMenuIsOnTheScreen()
{
    for (const MenuId menu : { MenuId::File, MenuId::Edit, MenuId::View }) {
        m_window->menu(menu)->popup(m_window->mapToGlobal(QPoint()));
        checkMenu(m_window->menu(menu));
    }
    m_window->slotEtcTabMenu();
    checkMenu(qobject_cast<QMenu *>(QApplication::activePopupWidget()));
}

void DialogWalkTest::windowWithANoticeIsWhole()
{
    m_window->setDocument(m_files.write(u"mixed.txt"_s, "a\r\nb\nc\rd"));
    auto *const strip = m_window->findChild<NoticeStrip *>();
    QTRY_VERIFY(strip->isVisible());
    QTRY_COMPARE(TextFit(*m_window).faults().join(u'\n'), QString());
    QVERIFY(m_window->screen()->geometry().contains(m_window->geometry()));
}

namespace {

int runDialogWalkTest(int argc, char **argv)
{
    QTemporaryFile config;
    if (!config.open() || config.write(walkedScreen()) < 0 || !config.flush())
        return 1;
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + config.fileName().toUtf8());
    return runFormTest<DialogWalkTest>(argc, argv);
}

} // namespace

REGISTER_TEST(runDialogWalkTest)
#include "dialogwalk_test.moc"
