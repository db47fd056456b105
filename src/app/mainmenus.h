#pragma once

#include "app/command.h"

#include <QObject>

#include <array>

class QAction;
class QMainWindow;
class QMenu;
class QMenuBar;

/// The main window's menus, in a bar that stands in a tool bar of its own: loops over the command table.
class MainMenus : public QObject {
    Q_OBJECT
public:
    /// The bar goes to the top of the window, which owns everything made here; `recentMenu` becomes the
    /// submenu of Recent Files. There are no texts before retranslate().
    MainMenus(QMainWindow &window, QMenu &recentMenu);

    /// The action of an item: its menu text, its icon and, on the tool bar, its label and tool tip.
    QAction *item(CommandId command) const;
    QMenu *menu(MenuId id) const { return m_menus[std::size_t(id)]; }
    /// Of the menu bar with all its titles.
    int barWidth() const;

    /// Opens the first menu of the bar, from which the arrow keys lead to the others.
    void openFirst();
    /// Fills the menus anew, in the present language.
    void retranslate();

signals:
    /// An item was chosen.
    void chosen(CommandSlot command);

private:
    void createBar(QMainWindow &window);
    QMenu *submenuOf(const Command &command, QMenu &recentMenu) const;
    QAction *createAction(const Command &command);
    void fillMenu(MenuId id);
    void nameControls();

    QMenuBar *m_bar = nullptr;
    std::array<QMenu *, menuCount> m_menus{};
    std::array<QList<QAction *>, menuCount> m_items;
};
