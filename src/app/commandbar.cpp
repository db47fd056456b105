#include "app/commandbar.h"

#include "app/mainmenus.h"
#include "platform/screenclass.h"

#include <QAction>
#include <QCoreApplication>
#include <QMainWindow>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize smallIconSize(16, 16);
constexpr QSize vgaIconSize(24, 24);

} // namespace

CommandBar::CommandBar(const MainMenus &menus, QMainWindow &window)
    : QToolBar(&window)
{
    setMovable(false);
    setIconSize(forScreen(smallIconSize, vgaIconSize));
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    window.addToolBar(this); // which it is measured in
    for (const ToolButton &button : toolButtons()) {
        QAction *action = menus.item(button.command);
        const auto label = QLatin1StringView(button.label);
        action->setIconText(label);
        action->setToolTip(label);
        addAction(action);
    }
    m_labelledWidth = sizeHint().width();
    // The window may begin narrower than that: the labels wait for their room.
    setToolButtonStyle(Qt::ToolButtonIconOnly);
}

void CommandBar::showLabelsIn(int width)
{
    const bool hasRoom = m_labelledWidth <= width;
    setToolButtonStyle(hasRoom ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
    updateGeometry(); // where only the menus' width has changed
}

void CommandBar::retranslate()
{
    nameBar(*this, QCoreApplication::translate("frmMain", "Tool bar"));
}

void nameBar(QToolBar &bar, const QString &name)
{
    bar.setAccessibleName(name);
    for (QToolButton *const more : bar.findChildren<QToolButton *>(u"qt_toolbar_ext_button"_s))
        more->setAccessibleName(QCoreApplication::translate("frmMain", "More buttons"));
}
