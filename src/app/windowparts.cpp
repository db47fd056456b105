#include "app/windowparts.h"

#include "jobs/poolrunner.h"
#include "jobs/threadrunner.h"
#include "settings/settings.h"

#include <QMainWindow>

namespace {

WindowJobs withRunners(WindowJobs jobs)
{
    if (!jobs.runner)
        jobs.runner = std::make_unique<PoolRunner>();
    if (!jobs.inputRunner)
        jobs.inputRunner = std::make_unique<ThreadRunner>();
    return jobs;
}

} // namespace

WindowParts::WindowParts(QMainWindow &window, WindowDialogs windowDialogs, WindowJobs windowJobs)
    : dialogs(std::move(windowDialogs))
    , jobs(withRunners(std::move(windowJobs)))
    , language(appSettings().Lang)
    , fullScreen(*new FullScreen(&window))
    , windowSize(*new WindowSize(&window))
    , recentMenu(*new RecentMenu(&window))
    , menus(*new MainMenus(window, recentMenu))
    , commandBar(*new CommandBar(menus, window))
    , documents(*new DocumentArea(&window))
    , textSizeWheel(*new TextSizeWheel(documents))
    , firstDocument(window, documents)
    , loader(window, dialogs, documents, places, jobs)
    , lineJump(window, documents, loader, places)
    , awaited(documents)
    , openingFiles(documents.notices())
    , requested(documents, loader, recentMenu, lineJump, awaited, openingFiles)
    , drops(window)
    , edits(documents, jobs)
    , layoutSigns(documents)
    , saver(window, dialogs, documents, places, edits, jobs)
    , closer(window, documents, loader, saver, edits, places)
    , tabMenu(*new TabMenu(documents, loader, closer))
    , statusLine(*new StatusLine(documents, loader, saver))
    , documentJournals(documents, journals)
    , recovery(window, documents, loader, journals, jobs)
    , lastSession(documents, loader)
    , sessionEnd(documents, closer, journals)
    , lastWrites(documents, loader, saver, places, journals)
    , search(window, documents, jobs)
    , properties(window, documents, jobs)
    , notices(window, documents, loader, saver, jobs, journals, documentJournals)
    , firstOffers(documents, desktopLocale())
{
    window.setCentralWidget(&documents);
    documents.setFooter(&statusLine);
    journals.setParent(&documents);
    QObject::connect(
        &openingFiles, &OpeningFiles::noticeKeysWanted, &documents, &DocumentArea::toggleNoticeKeys);
}
