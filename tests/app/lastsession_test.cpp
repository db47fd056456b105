#include "settings/sessionfiles.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// What was open is open again at the next start, where that is wanted.
class LastSessionTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_window.reset(); }

    void isOffAtFirst();
    void comesBackAsItWas();
    void comesBackAfterAQuit();
    void cancelledEndsDoNotCount();
    void comesBackAfterAKill();
    void whatCannotBeReadIsPassedOver();
    void neverSavedOnesAreLeftOut();
    void largeFilesComeBackBehindTheWindow();
    void withAFileOfTheCommandLine();
    void switchedOnWhileItRuns();

private:
    /// Starts anew, as the program does.
    void start()
    {
        m_window.reset();
        readSettings();
        m_window = std::make_unique<TestWindow>(WindowJobs{ nullptr, 100000 });
        m_window->showMaximized();
    }
    bool shows(const QStringList &names) const
    {
        return QTest::qWaitFor([&] { return m_window->tabTexts() == names; });
    }
    QString currentName() const { return m_window->currentEditor()->name(); }
    void open(const QString &name, const QByteArray &text = "one\ntwo\nthree\n") const
    {
        m_window->setDocument(m_files.write(name, text));
    }

    TestFiles m_files;
    std::unique_ptr<TestWindow> m_window;
};

void LastSessionTest::init()
{
    resetSettings();
    writeSessionFiles({});
    moreSettings().OpenSession = 1;
    writeSettings();
    start();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_window->slotEtcFirstNewDoc();
    m_window->slotCmdFileCloseTab(); // the document of the window's start
}

void LastSessionTest::isOffAtFirst()
{
    QCOMPARE(MoreSettings().OpenSession, 0);
    moreSettings().OpenSession = 0;
    open(u"a.txt"_s);
    QVERIFY(m_window->close());
    start();
    QVERIFY(shows({ u"(new document)"_s }));
    QVERIFY(readSessionFiles().files.isEmpty());
}

void LastSessionTest::comesBackAsItWas()
{
    open(u"a.txt"_s);
    m_window->currentEditor()->setCursorPosition({ RowIndex(1), 2 });
    open(u"b.txt"_s);
    open(u"c.txt"_s, QByteArray(500, '\n'));
    m_window->currentEditor()->setCursorPosition({ RowIndex(400), 0 });
    const RowIndex top = m_window->currentEditor()->topRow();
    m_window->tabBar()->moveTab(2, 0);
    m_window->tabBar()->setCurrentTab(m_window->editorAt(1));
    QVERIFY(m_window->close());
    start();
    QVERIFY(shows({ u"c.txt"_s, u"a.txt"_s, u"b.txt"_s }));
    QCOMPARE(currentName(), u"a.txt"_s);
    QCOMPARE(m_window->currentEditor()->cursorPosition(), (RowCol{ RowIndex(1), 2 }));
    QCOMPARE(m_window->editorAt(0)->cursorPosition(), (RowCol{ RowIndex(400), 0 }));
    QCOMPARE(m_window->editorAt(0)->topRow(), top);
    QCOMPARE(m_window->editorAt(2)->cursorPosition(), (RowCol{ RowIndex(0), 0 }));
}

void LastSessionTest::comesBackAfterAQuit()
{
    open(u"a.txt"_s);
    QTest::keyClicks(m_window->currentEditor(), u"x"_s);
    m_window->slotCmdFileQuitSave();
    QVERIFY(!m_window->isVisible());
    start();
    QVERIFY(shows({ u"a.txt"_s }));
    QCOMPARE(m_files.read(u"a.txt"_s), "xone\ntwo\nthree\n"_ba);
}

void LastSessionTest::cancelledEndsDoNotCount()
{
    open(u"a.txt"_s);
    QTest::keyClicks(m_window->currentEditor(), u"x"_s);
    open(u"b.txt"_s);
    const MessageBoxes boxes({ u"Cancel"_s, u"No"_s });
    QVERIFY(!m_window->close()); // b.txt is closed by then
    QCOMPARE(m_window->tabTexts(), QStringList{ u"* a.txt"_s });
    QVERIFY(m_window->close());
    start();
    QVERIFY(shows({ u"a.txt"_s }));
}

/// Nothing is written at the end then.
void LastSessionTest::comesBackAfterAKill()
{
    open(u"a.txt"_s);
    open(u"b.txt"_s);
    QTRY_COMPARE(readSessionFiles().files.size(), 2);
    m_window->slotCmdFileCloseTab();
    QTRY_COMPARE(readSessionFiles().files.size(), 1);
}

void LastSessionTest::whatCannotBeReadIsPassedOver()
{
    m_window->close();
    m_files.write(u"a.txt"_s, "a\n");
    m_files.write(u"b.txt"_s, "b\n");
    QDir().mkdir(m_files.folder() + u"folder"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(m_files.folder() + u"pipe"_s).constData(), 0600), 0);
    SessionFiles session;
    for (const QString &name :
        { u"gone"_s, u"folder"_s, u"a.txt"_s, u"pipe"_s, QString(1 << 16, u'n'), u"a.txt"_s, u"b.txt"_s })
        session.files << RecentEntry{ m_files.folder(), name, 1LL << 60, -5, -1, 1LL << 62 };
    session.files << RecentEntry{ u"/dev/"_s, u"zero"_s };
    session.current = 2;
    writeSessionFiles(session);
    const MessageBoxes boxes;
    start();
    QVERIFY(shows({ u"a.txt"_s, u"b.txt"_s }));
    QCOMPARE(currentName(), u"a.txt"_s);
    QCOMPARE(boxes.count(), 0);
}

void LastSessionTest::neverSavedOnesAreLeftOut()
{
    m_window->slotCmdFileNew();
    open(u"a.txt"_s);
    QVERIFY(m_window->close());
    start();
    QVERIFY(shows({ u"a.txt"_s }));
}

void LastSessionTest::largeFilesComeBackBehindTheWindow()
{
    open(u"a.txt"_s, QByteArray("line\n").repeated(100000));
    QTRY_VERIFY(!m_window->currentEditor()->document().isHeld());
    m_window->currentEditor()->setCursorPosition({ RowIndex(70000), 3 });
    recentFiles() = {};
    QVERIFY(m_window->close());
    recentFiles() = {};
    writeSettings();
    start();
    QVERIFY(shows({ u"a.txt"_s }));
    QTRY_COMPARE(m_window->currentEditor()->cursorPosition(), (RowCol{ RowIndex(70000), 3 }));
}

void LastSessionTest::withAFileOfTheCommandLine()
{
    open(u"a.txt"_s);
    open(u"b.txt"_s);
    QVERIFY(m_window->close());
    start();
    QVERIFY(shows({ u"a.txt"_s, u"b.txt"_s }));
    m_window->setDocument(m_files.folder() + u"a.txt"_s);
    QCOMPARE(m_window->tabTexts(), QStringList({ u"a.txt"_s, u"b.txt"_s }));
    QCOMPARE(currentName(), u"a.txt"_s);
}

void LastSessionTest::switchedOnWhileItRuns()
{
    moreSettings().OpenSession = 0;
    writeSettings();
    start();
    QVERIFY(shows({ u"(new document)"_s }));
    open(u"a.txt"_s);
    moreSettings().OpenSession = 1;
    m_window->applySettings();
    QTRY_COMPARE(readSessionFiles().files.size(), 1);
}

REGISTER_TEST(runWindowTest<LastSessionTest>)
#include "lastsession_test.moc"
