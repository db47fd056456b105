#include "platform/screenclass.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QScreen>
#include <QStackedWidget>

using namespace Qt::StringLiterals;

namespace {

/// Hides the window, with another one active meanwhile, and shows it: it is active again.
bool hideAndShow(QWidget &window)
{
    window.hide();
    QWidget other;
    other.show();
    if (!QTest::qWaitForWindowActive(&other))
        return false;
    window.show();
    return waitUntil([&window] { return window.isActiveWindow(); });
}

/// The environment variable QWS_DISPLAY while it lives.
class DisplayName {
public:
    explicit DisplayName(const QByteArray &value) { qputenv("QWS_DISPLAY", value); }
    ~DisplayName() { qunsetenv("QWS_DISPLAY"); }
};

} // namespace

/// The main window itself: settings, sizes, the first document, full screen, closing.
class FrmMainTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void isNamed();
    void vgaByDisplayName_data();
    void vgaByDisplayName();
    void readsSettingsAtStart();
    void oddSettingsDoNoHarm_data();
    void oddSettingsDoNoHarm();

    void placesTabBarBelowDocuments();
    void placesAreKeptWhenTabsAndSizesChange();
    void currentTabStaysInSight();

    void hasNoDocumentBeforeItIsShown();
    void firstDocumentComesOnce();
    void showingAgainMakesNoDocument();
    void showingWithoutTabsMakesOne();
    void inactiveWindowWaitsForItsFirstDocument();
    void requestedFileIsTheOnlyDocument();

    void fullScreenAndBack();
    void escapeOnlyLeavesFullScreen();
    void heldEscapeClosesNothing();
    void escapeClosesTheTab();
    void showsFullScreenAgain();
    void windowManagerEndsFullScreen();

    void closingWritesSettings();
    void refusedClosingWritesNothing();
    void destructionWritesSettings();
};

void FrmMainTest::init()
{
    resetSettings();
}

void FrmMainTest::isNamed()
{
    TestWindow window;
    QCOMPARE(window.objectName(), u"frmMain"_s);
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT"_s);
    QCOMPARE(window.menu(MenuId::File)->objectName(), u"MenuFile"_s);
    QCOMPARE(window.menu(MenuId::Edit)->objectName(), u"MenuEdit"_s);
    QCOMPARE(window.menu(MenuId::View)->objectName(), u"MenuView"_s);
    QCOMPARE(window.recentMenu()->objectName(), QString());
}

void FrmMainTest::vgaByDisplayName_data()
{
    QTest::addColumn<QByteArray>("display");
    QTest::addColumn<bool>("isVga");
    QTest::newRow("unset") << QByteArray() << false;
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("lower case only") << QByteArray("vga:0") << false;
    QTest::newRow("upper case only") << QByteArray("VGA:0") << false;
    QTest::newRow("at the start") << QByteArray("Vga:0") << true;
    QTest::newRow("in the middle") << QByteArray("Transformed:Rot90:SharpVga:0") << true;
}

void FrmMainTest::vgaByDisplayName()
{
    QFETCH(QByteArray, display);
    QFETCH(bool, isVga);
    const DisplayName name(display);
    if (display.isNull())
        qunsetenv("QWS_DISPLAY");
    TestWindow window;
    QCOMPARE(::isVga(), isVga);
    QCOMPARE(QApplication::font().pointSize(), isVga ? 18 : 10);
    QVERIFY(window.open());
    const auto *bar = window.findChild<QMenuBar *>();
    if (isVga)
        QVERIFY(bar->height() > 20);
    else
        QCOMPARE(bar->height(), 20);
}

void FrmMainTest::readsSettingsAtStart()
{
    appSettings().TabLen = 7;
    recentFiles().RecentViewCnt = 3;
    writeSettings();
    appSettings() = {};
    recentFiles() = {};
    TestWindow window;
    QCOMPARE(appSettings().TabLen, 7);
    QCOMPARE(recentFiles().RecentViewCnt, 3);
    QCOMPARE(QMultiLineEdit::defaultTabStop(), 7);
}

void FrmMainTest::oddSettingsDoNoHarm_data()
{
    QTest::addColumn<int AppSettings::*>("field");
    QTest::addColumn<int>("value");
    const std::pair<const char *, int AppSettings::*> fields[] = { { "Lang", &AppSettings::Lang },
        { "FontSize", &AppSettings::FontSize }, { "WrapMode", &AppSettings::WrapMode },
        { "TabLen", &AppSettings::TabLen }, { "RowNo", &AppSettings::RowNo },
        { "ActiveHLine", &AppSettings::ActiveHLine }, { "DefCodec", &AppSettings::DefCodec },
        { "DefCRLF", &AppSettings::DefCRLF }, { "BackColor", &AppSettings::BackColor },
        { "AutoIndent", &AppSettings::AutoIndent }, { "WrapLen", &AppSettings::WrapLen },
        { "ForeColor", &AppSettings::ForeColor }, { "RowNoColor", &AppSettings::RowNoColor },
        { "ShowKAI", &AppSettings::ShowKAI }, { "ShowTAB", &AppSettings::ShowTAB },
        { "ShowZEN", &AppSettings::ShowZEN }, { "ShowEOF", &AppSettings::ShowEOF },
        { "RestoreScroll", &AppSettings::RestoreScroll } };
    for (const auto &[name, field] : fields) {
        for (const int value :
            { -1, 0, 400, 100000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max() })
            QTest::addRow("%s %d", name, value) << field << value;
    }
}

void FrmMainTest::oddSettingsDoNoHarm()
{
    QFETCH(int AppSettings::*, field);
    QFETCH(int, value);
    if (field == &AppSettings::WrapLen)
        appSettings().WrapMode = 2;
    appSettings().*field = value;
    writeSettings();
    {
        TestWindow window;
        QVERIFY(window.open());
        QTest::keyClicks(window.currentEditor(), u"a b"_s);
        QTest::keyClick(window.currentEditor(), Qt::Key_Return);
        QVERIFY(!window.grab().isNull());
        window.editorAt(0)->setEdited(false);
        QVERIFY(window.close());
    }
    readSettings();
    const bool isRepaired = field == &AppSettings::FontSize && value < 10;
    QCOMPARE(appSettings().*field, isRepaired ? 18 : value);
}

void FrmMainTest::placesTabBarBelowDocuments()
{
    TestWindow window;
    QVERIFY(window.open());
    const QWidget *area = window.centralWidget();
    const ctlTabBar *bar = window.tabBar();
    const QSize hint = bar->sizeHint();
    QCOMPARE(bar->geometry(),
        QRect(0, area->height() - 1 - hint.height(), qMin(hint.width(), area->width()), hint.height()));
    const auto *stack = window.findChild<QStackedWidget *>();
    QCOMPARE(stack->geometry(), QRect(0, 0, area->width(), area->height() - hint.height()));
    QCOMPARE(window.currentEditor()->geometry(), stack->rect());
}

void FrmMainTest::placesAreKeptWhenTabsAndSizesChange()
{
    TestWindow window;
    QVERIFY(window.open());
    window.showNormal();
    const auto isInPlace = [&window] {
        const ctlTabBar *bar = window.tabBar();
        const QSize hint = bar->sizeHint();
        const QSize area = window.centralWidget()->size();
        return bar->geometry()
            == QRect(0, area.height() - 1 - hint.height(), qMin(hint.width(), area.width()), hint.height());
    };
    for (const int width : { 900, 300, 640 }) {
        window.resize(width, 400);
        QTRY_VERIFY(isInPlace());
        for (int i = 0; i < 4; ++i) {
            window.slotCmdFileNew();
            QVERIFY(isInPlace());
            QCoreApplication::processEvents();
            QVERIFY(isInPlace());
        }
        QTest::keyClicks(window.currentEditor(), u"x"_s);
        QTRY_VERIFY(isInPlace());
    }
    QVERIFY(window.tabBar()->sizeHint().width() > window.centralWidget()->width());
}

void FrmMainTest::currentTabStaysInSight()
{
    TestWindow window;
    QVERIFY(window.open());
    window.showNormal();
    window.resize(800, 300);
    for (int i = 0; i < 20; ++i)
        window.slotCmdFileNew();
    const auto isCurrentInSight = [&window] {
        const QRect tab = window.tabBar()->tabRect(window.tabBar()->currentIndex());
        return tab.left() >= 0 && tab.right() <= window.tabBar()->width();
    };
    QVERIFY(isCurrentInSight());
    window.resize(300, 300);
    QTRY_VERIFY(window.tabBar()->width() <= 300);
    QTRY_VERIFY(isCurrentInSight());
    window.slotEtcChangeTab(1);
    QCOMPARE(window.tabBar()->currentIndex(), 0);
    QTRY_VERIFY(isCurrentInSight());
}

void FrmMainTest::hasNoDocumentBeforeItIsShown()
{
    TestWindow window;
    QCOMPARE(window.tabBar()->count(), 0);
    QVERIFY(!window.currentEditor());
    QCOMPARE(window.editStates(), u"----"_s);
}

void FrmMainTest::firstDocumentComesOnce()
{
    TestWindow window;
    window.showMaximized();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTRY_COMPARE(window.tabBar()->count(), 1);
    QCOMPARE(window.tabTexts(), QStringList{ u"(new document)"_s });
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
    window.slotEtcFirstNewDoc();
    QCOMPARE(window.tabBar()->count(), 1);
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT  [Shift-JIS][CR+LF]"_s);
}

void FrmMainTest::showingAgainMakesNoDocument()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileNew();
    QVERIFY(hideAndShow(window));
    window.slotEtcFirstNewDoc();
    QCOMPARE(window.tabBar()->count(), 2);
}

void FrmMainTest::showingWithoutTabsMakesOne()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    QCOMPARE(window.tabBar()->count(), 0);
    QVERIFY(hideAndShow(window));
    QTRY_COMPARE(window.tabBar()->count(), 1);
}

void FrmMainTest::inactiveWindowWaitsForItsFirstDocument()
{
    QWidget other;
    TestWindow window;
    window.show();
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(!window.isActiveWindow());
    window.slotEtcFirstNewDoc();
    QCOMPARE(window.tabBar()->count(), 0);

    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTRY_COMPARE(window.tabBar()->count(), 1);
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());

    window.slotCmdFileCloseTab();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QCOMPARE(window.tabBar()->count(), 0);
}

void FrmMainTest::requestedFileIsTheOnlyDocument()
{
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "text\n");
    TestWindow window;
    window.showMaximized();
    window.setDocument(name);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.slotEtcFirstNewDoc();
    QCOMPARE(window.tabTexts(), QStringList{ u"a.txt"_s });
    QCOMPARE(window.currentEditor()->text(), u"text\n"_s);
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
}

void FrmMainTest::fullScreenAndBack()
{
    TestWindow window;
    QVERIFY(window.open());
    QVERIFY(window.isMaximized());
    window.slotCmdViewFull();
    QVERIFY(window.isFullScreen());
    QVERIFY(window.isCoveringScreen());
    QTRY_COMPARE(window.size(), window.screen()->size());
    window.slotCmdViewFull();
    QVERIFY(!window.isFullScreen());
    QVERIFY(!window.isCoveringScreen());
    QVERIFY(window.isMaximized());
    QCOMPARE(window.tabBar()->count(), 1);
}

void FrmMainTest::escapeOnlyLeavesFullScreen()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdViewFull();
    QTest::keyClick(window.currentEditor(), Qt::Key_Escape);
    QVERIFY(!window.isFullScreen());
    QVERIFY(window.isMaximized());
    QCOMPARE(window.tabBar()->count(), 1);
}

void FrmMainTest::heldEscapeClosesNothing()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdViewFull();
    QTest::keyPress(window.currentEditor(), Qt::Key_Escape);
    for (int i = 0; i < 3; ++i) {
        QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, {}, true);
        QApplication::sendEvent(window.currentEditor(), &repeat);
    }
    QTest::keyRelease(window.currentEditor(), Qt::Key_Escape);
    QVERIFY(!window.isFullScreen());
    QCOMPARE(window.tabBar()->count(), 1);
}

void FrmMainTest::escapeClosesTheTab()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileNew();
    QTest::keyClick(window.currentEditor(), Qt::Key_Escape);
    QCOMPARE(window.tabBar()->count(), 1);
    QTest::keyClick(window.currentEditor(), Qt::Key_Escape);
    QCOMPARE(window.tabBar()->count(), 0);
    QTest::keyClick(&window, Qt::Key_Escape);
    QVERIFY(window.isVisible());
}

void FrmMainTest::showsFullScreenAgain()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdViewFull();
    window.hide();
    window.show();
    QVERIFY(window.isFullScreen());
    QTRY_COMPARE(window.size(), window.screen()->size());
}

void FrmMainTest::windowManagerEndsFullScreen()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdViewFull();
    window.setWindowState(Qt::WindowNoState);
    window.resize(500, 300);
    QVERIFY(!window.isFullScreen());
    QVERIFY(!window.isCoveringScreen());
    QTest::keyClick(window.currentEditor(), Qt::Key_Escape);
    QCOMPARE(window.tabBar()->count(), 0);
}

void FrmMainTest::closingWritesSettings()
{
    TestWindow window;
    QVERIFY(window.open());
    appSettings().TabLen = 6;
    QVERIFY(window.close());
    QCOMPARE(window.tabBar()->count(), 0);
    appSettings() = {};
    readSettings();
    QCOMPARE(appSettings().TabLen, 6);
}

void FrmMainTest::refusedClosingWritesNothing()
{
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    appSettings().TabLen = 6;
    MessageBoxes boxes({ u"Cancel"_s });
    QVERIFY(!window.close());
    QVERIFY(window.isVisible());
    QCOMPARE(boxes.count(), 1);
    readSettings();
    QCOMPARE(appSettings().TabLen, 4);
}

void FrmMainTest::destructionWritesSettings()
{
    {
        TestWindow window;
        appSettings().TabLen = 6;
    }
    appSettings() = {};
    readSettings();
    QCOMPARE(appSettings().TabLen, 6);
}

REGISTER_TEST(runWindowTest<FrmMainTest>)
#include "frmmain_test.moc"
