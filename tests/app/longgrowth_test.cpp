#include "app/qpeapplicationesc.h"
#include "editor/notice.h"
#include "tests/app/stripinwindow.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 fewestOfGrowth = 100'000;

} // namespace

/// Files that are followed, to which much is added at once.
class LongGrowthTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_window.reset(); }

    void isReadBehind_data();
    void isReadBehind();
    void cursorStays();
    void cursorThatHasLeftTheEndStays();
    void cursorThatHasComeToTheEndFollows();
    void littleIsReadAtOnce();
    void stopEndsTheFollowing_data();
    void stopEndsTheFollowing();
    void unreadableEndsTheFollowing();
    void growsWhileItIsRead();
    void shrinksWhileItIsRead_data();
    void shrinksWhileItIsRead();
    void closedTabReadsNoMore();

private:
    static QByteArray much() { return "あ\n"_ba + QByteArray("added\n").repeated(60'000); }
    ctlEditer &editor() const { return *m_window->currentEditor(); }
    bool append(const QByteArray &bytes) const
    {
        QFile file(m_files->folder() + u"a.txt"_s);
        return file.open(QIODevice::Append) && file.write(bytes) == bytes.size();
    }
    /// Opens a file of that text, and follows it.
    void follow(const QByteArray &text = "あ\nold\n");
    /// Adds it, and has the reading begin.
    void grow(const QByteArray &bytes);
    void makeAllSteps()
    {
        do {
            m_runner->runAll();
            settle();
        } while (!m_runner->isIdle());
    }
    bool isFollowed() const { return StripInWindow(*m_window).text().startsWith(u"What is added"); }

    std::unique_ptr<TestFiles> m_files;
    SteppedRunner *m_runner = nullptr;
    std::unique_ptr<TestWindow> m_window;
};

void LongGrowthTest::init()
{
    resetSettings();
    m_files = std::make_unique<TestFiles>();
    m_runner = new SteppedRunner;
    m_window =
        std::make_unique<TestWindow>(WindowJobs{ std::unique_ptr<JobRunner>(m_runner), fewestOfGrowth });
    QVERIFY(m_window->open());
    m_window->slotCmdFileCloseTab();
}

void LongGrowthTest::follow(const QByteArray &text)
{
    m_window->setDocument(m_files->write(u"a.txt"_s, text));
    makeAllSteps();
    editor().setCursorPlace({ editor().store().end() });
    QVERIFY(append("x\n"));
    const StripInWindow strip(*m_window);
    QTRY_VERIFY(strip.button(u"Follow"_s));
    strip.click(u"Follow"_s);
    QTRY_VERIFY(editor().text().endsWith(u"x\n"));
    QVERIFY(isFollowed());
}

void LongGrowthTest::grow(const QByteArray &bytes)
{
    QVERIFY(append(bytes));
    QTRY_VERIFY(editor().document().isHeld());
}

void LongGrowthTest::isReadBehind_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("added");
    QTest::newRow("UTF-8") << "あ\nold\n"_ba << much();
    QTest::newRow("JIS") << "\x1b$B$\"\x1b(B\nold\n"_ba
                         << "\x1b$B$\"\x1b(B\n"_ba + QByteArray("added\n").repeated(60'000);
}

void LongGrowthTest::isReadBehind()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, added);
    follow(text);
    const QString before = editor().text();
    grow(added);
    m_runner->step();
    QVERIFY(editor().text() == before);
    makeAllSteps();
    QVERIFY(editor().text().endsWith(u"あ\n"_s + u"added\n"_s.repeated(60'000)));
    QCOMPARE(editor().cursorOffset(), editor().store().end());
    QVERIFY(!editor().edited() && !editor().document().isHeld());
    QVERIFY(isFollowed());
}

void LongGrowthTest::cursorStays()
{
    follow("one\ntwo\nthree\n");
    editor().setCursorPosition({ RowIndex(1), 2 });
    grow(much());
    makeAllSteps();
    QCOMPARE(editor().cursorPosition(), (RowCol{ RowIndex(1), 2 }));
    QVERIFY(isFollowed());
}

void LongGrowthTest::cursorThatHasLeftTheEndStays()
{
    follow("one\ntwo\nthree\n");
    grow(much());
    m_runner->step();
    editor().setCursorPosition({ RowIndex(1), 2 });
    makeAllSteps();
    QCOMPARE(editor().cursorPosition(), (RowCol{ RowIndex(1), 2 }));
    QVERIFY(isFollowed());
}

void LongGrowthTest::cursorThatHasComeToTheEndFollows()
{
    follow("one\ntwo\nthree\n");
    editor().setCursorPosition({ RowIndex(1), 2 });
    grow(much());
    m_runner->step();
    editor().setCursorPlace({ editor().store().end() });
    makeAllSteps();
    QCOMPARE(editor().cursorOffset(), editor().store().end());
    QVERIFY(isFollowed());
}

void LongGrowthTest::littleIsReadAtOnce()
{
    follow(much());
    QVERIFY(append("little\n"));
    QTRY_VERIFY(editor().text().endsWith(u"little\n"));
    QVERIFY(m_runner->isIdle());
}

void LongGrowthTest::stopEndsTheFollowing_data()
{
    QTest::addColumn<int>("steps");
    for (int steps = 0; steps < 2; ++steps)
        QTest::addRow("after %d steps", steps) << steps;
}

void LongGrowthTest::stopEndsTheFollowing()
{
    QFETCH(int, steps);
    follow();
    const QString before = editor().text();
    grow(much());
    for (int step = 0; step < steps; ++step)
        m_runner->step();
    const StripInWindow strip(*m_window);
    QTRY_VERIFY(strip.text().startsWith(u"Loading"));
    strip.click(u"Stop"_s);
    makeAllSteps();
    QVERIFY(editor().text() == before);
    QTRY_VERIFY(strip.button(u"Follow"_s));
    QVERIFY(!isFollowed());
    QVERIFY(editor().text() == before);
    QVERIFY(m_runner->isIdle());
}

void LongGrowthTest::unreadableEndsTheFollowing()
{
    follow();
    const QString before = editor().text();
    grow(much());
    QVERIFY(QFile::remove(m_files->folder() + u"a.txt"_s));
    const MessageBoxes boxes;
    makeAllSteps();
    QCOMPARE(boxes.titles(), QStringList{ u"File Load Error!"_s });
    QVERIFY(editor().text() == before);
    QVERIFY(!editor().document().isHeld());
}

void LongGrowthTest::growsWhileItIsRead()
{
    follow();
    grow(much());
    m_runner->step();
    QVERIFY(append("more\n"));
    makeAllSteps();
    QTRY_VERIFY(editor().text().endsWith(u"more\n"));
    QVERIFY(isFollowed());
}

void LongGrowthTest::shrinksWhileItIsRead_data()
{
    QTest::addColumn<int>("steps");
    QTest::addColumn<qint64>("left");
    for (const int steps : { 0, 1, 2 }) {
        QTest::addRow("to some of what was added, after %d steps", steps) << steps << qint64(300'000);
        QTest::addRow("to less than it was before, after %d steps", steps) << steps << qint64(3);
        QTest::addRow("to nothing, after %d steps", steps) << steps << qint64(0);
    }
}

/// It is taken as far as it goes. Where it has less than that by now its user is told.
void LongGrowthTest::shrinksWhileItIsRead()
{
    QFETCH(int, steps);
    QFETCH(qint64, left);
    follow();
    const QByteArray before = "あ\nold\nx\n"_ba;
    grow(much());
    for (int step = 0; step < steps; ++step)
        m_runner->step();
    QVERIFY(QFile::resize(m_files->folder() + u"a.txt"_s, left));
    const MessageBoxes boxes;
    makeAllSteps();
    QCOMPARE(boxes.count(), 0);
    QVERIFY(!editor().document().isHeld() && !editor().edited());
    editor().store().checkInvariants();
    QVERIFY(QString::fromUtf8(before + much()).startsWith(editor().text()));
    QCOMPARE(editor().cursorOffset(), editor().store().end());
    const StripInWindow strip(*m_window);
    if (editor().text().toUtf8().size() > left) {
        QTRY_COMPARE(strip.text(), u"Another program has changed this file."_s);
        QVERIFY(strip.click(u"Reload"_s));
        makeAllSteps();
    }
    QCOMPARE(editor().text().toUtf8().size(), left);
    QTRY_VERIFY(isFollowed());
    QVERIFY(append("again\n"));
    QTRY_VERIFY(editor().text().endsWith(u"again\n"));
}

void LongGrowthTest::closedTabReadsNoMore()
{
    follow();
    grow(much());
    m_window->slotCmdFileCloseTab();
    makeAllSteps();
    QVERIFY(m_window->tabTexts().isEmpty());
}

namespace {

int runLongGrowthTest(int argc, char **argv)
{
    const QPEApplicationEsc app(argc, argv);
    return runPlainTest<LongGrowthTest>(argc, argv);
}

} // namespace

REGISTER_TEST(runLongGrowthTest)
#include "longgrowth_test.moc"
