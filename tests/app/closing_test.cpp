#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QAction>
#include <QDialog>
#include <QPointer>

#include <cstddef>
#include <malloc.h>

// The sanitizers' own; absent without them.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() // NOLINT(bugprone-reserved-identifier)
    __attribute__((weak));

using namespace Qt::StringLiterals;

namespace {

/// What the program has asked for and not given back.
qint64 allocatedBytes()
{
    if (__sanitizer_get_current_allocated_bytes)
        return qint64(__sanitizer_get_current_allocated_bytes());
    const struct mallinfo2 info = ::mallinfo2();
    return qint64(info.uordblks + info.hblkhd);
}

} // namespace

/// Closing documents and quitting: what is asked, written, and stays open.
class ClosingTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void closeAsksOnlyAboutEdits();
    void closeAnswers_data();
    void closeAnswers();
    void closeKeepsTheTabWhenSavingFails();
    void savingANewDocumentAsksForAName_data();
    void savingANewDocumentAsksForAName();
    void closedEditorsAreGone();
    void closedDocumentsFreeTheirText();
    void closingShowsTheNeighbour();

    void quitAsksFromTheLastTab();
    void quitCancelledAtTheSecondQuestion_data();
    void quitCancelledAtTheSecondQuestion();
    void quitClosesWhatIsNotEdited();
    void quitStopsAtAFailingSave();
    void quitWithSaveNeverAsks();
    void quitWithSaveStopsAtAFailure();
    void quittingWritesSettings_data();
    void quittingWritesSettings();
    void closingTheWindowAsks();
};

void ClosingTest::init()
{
    resetSettings();
}

void ClosingTest::closeAsksOnlyAboutEdits()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, "old"));
    MessageBoxes boxes;
    window.item(FileCommand::Close)->trigger();
    window.item(FileCommand::Close)->trigger();
    window.item(FileCommand::Close)->trigger();
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(window.tabBar()->count(), 0);
    QVERIFY(window.isVisible());
}

void ClosingTest::closeAnswers_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("Yes saves and closes") << u"Yes"_s << true << QByteArray("xold");
    QTest::newRow("No closes") << u"No"_s << true << QByteArray("old");
    QTest::newRow("Cancel keeps") << u"Cancel"_s << false << QByteArray("old");
    QTest::newRow("Escape keeps") << u"Escape"_s << false << QByteArray("old");
    QTest::newRow("the close button of the box keeps") << u"(close)"_s << false << QByteArray("old");
}

void ClosingTest::closeAnswers()
{
    QFETCH(QString, answer);
    QFETCH(bool, isClosed);
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    MessageBoxes boxes({ answer });
    window.slotCmdFileCloseTab();
    QCOMPARE(boxes.count(), 1);
    const MessageBoxes::Box &box = boxes.shown().at(0);
    QCOMPARE(box.title, u"Confirm File Save"_s);
    QCOMPARE(box.text, u"\"a.txt\" is edited.\n Would you want to save this file?"_s);
    QCOMPARE(box.drawnButtons(), u"[Yes] No Cancel=Escape"_s);
    QCOMPARE(box.icon, QMessageBox::Information);
    QCOMPARE(window.tabTexts(), isClosed ? QStringList() : QStringList{ u"* a.txt"_s });
    QTEST(files.read(u"a.txt"_s), "content");
}

void ClosingTest::closeKeepsTheTabWhenSavingFails()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    breakSaving(window.currentEditor());
    MessageBoxes boxes({ u"Yes"_s });
    window.slotCmdFileCloseTab();
    QCOMPARE(boxes.count(), 2);
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
}

void ClosingTest::savingANewDocumentAsksForAName_data()
{
    QTest::addColumn<FileCommand>("item");
    QTest::addColumn<bool>("isNamed");
    QTest::newRow("Close, cancelled") << FileCommand::Close << false;
    QTest::newRow("Close") << FileCommand::Close << true;
    QTest::newRow("Quit with Save, cancelled") << FileCommand::QuitWithSave << false;
    QTest::newRow("Quit with Save") << FileCommand::QuitWithSave << true;
    QTest::newRow("Quit, cancelled") << FileCommand::Quit << false;
    QTest::newRow("Quit") << FileCommand::Quit << true;
}

/// Whatever closes it.
void ClosingTest::savingANewDocumentAsksForAName()
{
    QFETCH(FileCommand, item);
    QFETCH(bool, isNamed);
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    if (isNamed)
        window.choices << FileChoice{ files.folder(), u"a.txt"_s };
    MessageBoxes boxes({ u"Yes"_s });
    window.item(item)->trigger();
    QCOMPARE(boxes.count(), item == FileCommand::QuitWithSave ? 0 : 1);
    QCOMPARE(window.requests.size(), 1);
    QCOMPARE(window.requests.at(0).mode, frmFileDialog::SaveAs);
    QCOMPARE(window.tabTexts(), isNamed ? QStringList() : QStringList{ u"* (new document)"_s });
    QCOMPARE(QFile::exists(files.folder() + u"a.txt"_s), isNamed);
    QCOMPARE(window.isVisible(), !isNamed || item == FileCommand::Close);
    QCOMPARE(recentFiles().entries[0].name, isNamed ? u"a.txt"_s : QString());
}

void ClosingTest::closedEditorsAreGone()
{
    TestWindow window;
    QVERIFY(window.open());
    const QPointer<ctlEditer> editor = window.currentEditor();
    window.slotCmdFileCloseTab();
    QVERIFY(!window.currentEditor());
    QVERIFY(!editor || !editor->isVisible());
    QTRY_VERIFY(!editor);
}

void ClosingTest::closedDocumentsFreeTheirText()
{
    constexpr qint64 mebi = 1 << 20;
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    const QString name = files.write(u"a.txt"_s, QByteArray("a line of text\n").repeated(4 * mebi / 15));
    const auto openAndClose = [&] {
        window.setDocument(name);
        const qint64 opened = allocatedBytes();
        window.currentEditor()->selectAll();
        QTest::keyClick(window.currentEditor(), Qt::Key_Delete);
        MessageBoxes boxes({ u"No"_s });
        window.slotCmdFileCloseTab();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return opened;
    };
    const qint64 first = openAndClose();
    QTRY_VERIFY(allocatedBytes() < first - 4 * mebi);
    const qint64 before = allocatedBytes();
    const qint64 second = openAndClose();
    QVERIFY(second > before + 4 * mebi);
    QTRY_VERIFY(allocatedBytes() < before + mebi / 4);
}

void ClosingTest::closingShowsTheNeighbour()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    for (const auto *name : { "a.txt", "b.txt", "c.txt" })
        window.setDocument(files.write(QLatin1StringView(name), "text"));
    window.tabBar()->setCurrentTab(window.editorAt(1));
    window.slotCmdFileCloseTab();
    QCOMPARE(window.currentEditor()->name(), u"c.txt"_s);
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
    window.slotCmdFileCloseTab();
    QCOMPARE(window.currentEditor()->name(), u"a.txt"_s);
    QCOMPARE(QApplication::focusWidget(), window.currentEditor());
}

void ClosingTest::quitAsksFromTheLastTab()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    window.tabBar()->setCurrentTab(window.editorAt(0));
    MessageBoxes boxes({ u"Yes"_s, u"No"_s });
    window.item(FileCommand::Quit)->trigger();
    QCOMPARE(boxes.count(), 2);
    QVERIFY(boxes.shown().at(0).text.startsWith(u"\"b.txt\""_s));
    QVERIFY(boxes.shown().at(1).text.startsWith(u"\"a.txt\""_s));
    QVERIFY(!window.isVisible());
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("old"));
    QCOMPARE(files.read(u"b.txt"_s), QByteArray("xold"));
    QCOMPARE(recentFiles().entries[0].name, u"a.txt"_s);
    QCOMPARE(recentFiles().entries[1].name, u"b.txt"_s);
}

void ClosingTest::quitCancelledAtTheSecondQuestion_data()
{
    QTest::addColumn<QString>("firstAnswer");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("saved") << u"Yes"_s << QByteArray("xold");
    QTest::newRow("not saved") << u"No"_s << QByteArray("old");
}

/// The document that was asked about first is closed, as answered.
void ClosingTest::quitCancelledAtTheSecondQuestion()
{
    QFETCH(QString, firstAnswer);
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    MessageBoxes boxes({ firstAnswer, u"Cancel"_s });
    window.slotCmdFileQuitNoSave();
    QCOMPARE(boxes.count(), 2);
    QVERIFY(window.isVisible());
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
    QCOMPARE(window.currentEditor(), window.editorAt(0));
    QTEST(files.read(u"b.txt"_s), "content");
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("old"));
    QCOMPARE(recentFiles().entries[0].name, u"b.txt"_s);
}

/// Up to the edited one, which shows and is painted when the user is asked about it.
void ClosingTest::quitClosesWhatIsNotEdited()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    window.editorAt(0)->undo();
    for (const auto *name : { "c.txt", "d.txt" })
        window.setDocument(files.write(QLatin1StringView(name), "text"));
    MessageBoxes boxes({ u"Cancel"_s });
    window.slotCmdFileQuitNoSave();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(window.tabTexts(), QStringList({ u"a.txt"_s, u"* b.txt"_s }));
    QCOMPARE(window.currentEditor(), window.editorAt(1));
    QVERIFY(window.currentEditor()->updatesEnabled());
    QVERIFY(window.currentEditor()->isVisible());
}

void ClosingTest::quitStopsAtAFailingSave()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    breakSaving(window.editorAt(1));
    MessageBoxes boxes({ u"Yes"_s });
    window.slotCmdFileQuitNoSave();
    QVERIFY(window.isVisible());
    QCOMPARE(window.tabTexts(), QStringList({ u"* a.txt"_s, u"* b.txt"_s }));
}

void ClosingTest::quitWithSaveNeverAsks()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    MessageBoxes boxes;
    window.item(FileCommand::QuitWithSave)->trigger();
    QCOMPARE(boxes.count(), 0);
    QVERIFY(!window.isVisible());
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("xold"));
    QCOMPARE(files.read(u"b.txt"_s), QByteArray("xold"));
}

void ClosingTest::quitWithSaveStopsAtAFailure()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s, u"c.txt"_s }));
    breakSaving(window.editorAt(1));
    MessageBoxes boxes;
    window.slotCmdFileQuitSave();
    QCOMPARE(boxes.count(), 1);
    QVERIFY(window.isVisible());
    QCOMPARE(window.tabTexts(), QStringList({ u"* a.txt"_s, u"* b.txt"_s }));
    QCOMPARE(files.read(u"c.txt"_s), QByteArray("xold"));
}

void ClosingTest::quittingWritesSettings_data()
{
    QTest::addColumn<FileCommand>("item");
    QTest::newRow("Quit with Save") << FileCommand::QuitWithSave;
    QTest::newRow("Quit") << FileCommand::Quit;
}

void ClosingTest::quittingWritesSettings()
{
    QFETCH(FileCommand, item);
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, "text"));
    window.item(item)->trigger();
    QVERIFY(!window.isVisible());
    recentFiles() = {};
    readSettings();
    QCOMPARE(recentFiles().entries[0].name, u"a.txt"_s);
}

void ClosingTest::closingTheWindowAsks()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    MessageBoxes boxes({ u"Cancel"_s, u"Yes"_s });
    QVERIFY(!window.close());
    QVERIFY(window.isVisible());
    QVERIFY(window.close());
    QVERIFY(!window.isVisible());
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("xold"));
    QCOMPARE(boxes.count(), 2);
}

REGISTER_TEST(runWindowTest<ClosingTest>)
#include "closing_test.moc"
