#include "app/recentmenu.h"

#include "platform/resource.h"
#include "settings/settings.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

RecentMenu::RecentMenu(QWidget *parent)
    : Menu(parent)
{
    connect(this, &QMenu::triggered, this,
        [this](const QAction *action) { emit chosen(action->data().toInt()); });
}

void RecentMenu::rebuild()
{
    const int count = recentFiles().RecentViewCnt;
    menuAction()->setEnabled(count > 0);
    clear();
    const QIcon icon = Resource::loadIcon(u"corvex/menu/recent"_s);
    for (int row = 0; row < qMin(count, recentEntryCount); ++row) {
        const RecentEntry &entry = recentFiles().entries[std::size_t(row)];
        if (entry.isUsed())
            addAction(icon, Menu::textFor(entry.path + entry.name))->setData(row);
    }
    if (isEmpty())
        addAction(QCoreApplication::translate("frmMain", "(no item)"))->setEnabled(false);
}
