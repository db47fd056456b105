#include "tests/app/requestscene.h"
#include "tests/app/stayingapplication.h"
#include "tests/app/stripinwindow.h"
#include "tests/app/unsavedtexts.h"

using namespace Qt::StringLiterals;

/// What may happen while many files are opened: some are open, and the others wait.
class AmidManyFilesTest : public QObject, private RequestScene {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void quitDropsTheOthers_data();
    void quitDropsTheOthers();
    void cancelledQuitGoesOn();
    void endOrderKeepsWhatIsOpen();
    void closedTabStaysClosed_data();
    void closedTabStaysClosed();
    void unreadableFileHoldsUpNoOther();

private:
    void writeAll();
    void requestAll();
    void openFirst(int count);
    /// Not before the event loop runs.
    static void goOn() { theApplication().holdRequests(false); }
    static bool areAllOpen()
    {
        return QTest::qWaitFor([] { return !QPEApplication::hasRequests(); }, 60'000);
    }
    static QString numbered(int number) { return u"%1.txt"_s.arg(number); }
    static QStringList numbered(int first, int last)
    {
        QStringList names;
        for (int number = first; number <= last; ++number)
            names << numbered(number);
        return names;
    }

    /// And the document of the start before them, which is edited.
    static QStringList withFirst(const QStringList &names)
    {
        return QStringList{ u"* (new document)"_s } + names;
    }

    static constexpr int many = 100;
    static constexpr int some = 30;
};

void AmidManyFilesTest::init()
{
    UnsavedTexts::removeAll();
    beginScene();
    QTest::keyClicks(&editor(), u"h"_s);
    writeAll();
    requestAll();
}

void AmidManyFilesTest::cleanup()
{
    theApplication().dropRequests();
    goOn();
    m_window.reset();
}

void AmidManyFilesTest::requestAll()
{
    for (int number = 1; number <= many; ++number)
        theApplication().request({ m_files->folder() + numbered(number), FileRequest::From::Shell });
}

void AmidManyFilesTest::writeAll()
{
    for (int number = 1; number <= many; ++number)
        m_files->write(numbered(number), "text\n");
}

/// So many of those that wait; the others wait until goOn().
void AmidManyFilesTest::openFirst(int count)
{
    const QObject here;
    connect(&theApplication(), &QPEApplication::requestDelivered, &here, [&count] {
        if (--count == 0)
            theApplication().holdRequests(true);
    });
    theApplication().holdRequests(false);
    QTRY_COMPARE(count, 0);
}

void AmidManyFilesTest::quitDropsTheOthers_data()
{
    QTest::addColumn<FileCommand>("item");
    QTest::newRow("Quit") << FileCommand::Quit;
    QTest::newRow("Quit with Save") << FileCommand::QuitWithSave;
}

void AmidManyFilesTest::quitDropsTheOthers()
{
    QFETCH(FileCommand, item);
    m_window->choices << FileChoice{ m_files->folder(), u"new.txt"_s };
    openFirst(some);
    goOn();
    const MessageBoxes boxes({ u"No"_s });
    m_window->item(item)->trigger();
    QCOMPARE(boxes.count(), item == FileCommand::Quit ? 1 : 0);
    QVERIFY(!m_window->isVisible());
    QVERIFY(!QPEApplication::hasRequests());
    settle();
    QCOMPARE(m_window->tabBar()->count(), 0);
    QCOMPARE(recentFiles().entries[0].name, item == FileCommand::Quit ? numbered(1) : u"new.txt"_s);
    for (const auto &entry : recentFiles().entries)
        QVERIFY(entry.name == u"new.txt"_s || numbered(1, some).contains(entry.name));
}

/// What was not edited is closed by then, as ever. The others come, and the strip says how far that is.
void AmidManyFilesTest::cancelledQuitGoesOn()
{
    const StripInWindow strip(*m_window);
    openFirst(some);
    QTRY_COMPARE(strip.text(), u"Opening files: 25%"_s); // told by quarters
    goOn();
    const MessageBoxes boxes({ u"Cancel"_s });
    m_window->item(FileCommand::Quit)->trigger();
    QCOMPARE(boxes.count(), 1);
    QVERIFY(m_window->isVisible());
    QCOMPARE(m_window->tabTexts().first(), u"* (new document)"_s);
    openFirst(some);
    QCOMPARE(strip.text(), u"Opening files: 50%"_s);
    QCOMPARE(strip.offers(), QStringList{ u"Stop"_s });
    QCOMPARE(m_window->tabTexts(), withFirst(numbered(some + 1, 2 * some)));
    goOn();
    QVERIFY(areAllOpen());
    QVERIFY(!strip.isShown());
    QCOMPARE(m_window->tabTexts(), withFirst(numbered(some + 1, many)));
    QCOMPARE(m_window->currentEditor(), m_window->editorAt(0));
    QCOMPARE(editor().text(), u"h"_s);
}

/// That of a signal, which asks nothing.
void AmidManyFilesTest::endOrderKeepsWhatIsOpen()
{
    openFirst(some);
    goOn();
    theApplication().endAtOnce();
    QVERIFY(UnsavedTexts::now().contains(u"h"_s));
    recentFiles() = {};
    readSettings();
    QCOMPARE(recentFiles().entries[0].name, numbered(1));
    for (const RecentEntry &entry : recentFiles().entries)
        QVERIFY(numbered(1, some).contains(entry.name));
}

void AmidManyFilesTest::closedTabStaysClosed_data()
{
    QTest::addColumn<int>("closed");
    QTest::addColumn<bool>("isTakenAlong");
    QTest::newRow("the one that is shown") << some << false;
    QTest::newRow("another one") << some / 2 << true;
}

/// Whoever closes what came last looks at its neighbour then, and goes on doing so.
void AmidManyFilesTest::closedTabStaysClosed()
{
    QFETCH(int, closed);
    QFETCH(bool, isTakenAlong);
    openFirst(some);
    goOn();
    emit m_window->tabBar()->closeWanted(m_window->editorAt(closed));
    QVERIFY(areAllOpen());
    QCOMPARE(m_window->tabTexts(), withFirst(numbered(1, closed - 1) + numbered(closed + 1, many)));
    QCOMPARE(editor().name(), numbered(isTakenAlong ? many : closed - 1));
}

/// Its user is told of it once; the others come behind that.
void AmidManyFilesTest::unreadableFileHoldsUpNoOther()
{
    const QString name = m_files->folder() + numbered(some);
    QVERIFY(QFile::remove(name));
    QVERIFY(QFile::link(name, name));
    const MessageBoxes boxes;
    openFirst(some);
    QCOMPARE(boxes.titles(), QStringList{ u"File Load Error!"_s });
    goOn();
    QVERIFY(areAllOpen());
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(m_window->tabTexts(), withFirst(numbered(1, many)));
    QCOMPARE(m_window->editorAt(some)->text(), QString());
    QCOMPARE(m_window->editorAt(some + 1)->text(), u"text\n"_s);
    QCOMPARE(editor().name(), numbered(many));
}

REGISTER_TEST(runStayingTest<AmidManyFilesTest>)
#include "amidmanyfiles_test.moc"
