#pragma once

#include <QToolBar>

class MainMenus;
class QMainWindow;

/// The tool bar of the commands. Its labels show where there is room for them, and are never translated.
class CommandBar : public QToolBar {
    Q_OBJECT
public:
    /// Joins the window's bars. Its buttons are items of the menus.
    CommandBar(const MainMenus &menus, QMainWindow &window);

    /// Shows the labels, or not, for this width of the bar.
    void showLabelsIn(int width);
    /// Names the controls in the present language.
    void retranslate();

private:
    int m_labelledWidth = 0; ///< of the bar with its labels
};

/// Gives a tool bar and the button that it shows where it is too narrow names for those who cannot see them.
void nameBar(QToolBar &bar, const QString &name);
