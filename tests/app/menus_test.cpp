#include "platform/resource.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QAction>
#include <QMenuBar>
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

} // namespace

Q_DECLARE_METATYPE(MenuId)

/// Menus and tool bar: their items, pictures and labels, and what each of them does.
class MenusTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void menuTable_data();
    void menuTable();
    void menuItemsStandInTheirMenu_data();
    void menuItemsStandInTheirMenu();
    void menusHaveNoShortcuts();
    void menuTextsStandInTheMiddle();
    void menuBarShowsThreeMenus();
    void menuIconsAreTheNamedPictures_data();
    void menuIconsAreTheNamedPictures();
    void submenusOpenAtTheirItems();
    void menusStayOnTheScreen_data();
    void menusStayOnTheScreen();
    void recentItemFollowsItsCount_data();
    void recentItemFollowsItsCount();

    void toolButtons();
    void toolButtonsTakeNoFocus();
    void toolBarsStay();
    void labelsGoWhereThereIsNoRoom();
    void disabledPictures();
    void about();
};

void MenusTest::init()
{
    resetSettings();
}

void MenusTest::menuTable_data()
{
    QTest::addColumn<MenuId>("menu");
    QTest::newRow("File") << MenuId::File;
    QTest::newRow("Edit") << MenuId::Edit;
    QTest::newRow("View") << MenuId::View;
    QTest::newRow("Language") << MenuId::Language;
}

void MenusTest::menuTable()
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

void MenusTest::menuItemsStandInTheirMenu_data()
{
    menuTable_data();
}

void MenusTest::menuItemsStandInTheirMenu()
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

void MenusTest::menusHaveNoShortcuts()
{
    TestWindow window;
    for (const QAction *action : window.findChildren<QAction *>())
        QVERIFY2(action->shortcuts().isEmpty(), qPrintable(action->text()));
}

void MenusTest::menuBarShowsThreeMenus()
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

/// Number of the first row of pixels with a part of a letter.
static int firstInk(QWidget &bar)
{
    QImage picture(bar.size(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    bar.render(&picture, {}, {}, {});
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y) != Qt::white)
                return y;
        }
    }
    return -1;
}

/// As the labels of the tool bar beside them do: the bar is higher than its items, which are kept at its top.
void MenusTest::menuTextsStandInTheMiddle()
{
    TestWindow window;
    window.show();
    auto *const bar = window.findChild<QMenuBar *>();
    const int before = firstInk(*bar);
    QVERIFY(before > 0);
    bar->setFixedHeight(bar->height() + 8);
    QTRY_COMPARE(firstInk(*bar), before + 4);
}

void MenusTest::menuIconsAreTheNamedPictures_data()
{
    menuTable_data();
}

void MenusTest::menuIconsAreTheNamedPictures()
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

void MenusTest::submenusOpenAtTheirItems()
{
    TestWindow window;
    QCOMPARE(window.item(MenuId::File, 11)->menu(), window.recentMenu());
    QCOMPARE(window.item(MenuId::View, 10)->menu(), window.menu(MenuId::Language));
}

void MenusTest::menusStayOnTheScreen_data()
{
    menuTable_data();
}

/// Also in its corner, and as wide as ever each time.
void MenusTest::menusStayOnTheScreen()
{
    QFETCH(MenuId, menu);
    TestWindow window;
    QVERIFY(window.open());
    const QRect screen = window.screen()->geometry();
    QMenu *opened = window.menu(menu);
    opened->popup(screen.topLeft());
    const QSize size = opened->size();
    opened->hide();
    for (int time = 0; time < 3; ++time) {
        opened->popup(screen.bottomRight());
        QCOMPARE(opened->size(), size);
        QVERIFY(screen.contains(opened->geometry()));
        opened->hide();
    }
}

void MenusTest::recentItemFollowsItsCount_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("isEnabled");
    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << true;
    QTest::newRow("99") << 99 << true;
    QTest::newRow("-1") << -1 << false;
}

void MenusTest::recentItemFollowsItsCount()
{
    QFETCH(int, count);
    recentFiles().RecentViewCnt = count;
    writeSettings();
    TestWindow window;
    QVERIFY(window.item(MenuId::File, 11)->isVisible());
    QTEST(window.isItemEnabled(MenuId::File, 11), "isEnabled");
}

void MenusTest::toolButtons()
{
    TestWindow window;
    QVERIFY(window.open());
    QToolBar *bar = window.toolBar();
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

void MenusTest::toolButtonsTakeNoFocus()
{
    TestWindow window;
    QVERIFY(window.open());
    QToolBar *bar = window.toolBar();
    QTest::mouseClick(bar->widgetForAction(window.item(MenuId::File, 1)), Qt::LeftButton);
    QCOMPARE(window.tabBar()->count(), 2);
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
}

void MenusTest::toolBarsStay()
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

void MenusTest::labelsGoWhereThereIsNoRoom()
{
    TestWindow window;
    QToolBar *bar = window.toolBar();
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

void MenusTest::disabledPictures()
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

void MenusTest::about()
{
    TestWindow window;
    MessageBoxes boxes;
    window.item(MenuId::View, 12)->trigger();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.shown().at(0).title, u"Marlo!Pad QT"_s);
    QVERIFY(boxes.shown().at(0).text.startsWith(u"Marlo!Pad QT Ver1.76\n            2005/07/04\n\n"_s));
    QCOMPARE(boxes.shown().at(0).buttons.size(), 1);
    QVERIFY(boxes.shown().at(0).hasPicture);
    QCOMPARE(boxes.shown().at(0).format, Qt::PlainText); // which keeps the blanks before the date
    const QStringList contact = boxes.shown().at(0).text.split(u'\n').mid(3);
    QCOMPARE(contact.size(), 2);
    QVERIFY2(contact.at(0).contains(u'@'), qPrintable(contact.at(0)));
    QVERIFY2(contact.at(1).startsWith(u"https://"), qPrintable(contact.at(1)));
}

REGISTER_TEST(runWindowTest<MenusTest>)
#include "menus_test.moc"
