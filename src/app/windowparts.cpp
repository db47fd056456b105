#include "app/windowparts.h"

#include "settings/settings.h"

#include <QMainWindow>

WindowParts::WindowParts(QMainWindow &window, WindowDialogs windowDialogs)
    : dialogs(std::move(windowDialogs))
    , language(appSettings().Lang)
    , fullScreen(*new FullScreen(&window))
    , recentMenu(*new RecentMenu(&window))
    , menus(*new MainMenus(window, recentMenu))
    , commandBar(*new CommandBar(menus, window))
    , documents(*new DocumentArea(&window))
    , firstDocument(window, documents)
    , loader(window, dialogs, documents, places)
    , saver(window, dialogs, documents, places)
    , closer(window, documents, saver, places)
    , documentJournals(documents, journals)
    , recovery(window, documents, loader, journals)
    , sessionEnd(documents, closer, journals)
    , lastWrites(documents, loader, places, journals)
    , search(window, documents)
    , notices(window, documents, loader, saver, journals, documentJournals)
{
    window.setCentralWidget(&documents);
    journals.setParent(&documents);
}
