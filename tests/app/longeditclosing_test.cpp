#include "app/sessionend.h"
#include "platform/requesthold.h"
#include "recovery/recoveryjournals.h"
#include "tests/app/documentparts.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

#include <QClipboard>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int stepsBeforeClosing = 3; ///< of moving the block

enum class Closing { Saved, Unsaved, Quit, QuitSaved };

} // namespace

/// Documents that are closed while a long edit of them is made.
class LongEditClosingTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<ctlEditer *>(); }
    void init();
    void cleanup();

    void closingWaits_data();
    void closingWaits();
    void closingStaysAfterAStop();
    void closedTwiceIsAskedAboutOnce();
    void quitTwice();
    void closedOtherwiseIsGivenUp();
    void sessionEndWaits();
    void staysWhereClosingIsCancelled();
    void freshDocumentIsNotReplaced();
    void saveAllWaits();
    void stoppedEditEndsSaveAll();
    void sessionEndBehindADialogIsRefused();

private:
    ctlEditer &editor() const { return *m_parts->documents.current(); }
    void begin()
    {
        editor().selectAll();
        QTest::keyClick(&editor(), Qt::Key_Tab, Qt::ShiftModifier);
        QVERIFY(editor().document().isHeld());
    }
    void close(Closing how);
    bool isAsBefore() const { return editor().text() == m_text && !editor().document().isHeld(); }

    const QString m_moved = u"a line of a block that is too long to be moved in one go\n"_s.repeated(24'000);
    const QString m_text = QString(m_moved).replace(u"a line"_s, u"\ta line"_s);
    std::unique_ptr<DocumentParts> m_parts;
};

void LongEditClosingTest::init()
{
    m_parts = std::make_unique<DocumentParts>();
    m_parts->open(m_parts->files.write(u"a.txt"_s, m_text.toLatin1()));
    m_parts->jobs.fewest = qint64{ 1 } << 19;
}

void LongEditClosingTest::cleanup()
{
    m_parts.reset();
}

void LongEditClosingTest::closingWaits_data()
{
    QTest::addColumn<Closing>("how");
    QTest::addColumn<int>("steps");
    const auto rows = [](Closing how, const char *name) {
        for (int steps = 0; steps < stepsBeforeClosing; ++steps)
            QTest::addRow("%s after %d", name, steps) << how << steps;
    };
    rows(Closing::Saved, "closed and saved");
    rows(Closing::Unsaved, "closed without being saved");
    rows(Closing::Quit, "quit");
    rows(Closing::QuitSaved, "quit and saved");
}

void LongEditClosingTest::close(Closing how)
{
    m_parts->makeStepsInTheLoop();
    if (how == Closing::Quit || how == Closing::QuitSaved)
        QVERIFY(m_parts->closer.closeAll(how == Closing::Quit ? EditsAtClosing::Ask : EditsAtClosing::Save));
    else
        m_parts->closer.askAndClose();
    QTRY_VERIFY(m_parts->documents.editors().isEmpty());
}

/// What was asked for is part of what is asked about and saved, also where nothing was edited before.
void LongEditClosingTest::closingWaits()
{
    QFETCH(Closing, how);
    QFETCH(int, steps);
    begin();
    m_parts->makeSteps(steps);
    m_parts->jobs.fewest = qint64{ 1 } << 40; // a save is made in one go
    const MessageBoxes boxes({ how == Closing::Unsaved ? u"No"_s : u"Yes"_s });
    close(how);
    QCOMPARE(boxes.count(), how == Closing::QuitSaved ? 0 : 1);
    const QString written = how == Closing::Unsaved ? m_text : m_moved;
    QVERIFY(m_parts->files.read(u"a.txt"_s) == written.toLatin1());
}

void LongEditClosingTest::closingStaysAfterAStop()
{
    const MessageBoxes boxes;
    begin();
    m_parts->closer.askAndClose();
    QTRY_VERIFY(m_parts->isStrip(&editor()));
    m_parts->pressStop(&editor());
    m_parts->steps.runAll();
    settle();
    QVERIFY(isAsBefore());
    begin();
    QTRY_VERIFY(m_parts->isStrip(&editor()));
    QMetaObject::invokeMethod(
        this, [this] { m_parts->pressStop(&editor()); }, Qt::QueuedConnection);
    QVERIFY(!m_parts->closer.closeAll(EditsAtClosing::Ask));
    QVERIFY(isAsBefore());
    QCOMPARE(boxes.count(), 0);
}

void LongEditClosingTest::closedTwiceIsAskedAboutOnce()
{
    begin();
    const MessageBoxes boxes({ u"No"_s });
    m_parts->closer.askAndClose();
    m_parts->closer.askAndClose();
    m_parts->steps.runAll();
    QVERIFY(m_parts->documents.editors().isEmpty());
    QCOMPARE(boxes.count(), 1);
}

/// The second order closes the document that the first one waits for.
void LongEditClosingTest::quitTwice()
{
    begin();
    m_parts->jobs.fewest = qint64{ 1 } << 40; // a save is made in one go
    bool isClosed = false;
    QMetaObject::invokeMethod(
        this,
        [&] {
            m_parts->makeStepsInTheLoop();
            isClosed = m_parts->closer.closeAll(EditsAtClosing::Save);
        },
        Qt::QueuedConnection);
    QVERIFY(m_parts->closer.closeAll(EditsAtClosing::Save));
    QVERIFY(isClosed);
    QVERIFY(m_parts->files.read(u"a.txt"_s) == m_moved.toLatin1());
}

void LongEditClosingTest::closedOtherwiseIsGivenUp()
{
    begin();
    std::optional<bool> isMade;
    m_parts->edits.whenEnded(&editor(), [&](bool made) { isMade = made; });
    m_parts->makeSteps(1);
    m_parts->documents.close(&editor());
    QCOMPARE(isMade, false);
    m_parts->steps.runAll();
    settle();
    QVERIFY(m_parts->documents.editors().isEmpty());
}

void LongEditClosingTest::sessionEndWaits()
{
    begin();
    m_parts->makeStepsInTheLoop();
    m_parts->closer.waitForWork();
    QVERIFY(editor().text() == m_moved);
    QVERIFY(editor().edited());
}

void LongEditClosingTest::staysWhereClosingIsCancelled()
{
    begin();
    const MessageBoxes boxes({ u"Cancel"_s });
    m_parts->closer.askAndClose();
    QCOMPARE(boxes.count(), 0);
    m_parts->steps.runAll();
    QCOMPARE(boxes.count(), 1);
    QVERIFY(editor().text() == m_moved);
}

/// A file that is opened comes into another tab.
void LongEditClosingTest::freshDocumentIsNotReplaced()
{
    QGuiApplication::clipboard()->setText(m_text);
    ctlEditer *const fresh = m_parts->documents.add();
    m_parts->documents.present(fresh);
    fresh->paste();
    m_parts->makeSteps(1);
    m_parts->files.write(u"b.txt"_s, m_text.toLatin1());
    m_parts->loader.openChosen(fresh, { m_parts->files.folder(), u"b.txt"_s });
    QVERIFY(&editor() != fresh);
    m_parts->steps.runAll();
    QVERIFY(fresh->text() == m_text);
    QVERIFY(editor().text() == m_text);
    QCOMPARE(editor().name(), u"b.txt"_s);
}

/// Of the document that is edited so first, and saves the others behind it.
void LongEditClosingTest::saveAllWaits()
{
    ctlEditer *const other = m_parts->open(m_parts->files.write(u"b.txt"_s, "old"));
    QTest::keyClick(other, Qt::Key_X);
    m_parts->documents.present(m_parts->documents.editors().constFirst());
    begin();
    m_parts->saver.saveAll();
    m_parts->makeSteps(1);
    QCOMPARE(m_parts->files.read(u"b.txt"_s), "old"_ba);
    m_parts->steps.runAll();
    settle();
    m_parts->steps.runAll();
    QVERIFY(m_parts->files.read(u"a.txt"_s) == m_moved.toLatin1());
    QCOMPARE(m_parts->files.read(u"b.txt"_s), "xold"_ba);
    QVERIFY(!editor().edited() && !other->edited());
}

void LongEditClosingTest::stoppedEditEndsSaveAll()
{
    ctlEditer *const other = m_parts->open(m_parts->files.write(u"b.txt"_s, "old"));
    QTest::keyClick(other, Qt::Key_X);
    m_parts->documents.present(m_parts->documents.editors().constFirst());
    begin();
    m_parts->saver.saveAll();
    QTRY_VERIFY(m_parts->isStrip(&editor()));
    m_parts->pressStop(&editor());
    m_parts->steps.runAll();
    settle();
    QVERIFY(isAsBefore());
    QCOMPARE(m_parts->files.read(u"b.txt"_s), "old"_ba);
    QVERIFY(other->edited());
}

/// Which the edit waits for; what it brings would be in no file and no journal.
void LongEditClosingTest::sessionEndBehindADialogIsRefused()
{
    RecoveryJournals journals;
    SessionEnd end(m_parts->documents, m_parts->closer, journals);
    begin();
    {
        const RequestHold hold;
        QVERIFY(!end.prepare(true));
        QVERIFY(!end.prepare(false));
        m_parts->steps.runAll();
        QVERIFY(editor().document().isHeld());
        QVERIFY(!end.prepare(false));
    }
    settle();
    QVERIFY(editor().text() == m_moved);
    const MessageBoxes boxes({ u"No"_s });
    QVERIFY(end.prepare(true));
    QCOMPARE(boxes.count(), 1);
}

REGISTER_TEST(runFormTest<LongEditClosingTest>)
#include "longeditclosing_test.moc"
