#include "app/documentarea.h"
#include "editor/noticequeue.h"
#include "files/endorder.h"
#include "tests/app/brokenreading.h"
#include "tests/app/jobscene.h"
#include "tests/app/stayingapplication.h"
#include "tests/app/stripinwindow.h"
#include "tests/app/unsavedtexts.h"
#include "tests/jobs/scarcememory.h"
#include "tests/widget/heldlayout.h"
#include "widget/viewlayout.h"

#include <QDirIterator>
#include <QTimer>

#include <csignal>
#include <map>
#include <optional>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// What becomes of a job.
enum class Fate {
    NotTried,
    Done,
    Stopped,
    Failed,
    Gone, ///< stopped, because the document is closed
    DoneAndGone,
};

enum class Moment { Start, Middle, End };

JobScene::Content contentAfter(const JobScene::Job &job, Fate fate)
{
    switch (fate) {
    case Fate::Done:
        return job.done;
    case Fate::Stopped:
        return job.stopped;
    case Fate::Failed:
        return job.failed;
    case Fate::NotTried:
    case Fate::Gone:
    case Fate::DoneAndGone:
        return JobScene::Content::NoDocument;
    }
    Q_UNREACHABLE();
}

/// No file can be made longer than this while it lives.
class FullDisk {
public:
    explicit FullDisk(rlim_t longest)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit full{ longest, m_before.rlim_max };
        ::setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    Q_DISABLE_COPY_MOVE(FullDisk)

private:
    rlimit m_before{};
};

} // namespace

/// Every job that is done behind the window, and everything that may come between: what is in the files and
/// in the texts then, what the strip tells, and where the next key goes.
///
/// Another job is another row of JobScene::jobs(), another event one of events().
class JobsAndEventsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void endsAsItShould_data();
    void endsAsItShould();
    void readErrorInTheMiddle_data();
    void readErrorInTheMiddle();

private:
    struct Event {
        const char *name;
        Moment moment;
        void (JobsAndEventsTest::*act)();
        /// Of a load, a reload, a save, a search, a count, a layout, an edit, a following, a restoring and
        /// standard input, which is of no file; at last of that where it is read once more.
        Fate fates[11];
        int boxes = 0;
        QString answer = {}; ///< of its box; the default one where there is none
        bool endsWindow = false;
    };
    static const std::vector<Event> &events();
    /// Its end makes a document edited, about which is asked.
    bool isAskedAbout(Fate fate) const
    {
        using enum JobScene::Kind;
        return (m_job->kind == Edit || isOfInput()) && fate == Fate::DoneAndGone;
    }
    bool isOfInput() const
    {
        using enum JobScene::Kind;
        return m_job->kind == Input || m_job->kind == InputAgain;
    }
    static Fate fateOf(const JobScene::Job &job, const Event &event) { return event.fates[size_t(job.kind)]; }

    void nothing() { }
    void stop();
    void closeTab() { m_scene->window.slotCmdFileCloseTab(); }
    void quit();
    void endByOrder();
    void logOut();
    void requestItsFile();
    void requestAnotherFile();
    void makeFileLonger();
    void deleteFile() { QFile::remove(itsFile()); }
    void replaceFileByFolder();
    void replaceFileByPipe();
    void fillDisk();
    void useUpMemory();
    void changeLanguage();
    void changeFont();
    void typeIntoIt();
    void typeIntoAnotherTab();

    void begin(const JobScene::Job &job);
    void makeStepsInTheLoop();
    void makeStepsBefore(Moment moment);
    void makeTurnsOfLayout(int percent);
    QString itsFile() const { return m_scene->fullName(QString::fromLatin1(m_job->file)); }
    void checkDocument(Fate fate);
    void checkFiles(Fate fate);
    static QByteArrayList keptContents();
    void checkJournals();
    void checkStrip();
    void checkNextKey();

    std::unique_ptr<JobScene> m_scene;
    QTimer m_stepping; ///< makes steps while the window waits for them
    const JobScene::Job *m_job = nullptr;
    const Event *m_event = nullptr;
    QPointer<ctlEditer> m_editor; ///< that the job is about
    Offset m_cursor; ///< when the job has begun
    QString m_typed; ///< into it since
    QString m_otherText;
    QByteArray m_otherFile;
    qint64 m_come = 0; ///< bytes of standard input, where no more of it becomes text
    QByteArray m_foreign; ///< what somebody else has written into its file
    std::optional<FullDisk> m_fullDisk;
};

const std::vector<JobsAndEventsTest::Event> &JobsAndEventsTest::events()
{
    using Test = JobsAndEventsTest;
    using enum Fate;
    constexpr Moment start = Moment::Start, middle = Moment::Middle, end = Moment::End;
    static const std::vector<Event> all{
        { "nothing", start, &Test::nothing,
            { Done, Done, Done, Done, Done, Done, Done, Done, Done, Done, Done } },
        { "stopped at its start", start, &Test::stop,
            { Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped,
                Stopped } },
        { "stopped in the middle", middle, &Test::stop,
            { Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped,
                Stopped } },
        { "stopped at its end", end, &Test::stop,
            { Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped, Stopped,
                Stopped } },
        { "tab closed", middle, &Test::closeTab,
            { Gone, Gone, DoneAndGone, Gone, Gone, Gone, DoneAndGone, Gone, Gone, DoneAndGone,
                DoneAndGone } },
        { "quit, Yes", middle, &Test::quit,
            { Gone, Gone, DoneAndGone, Gone, Gone, Gone, DoneAndGone, Gone, Gone, DoneAndGone, DoneAndGone },
            1, u"Yes"_s, true },
        { "quit, No", middle, &Test::quit,
            { Gone, Gone, DoneAndGone, Gone, Gone, Gone, DoneAndGone, Gone, Gone, DoneAndGone, DoneAndGone },
            1, u"No"_s, true },
        { "quit, Cancel", middle, &Test::quit,
            { Gone, Gone, DoneAndGone, Gone, Gone, Gone, Done, Gone, Gone, Done, Done }, 1, u"Cancel"_s },
        { "ended by an order", middle, &Test::endByOrder,
            { Gone, Gone, Gone, Gone, Gone, Gone, Gone, Gone, Gone, Gone, Gone }, 0, {}, true },
        { "logout", middle, &Test::logOut,
            { Gone, Gone, DoneAndGone, Gone, Gone, Gone, DoneAndGone, Gone, Gone, DoneAndGone, DoneAndGone },
            1, u"Yes"_s, true },
        { "second start with its file", middle, &Test::requestItsFile,
            { Done, Done, Done, Done, Stopped, Done, Done, Done, Done, NotTried, NotTried } },
        { "second start with another file", middle, &Test::requestAnotherFile,
            { Done, Done, Done, Done, Stopped, Done, Done, Done, Done, Done, Done } },
        { "file grown meanwhile", middle, &Test::makeFileLonger,
            { Done, Done, Done, Done, Done, Done, Done, NotTried, Done, NotTried, NotTried } },
        { "file deleted meanwhile", middle, &Test::deleteFile,
            { Done, Done, Done, Done, Done, Done, Done, Done, Done, NotTried, NotTried } },
        { "file deleted before", start, &Test::deleteFile,
            { Failed, Failed, Done, Done, Done, Done, Done, NotTried, Done, NotTried, NotTried } },
        { "folder in the file's place meanwhile", middle, &Test::replaceFileByFolder,
            { Done, Done, Failed, Done, Done, Done, Done, Done, Done, NotTried, NotTried } },
        { "folder in the file's place before", start, &Test::replaceFileByFolder,
            { Failed, Failed, Failed, Done, Done, Done, Done, NotTried, Done, NotTried, NotTried } },
        { "pipe in the file's place before", start, &Test::replaceFileByPipe,
            { Failed, Failed, NotTried, Done, Done, Done, Done, NotTried, Done, NotTried, NotTried } },
        { "full disk", middle, &Test::fillDisk,
            { Done, Done, Failed, Done, Done, Done, Done, Done, Done, Failed, Done } },
        { "too little memory", middle, &Test::useUpMemory,
            { Failed, Failed, Failed, Failed, Failed, Failed, Failed, Failed, Failed, Failed, Failed } },
        { "language switched", middle, &Test::changeLanguage,
            { Done, Done, Done, Done, Done, Done, Done, Done, Done, Done, Done } },
        { "font changed", middle, &Test::changeFont,
            { Done, Done, Done, Done, Done, Done, Done, Done, Done, Done, Done } },
        { "typed into", middle, &Test::typeIntoIt,
            { Done, Done, Done, Stopped, Stopped, Done, Done, Done, Done, Done, Done } },
        { "another tab typed into and searched", middle, &Test::typeIntoAnotherTab,
            { Done, Done, Done, Done, Stopped, Done, Done, Done, Done, Done, Done } },
    };
    return all;
}

void JobsAndEventsTest::initTestCase()
{
    qputenv("QPEDIR", BUILT_QPE_DIR);
    m_stepping.callOnTimeout(this, [this] { m_scene->step(); });
}

void JobsAndEventsTest::init()
{
    resetSettings();
    UnsavedTexts::removeAll();
    m_otherText = u"typed other"_s;
    m_otherFile = "other";
    m_foreign.clear();
    m_typed.clear();
}

void JobsAndEventsTest::cleanup()
{
    m_stepping.stop();
    EndOrder::withdraw();
    m_fullDisk.reset();
    m_scene.reset();
}

void JobsAndEventsTest::stop()
{
    const HeldLayout held;
    const StripInWindow strip(m_scene->window);
    QTRY_VERIFY(strip.button(u"Stop"_s));
    strip.click(u"Stop"_s);
}

void JobsAndEventsTest::quit()
{
    makeStepsInTheLoop();
    const bool isEnded = m_scene->window.close();
    m_stepping.stop();
    QCOMPARE(isEnded, m_event->endsWindow);
    if (m_event->answer == u"Yes")
        m_otherFile = m_otherText.toLatin1();
}

/// As a signal does it; the process ends there.
void JobsAndEventsTest::endByOrder()
{
    EndOrder::give();
    theApplication().endAtOnce();
    EndOrder::withdraw(); // what the test reads would obey it
}

void JobsAndEventsTest::logOut()
{
    makeStepsInTheLoop();
    const bool isReady = m_scene->window.endSession(true);
    emit theApplication().sessionEnded();
    const bool isEnded = m_scene->window.close();
    m_stepping.stop();
    QVERIFY(isReady && isEnded);
    m_otherFile = m_otherText.toLatin1();
}

void JobsAndEventsTest::requestItsFile()
{
    m_scene->window.slotCmdViewWinPrev();
    QCOMPARE(m_scene->window.currentEditor(), m_scene->other);
    theApplication().request(m_scene->fullName(u"a.txt"_s));
    settle();
    QCOMPARE(m_scene->window.currentEditor(), m_editor);
}

void JobsAndEventsTest::requestAnotherFile()
{
    theApplication().request(m_scene->files.write(u"third.txt"_s, "third"));
    settle();
    QCOMPARE(m_scene->window.currentEditor()->text(), u"third"_s);
}

void JobsAndEventsTest::makeFileLonger()
{
    QFile file(itsFile());
    QVERIFY(file.open(QIODevice::Append) && file.write("more\n") == 5);
    file.close();
    m_foreign = m_scene->files.read(QString::fromLatin1(m_job->file));
}

void JobsAndEventsTest::replaceFileByFolder()
{
    QFile::remove(itsFile());
    QVERIFY(QDir().mkdir(itsFile()));
}

void JobsAndEventsTest::replaceFileByPipe()
{
    QFile::remove(itsFile());
    QCOMPARE(::mkfifo(QFile::encodeName(itsFile()).constData(), 0600), 0);
}

void JobsAndEventsTest::fillDisk()
{
    constexpr int room = 1 << 20;
    m_fullDisk.emplace(room);
    m_come = room;
}

void JobsAndEventsTest::useUpMemory()
{
    const ScarceMemory scarce(1);
    m_scene->step();
    QTRY_VERIFY(scarce.wasMet());
}

void JobsAndEventsTest::changeLanguage()
{
    const HeldLayout held;
    m_scene->window.slotCmdViewLangFr();
    const StripInWindow strip(m_scene->window);
    QTRY_VERIFY(strip.button(u"Arrêter"_s));
}

void JobsAndEventsTest::changeFont()
{
    appSettings().FontSize += 3;
    m_scene->window.applySettings();
}

void JobsAndEventsTest::typeIntoIt()
{
    const bool isHeld = m_editor->document().isHeld();
    m_scene->press(Qt::Key_K);
    if (isHeld)
        QVERIFY(StripInWindow(m_scene->window).text().startsWith(u"Not while"_s));
    else
        m_typed = u"k"_s;
}

void JobsAndEventsTest::typeIntoAnotherTab()
{
    m_scene->window.slotCmdViewWinPrev();
    QCOMPARE(m_scene->window.currentEditor(), m_scene->other);
    m_scene->press(Qt::Key_K);
    m_otherText = u"typed kother"_s;
    m_scene->prepareSearch(u"other"_s);
    m_scene->window.slotEtcSearchNext();
    QCOMPARE(m_scene->other->markedText(), u"other"_s);
}

void JobsAndEventsTest::begin(const JobScene::Job &job)
{
    m_job = &job;
    m_scene = std::make_unique<JobScene>(job);
    QCOMPARE(m_scene->other->text(), m_otherText);
    (m_scene.get()->*job.begin)();
    m_editor = m_scene->window.currentEditor();
    QVERIFY(m_editor != m_scene->other);
}

/// While the window waits for a save, an edit or what has come.
void JobsAndEventsTest::makeStepsInTheLoop()
{
    using enum JobScene::Kind;
    if (m_job->kind == Save || m_job->kind == Edit || isOfInput())
        m_stepping.start(0);
}

/// Until so much of the text is measured, and no further.
void JobsAndEventsTest::makeTurnsOfLayout(int percent)
{
    std::optional<HeldLayout> held;
    const QObject until;
    connect(&m_editor->viewLayout(), &ViewLayout::progressed, &until, [&](int measured) {
        if (measured >= percent && !held)
            held.emplace();
    });
    QTRY_VERIFY(held);
}

void JobsAndEventsTest::makeStepsBefore(Moment moment)
{
    if (m_job->kind == JobScene::Kind::Layout && moment != Moment::Start)
        return makeTurnsOfLayout(moment == Moment::Middle ? 1 : 50);
    const int steps = moment == Moment::Start ? 0 : moment == Moment::Middle ? 1 : m_job->steps - 1;
    for (int step = 0; step < steps; ++step)
        m_scene->bringAndStep();
    m_come = m_scene->brought;
}

void JobsAndEventsTest::checkDocument(Fate fate)
{
    const JobScene::Content content = contentAfter(*m_job, fate);
    const bool isThere = m_scene->window.tabBar()->editors().contains(m_editor);
    QCOMPARE(isThere, content != JobScene::Content::NoDocument);
    if (!isThere)
        return;
    QVERIFY(!m_editor->document().isHeld());
    QString expected = JobScene::textOf(content, m_come);
    const bool isFromInput = isOfInput() && !expected.isEmpty();
    expected.insert(m_cursor - Offset(), m_typed);
    QVERIFY(m_editor->text() == expected);
    m_editor->store().checkInvariants();
    const bool isUnsaved = m_job->kind == JobScene::Kind::Save && fate != Fate::Done;
    const bool isEditMade = m_job->kind == JobScene::Kind::Edit && fate == Fate::Done;
    const bool isRestored = m_job->kind == JobScene::Kind::Restore && fate == Fate::Done;
    QCOMPARE(m_editor->edited(),
        isUnsaved || isEditMade || isRestored || isFromInput || content == JobScene::Content::Replaced
            || !m_typed.isEmpty());
    if (m_job->kind == JobScene::Kind::Search)
        QCOMPARE(m_editor->hasMarkedText(), fate == Fate::Done && content == JobScene::Content::Text);
    if (m_job->kind == JobScene::Kind::Layout) {
        QTRY_VERIFY(!m_editor->store().linesAhead());
        const bool keepsRows = fate == Fate::Stopped || fate == Fate::Failed;
        QCOMPARE(m_editor->rowHeight() > m_scene->rowHeight, !keepsRows);
    }
}

QByteArrayList JobsAndEventsTest::keptContents()
{
    QByteArrayList contents;
    QDirIterator kept(
        QFile::decodeName(stateFolder()), { u"kept-*"_s }, QDir::Files, QDirIterator::Subdirectories);
    while (kept.hasNext()) {
        QFile file(kept.next());
        if (file.open(QIODevice::ReadOnly))
            contents << file.readAll();
    }
    return contents;
}

/// The old content, the new one, or what somebody else has made of it, which is kept where it is written
/// over.
void JobsAndEventsTest::checkFiles(Fate fate)
{
    const TestFiles &files = m_scene->files;
    const QString name = QString::fromLatin1(m_job->file);
    const bool isSaved =
        m_job->kind == JobScene::Kind::Save && (fate == Fate::Done || fate == Fate::DoneAndGone);
    const bool isWritten = isSaved || (isAskedAbout(fate) && m_event->answer != u"No");
    QStringList others =
        QDir(files.folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString &known : { u"other.txt"_s, u"third.txt"_s, u"a.txt"_s, u"b.txt"_s })
        others.removeOne(known);
    QVERIFY(files.read(u"other.txt"_s) == m_otherFile);
    const auto written = m_job->kind == JobScene::Kind::Input ? JobScene::Content::Come : m_job->done;
    if (isWritten)
        QVERIFY(files.read(name) == JobScene::textOf(written, m_come).toUtf8());
    else if (!m_foreign.isEmpty())
        QVERIFY(files.read(name) == m_foreign);
    else if (m_event->act == &JobsAndEventsTest::nothing || m_event->act == &JobsAndEventsTest::stop)
        QCOMPARE(QFile::exists(itsFile()), name == u"a.txt");
    if (isWritten && !m_foreign.isEmpty())
        QVERIFY(keptContents().contains(m_foreign));
    QCOMPARE(others, QStringList());
    if (m_job->kind == JobScene::Kind::Save && name != u"a.txt")
        QVERIFY(files.read(u"a.txt"_s) == JobScene::text());
}

/// A text that comes back is in the old journal until it has one of its own. What has come of standard input
/// is kept where nobody can be asked.
void JobsAndEventsTest::checkJournals()
{
    if (m_job->kind == JobScene::Kind::Restore)
        QVERIFY(UnsavedTexts::now().contains(JobScene::textOf(JobScene::Content::Edited)));
    if (isOfInput() && m_event->act == &JobsAndEventsTest::endByOrder)
        QVERIFY(UnsavedTexts::now().contains(JobScene::textOf(m_job->stopped, m_come)));
}

/// Of nothing that is under way.
void JobsAndEventsTest::checkStrip()
{
    const NoticeQueue &notices = m_scene->window.findChild<DocumentArea *>()->notices();
    for (const ctlEditer *const editor : m_scene->window.tabBar()->editors()) {
        for (const NoticeKind kind : { NoticeKind::Work, NoticeKind::Searching, NoticeKind::Counting })
            QVERIFY(!notices.has(kind, editor));
        QTRY_VERIFY(!notices.has(NoticeKind::LayingOut, editor));
    }
}

/// It comes to the document that is shown, of which the Edit menu is, and to no other one.
void JobsAndEventsTest::checkNextKey()
{
    QCOMPARE(m_scene->other->text(), m_otherText);
    ctlEditer *const shown = m_scene->window.currentEditor();
    QCOMPARE(m_scene->window.isItemEnabled(EditCommand::Undo), shown->history().canUndo());
    std::map<const ctlEditer *, qint64> lengths;
    for (const ctlEditer *const editor : m_scene->window.tabBar()->editors())
        lengths[editor] = editor->store().length();
    shown->deselect();
    m_scene->press(Qt::Key_Z);
    for (const auto &[editor, length] : lengths)
        QCOMPARE(editor->store().length() - length, editor == shown ? 1 : 0);
}

void JobsAndEventsTest::endsAsItShould_data()
{
    QTest::addColumn<const JobScene::Job *>("job");
    QTest::addColumn<const Event *>("event");
    for (const JobScene::Job &job : JobScene::jobs()) {
        for (const Event &event : events()) {
            if (fateOf(job, event) != Fate::NotTried)
                QTest::addRow("%s: %s", job.name, event.name) << &job << &event;
        }
    }
}

void JobsAndEventsTest::endsAsItShould()
{
    QFETCH(const JobScene::Job *, job);
    QFETCH(const Event *, event);
    m_event = event;
    const Fate fate = fateOf(*job, *event);
    m_job = job;
    const MessageBoxes boxes(
        QStringList(job->boxesOfBegin, u"Yes"_s) + QStringList(isAskedAbout(fate) ? 2 : 1, event->answer));
    begin(*job);
    makeStepsBefore(event->moment);
    if (event->moment == Moment::End && job->kind == JobScene::Kind::Input)
        QCOMPARE(m_come, JobScene::text().size());
    QVERIFY(m_scene->isUnderWay(*job, *m_editor));
    m_cursor = m_editor->cursorOffset();
    (this->*event->act)();
    if (QTest::currentTestFailed())
        return;
    if (!event->endsWindow)
        m_scene->makeAllSteps();
    const int boxesOfEnd = fate == Fate::Failed || isAskedAbout(fate) ? 1
        : fate == Fate::Done                                          ? job->boxesOfEnd
                                                                      : 0;
    QVERIFY2(boxes.count() == job->boxesOfBegin + event->boxes + boxesOfEnd,
        qPrintable(boxes.texts().join(u'\n')));
    checkFiles(fate);
    m_fullDisk.reset();
    checkJournals();
    if (event->endsWindow || QTest::currentTestFailed())
        return;
    checkDocument(fate);
    checkStrip();
    checkNextKey();
}

void JobsAndEventsTest::readErrorInTheMiddle_data()
{
    QTest::addColumn<const JobScene::Job *>("job");
    for (const JobScene::Job &job : JobScene::jobs()) {
        using enum JobScene::Kind;
        if (job.kind == Load || job.kind == Reload || job.kind == Follow || job.kind == Restore
            || job.kind == Input)
            QTest::addRow("%s", job.name) << &job;
    }
}

/// Of a file that is longer than what is read ahead. A text that comes back is in its journal.
void JobsAndEventsTest::readErrorInTheMiddle()
{
    QFETCH(const JobScene::Job *, job);
    const MessageBoxes boxes(QStringList(job->boxesOfBegin, u"Yes"_s));
    begin(*job);
    m_cursor = m_editor->cursorOffset();
    m_scene->files.write(u"a.txt"_s, JobScene::text().repeated(6));
    m_scene->bringAndStep();
    m_come = m_scene->brought;
    QVERIFY(m_editor->document().isHeld());
    if (const SharedFd input = m_scene->input.lock())
        breakInput(*input);
    else
        QVERIFY(breakReading(itsFile()));
    m_scene->makeAllSteps();
    const bool isRestored = job->kind == JobScene::Kind::Restore;
    QCOMPARE(boxes.count(), job->boxesOfBegin + (isRestored ? 0 : 1));
    if (!isRestored)
        QCOMPARE(boxes.texts().last(), u"File Load Error!|This file could not be read to its end!"_s);
    checkDocument(isRestored ? Fate::Done : Fate::Failed);
    if (job->kind != JobScene::Kind::Input)
        QCOMPARE(m_editor->name(), u"a.txt"_s);
    checkStrip();
    checkNextKey();
}

REGISTER_TEST(runStayingTest<JobsAndEventsTest>)
#include "jobsandevents_test.moc"
