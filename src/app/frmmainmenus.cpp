#include "app/frmmain.h"

#include "app/flatmenubar.h"
#include "platform/menu.h"
#include "platform/resource.h"
#include "platform/screenclass.h"

#include <QLayout>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

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
constexpr QSize smallIconSize(16, 16);
constexpr QSize vgaIconSize(24, 24);

QIcon iconOf(const Command &command)
{
    return command.icon ? Resource::loadIcon(QLatin1StringView(command.icon),
               command.disabledIcon ? QString(QLatin1StringView(command.disabledIcon)) : QString())
                        : QIcon();
}

} // namespace

void frmMain::createMenuBar()
{
    auto *holder = new QToolBar(this);
    holder->setMovable(false);
    addToolBar(holder);
    m_menuBar = new FlatMenuBar(holder);
    if (!isVga())
        m_menuBar->setFixedHeight(smallMenuBarHeight);
    holder->addWidget(m_menuBar);
    holder->layout()->setAlignment(m_menuBar, Qt::AlignVCenter);

    for (QMenu *&menu : m_menus)
        menu = new Menu(this);
    for (const MenuTitle &title : menuBarTitles)
        menu(title.menu)->setObjectName(QLatin1StringView(title.objectName));
    m_recentMenu = new Menu(this);
    connect(m_recentMenu, &QMenu::triggered, this, [this](QAction *action) {
        if (mayAct())
            slotCmdMnuRecent(action->data().toInt());
    });
}

void frmMain::createActions()
{
    for (std::size_t i = 0; i < menuCount; ++i) {
        for (const Command &command : commandsOf(MenuId(i)))
            m_items[i].append(createAction(command));
    }
    for (const ToolButton &button : toolButtons()) {
        const auto label = QLatin1StringView(button.label);
        item(button.command)->setIconText(label);
        item(button.command)->setToolTip(label);
    }
}

QAction *frmMain::createAction(const Command &command)
{
    if (command.flags & RecentSubmenu)
        return m_recentMenu->menuAction();
    if (command.flags & LanguageSubmenu)
        return menu(MenuId::Language)->menuAction();
    auto *action = new QAction(this);
    connect(action, &QAction::triggered, this, [this, slot = command.slot] { run(slot); });
    action->setEnabled(!(command.flags & DisabledAtStart));
    return action;
}

void frmMain::buildMenus()
{
    m_menuBar->clear();
    for (const MenuTitle &title : menuBarTitles) {
        menu(title.menu)->setTitle(tr(title.title));
        m_menuBar->addMenu(menu(title.menu));
    }
    for (std::size_t i = 0; i < menuCount; ++i)
        fillMenu(MenuId(i));
    rebuildRecentMenu();
}

/// Names for those who cannot see what the controls are.
void frmMain::nameControls()
{
    m_menuBar->setAccessibleName(tr("Menus"));
    m_menuBar->parentWidget()->setAccessibleName(tr("Menus"));
    m_toolBar->setAccessibleName(tr("Tool bar"));
    for (QMenu *const menu : findChildren<QMenu *>())
        menu->setAccessibleName(menu->title().remove(u'&'));
    // Appears where a bar is too narrow for its buttons.
    for (QToolButton *const more : findChildren<QToolButton *>(u"qt_toolbar_ext_button"_s))
        more->setAccessibleName(tr("More buttons"));
}

void frmMain::fillMenu(MenuId id)
{
    menu(id)->clear();
    for (const Command &command : commandsOf(id)) {
        QAction *action = item(command.id);
        action->setText(tr(command.text));
        action->setIcon(iconOf(command));
        menu(id)->addAction(action);
        if (command.flags & SeparatorAfter)
            menu(id)->addSeparator();
    }
}

QAction *frmMain::item(CommandId command) const
{
    return m_items[std::size_t(command.menu)].at(command.id - 1);
}

void frmMain::createToolBar()
{
    m_toolBar = new QToolBar(this);
    m_toolBar->setMovable(false);
    m_toolBar->setIconSize(forScreen(smallIconSize, vgaIconSize));
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    addToolBar(m_toolBar);
    for (const ToolButton &button : toolButtons())
        m_toolBar->addAction(item(button.command));
    m_labelledWidth = m_toolBar->sizeHint().width();
    // The window may begin narrower than that: the labels wait for their room.
    m_toolBar->setToolButtonStyle(Qt::ToolButtonIconOnly);
}

void frmMain::showToolBarLabels()
{
    const bool hasRoom = m_menuBar->sizeHint().width() + m_labelledWidth <= width();
    m_toolBar->setToolButtonStyle(hasRoom ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
}
