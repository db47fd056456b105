#include "app/documentarea.h"
#include "app/qpeapplicationesc.h"
#include "editor/noticequeue.h"
#include "platform/requesthold.h"
#include "settings/sessionfiles.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QSet>

using namespace Qt::StringLiterals;

/// A session of many files, which are opened in turns.
class SessionOpeningTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_window.reset(); }

    void manyComeInTurns();
    void closedBeforeAllAreOpenComesBackWhole();
    void killedBeforeAllAreOpenComesBackWhole();
    void whoeverGoesElsewhereStays();
    void stoppedBeforeAllAreOpen();
    void cancelledEndGoesOn();
    void requestsComeBehindIt();

private:
    static constexpr int current = SessionFiles::most - 3; ///< that was in view

    QStringList writeManyFiles() const;
    void start();
    void startWithMany();
    bool shows(const QStringList &names) const
    {
        constexpr int longest = 60000; // with sanitizers, on one busy core
        return QTest::qWaitFor([&] { return m_window->tabTexts() == names; }, longest);
    }
    QString currentName() const { return m_window->currentEditor()->name(); }

    TestFiles m_files;
    std::unique_ptr<TestWindow> m_window;
};

void SessionOpeningTest::init()
{
    resetSettings();
    moreSettings().OpenSession = 1;
    writeSettings();
}

/// As the program does.
void SessionOpeningTest::start()
{
    m_window.reset();
    readSettings();
    m_window = std::make_unique<TestWindow>();
    static_cast<QPEApplication *>(qApp)->showMainWidget(m_window.get());
}

/// And has them written as those that were open.
QStringList SessionOpeningTest::writeManyFiles() const
{
    SessionFiles session;
    QStringList names;
    for (int number = 0; number < SessionFiles::most; ++number) {
        names << u"%1.txt"_s.arg(number);
        m_files.write(names.last(), "text\n");
        session.files << SessionFile{ { m_files.folder(), names.last() } };
    }
    session.current = current;
    writeSessionFiles(session);
    return names;
}

/// As far as the first turn.
void SessionOpeningTest::startWithMany()
{
    start();
    while (m_window->tabBar()->count() == 0)
        QCoreApplication::processEvents();
    QVERIFY(m_window->tabBar()->count() < SessionFiles::most);
}

void SessionOpeningTest::manyComeInTurns()
{
    const QStringList names = writeManyFiles();
    startWithMany();
    QVERIFY(shows(names));
    QCOMPARE(currentName(), names.at(current));
}

void SessionOpeningTest::closedBeforeAllAreOpenComesBackWhole()
{
    const QStringList names = writeManyFiles();
    startWithMany();
    QVERIFY(m_window->close());
    QCoreApplication::processEvents();
    QCOMPARE(m_window->tabBar()->count(), 0);
    start();
    QVERIFY(shows(names));
    QCOMPARE(currentName(), names.at(current));
}

/// What is written while they are opened has all of them.
void SessionOpeningTest::killedBeforeAllAreOpenComesBackWhole()
{
    writeManyFiles();
    const SessionFiles before = readSessionFiles();
    startWithMany();
    const RequestHold hold;
    writeSessionFiles({});
    emit static_cast<QPEApplication *>(qApp)->sessionEnded();
    const SessionFiles written = readSessionFiles();
    QCOMPARE(written.files.size(), before.files.size());
    QCOMPARE(written.files.last().place.name, before.files.last().place.name);
    QCOMPARE(written.current, before.current);
}

void SessionOpeningTest::whoeverGoesElsewhereStays()
{
    const QStringList names = writeManyFiles();
    startWithMany();
    while (m_window->tabBar()->count() < 2)
        QCoreApplication::processEvents();
    m_window->tabBar()->setCurrentTab(m_window->editorAt(0));
    QSet<const ctlEditer *> inView;
    const QObject here;
    connect(m_window->findChild<DocumentArea *>(), &DocumentArea::currentChanged, &here,
        [&inView](const ctlEditer *editor) { inView << editor; });
    QVERIFY(shows(names));
    settle();
    QCOMPARE(currentName(), names.at(0));
    QCOMPARE(inView, QSet<const ctlEditer *>{ m_window->editorAt(0) });
}

void SessionOpeningTest::stoppedBeforeAllAreOpen()
{
    const QStringList names = writeManyFiles();
    startWithMany();
    {
        const RequestHold hold; // the files wait
        NoticeQueue &notices = m_window->findChild<DocumentArea *>()->notices();
        QTRY_VERIFY(notices.has(NoticeKind::Opening));
        const auto stop = notices.heaviest(nullptr)->escaped;
        stop();
        QVERIFY(!notices.has(NoticeKind::Opening));
    }
    const QStringList open = m_window->tabTexts();
    QVERIFY(!open.isEmpty() && open == names.first(open.size()));
    QTRY_COMPARE(readSessionFiles().files.size(), open.size());
    QCOMPARE(m_window->tabTexts(), open);
}

/// What was not edited is closed by then, as ever. The others come, and the strip says how far that is.
void SessionOpeningTest::cancelledEndGoesOn()
{
    const QStringList names = writeManyFiles();
    startWithMany();
    const NoticeQueue &notices = m_window->findChild<DocumentArea *>()->notices();
    const qsizetype open = m_window->tabBar()->count();
    m_window->editorAt(0)->insert(u"x"_s);
    const MessageBoxes boxes({ u"Cancel"_s });
    QVERIFY(!m_window->close());
    QCOMPARE(boxes.count(), 1);
    {
        const RequestHold hold; // the files wait
        QTRY_VERIFY(notices.has(NoticeKind::Opening));
    }
    QVERIFY(shows(QStringList{ u"* "_s + names.first() } + names.sliced(open)));
    QTRY_VERIFY(!notices.has(NoticeKind::Opening));
    QCOMPARE(m_window->editorAt(0)->text(), u"xtext\n"_s);
}

void SessionOpeningTest::requestsComeBehindIt()
{
    const QStringList names = writeManyFiles();
    startWithMany();
    static_cast<QPEApplication *>(qApp)->request(m_files.write(u"named.txt"_s, "text\n"));
    QVERIFY(shows(names + QStringList{ u"named.txt"_s }));
    QTRY_COMPARE(currentName(), u"named.txt"_s);
}

namespace {

int runSessionOpeningTest(int argc, char **argv)
{
    const QPEApplicationEsc app(argc, argv);
    return runPlainTest<SessionOpeningTest>(argc, argv);
}

} // namespace

REGISTER_TEST(runSessionOpeningTest)
#include "sessionopening_test.moc"
