#pragma once

#include "app/awaiteddocuments.h"
#include "app/commandbar.h"
#include "app/documentarea.h"
#include "app/documentcloser.h"
#include "app/documentjournals.h"
#include "app/documentloader.h"
#include "app/documentsaver.h"
#include "app/editruns.h"
#include "app/filedrops.h"
#include "app/firstdocument.h"
#include "app/firstoffers.h"
#include "app/fullscreen.h"
#include "app/interfacelanguage.h"
#include "app/lastsession.h"
#include "app/lastwrites.h"
#include "app/layoutsigns.h"
#include "app/linejump.h"
#include "app/mainmenus.h"
#include "app/openingfiles.h"
#include "app/propertiesbox.h"
#include "app/recentmenu.h"
#include "app/recentplaces.h"
#include "app/recovery.h"
#include "app/requestedfiles.h"
#include "app/searchruns.h"
#include "app/sessionend.h"
#include "app/statusline.h"
#include "app/tabmenu.h"
#include "app/textsizewheel.h"
#include "app/windowdialogs.h"
#include "app/windowjobs.h"
#include "app/windownotices.h"
#include "app/windowsize.h"
#include "recovery/recoveryjournals.h"

class QMainWindow;

/// What the main window consists of, each part made with those above it that it needs. None knows the window
/// as more than the widget that dialogs stand over.
struct WindowParts {
    /// Puts the widgets into the window, which owns them. The settings are read by then.
    WindowParts(QMainWindow &window, WindowDialogs windowDialogs, WindowJobs windowJobs);

    const WindowDialogs dialogs;
    const WindowJobs jobs;
    InterfaceLanguage language;
    FullScreen &fullScreen;
    WindowSize &windowSize;
    RecentMenu &recentMenu;
    MainMenus &menus;
    CommandBar &commandBar;
    DocumentArea &documents;
    TextSizeWheel &textSizeWheel;
    FirstDocument firstDocument;
    RecentPlaces places;
    DocumentLoader loader;
    LineJump lineJump;
    AwaitedDocuments awaited;
    OpeningFiles openingFiles;
    RequestedFiles requested;
    FileDrops drops;
    EditRuns edits;
    LayoutSigns layoutSigns;
    DocumentSaver saver;
    DocumentCloser closer;
    TabMenu &tabMenu;
    StatusLine &statusLine;
    RecoveryJournals journals;
    DocumentJournals documentJournals;
    Recovery recovery;
    LastSession lastSession; // hears of the end before who closes documents then
    SessionEnd sessionEnd;
    LastWrites lastWrites;
    SearchRuns search;
    PropertiesBox properties;
    WindowNotices notices;
    FirstOffers firstOffers;
};
