#include "app/mainmenus.h"

#include "app/commandbar.h"
#include "app/flatmenubar.h"
#include "platform/menu.h"
#include "platform/resource.h"
#include "platform/screenclass.h"

#include <QCoreApplication>
#include <QLayout>
#include <QMainWindow>
#include <QToolBar>

namespace {

struct MenuTitle {
    MenuId menu;
    const char *title;
    const char *objectName;
};

constexpr MenuTitle menuBarTitles[] = {
    { MenuId::File, QT_TRANSLATE_NOOP("frmMain", "&File"), "MenuFile" },
    { MenuId::Edit, QT_TRANSLATE_NOOP("frmMain", "&Edit"), "MenuEdit" },
    { MenuId::View, QT_TRANSLATE_NOOP("frmMain", "&View"), "MenuView" },
};

constexpr int smallMenuBarHeight = 20;

QIcon iconOf(const Command &command)
{
    return command.icon ? Resource::loadIcon(QLatin1StringView(command.icon),
               command.disabledIcon ? QString(QLatin1StringView(command.disabledIcon)) : QString())
                        : QIcon();
}

} // namespace

MainMenus::MainMenus(QMainWindow &window, QMenu &recentMenu)
    : QObject(&window)
{
    createBar(window);
    for (QMenu *&menu : m_menus)
        menu = new Menu(&window);
    for (const MenuTitle &title : menuBarTitles)
        menu(title.menu)->setObjectName(QLatin1StringView(title.objectName));
    for (std::size_t i = 0; i < menuCount; ++i) {
        for (const Command &command : commandsOf(MenuId(i))) {
            const QMenu *submenu = submenuOf(command, recentMenu);
            m_items[i].append(submenu ? submenu->menuAction() : createAction(command));
            m_items[i].constLast()->setIcon(iconOf(command));
        }
    }
}

void MainMenus::createBar(QMainWindow &window)
{
    auto *holder = new QToolBar(&window);
    holder->setMovable(false);
    window.addToolBar(holder);
    m_bar = new FlatMenuBar(holder);
    if (!isVga())
        m_bar->setFixedHeight(smallMenuBarHeight);
    holder->addWidget(m_bar);
    holder->layout()->setAlignment(m_bar, Qt::AlignVCenter);
}

/// Null for a command of its own.
QMenu *MainMenus::submenuOf(const Command &command, QMenu &recentMenu) const
{
    if (command.id == FileCommand::RecentFiles)
        return &recentMenu;
    return command.id == ViewCommand::Language ? menu(MenuId::Language) : nullptr;
}

QAction *MainMenus::createAction(const Command &command)
{
    auto *action = new QAction(this);
    connect(action, &QAction::triggered, this, [this, slot = command.slot] { emit chosen(slot); });
    action->setEnabled(!(command.flags & DisabledAtStart));
    return action;
}

QAction *MainMenus::item(CommandId command) const
{
    return m_items[std::size_t(command.menu)].at(command.id - 1);
}

int MainMenus::barWidth() const
{
    return m_bar->sizeHint().width();
}

void MainMenus::openFirst()
{
    m_bar->setActiveAction(m_bar->actions().constFirst());
}

void MainMenus::retranslate()
{
    m_bar->clear();
    for (const MenuTitle &title : menuBarTitles) {
        menu(title.menu)->setTitle(QCoreApplication::translate("frmMain", title.title));
        m_bar->addMenu(menu(title.menu));
    }
    for (std::size_t i = 0; i < menuCount; ++i)
        fillMenu(MenuId(i));
    nameControls();
}

void MainMenus::fillMenu(MenuId id)
{
    menu(id)->clear();
    for (const Command &command : commandsOf(id)) {
        QAction *action = item(command.id);
        action->setText(QCoreApplication::translate("frmMain", command.text));
        menu(id)->addAction(action);
        if (command.flags & SeparatorAfter)
            menu(id)->addSeparator();
    }
}

void MainMenus::nameControls()
{
    auto &holder = static_cast<QToolBar &>(*m_bar->parentWidget());
    nameBar(holder, QCoreApplication::translate("frmMain", "Menus"));
    m_bar->setAccessibleName(holder.accessibleName());
    for (QMenu *const menu : m_menus)
        menu->setAccessibleName(menu->title().remove(u'&'));
    // A submenu's title is the text of its item.
    QMenu *const recent = item(FileCommand::RecentFiles)->menu();
    recent->setAccessibleName(recent->title().remove(u'&'));
}
