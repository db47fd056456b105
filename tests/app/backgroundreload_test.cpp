#include "tests/app/backgroundscene.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Files that are read again behind the window: what is shown until the new text is there, and where cursor
/// and keys go.
class BackgroundReloadTest : public QObject, private BackgroundScene {
    Q_OBJECT

private slots:
    void init() { beginScene(); }
    void cleanup() { m_parts.reset(); }

    void stoppedReloadKeepsItsText();
    void shrunkFileIsTakenAsFarAsItGoes_data();
    void shrunkFileIsTakenAsFarAsItGoes();
    void closingSavesWhatIsStillThere();
    void reloadKeepsTheCursor();
    void reloadKeepsACursorThatHasMovedMeanwhile();
    void reloadOfAHiddenDocumentTakesNoKeys();
    void reloadIsMeasuredAnewInTurns();
    void reloadIsStoppedWhileItIsMeasured();

private:
    /// A reload that is read, and is still to be measured in a width that came last.
    ctlEditer *reloadToMeasure();
};

void BackgroundReloadTest::stoppedReloadKeepsItsText()
{
    write("old\n");
    ctlEditer *const editor = open();
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    write(longLog());
    m_parts->loader.reload(editor);
    QVERIFY(m_runner->step());
    QCOMPARE(editor->text(), u"old\n"_s);
    QTest::keyClicks(editor, u"x"_s);
    QCOMPARE(editor->text(), u"old\n"_s);
    stop(editor);
    QVERIFY(!editor->document().isHeld());
    QCOMPARE(editor->text(), u"old\n"_s);
    editor->insert(u"x"_s);
    editor->undo();
    m_parts->loader.reload(editor);
    m_runner->runAll();
    QTRY_COMPARE(editor->numLines(), qint64(lineCount) + 1);
}

void BackgroundReloadTest::shrunkFileIsTakenAsFarAsItGoes_data()
{
    QTest::addColumn<int>("steps");
    QTest::addColumn<qint64>("left");
    for (const int steps : { 0, 1, 2 }) {
        QTest::addRow("to its first half, after %d steps", steps) << steps << qint64(5'000'000);
        QTest::addRow("to a few bytes, after %d steps", steps) << steps << qint64(10);
        QTest::addRow("to nothing, after %d steps", steps) << steps << qint64(0);
    }
}

/// What has become of it is told by the notice that tells of every change.
void BackgroundReloadTest::shrunkFileIsTakenAsFarAsItGoes()
{
    QFETCH(int, steps);
    QFETCH(qint64, left);
    write(longLog("old"));
    ctlEditer *const editor = open();
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    editor->setCursorPosition(25000, 5);
    const QByteArray text = longLog(QByteArray("word ").repeated(66)); // in more blocks than there are steps
    const QString name = write(text);
    const MessageBoxes boxes;
    m_parts->loader.reload(editor);
    for (int step = 0; step < steps; ++step)
        QVERIFY(m_runner->step());
    QVERIFY(QFile::resize(name, left));
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QCOMPARE(boxes.count(), 0);
    editor->store().checkInvariants();
    QVERIFY(QString::fromUtf8(text).startsWith(editor->text()));
    QVERIFY(editor->store().length() >= left && editor->store().length() < text.size());
    QVERIFY(editor->cursorOffset() <= editor->store().end());
    const bool isAll = editor->store().length() == left;
    QCOMPARE(editor->document().file().change(), isAll ? FileChange::None : FileChange::Changed);
    m_parts->loader.reload(editor);
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QVERIFY(editor->text() == QString::fromUtf8(text.first(left)));
    QCOMPARE(editor->document().file().change(), FileChange::None);
}

/// The edits were to go, but have not gone yet.
void BackgroundReloadTest::closingSavesWhatIsStillThere()
{
    write("old\n");
    ctlEditer *const editor = open();
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    editor->insert(u"edited "_s);
    write(longLog());
    const MessageBoxes boxes({ u"Yes"_s, u"Yes"_s });
    m_parts->loader.reload(editor);
    QVERIFY(m_runner->step());
    m_parts->jobs.fewest = atOnceAlways;
    QVERIFY(m_parts->closer.saveIfWanted(editor));
    QCOMPARE(boxes.titles(), QStringList({ u"Confirm Reload"_s, u"Confirm File Save"_s }));
    QCOMPARE(m_parts->files.read(u"a.txt"_s), QByteArray("edited old\n"));
    QVERIFY(!editor->document().isHeld());
    m_runner->runAll();
    QCOMPARE(editor->text(), u"edited old\n"_s);
}

void BackgroundReloadTest::reloadKeepsTheCursor()
{
    write(longLog());
    ctlEditer *const editor = open();
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    editor->setCursorPosition(25000, 5);
    const RowIndex top = editor->topRow();
    write(longLog("another"));
    m_parts->loader.reload(editor);
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QVERIFY(editor->text().startsWith(u"another 0\n"_s));
    QCOMPARE(editor->cursorPosition(), (RowCol{ RowIndex(25000), 5 }));
    QCOMPARE(editor->topRow(), top);
}

void BackgroundReloadTest::reloadKeepsACursorThatHasMovedMeanwhile()
{
    write(longLog());
    ctlEditer *const editor = open();
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    write(longLog("another"));
    m_parts->loader.reload(editor);
    m_runner->step();
    editor->setCursorPosition(25000, 5);
    const RowIndex top = editor->topRow();
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QVERIFY(editor->text().startsWith(u"another 0\n"_s));
    QCOMPARE(editor->cursorPosition(), (RowCol{ RowIndex(25000), 5 }));
    QCOMPARE(editor->topRow(), top);
}

void BackgroundReloadTest::reloadOfAHiddenDocumentTakesNoKeys()
{
    write(longLog());
    ctlEditer *const editor = open();
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    m_parts->loader.reload(editor);
    ctlEditer *const other = documents().add();
    documents().present(other);
    const auto type = [&](Qt::Key key) { QTest::keyClick(m_parts->window.windowHandle(), key); };
    while (other->text().isEmpty()) { // those that were pressed when the reload began are not for this
        type(Qt::Key_A);
        QCoreApplication::processEvents();
    }
    connect(
        &editor->document(), &TextDocument::released, other, [&] { type(Qt::Key_B); }, Qt::QueuedConnection);
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QTRY_COMPARE(other->text(), u"ab"_s);
}

/// With the strip's sign, which comes late, and with hardly any of it measured.
ctlEditer *BackgroundReloadTest::reloadToMeasure()
{
    write("old\n");
    ctlEditer *const editor = open();
    m_runner->runAll();
    editor->setWordWrap(QMultiLineEdit::FixedPixelWidth);
    editor->setWrapColumnOrWidth(200);
    write(longLog("a line that is wrapped, and again, and again").repeated(10)); // of many turns
    m_parts->jobs.turn = 0ms; // a node each
    m_parts->loader.reload(editor);
    m_runner->step();
    m_runner->step();
    [&] { QTRY_VERIFY(documents().notices().has(NoticeKind::Work, editor)); }();
    editor->setWrapColumnOrWidth(150);
    m_runner->runAll();
    return editor;
}

/// The text of before can be looked at until then.
void BackgroundReloadTest::reloadIsMeasuredAnewInTurns()
{
    ctlEditer *const editor = reloadToMeasure();
    QVERIFY(m_runner->isIdle());
    QVERIFY(editor->document().isHeld());
    QCoreApplication::processEvents();
    QVERIFY(editor->document().isHeld());
    QCOMPARE(editor->text(), u"old\n"_s);
    QTRY_VERIFY(!editor->document().isHeld());
    editor->store().checkInvariants();
    QCOMPARE(editor->store().layoutRule(), editor->layoutRule());
    ctlEditer other(nullptr);
    other.setWordWrap(QMultiLineEdit::FixedPixelWidth);
    other.setWrapColumnOrWidth(150);
    other.setText(editor->text());
    QCOMPARE(editor->numLines(), other.numLines());
}

void BackgroundReloadTest::reloadIsStoppedWhileItIsMeasured()
{
    ctlEditer *const editor = reloadToMeasure();
    QVERIFY(m_runner->isIdle());
    QVERIFY(editor->document().isHeld());
    stop(editor);
    settle();
    QVERIFY(!editor->document().isHeld());
    QCOMPARE(editor->text(), u"old\n"_s);
}

REGISTER_TEST(runFormTest<BackgroundReloadTest>)
#include "backgroundreload_test.moc"
