#include "tests/app/testwindow.h"

#include "platform/resource.h"

#include <QAction>
#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStackedWidget>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

constexpr auto none = "";

struct Item {
    int id;
    const char *text;
    const char *icon; ///< empty: none
    CommandSlot slot;
    bool isEnabled = true;
    bool hasSeparatorAfter = false;
};

const Item fileItems[] = {
    { 1, "&New", "new", &frmMain::slotCmdFileNew },
    { 2, "&Open  (Fn+O)", "folderopen", &frmMain::slotCmdFileOpen },
    { 3, "&Reload", "reload", &frmMain::slotCmdFileReload, true, true },
    { 4, "&Properties", "property", &frmMain::slotCmdFileProp, true, true },
    { 5, "&Save  (Fn+S)", "save", qOverload<>(&frmMain::slotCmdFileSave) },
    { 6, "Save &As", "rename", qOverload<>(&frmMain::slotCmdFileSaveAs) },
    { 7, "&Close  (Cancel)", none, &frmMain::slotCmdFileCloseTab, true, true },
    { 8, "Save A&ll", "save", &frmMain::slotCmdFileSaveAll },
    { 9, "Quit &with Save", "close", &frmMain::slotCmdFileQuitSave },
    { 10, "&Quit  (Fn+Q)", "close", &frmMain::slotCmdFileQuitNoSave, true, true },
    { 11, "R&ecent Files", "recent", nullptr },
};

const Item editItems[] = {
    { 1, "&Undo  (Fn+Z)", "undo", &frmMain::slotCmdEditUndo, false },
    { 2, "&Redo", "redo", &frmMain::slotCmdEditRedo, false, true },
    { 3, "Cu&t  (Fn+X)", "cut", &frmMain::slotCmdEditCut, false },
    { 4, "&Copy  (Fn+C)", "copy", &frmMain::slotCmdEditCopy, false },
    { 5, "&Paste  (Fn+V)", "past", &frmMain::slotCmdEditPast, true, true },
    { 6, "Select &All  (Fn+A)", "multisel2", &frmMain::slotCmdEditSelAll },
    { 7, "&Date and Time", none, &frmMain::slotCmdEditDateTime, true, true },
    { 8, "&Options...", none, &frmMain::slotCmdEditOption },
};

const Item viewItems[] = {
    { 1, "&Prev Window", none, &frmMain::slotCmdViewWinPrev },
    { 2, "&Next Window", none, &frmMain::slotCmdViewWinNext, true, true },
    { 3, "&Search  (Fn+N)", "search", &frmMain::slotCmdViewSearch },
    { 4, "Search &Before  (Fn+1)", "srchbefo", &frmMain::slotCmdViewSrchBefo },
    { 5, "Search &Next  (Fn+2)", "srchnext", &frmMain::slotCmdViewSrchNext },
    { 6, "&Replace  (Fn+M)", "replace", &frmMain::slotCmdViewReplace, true, true },
    { 7, "Line &Jump", none, &frmMain::slotCmdViewGyoJump },
    { 8, "&Last Edited Pos  (Fn+5)", none, &frmMain::slotCmdViewLastEdit, true, true },
    { 9, "&Full Screen", "fullscreen", &frmMain::slotCmdViewFull, true, true },
    { 10, "&Language", none, nullptr, true, true },
    { 11, "&Help", "help", &frmMain::slotCmdViewHelp, false },
    { 12, "&About", "about", &frmMain::slotCmdViewAbout },
};

const Item languageItems[] = {
    { 1, "&Japanese", none, &frmMain::slotCmdViewLangJa },
    { 2, "&English", none, &frmMain::slotCmdViewLangEn },
    { 3, "&French", none, &frmMain::slotCmdViewLangFr },
};

std::span<const Item> itemsOf(MenuId menu)
{
    switch (menu) {
    case MenuId::File:
        return fileItems;
    case MenuId::Edit:
        return editItems;
    case MenuId::View:
        return viewItems;
    case MenuId::Language:
        return languageItems;
    }
    Q_UNREACHABLE();
}

struct Button {
    const char *label;
    const char *icon;
    MenuId menu;
    int id;
};

const Button buttons[] = {
    { "New", "new", MenuId::File, 1 },
    { "Open", "folderopen", MenuId::File, 2 },
    { "Save", "save", MenuId::File, 5 },
    { "Undo", "undo", MenuId::Edit, 1 },
    { "Cut", "cut", MenuId::Edit, 3 },
    { "Copy", "copy", MenuId::Edit, 4 },
    { "Paste", "past", MenuId::Edit, 5 },
    { "Full Screen", "fullscreen", MenuId::View, 9 },
    { "Search", "search", MenuId::View, 3 },
    { "Search Next", "srchnext", MenuId::View, 5 },
};

QImage image(const QIcon &icon, QIcon::Mode mode = QIcon::Normal)
{
    return icon.pixmap(QSize(16, 16), 1.0, mode).toImage();
}

QImage picture(const QString &name)
{
    return image(Resource::loadIcon(name));
}

QToolBar *toolBarOf(const frmMain &window)
{
    const QList<QToolBar *> bars = window.findChildren<QToolBar *>();
    return bars.size() == 2 ? bars.last() : nullptr;
}

QWidget *areaOf(const frmMain &window)
{
    return window.centralWidget();
}

/// Hides the window, with another one active meanwhile, and shows it: it is active again.
bool hideAndShow(QWidget &window)
{
    window.hide();
    QWidget other;
    other.show();
    if (!QTest::qWaitForWindowActive(&other))
        return false;
    window.show();
    return QTest::qWaitFor([&window] { return window.isActiveWindow(); });
}

/// The environment variable QWS_DISPLAY while it lives.
class DisplayName {
public:
    explicit DisplayName(const QByteArray &value) { qputenv("QWS_DISPLAY", value); }
    ~DisplayName() { qunsetenv("QWS_DISPLAY"); }
};

} // namespace

Q_DECLARE_METATYPE(MenuId)

/// The main window itself: menus, tool bar, sizes, the first document, full screen, closing, languages.
class FrmMainTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void isNamed();
    void menuTable_data();
    void menuTable();
    void menuItemsStandInTheirMenu_data();
    void menuItemsStandInTheirMenu();
    void menusHaveNoShortcuts();
    void menuBarShowsThreeMenus();
    void menuIconsAreTheNamedPictures_data();
    void menuIconsAreTheNamedPictures();
    void submenusOpenAtTheirItems();
    void recentItemFollowsItsCount_data();
    void recentItemFollowsItsCount();
    void toolButtons();
    void toolButtonsTakeNoFocus();
    void toolBarsStay();
    void labelsGoWhereThereIsNoRoom();
    void disabledPictures();

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

    void languages_data();
    void languages();
    void languageAtStart_data();
    void languageAtStart();
    void languageTwiceIsOneTranslator();
    void missingTranslation_data();
    void missingTranslation();
    void rebuiltMenusKeepStates();
    void about();
};

void FrmMainTest::init()
{
    resetSettings();
    qunsetenv("QPEDIR");
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

void FrmMainTest::menuTable_data()
{
    QTest::addColumn<MenuId>("menu");
    QTest::newRow("File") << MenuId::File;
    QTest::newRow("Edit") << MenuId::Edit;
    QTest::newRow("View") << MenuId::View;
    QTest::newRow("Language") << MenuId::Language;
}

void FrmMainTest::menuTable()
{
    QFETCH(MenuId, menu);
    const std::span<const Item> items = itemsOf(menu);
    const std::span<const Command> commands = commandsOf(menu);
    QCOMPARE(commands.size(), items.size());
    for (size_t i = 0; i < items.size(); ++i) {
        QCOMPARE(commands[i].id, items[i].id);
        QCOMPARE(commands[i].id, int(i) + 1);
        QCOMPARE(commands[i].text, items[i].text);
        QVERIFY2(commands[i].slot == items[i].slot, items[i].text);
    }
}

void FrmMainTest::menuItemsStandInTheirMenu_data()
{
    menuTable_data();
}

void FrmMainTest::menuItemsStandInTheirMenu()
{
    QFETCH(MenuId, menu);
    TestWindow window;
    QList<QAction *> actions = window.menu(menu)->actions();
    for (const Item &item : itemsOf(menu)) {
        QVERIFY2(!actions.isEmpty(), item.text);
        QAction *action = actions.takeFirst();
        QCOMPARE(action, window.item(menu, item.id));
        QCOMPARE(action->text(), QString::fromLatin1(item.text));
        QCOMPARE(action->isEnabled(), item.isEnabled);
        QVERIFY2(!action->isSeparator() && action->isVisible(), item.text);
        if (item.hasSeparatorAfter) {
            QVERIFY2(!actions.isEmpty(), item.text);
            QVERIFY2(actions.takeFirst()->isSeparator(), item.text);
        }
    }
    QVERIFY(actions.isEmpty());
}

void FrmMainTest::menusHaveNoShortcuts()
{
    TestWindow window;
    for (const QAction *action : window.findChildren<QAction *>())
        QVERIFY2(action->shortcuts().isEmpty(), qPrintable(action->text()));
}

void FrmMainTest::menuBarShowsThreeMenus()
{
    TestWindow window;
    const auto *bar = window.findChild<QMenuBar *>();
    QVERIFY(!bar->isNativeMenuBar());
    QStringList titles;
    for (const QAction *action : bar->actions())
        titles << action->text();
    QCOMPARE(titles, QStringList({ u"&File"_s, u"&Edit"_s, u"&View"_s }));
    QCOMPARE(bar->actions().at(0)->menu(), window.menu(MenuId::File));
    QVERIFY(qobject_cast<QToolBar *>(bar->parentWidget()));
}

void FrmMainTest::menuIconsAreTheNamedPictures_data()
{
    menuTable_data();
}

void FrmMainTest::menuIconsAreTheNamedPictures()
{
    QFETCH(MenuId, menu);
    TestWindow window;
    for (const Item &item : itemsOf(menu)) {
        const QImage shown = image(window.item(menu, item.id)->icon());
        const QString name = u"corvex/menu/"_s + QLatin1StringView(item.icon);
        if (qstrlen(item.icon) == 0) {
            QVERIFY2(window.item(menu, item.id)->icon().isNull(), item.text);
        } else {
            QVERIFY2(!shown.isNull(), item.text);
            QCOMPARE(shown, picture(name));
        }
    }
}

void FrmMainTest::submenusOpenAtTheirItems()
{
    TestWindow window;
    QCOMPARE(window.item(MenuId::File, 11)->menu(), window.recentMenu());
    QCOMPARE(window.item(MenuId::View, 10)->menu(), window.menu(MenuId::Language));
}

void FrmMainTest::recentItemFollowsItsCount_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("isEnabled");
    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << true;
    QTest::newRow("99") << 99 << true;
    QTest::newRow("-1") << -1 << false;
}

void FrmMainTest::recentItemFollowsItsCount()
{
    QFETCH(int, count);
    recentFiles().RecentViewCnt = count;
    writeSettings();
    TestWindow window;
    QVERIFY(window.item(MenuId::File, 11)->isVisible());
    QTEST(window.isItemEnabled(MenuId::File, 11), "isEnabled");
}

void FrmMainTest::toolButtons()
{
    TestWindow window;
    QVERIFY(window.open());
    QToolBar *bar = toolBarOf(window);
    QVERIFY(bar);
    QCOMPARE(size_t(bar->actions().size()), std::size(buttons));
    for (qsizetype i = 0; i < bar->actions().size(); ++i) {
        const Button &button = buttons[i];
        QAction *action = bar->actions().at(i);
        QCOMPARE(action, window.item(button.menu, button.id));
        const auto *widget = qobject_cast<QToolButton *>(bar->widgetForAction(action));
        QCOMPARE(widget->text(), QString::fromLatin1(button.label));
        QCOMPARE(widget->toolTip(), QString::fromLatin1(button.label));
        QCOMPARE(image(widget->icon()), picture(u"corvex/menu/"_s + QLatin1StringView(button.icon)));
        QCOMPARE(widget->isEnabled(), action->isEnabled());
    }
}

void FrmMainTest::toolButtonsTakeNoFocus()
{
    TestWindow window;
    QVERIFY(window.open());
    QToolBar *bar = toolBarOf(window);
    QTest::mouseClick(bar->widgetForAction(window.item(MenuId::File, 1)), Qt::LeftButton);
    QCOMPARE(window.tabBar()->count(), 2);
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
}

void FrmMainTest::toolBarsStay()
{
    TestWindow window;
    QVERIFY(window.open());
    const QList<QToolBar *> bars = window.findChildren<QToolBar *>();
    QCOMPARE(bars.size(), 2);
    for (QToolBar *bar : bars) {
        QVERIFY(!bar->isMovable());
        QCOMPARE(window.toolBarArea(bar), Qt::TopToolBarArea);
        QVERIFY(!window.toolBarBreak(bar));
        QCOMPARE(bar->windowTitle(), QString());
    }
    QCOMPARE(window.contextMenuPolicy(), Qt::NoContextMenu);
}

void FrmMainTest::labelsGoWhereThereIsNoRoom()
{
    TestWindow window;
    QToolBar *bar = toolBarOf(window);
    window.resize(1200, 400);
    window.show();
    QCOMPARE(bar->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
    window.resize(400, 400);
    QTRY_COMPARE(bar->toolButtonStyle(), Qt::ToolButtonIconOnly);
    for (QAction *action : bar->actions())
        QTRY_VERIFY2(bar->widgetForAction(action)->isVisible(), qPrintable(action->iconText()));
    window.resize(1200, 400);
    QTRY_COMPARE(bar->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
}

void FrmMainTest::disabledPictures()
{
    TestWindow window;
    int id = 0;
    for (const auto *name : { "undo", "redo", "cut", "copy" }) {
        ++id;
        const QIcon icon = window.item(MenuId::Edit, id)->icon();
        const QString disabled = u"corvex/menu/"_s + QLatin1StringView(name) + u"_d"_s;
        QCOMPARE(image(icon, QIcon::Disabled), picture(disabled));
        QVERIFY(image(icon, QIcon::Disabled) != image(icon));
    }
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
        { "AutoIndent", &AppSettings::AutoIndent } };
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
    const QWidget *area = areaOf(window);
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
        const QSize area = areaOf(window)->size();
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
    QVERIFY(window.tabBar()->sizeHint().width() > areaOf(window)->width());
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

void FrmMainTest::languages_data()
{
    QTest::addColumn<int>("item");
    QTest::addColumn<int>("stored");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("Japanese") << 1 << 1
                              << QStringList{ u"ファイル(&F)"_s, u"元に戻す(&U)  (Fn+Z)"_s, u"(なし)"_s };
    QTest::newRow("English") << 2 << 0 << QStringList{ u"&File"_s, u"&Undo  (Fn+Z)"_s, u"(no item)"_s };
    QTest::newRow("French") << 3 << 2 << QStringList{ u"&Fichier"_s, u"Ann&uler  (Fn+Z)"_s, u"(aucun)"_s };
}

void FrmMainTest::languages()
{
    QFETCH(int, item);
    qputenv("QPEDIR", TEST_QPE_DIR);
    TestWindow window;
    // From each language to each other one, and to itself.
    for (const int before : { 1, 2, 3 }) {
        window.item(MenuId::Language, before)->trigger();
        window.item(MenuId::Language, item)->trigger();
        QTEST(appSettings().Lang, "stored");
        QTEST(QStringList({ window.menu(MenuId::File)->title(), window.item(MenuId::Edit, 1)->text(),
                  window.recentMenu()->actions().constFirst()->text() }),
            "texts");
        QCOMPARE(toolBarOf(window)->actions().at(3)->iconText(), u"Undo"_s);
        QCOMPARE(toolBarOf(window)->actions().at(3)->toolTip(), u"Undo"_s);
    }
}

void FrmMainTest::languageAtStart_data()
{
    QTest::addColumn<int>("stored");
    QTest::addColumn<QString>("title");
    QTest::newRow("0 English") << 0 << u"&File"_s;
    QTest::newRow("1 Japanese") << 1 << u"ファイル(&F)"_s;
    QTest::newRow("2 French") << 2 << u"&Fichier"_s;
    QTest::newRow("3 is none") << 3 << u"&File"_s;
}

void FrmMainTest::languageAtStart()
{
    QFETCH(int, stored);
    appSettings().Lang = stored;
    writeSettings();
    {
        qputenv("QPEDIR", TEST_QPE_DIR);
        const TestWindow window;
        QTEST(window.menu(MenuId::File)->title(), "title");
    }
    MessageBoxes boxes;
    qputenv("QPEDIR", "/nowhere");
    const TestWindow window;
    QCOMPARE(window.menu(MenuId::File)->title(), u"&File"_s);
    QCOMPARE(appSettings().Lang, stored);
    QCOMPARE(boxes.count(), 0);
}

void FrmMainTest::languageTwiceIsOneTranslator()
{
    qputenv("QPEDIR", TEST_QPE_DIR);
    TestWindow window;
    window.slotCmdViewLangJa();
    window.slotCmdViewLangJa();
    window.slotCmdViewLangEn();
    QCOMPARE(QCoreApplication::translate("frmMain", "&File"), u"&File"_s);
    QCOMPARE(window.menu(MenuId::File)->title(), u"&File"_s);
}

void FrmMainTest::missingTranslation_data()
{
    QTest::addColumn<int>("item");
    QTest::addColumn<QString>("text");
    QTest::newRow("Japanese") << 1 << u"A japanese translation file is not found."_s;
    QTest::newRow("French") << 3 << u"A french translation file not found."_s;
}

void FrmMainTest::missingTranslation()
{
    QFETCH(int, item);
    qputenv("QPEDIR", TEST_QPE_DIR);
    TestWindow window;
    const int other = item == 1 ? 3 : 1;
    window.item(MenuId::Language, other)->trigger();
    const QString title = window.menu(MenuId::File)->title();
    const int stored = appSettings().Lang;

    qputenv("QPEDIR", "/nowhere");
    MessageBoxes boxes;
    window.item(MenuId::Language, item)->trigger();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.shown().at(0).icon, QMessageBox::Critical);
    QCOMPARE(boxes.shown().at(0).title, u"Marlo!Pad QT"_s);
    QCOMPARE(boxes.shown().at(0).buttons.size(), 1);
    QTEST(boxes.shown().at(0).text, "text");
    QCOMPARE(window.menu(MenuId::File)->title(), title);
    QCOMPARE(QCoreApplication::translate("frmMain", "&File"), title);
    QCOMPARE(appSettings().Lang, stored);
}

void FrmMainTest::rebuiltMenusKeepStates()
{
    qputenv("QPEDIR", TEST_QPE_DIR);
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"text"_s);
    QTest::keyClick(window.currentEditor(), Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(window.editStates(), u"u-xc"_s);
    window.slotCmdViewLangJa();
    QCOMPARE(window.editStates(), u"u-xc"_s);
    window.slotCmdViewLangEn();
    QCOMPARE(window.editStates(), u"u-xc"_s);
    QCOMPARE(window.menu(MenuId::Edit)->actions().size(), 11);
    window.currentEditor()->setEdited(false);
}

void FrmMainTest::about()
{
    TestWindow window;
    MessageBoxes boxes;
    window.item(MenuId::View, 12)->trigger();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.shown().at(0).title, u"Marlo!Pad QT"_s);
    QVERIFY(boxes.shown().at(0).text.startsWith(u"Marlo!Pad QT Ver1.76\n            2005/07/04\n\n"_s));
    QCOMPARE(boxes.shown().at(0).buttons.size(), 1);
}

QTEST_MAIN(FrmMainTest)
#include "frmmain_test.moc"
