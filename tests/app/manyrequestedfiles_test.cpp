#include "app/documentarea.h"
#include "tests/app/requestscene.h"
#include "tests/app/stripinwindow.h"

using namespace Qt::StringLiterals;

/// Many files that are requested at once: more than are opened in one turn.
class ManyRequestedFilesTest : public QObject, private RequestScene {
    Q_OBJECT

private slots:
    void init() { beginScene(); }
    void cleanup() { m_window.reset(); }

    void manyComeInTheirOrder();
    void whoeverGoesElsewhereStays();
    void keysElsewhereAreTaken();
    void whoeverComesBackIsTakenAlong();
    void nextFilesAreShownAgain();
    void keyThatHasToWaitIsToldOf();
    void keysLeadToTheSignThatStopsThem();

private:
    void requestMany();
    void makeTurns(int fewestOpen);
    bool areManyOpen() const
    {
        return QTest::qWaitFor([this] { return m_window->tabBar()->count() == 1 + many; }, 60'000);
    }
    static QString numbered(int number) { return u"%1.txt"_s.arg(number); }

    static constexpr int many = 100; ///< too many for one turn
};

/// As a second start does, beside a document that does not give way.
void ManyRequestedFilesTest::requestMany()
{
    QTest::keyClicks(&editor(), u"h"_s);
    for (int number = 1; number <= many; ++number)
        theApplication().request({ m_files->write(numbered(number), "text\n"), FileRequest::From::Shell });
}

/// Until so many of them are open, and not all.
void ManyRequestedFilesTest::makeTurns(int fewestOpen)
{
    while (m_window->tabBar()->count() - 1 < fewestOpen)
        QCoreApplication::processEvents();
    QVERIFY(m_window->tabBar()->count() - 1 < many);
}

void ManyRequestedFilesTest::manyComeInTheirOrder()
{
    QStringList expected{ u"* (new document)"_s };
    for (int number = 1; number <= many; ++number)
        expected << numbered(number);
    requestMany();
    makeTurns(1);
    QVERIFY(areManyOpen());
    QCOMPARE(m_window->tabTexts(), expected);
    QCOMPARE(editor().name(), numbered(many));
    QVERIFY(editor().hasFocus());
}

void ManyRequestedFilesTest::whoeverGoesElsewhereStays()
{
    requestMany();
    makeTurns(1);
    m_window->tabBar()->setCurrentTab(m_window->editorAt(0));
    int changes = 0;
    const QObject here;
    connect(m_window->findChild<DocumentArea *>(), &DocumentArea::currentChanged, &here,
        [&changes] { ++changes; });
    QVERIFY(areManyOpen());
    QCOMPARE(changes, 0);
    QCOMPARE(m_window->currentEditor(), m_window->editorAt(0));
    QCOMPARE(m_window->editorAt(many)->text(), u"text\n"_s);
}

/// A key waits for nothing that is opened in the background.
void ManyRequestedFilesTest::keysElsewhereAreTaken()
{
    requestMany();
    makeTurns(1);
    m_window->tabBar()->setCurrentTab(m_window->editorAt(0));
    editor().setFocus();
    while (!takesKeys())
        QCoreApplication::processEvents();
    QVERIFY(m_window->tabBar()->count() < many);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_X);
    QCOMPARE(m_window->editorAt(0)->text(), u"hx"_s);
    QVERIFY(areManyOpen());
    QCOMPARE(m_window->editorAt(0)->text(), u"hx"_s);
}

void ManyRequestedFilesTest::whoeverComesBackIsTakenAlong()
{
    requestMany();
    makeTurns(1);
    ctlEditer *const last = m_window->currentEditor();
    m_window->tabBar()->setCurrentTab(m_window->editorAt(0));
    makeTurns(m_window->tabBar()->count());
    m_window->tabBar()->setCurrentTab(last);
    QVERIFY(areManyOpen());
    QCOMPARE(editor().name(), numbered(many));
}

void ManyRequestedFilesTest::nextFilesAreShownAgain()
{
    requestMany();
    makeTurns(1);
    m_window->tabBar()->setCurrentTab(m_window->editorAt(0));
    QVERIFY(areManyOpen());
    theApplication().request({ m_files->folder() + numbered(7), FileRequest::From::Shell });
    QTRY_COMPARE(editor().name(), numbered(7));
}

void ManyRequestedFilesTest::keyThatHasToWaitIsToldOf()
{
    const StripInWindow strip(*m_window);
    requestMany();
    makeTurns(1);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_X);
    QVERIFY(strip.text().startsWith(u"Not while files are being opened"_s));
    QVERIFY(areManyOpen());
    QCOMPARE(openFiles().count(u'*'), 1);
    QVERIFY(!strip.isShown());
}

/// The files that come then leave the keys there.
void ManyRequestedFilesTest::keysLeadToTheSignThatStopsThem()
{
    const StripInWindow strip(*m_window);
    requestMany();
    makeTurns(1);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_X); // at once shown then
    QTest::keyClick(m_window->windowHandle(), Qt::Key_F6);
    QVERIFY(strip.widget().hasKeys());
    const ctlEditer *const shown = m_window->currentEditor();
    makeTurns(m_window->tabBar()->count());
    QVERIFY(strip.widget().hasKeys());
    while (QPEApplication::hasRequests()) { // keys still wait for what was opened last
        QTest::keyClick(m_window->windowHandle(), Qt::Key_Escape);
        QCoreApplication::processEvents();
    }
    QVERIFY(m_window->tabBar()->count() <= many);
    QVERIFY(!strip.isShown());
    QCOMPARE(m_window->currentEditor(), shown);
    QVERIFY(shown->hasFocus());
}

REGISTER_TEST(runRequestTest<ManyRequestedFilesTest>)
#include "manyrequestedfiles_test.moc"
