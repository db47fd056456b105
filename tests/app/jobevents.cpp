#include "tests/app/jobevents.h"

#include "files/endorder.h"
#include "tests/app/stripinwindow.h"
#include "tests/app/unsavedtexts.h"
#include "tests/jobs/scarcememory.h"
#include "tests/widget/heldlayout.h"
#include "widget/viewlayout.h"

#include <sys/stat.h>

using namespace Qt::StringLiterals;

const std::vector<JobEvents::Event> &JobEvents::events()
{
    using enum Fate;
    constexpr Moment start = Moment::Start, middle = Moment::Middle, end = Moment::End;
    static const std::vector<Event> all{
        { "nothing", start, &JobEvents::nothing,
            { Done, Done, Done, Done, Done, Done, Done, Done, Done, Done, Done } },
        { "stopped at its start", start, &JobEvents::stop,
            { Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped,
                Stopped } },
        { "stopped in the middle", middle, &JobEvents::stop,
            { Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped,
                Stopped } },
        { "stopped at its end", end, &JobEvents::stop,
            { Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped,
                Stopped } },
        { "tab closed", middle, &JobEvents::closeTab,
            { Gone, Gone, DoneAndGone, Gone, Gone, Gone, DoneAndGone, Gone, Gone, DoneAndGone,
                DoneAndGone } },
        { "quit, Yes", middle, &JobEvents::quit,
            { Gone, Gone, DoneAndGone, Gone, Gone, Gone, DoneAndGone, Gone, Gone, DoneAndGone, DoneAndGone },
            1, u"Yes"_s, true },
        { "quit, No", middle, &JobEvents::quit,
            { Gone, Gone, DoneAndGone, Gone, Gone, Gone, DoneAndGone, Gone, Gone, DoneAndGone, DoneAndGone },
            1, u"No"_s, true },
        { "quit, Cancel", middle, &JobEvents::quit,
            { Gone, Gone, DoneAndGone, Gone, Gone, Gone, Done, Gone, Gone, Done, Done }, 1, u"Cancel"_s },
        { "ended by an order", middle, &JobEvents::endByOrder,
            { Gone, Gone, Gone, Gone, Gone, Gone, Gone, Gone, Gone, Gone, Gone }, 0, {}, true },
        { "logout", middle, &JobEvents::logOut,
            { Gone, Gone, DoneAndGone, Gone, Gone, Gone, DoneAndGone, Gone, Gone, DoneAndGone, DoneAndGone },
            1, u"Yes"_s, true },
        { "second start with its file", middle, &JobEvents::requestItsFile,
            { Done, Done, Done, Done, Stopped, Done, Done, Done, Done, NotTried, NotTried } },
        { "second start with another file", middle, &JobEvents::requestAnotherFile,
            { Done, Done, Done, Done, Stopped, Done, Done, Done, Done, Done, Done } },
        { "file grown meanwhile", middle, &JobEvents::makeFileLonger,
            { Done, Done, Done, Done, Done, Done, Done, NotTried, Done, NotTried, NotTried } },
        { "file deleted meanwhile", middle, &JobEvents::deleteFile,
            { Done, Done, Done, Done, Done, Done, Done, Done, Done, NotTried, NotTried } },
        { "file deleted before", start, &JobEvents::deleteFile,
            { Failed, Failed, Done, Done, Done, Done, Done, NotTried, Done, NotTried, NotTried } },
        { "folder in the file's place meanwhile", middle, &JobEvents::replaceFileByFolder,
            { Done, Done, Failed, Done, Done, Done, Done, Done, Done, NotTried, NotTried } },
        { "folder in the file's place before", start, &JobEvents::replaceFileByFolder,
            { Failed, Failed, Failed, Done, Done, Done, Done, NotTried, Done, NotTried, NotTried } },
        { "pipe in the file's place before", start, &JobEvents::replaceFileByPipe,
            { Failed, Failed, NotTried, Done, Done, Done, Done, NotTried, Done, NotTried, NotTried } },
        { "full disk", middle, &JobEvents::fillDisk,
            { Done, Done, Failed, Done, Done, Done, Done, Done, Done, Failed, Done } },
        { "too little memory", middle, &JobEvents::useUpMemory,
            { Failed, Failed, Failed, Failed, Failed, Failed, Failed, Failed, Failed, Failed, Failed } },
        { "language switched", middle, &JobEvents::changeLanguage,
            { Done, Done, Done, Done, Done, Done, Done, Done, Done, Done, Done } },
        { "font changed", middle, &JobEvents::changeFont,
            { Done, Done, Done, Done, Done, Done, Done, Done, Done, Done, Done } },
        { "typed into", middle, &JobEvents::typeIntoIt,
            { Done, Done, Done, Stopped, Stopped, Done, Done, Done, Done, Done, Done } },
        { "another tab typed into and searched", middle, &JobEvents::typeIntoAnotherTab,
            { Done, Done, Done, Done, Stopped, Done, Done, Done, Done, Done, Done } },
    };
    return all;
}

JobEvents::JobEvents()
{
    m_stepping.callOnTimeout(&m_stepping, [this] { m_scene->step(); });
}

void JobEvents::beginScene()
{
    resetSettings();
    qputenv("QPEDIR", BUILT_QPE_DIR);
    UnsavedTexts::removeAll();
    m_otherText = u"typed other"_s;
    m_otherFile = "other";
    m_foreign.clear();
    m_typed.clear();
}

void JobEvents::endScene()
{
    m_stepping.stop();
    EndOrder::withdraw();
    m_fullDisk.reset();
    m_scene.reset();
}

void JobEvents::stop()
{
    const HeldLayout held;
    const StripInWindow strip(m_scene->window);
    QTRY_VERIFY(strip.button(u"Stop"_s));
    strip.click(u"Stop"_s);
}

void JobEvents::quit()
{
    makeStepsInTheLoop();
    const bool isEnded = m_scene->window.close();
    m_stepping.stop();
    QCOMPARE(isEnded, m_event->endsWindow);
    if (m_event->answer == u"Yes")
        m_otherFile = m_otherText.toLatin1();
}

/// As a signal does it; the process ends there.
void JobEvents::endByOrder()
{
    EndOrder::give();
    theApplication().endAtOnce();
    EndOrder::withdraw(); // what the test reads would obey it
}

void JobEvents::logOut()
{
    makeStepsInTheLoop();
    const bool isReady = m_scene->window.endSession(true);
    emit theApplication().sessionEnded();
    const bool isEnded = m_scene->window.close();
    m_stepping.stop();
    QVERIFY(isReady && isEnded);
    m_otherFile = m_otherText.toLatin1();
}

void JobEvents::requestItsFile()
{
    m_scene->window.slotCmdViewWinPrev();
    QCOMPARE(m_scene->window.currentEditor(), m_scene->other);
    theApplication().request(m_scene->fullName(u"a.txt"_s));
    settle();
    QCOMPARE(m_scene->window.currentEditor(), m_editor);
}

void JobEvents::requestAnotherFile()
{
    theApplication().request(m_scene->files.write(u"third.txt"_s, "third"));
    settle();
    QCOMPARE(m_scene->window.currentEditor()->text(), u"third"_s);
}

void JobEvents::makeFileLonger()
{
    QFile file(itsFile());
    QVERIFY(file.open(QIODevice::Append) && file.write("more\n") == 5);
    file.close();
    m_foreign = m_scene->files.read(QString::fromLatin1(m_job->file));
}

void JobEvents::replaceFileByFolder()
{
    QFile::remove(itsFile());
    QVERIFY(QDir().mkdir(itsFile()));
}

void JobEvents::replaceFileByPipe()
{
    QFile::remove(itsFile());
    QCOMPARE(::mkfifo(QFile::encodeName(itsFile()).constData(), 0600), 0);
}

void JobEvents::fillDisk()
{
    constexpr int room = 1 << 20;
    m_fullDisk.emplace(room);
    m_come = room;
}

void JobEvents::useUpMemory()
{
    const ScarceMemory scarce(1);
    m_scene->step();
    QTRY_VERIFY(scarce.wasMet());
}

void JobEvents::changeLanguage()
{
    const HeldLayout held;
    m_scene->window.slotCmdViewLangFr();
    const StripInWindow strip(m_scene->window);
    QTRY_VERIFY(strip.button(u"Arrêter"_s));
}

void JobEvents::changeFont()
{
    appSettings().FontSize += 3;
    m_scene->window.applySettings();
}

void JobEvents::typeIntoIt()
{
    const bool isHeld = m_editor->document().isHeld();
    m_scene->press(Qt::Key_K);
    if (isHeld)
        QVERIFY(StripInWindow(m_scene->window).text().startsWith(u"Not while"_s));
    else
        m_typed = u"k"_s;
}

void JobEvents::typeIntoAnotherTab()
{
    m_scene->window.slotCmdViewWinPrev();
    QCOMPARE(m_scene->window.currentEditor(), m_scene->other);
    m_scene->press(Qt::Key_K);
    m_otherText = u"typed kother"_s;
    m_scene->prepareSearch(u"other"_s);
    m_scene->window.slotEtcSearchNext();
    QCOMPARE(m_scene->other->markedText(), u"other"_s);
}

void JobEvents::begin(const JobScene::Job &job)
{
    m_job = &job;
    m_scene = std::make_unique<JobScene>(job);
    QCOMPARE(m_scene->other->text(), m_otherText);
    (m_scene.get()->*job.begin)();
    m_editor = m_scene->window.currentEditor();
    QVERIFY(m_editor != m_scene->other);
}

/// While the window waits for a save, an edit or what has come.
void JobEvents::makeStepsInTheLoop()
{
    using enum JobScene::Kind;
    if (m_job->kind == Save || m_job->kind == Edit || isOfInput())
        m_stepping.start(0);
}

/// Until so much of the text is measured, and no further.
void JobEvents::makeTurnsOfLayout(int percent)
{
    std::optional<HeldLayout> held;
    const QObject until;
    QObject::connect(&m_editor->viewLayout(), &ViewLayout::progressed, &until, [&](int measured) {
        if (measured >= percent && !held)
            held.emplace();
    });
    QTRY_VERIFY(held);
}

void JobEvents::makeStepsBefore(Moment moment)
{
    if (m_job->kind == JobScene::Kind::Layout && moment != Moment::Start)
        return makeTurnsOfLayout(moment == Moment::Middle ? 1 : 50);
    const int steps = moment == Moment::Start ? 0 : moment == Moment::Middle ? 1 : m_job->steps - 1;
    for (int step = 0; step < steps; ++step)
        m_scene->bringAndStep();
    m_come = m_scene->brought;
}
