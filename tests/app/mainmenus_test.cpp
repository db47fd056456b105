#include "app/mainmenus.h"

#include "app/commandbar.h"
#include "app/frmmain.h"
#include "app/recentmenu.h"
#include "settings/settings.h"
#include "tests/testprogram.h"

#include <QAction>
#include <QMainWindow>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

/// A language in which every text of the window is its English one in brackets.
class InBrackets : public QTranslator {
public:
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        return qstrcmp(context, "frmMain") == 0 ? u'<' + QString::fromUtf8(source) + u'>' : QString();
    }
    bool isEmpty() const override { return false; }
};

/// Menus and tool bar in a window that knows no command.
struct Bars {
    Bars() { menus.retranslate(); }

    QMainWindow window;
    RecentMenu recent{ &window };
    MainMenus menus{ window, recent };
    CommandBar bar{ menus, window };
};

/// "-" for a separator, "…" for a submenu.
QStringList itemsOf(const QMenu &menu)
{
    QStringList items;
    for (const QAction *action : menu.actions())
        items << (action->isSeparator() ? u"-"_s : action->menu() ? u"…"_s : action->text());
    return items;
}

} // namespace

/// Menus and tool bar as loops over the table of commands, without the main window.
class MainMenusTest : public QObject {
    Q_OBJECT

private slots:
    void init() { recentFiles() = {}; }

    void eachItemIsAskedForByItsCommand_data();
    void eachItemIsAskedForByItsCommand();
    void choosingSaysTheCommandsSlot();
    void menusAreFilledAnew();
    void submenusStandAtTheirItems();
    void buttonsAreItemsOfTheMenus();
    void labelsShowWhereThereIsRoom();
    void recentFilesAreTheUsedRows();
    void aChosenFileIsSaidByItsRow();
    void withoutFilesThereIsNothingToChoose();
};

void MainMenusTest::eachItemIsAskedForByItsCommand_data()
{
    QTest::addColumn<int>("menu");
    for (std::size_t menu = 0; menu < menuCount; ++menu)
        QTest::addRow("menu %d", int(menu)) << int(menu);
}

void MainMenusTest::eachItemIsAskedForByItsCommand()
{
    QFETCH(int, menu);
    const Bars bars;
    for (const Command &command : commandsOf(MenuId(menu))) {
        const QAction *item = bars.menus.item(command.id);
        QVERIFY2(bars.menus.menu(MenuId(menu))->actions().contains(item), command.text);
        if (!item->menu())
            QCOMPARE(item->text(), QLatin1StringView(command.text));
        QCOMPARE(item->isEnabled() || item->menu(), !(command.flags & DisabledAtStart));
        QCOMPARE(item->icon().isNull(), command.icon == nullptr);
    }
}

void MainMenusTest::choosingSaysTheCommandsSlot()
{
    const Bars bars;
    QList<CommandSlot> chosen;
    connect(&bars.menus, &MainMenus::chosen, this, [&chosen](CommandSlot slot) { chosen << slot; });
    bars.menus.item(FileCommand::Open)->trigger();
    bars.menus.item(ViewCommand::About)->trigger();
    bars.menus.item(EditCommand::Undo)->trigger(); // there is nothing to undo
    QVERIFY((chosen == QList<CommandSlot>{ &frmMain::slotCmdFileOpen, &frmMain::slotCmdViewAbout }));
}

void MainMenusTest::menusAreFilledAnew()
{
    Bars bars;
    const QStringList before = itemsOf(*bars.menus.menu(MenuId::Edit));
    QVERIFY(before.contains(u"&Undo  (Fn+Z)"_s) && before.contains(u"-"_s));
    bars.menus.item(EditCommand::Undo)->setEnabled(true);
    InBrackets translator;
    QCoreApplication::installTranslator(&translator);
    bars.menus.retranslate();
    bars.bar.retranslate();
    QStringList expected = before;
    for (QString &text : expected)
        text = text == u"-"_s ? text : u'<' + text + u'>';
    QCOMPARE(itemsOf(*bars.menus.menu(MenuId::Edit)), expected);
    QCOMPARE(bars.menus.menu(MenuId::File)->title(), u"<&File>"_s);
    QVERIFY(bars.menus.item(EditCommand::Undo)->isEnabled());
    QCOMPARE(bars.bar.actions().constFirst()->iconText(), u"New"_s); // labels are not translated
    QCOMPARE(bars.bar.accessibleName(), u"<Tool bar>"_s);
    QCoreApplication::removeTranslator(&translator);
    bars.menus.retranslate();
    QCOMPARE(itemsOf(*bars.menus.menu(MenuId::Edit)), before);
    QCOMPARE(bars.window.findChild<QMenuBar *>()->actions().size(), 3);
}

void MainMenusTest::submenusStandAtTheirItems()
{
    const Bars bars;
    QCOMPARE(bars.menus.item(FileCommand::RecentFiles)->menu(), &bars.recent);
    QCOMPARE(bars.menus.item(ViewCommand::Language)->menu(), bars.menus.menu(MenuId::Language));
    QCOMPARE(itemsOf(*bars.menus.menu(MenuId::File)).constLast(), u"…"_s);
}

void MainMenusTest::buttonsAreItemsOfTheMenus()
{
    const Bars bars;
    QCOMPARE(std::size_t(bars.bar.actions().size()), toolButtons().size());
    for (std::size_t i = 0; i < toolButtons().size(); ++i) {
        const QAction *action = bars.bar.actions().at(qsizetype(i));
        QCOMPARE(action, bars.menus.item(toolButtons()[i].command));
        QCOMPARE(action->iconText(), QLatin1StringView(toolButtons()[i].label));
        QCOMPARE(action->toolTip(), QLatin1StringView(toolButtons()[i].label));
    }
}

void MainMenusTest::labelsShowWhereThereIsRoom()
{
    Bars bars;
    QCOMPARE(bars.bar.toolButtonStyle(), Qt::ToolButtonIconOnly);
    constexpr int wide = 2000;
    int room = 0;
    while (room < wide && bars.bar.toolButtonStyle() == Qt::ToolButtonIconOnly)
        bars.bar.showLabelsIn(++room);
    int labels = 0;
    for (const ToolButton &button : toolButtons())
        labels += bars.bar.fontMetrics().horizontalAdvance(QLatin1StringView(button.label));
    QVERIFY(room > labels && room < wide);
    bars.bar.showLabelsIn(wide);
    QCOMPARE(bars.bar.toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
    bars.bar.showLabelsIn(room - 1);
    QCOMPARE(bars.bar.toolButtonStyle(), Qt::ToolButtonIconOnly);
}

void MainMenusTest::recentFilesAreTheUsedRows()
{
    Bars bars;
    recentFiles().RecentViewCnt = 3;
    auto &entries = recentFiles().entries;
    entries[0] = { u"/a/"_s, u"one & two\t"_s };
    entries[2] = { u"/b/"_s, u"three"_s };
    entries[3] = { u"/c/"_s, u"beyond the count"_s };
    bars.recent.rebuild();
    QCOMPARE(itemsOf(bars.recent), (QStringList{ RecentMenu::textFor(u"/a/one & two\t"_s), u"/b/three"_s }));
    bars.recent.rebuild();
    QCOMPARE(bars.recent.actions().size(), 2);
    recentFiles().RecentViewCnt = 1000;
    bars.recent.rebuild();
    QCOMPARE(bars.recent.actions().size(), 3);
}

void MainMenusTest::aChosenFileIsSaidByItsRow()
{
    Bars bars;
    recentFiles().entries[2] = { u"/b/"_s, u"three"_s };
    bars.recent.rebuild();
    QSignalSpy chosen(&bars.recent, &RecentMenu::chosen);
    bars.recent.actions().constFirst()->trigger();
    QCOMPARE(chosen, QList<QVariantList>{ { 2 } });
}

void MainMenusTest::withoutFilesThereIsNothingToChoose()
{
    Bars bars;
    bars.recent.rebuild();
    QCOMPARE(itemsOf(bars.recent), QStringList{ u"(no item)"_s });
    QVERIFY(!bars.recent.actions().constFirst()->isEnabled());
    QVERIFY(bars.menus.item(FileCommand::RecentFiles)->isEnabled());
    recentFiles().RecentViewCnt = 0;
    bars.recent.rebuild();
    QVERIFY(!bars.menus.item(FileCommand::RecentFiles)->isEnabled());
}

REGISTER_TEST(runWindowTest<MainMenusTest>)
#include "mainmenus_test.moc"
