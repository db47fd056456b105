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
    CommandId id;
    const char *text;
    const char *icon; ///< empty: none
    CommandSlot slot;
    bool isEnabled = true;
    bool hasSeparatorAfter = false;
};

const Item fileItems[] = {
    { FileCommand::New, "&New", "new", &frmMain::slotCmdFileNew },
    { FileCommand::Open, "&Open  (Fn+O)", "folderopen", &frmMain::slotCmdFileOpen },
    { FileCommand::Reload, "&Reload", "reload", &frmMain::slotCmdFileReload, true, true },
    { FileCommand::Properties, "&Properties", "property", &frmMain::slotCmdFileProp, true, true },
    { FileCommand::Save, "&Save  (Fn+S)", "save", qOverload<>(&frmMain::slotCmdFileSave) },
    { FileCommand::SaveAs, "Save &As", "rename", qOverload<>(&frmMain::slotCmdFileSaveAs) },
    { FileCommand::Close, "&Close  (Cancel)", none, &frmMain::slotCmdFileCloseTab, true, true },
    { FileCommand::SaveAll, "Save A&ll", "save", &frmMain::slotCmdFileSaveAll },
    { FileCommand::QuitWithSave, "Quit &with Save", "close", &frmMain::slotCmdFileQuitSave },
    { FileCommand::Quit, "&Quit  (Fn+Q)", "close", &frmMain::slotCmdFileQuitNoSave, true, true },
    { FileCommand::RecentFiles, "R&ecent Files", "recent", nullptr },
};

const Item editItems[] = {
    { EditCommand::Undo, "&Undo  (Fn+Z)", "undo", &frmMain::slotCmdEditUndo, false },
    { EditCommand::Redo, "&Redo", "redo", &frmMain::slotCmdEditRedo, false, true },
    { EditCommand::Cut, "Cu&t  (Fn+X)", "cut", &frmMain::slotCmdEditCut, false },
    { EditCommand::Copy, "&Copy  (Fn+C)", "copy", &frmMain::slotCmdEditCopy, false },
    { EditCommand::Paste, "&Paste  (Fn+V)", "past", &frmMain::slotCmdEditPast, true, true },
    { EditCommand::SelectAll, "Select &All  (Fn+A)", "multisel2", &frmMain::slotCmdEditSelAll },
    { EditCommand::DateAndTime, "&Date and Time", none, &frmMain::slotCmdEditDateTime, true, true },
    { EditCommand::Options, "&Options...", none, &frmMain::slotCmdEditOption },
};

const Item viewItems[] = {
    { ViewCommand::PrevWindow, "&Prev Window", none, &frmMain::slotCmdViewWinPrev },
    { ViewCommand::NextWindow, "&Next Window", none, &frmMain::slotCmdViewWinNext, true, true },
    { ViewCommand::Search, "&Search  (Fn+N)", "search", &frmMain::slotCmdViewSearch },
    { ViewCommand::SearchBefore, "Search &Before  (Fn+1)", "srchbefo", &frmMain::slotCmdViewSrchBefo },
    { ViewCommand::SearchNext, "Search &Next  (Fn+2)", "srchnext", &frmMain::slotCmdViewSrchNext },
    { ViewCommand::Replace, "&Replace  (Fn+M)", "replace", &frmMain::slotCmdViewReplace, true, true },
    { ViewCommand::LineJump, "Line &Jump", none, &frmMain::slotCmdViewGyoJump },
    { ViewCommand::LastEditedPos, "&Last Edited Pos  (Fn+5)", none, &frmMain::slotCmdViewLastEdit, true,
        true },
    { ViewCommand::FullScreen, "&Full Screen", "fullscreen", &frmMain::slotCmdViewFull, true, true },
    { ViewCommand::Language, "&Language", none, nullptr, true, true },
    { ViewCommand::Help, "&Help", "help", &frmMain::slotCmdViewHelp, false },
    { ViewCommand::About, "&About", "about", &frmMain::slotCmdViewAbout },
};

const Item languageItems[] = {
    { LanguageCommand::Japanese, "&Japanese", none, &frmMain::slotCmdViewLangJa },
    { LanguageCommand::English, "&English", none, &frmMain::slotCmdViewLangEn },
    { LanguageCommand::French, "&French", none, &frmMain::slotCmdViewLangFr },
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
    CommandId command;
};

const Button buttons[] = {
    { "New", "new", FileCommand::New },
    { "Open", "folderopen", FileCommand::Open },
    { "Save", "save", FileCommand::Save },
    { "Undo", "undo", EditCommand::Undo },
    { "Cut", "cut", EditCommand::Cut },
    { "Copy", "copy", EditCommand::Copy },
    { "Paste", "past", EditCommand::Paste },
    { "Full Screen", "fullscreen", ViewCommand::FullScreen },
    { "Search", "search", ViewCommand::Search },
    { "Search Next", "srchnext", ViewCommand::SearchNext },
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
        QVERIFY2(commands[i].id == items[i].id, items[i].text);
        QCOMPARE(commands[i].id.menu, menu);
        QCOMPARE(commands[i].id.id, int(i) + 1);
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
        QCOMPARE(action, window.item(item.id));
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
        const QImage shown = image(window.item(item.id)->icon());
        const QString name = u"corvex/menu/"_s + QLatin1StringView(item.icon);
        if (qstrlen(item.icon) == 0) {
            QVERIFY2(window.item(item.id)->icon().isNull(), item.text);
        } else {
            QVERIFY2(!shown.isNull(), item.text);
            QCOMPARE(shown, picture(name));
        }
    }
}

void MenusTest::submenusOpenAtTheirItems()
{
    TestWindow window;
    QCOMPARE(window.item(FileCommand::RecentFiles)->menu(), window.recentMenu());
    QCOMPARE(window.item(ViewCommand::Language)->menu(), window.menu(MenuId::Language));
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
    QVERIFY(window.item(FileCommand::RecentFiles)->isVisible());
    QTEST(window.isItemEnabled(FileCommand::RecentFiles), "isEnabled");
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
        QCOMPARE(action, window.item(button.command));
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
    QTest::mouseClick(bar->widgetForAction(window.item(FileCommand::New)), Qt::LeftButton);
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
    for (const auto &[command, name] :
        { std::pair(EditCommand::Undo, "undo"), std::pair(EditCommand::Redo, "redo"),
            std::pair(EditCommand::Cut, "cut"), std::pair(EditCommand::Copy, "copy") }) {
        const QIcon icon = window.item(command)->icon();
        const QString disabled = u"corvex/menu/"_s + QLatin1StringView(name) + u"_d"_s;
        QCOMPARE(image(icon, QIcon::Disabled), picture(disabled));
        QVERIFY(image(icon, QIcon::Disabled) != image(icon));
    }
}

void MenusTest::about()
{
    TestWindow window;
    MessageBoxes boxes;
    window.item(ViewCommand::About)->trigger();
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
