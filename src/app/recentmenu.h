#pragma once

#include "platform/menu.h"

/// The menu of the files that were closed last. Its item in the menu above is enabled while it is to show
/// any.
class RecentMenu : public Menu {
    Q_OBJECT
public:
    explicit RecentMenu(QWidget *parent);

    /// Fills the menu from the table, in the present language.
    void rebuild();

signals:
    /// A file was chosen, by its row in the table.
    void chosen(int row);
};
