#include "recovery/recoveryjournals.h"
#include "tests/app/stayingapplication.h"
#include "tests/app/unsavedlist.h"
#include "tests/app/unsavedtexts.h"
#include "tests/testprogram.h"

#include <QListWidget>
#include <QPushButton>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QListWidget &listOf(frmRecovery &form)
{
    return *form.findChild<QListWidget *>();
}

/// A program that types into documents and is killed then.
class KilledProgram {
public:
    /// Puts text in front of that of a file, with the cursor behind it; without a name into a new document.
    void edit(const QString &folder, const QString &name, const QString &text)
    {
        m_documents.push_back(std::make_unique<TextDocument>());
        TextDocument &document = *m_documents.back();
        m_journals.attach(document, [text] { return ViewPlace{ { Offset(text.size()) }, {}, {}, 0 }; });
        if (!name.isEmpty())
            open(document, folder, name);
        document.replace(Offset(0), 0, text);
    }
    bool isWritten() { return m_journals.flush(10s); }

private:
    static void open(TextDocument &document, const QString &folder, const QString &name)
    {
        if (QFile::exists(folder + name))
            document.load(folder, name, {}, {});
        else
            document.startFile(folder, name, { CharCode::Euc, ReturnCode::Lf });
    }

    std::vector<std::unique_ptr<TextDocument>> m_documents;
    RecoveryJournals m_journals;
};

} // namespace

/// What the window does about texts that were not saved when the program last ended.
class RecoveryTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void tellsHowMany_data();
    void tellsHowMany();
    void nothingIsToldOfNothing();
    void brokenJournalsAreNoHindrance();
    void restores();
    void restoresThePlace();
    void restoresNewDocuments();
    void changedFileIsKeptToo();
    void goneFileIsTold();
    void fileThatWasNeverThereIsMadeByASave_data();
    void fileThatWasNeverThereIsMadeByASave();
    void fileThatIsThereByNowIsKept();
    void missingPartsAreTold();
    void savedTextIsToldOf();
    void savedTextIsOpenOnce();
    void documentOfTheFileIsTaken();
    void touchedFileIsOpenOnce();
    void editsOfTwoProgramsAreInOneTabOfTheFile();
    void chosenOnesAreRestored();
    void listStaysWhatItIsWhileItIsShown();
    void laterKeepsAll_data();
    void laterKeepsAll();
    void discardingAsks_data();
    void discardingAsks();
    void nothingChosenIsNothingToDo();
    void listTells();
    void unwritableFolderIsTold();

private:
    /// "x" in front of each.
    void leaveBehind(const QStringList &names);
    void leaveBehindNewFile(const QString &name);

    std::unique_ptr<TestFiles> m_files;
};

void RecoveryTest::init()
{
    resetSettings();
    UnsavedTexts::removeAll();
    m_files = std::make_unique<TestFiles>();
}

void RecoveryTest::leaveBehind(const QStringList &names)
{
    KilledProgram program;
    for (const QString &name : names) {
        if (!name.isEmpty())
            m_files->write(name, "old\r\n");
        program.edit(m_files->folder(), name, u"x"_s);
    }
    QVERIFY(program.isWritten());
}

void RecoveryTest::leaveBehindNewFile(const QString &name)
{
    KilledProgram program;
    program.edit(m_files->folder(), name, u"x"_s);
    QVERIFY(program.isWritten());
}

void RecoveryTest::tellsHowMany_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("text");
    const QStringList one{ u"a.txt"_s }, three{ u"a.txt"_s, u"b.txt"_s, QString() };
    QTest::newRow("English, 1") << 0 << one << u"1 document was not saved"_s;
    QTest::newRow("English, 3") << 0 << three << u"3 documents were not saved"_s;
    QTest::newRow("Japanese, 1") << 1 << one << u"1 件の文書が保存されていません"_s;
    QTest::newRow("Japanese, 3") << 1 << three << u"3 件の文書が保存されていません"_s;
    QTest::newRow("French, 1") << 2 << one << u"1 texte à restaurer"_s;
    QTest::newRow("French, 3") << 2 << three << u"3 textes à restaurer"_s;
}

void RecoveryTest::tellsHowMany()
{
    QFETCH(int, language);
    QFETCH(QStringList, names);
    leaveBehind(names);
    appSettings().Lang = language;
    writeSettings();
    TestWindow window;
    QVERIFY(window.open());
    const StripInWindow strip(window);
    QTRY_VERIFY(strip.isShown());
    QTEST(strip.text(), "text");
    QCOMPARE(strip.offers().size(), 2);
    QCOMPARE(window.tabBar()->count(), 1);
}

void RecoveryTest::nothingIsToldOfNothing()
{
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"x"_s });
    QVERIFY(!StripInWindow(window).isShown());
}

void RecoveryTest::brokenJournalsAreNoHindrance()
{
    leaveBehind({ u"a.txt"_s });
    const QDir folder(UnsavedTexts::folder());
    QFile foreign(folder.filePath(u"foreign.journal"_s));
    QVERIFY(foreign.open(QIODevice::WriteOnly) && foreign.write("no journal\n") > 0);
    QVERIFY(folder.mkdir(u"folder.journal"_s));
    TestWindow window;
    QVERIFY(window.open());
    QTRY_COMPARE(StripInWindow(window).text(), u"1 document was not saved"_s);
    QVERIFY(restoreAll(window));
    QCOMPARE(window.currentEditor()->text(), u"xold\n"_s);
}

void RecoveryTest::restores()
{
    leaveBehind({ u"a.txt"_s });
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restoreAll(window));
    QVERIFY(!StripInWindow(window).isShown());
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
    ctlEditer &editor = *window.currentEditor();
    QCOMPARE(editor.text(), u"xold\n"_s);
    QCOMPARE(editor.cursorOffset(), Offset(1));
    QCOMPARE(editor.returnCodeName(), u"CR+LF"_s);
    QVERIFY(window.isItemEnabled(EditCommand::Undo));
    QVERIFY(window.windowTitle().contains(u"CR+LF"_s));

    window.slotCmdEditUndo();
    QCOMPARE(editor.text(), u"old\n"_s);
    QCOMPARE(window.tabTexts(), QStringList{ u"a.txt"_s });
    window.slotCmdEditRedo();
    window.slotCmdFileSave();
    QCOMPARE(m_files->read(u"a.txt"_s), QByteArray("xold\r\n"));
    QTRY_COMPARE(UnsavedTexts::now(), QStringList());
}

/// Cursor, selection and what was in view.
void RecoveryTest::restoresThePlace()
{
    const QString name = m_files->write(u"a.txt"_s, QByteArray("0123456789\n").repeated(1000));
    const auto placeIn = [](const ctlEditer &editor) {
        return std::tuple(
            editor.cursorOffset(), editor.anchorOffset(), editor.hasMarkedText(), editor.topRow());
    };
    decltype(placeIn(std::declval<ctlEditer &>())) place;
    {
        TestWindow window;
        QVERIFY(window.open());
        window.setDocument(name);
        ctlEditer &editor = *window.currentEditor();
        editor.setCursorPlace({ Offset(6000) });
        editor.insert(u"x"_s);
        editor.select({ Offset(6001) }, { Offset(6004) });
        place = placeIn(editor);
        QVERIFY(editor.topRow() > RowIndex(100));
        QTRY_COMPARE(UnsavedTexts::now().size(), 1);
    }
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restoreAll(window));
    QVERIFY(placeIn(*window.currentEditor()) == place);
}

void RecoveryTest::restoresNewDocuments()
{
    leaveBehind({ QString(), QString() });
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restoreAll(window));
    QCOMPARE(window.tabTexts(), QStringList(2, u"* (new document)"_s));
    for (const ctlEditer *editor : window.tabBar()->editors()) {
        QCOMPARE(editor->text(), u"x"_s);
        QVERIFY(editor->path().isEmpty());
    }
}

void RecoveryTest::changedFileIsKeptToo()
{
    leaveBehind({ u"a.txt"_s });
    m_files->write(u"a.txt"_s, "written by others\n");
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restoreAll(window));
    QCOMPARE(window.currentEditor()->text(), u"xold\n"_s);
    QVERIFY(window.currentEditor()->path().isEmpty());
    QVERIFY(window.currentEditor()->edited());
    QCOMPARE(m_files->read(u"a.txt"_s), QByteArray("written by others\n"));

    const StripInWindow strip(window);
    QCOMPARE(strip.text(), u"The file has changed; this text is in no file yet"_s);
    QVERIFY(strip.click(u"Open the file"_s));
    QCOMPARE(window.currentEditor()->text(), u"written by others\n"_s);
    QVERIFY(!strip.isShown());
    window.slotEtcChangeTab(0);
    QVERIFY(strip.isShown());
    window.choices = { { m_files->folder(), u"b.txt"_s, CharCode::Utf8, ReturnCode::Lf } };
    window.slotCmdFileSave();
    QCOMPARE(m_files->read(u"b.txt"_s), QByteArray("xold\n"));
    QVERIFY(!strip.isShown());
}

void RecoveryTest::goneFileIsTold()
{
    leaveBehind({ u"a.txt"_s });
    QVERIFY(QFile::remove(m_files->folder() + u"a.txt"_s));
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restoreAll(window));
    QCOMPARE(window.currentEditor()->text(), u"xold\n"_s);
    QCOMPARE(StripInWindow(window).text(), u"The file is gone; this text is in no file yet"_s);
    QCOMPARE(StripInWindow(window).offers(), QStringList());
}

void RecoveryTest::fileThatWasNeverThereIsMadeByASave_data()
{
    QTest::addColumn<bool>("isOpen");
    QTest::newRow("not open") << false;
    QTest::newRow("begun again") << true;
}

void RecoveryTest::fileThatWasNeverThereIsMadeByASave()
{
    QFETCH(bool, isOpen);
    leaveBehindNewFile(u"new.txt"_s);
    TestWindow window;
    QVERIFY(window.open());
    if (isOpen)
        window.openRequested({ m_files->folder() + u"new.txt"_s, FileRequest::From::Shell });
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restoreAll(window));
    QCOMPARE(window.tabTexts().filter(u"new.txt"_s), QStringList{ u"* new.txt"_s });
    QVERIFY(!StripInWindow(window).isShown());
    QCOMPARE(window.currentEditor()->text(), u"x"_s);
    window.slotCmdFileSave();
    QCOMPARE(m_files->read(u"new.txt"_s), QByteArray("x"));
}

void RecoveryTest::fileThatIsThereByNowIsKept()
{
    leaveBehindNewFile(u"new.txt"_s);
    m_files->write(u"new.txt"_s, "written by others\n");
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restoreAll(window));
    QVERIFY(window.currentEditor()->path().isEmpty());
    QCOMPARE(window.currentEditor()->text(), u"x"_s);
    QCOMPARE(StripInWindow(window).text(), u"The file has changed; this text is in no file yet"_s);
}

/// Of a long file that has changed no more is known than what was written near the edits.
void RecoveryTest::missingPartsAreTold()
{
    const QByteArray content = QByteArray("a long file's line\n").repeated(600'000);
    const QString name = m_files->write(u"a.txt"_s, content);
    {
        KilledProgram program;
        program.edit(m_files->folder(), u"a.txt"_s, u"x"_s);
        QVERIFY(program.isWritten());
    }
    m_files->write(u"a.txt"_s, "written by others\n");
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restoreAll(window));
    QTRY_VERIFY(window.currentEditor()->text().startsWith(u"x"_s));
    QVERIFY(window.currentEditor()->text().endsWith(u"\n[...]\n"_s));
    QTRY_COMPARE(StripInWindow(window).text(), u"Parts are missing; a line with dots stands for each"_s);
}

/// The program was killed before it knew that all was written.
void RecoveryTest::savedTextIsToldOf()
{
    leaveBehind({ u"a.txt"_s });
    m_files->write(u"a.txt"_s, "xold\r\n");
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restoreAll(window));
    QCOMPARE(window.tabTexts(), QStringList{ u"a.txt"_s });
    QTRY_COMPARE(StripInWindow(window).text(), u"Nothing is missing; this text was saved already"_s);
    QTRY_VERIFY(findLeftBehind(journalFolder()).empty());
    QTest::keyClicks(window.currentEditor(), u"y"_s);
    QCOMPARE(window.currentEditor()->text(), u"xyold\n"_s);
    QVERIFY(!StripInWindow(window).isShown());
}

void RecoveryTest::savedTextIsOpenOnce()
{
    leaveBehind({ u"a.txt"_s });
    const QString file = m_files->write(u"a.txt"_s, "xold\r\n");
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(file);
    ctlEditer *const editor = window.currentEditor();
    window.slotCmdFileNew();
    QTRY_VERIFY(StripInWindow(window).isShown());
    const QStringList tabs = window.tabTexts();
    QVERIFY(restoreAll(window));
    QCOMPARE(window.currentEditor(), editor);
    QCOMPARE(window.tabTexts(), tabs);
    QTRY_VERIFY(findLeftBehind(journalFolder()).empty());
}

void RecoveryTest::documentOfTheFileIsTaken()
{
    leaveBehind({ u"a.txt"_s });
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(m_files->folder() + u"a.txt"_s);
    window.slotCmdFileNew();
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restoreAll(window));
    QCOMPARE(window.tabBar()->count(), 3);
    QCOMPARE(window.currentEditor()->text(), u"xold\n"_s);
    QCOMPARE(window.currentEditor()->name(), u"a.txt"_s);
}

void RecoveryTest::touchedFileIsOpenOnce()
{
    leaveBehind({ u"a.txt"_s });
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(m_files->write(u"a.txt"_s, "old\r\n"));
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restoreAll(window));
    QCOMPARE(window.tabTexts().filter(u"a.txt"_s), QStringList{ u"* a.txt"_s });
    QCOMPARE(window.currentEditor()->path(), m_files->folder());
}

/// The newer ones; the others are a document that was never saved.
void RecoveryTest::editsOfTwoProgramsAreInOneTabOfTheFile()
{
    m_files->write(u"a.txt"_s, "old\r\n");
    for (const QString &text : { u"x"_s, u"y"_s }) {
        KilledProgram program;
        program.edit(m_files->folder(), u"a.txt"_s, text);
        QVERIFY(program.isWritten());
    }
    QCOMPARE(UnsavedTexts::leftBehind(), (QStringList{ u"xold\n"_s, u"yold\n"_s }));
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restoreAll(window));
    QCOMPARE(window.tabTexts(), (QStringList{ u"* a.txt"_s, u"* a.txt (other edits)"_s }));
    QCOMPARE(window.currentEditor()->path(), m_files->folder());
    const QString first = window.currentEditor()->text();
    window.slotCmdViewWinNext();
    QCOMPARE(window.currentEditor()->path(), QString());
    QCOMPARE((QSet<QString>{ first, window.currentEditor()->text() }),
        (QSet<QString>{ u"xold\n"_s, u"yold\n"_s }));
    const StripInWindow strip(window);
    QCOMPARE(strip.text(), u"The file has other edits in its tab; these are in no file yet"_s);
    QVERIFY(strip.click(u"Open the file"_s));
    QCOMPARE(window.currentEditor()->text(), first);
    QCOMPARE(window.tabBar()->count(), 2);
    QTRY_COMPARE(UnsavedTexts::now(), (QStringList{ u"xold\n"_s, u"yold\n"_s }));
}

/// The others stay.
void RecoveryTest::chosenOnesAreRestored()
{
    leaveBehind({ u"a.txt"_s, u"b.txt"_s, u"c.txt"_s });
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    const InList choosing([](frmRecovery &form) {
        for (int row = 0; row < listOf(form).count(); ++row) {
            QListWidgetItem *const item = listOf(form).item(row);
            item->setCheckState(item->text().startsWith(u"b.txt"_s) ? Qt::Checked : Qt::Unchecked);
        }
        press(form, u"Restore"_s);
    });
    QVERIFY(StripInWindow(window).click(u"Restore"_s));
    QCOMPARE(window.tabTexts(), QStringList{ u"* b.txt"_s });
    QTRY_COMPARE(StripInWindow(window).text(), u"2 documents were not saved"_s);
}

/// Others may be found meanwhile, which come first.
void RecoveryTest::listStaysWhatItIsWhileItIsShown()
{
    leaveBehind({ u"a.txt"_s });
    TestWindow window;
    QVERIFY(window.open());
    const StripInWindow strip(window);
    QTRY_VERIFY(strip.isShown());
    bool isFound = false;
    const InList restoring([&](frmRecovery &form) {
        leaveBehind({ u"b.txt"_s });
        emit window.findChild<RecoveryJournals *>()->leftBehindChanged();
        isFound = waitUntil([&strip] { return strip.text() == u"2 documents were not saved"_s; });
        press(form, u"Restore"_s);
    });
    QVERIFY(strip.click(u"Restore"_s));
    QVERIFY(isFound);
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
    QTRY_COMPARE(strip.text(), u"1 document was not saved"_s);
}

void RecoveryTest::laterKeepsAll_data()
{
    QTest::addColumn<bool>("isInList");
    QTest::newRow("in the strip") << false;
    QTest::newRow("in the list") << true;
}

void RecoveryTest::laterKeepsAll()
{
    QFETCH(bool, isInList);
    leaveBehind({ u"a.txt"_s, u"b.txt"_s });
    for (int start = 0; start < 2; ++start) {
        TestWindow window;
        QVERIFY(window.open());
        const StripInWindow strip(window);
        QTRY_COMPARE(strip.text(), u"2 documents were not saved"_s);
        const InList leaving([](frmRecovery &form) { press(form, u"Later"_s); });
        QVERIFY(strip.click(isInList ? u"Restore"_s : u"Later"_s));
        QVERIFY(!strip.isShown());
        QCOMPARE(UnsavedTexts::leftBehind(), QStringList(2, u"xold\n"_s));
    }
}

void RecoveryTest::discardingAsks_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("left");
    QTest::newRow("Delete") << u"Delete"_s << 0;
    QTest::newRow("Cancel") << u"Cancel"_s << 2;
    QTest::newRow("Escape") << u"Escape"_s << 2;
}

void RecoveryTest::discardingAsks()
{
    QFETCH(QString, answer);
    QFETCH(int, left);
    leaveBehind({ u"a.txt"_s, QString() });
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    const MessageBoxes boxes({ answer });
    const InList discarding([](frmRecovery &form) {
        press(form, u"Discard"_s);
        if (form.isVisible())
            form.reject();
    });
    QVERIFY(StripInWindow(window).click(u"Restore"_s));
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.shown().first().defaultButton, u"Cancel"_s);
    QVERIFY(boxes.shown().first().text.contains(u"2 "_s));
    QCOMPARE(UnsavedTexts::leftBehind().size(), left);
    QCOMPARE(m_files->read(u"a.txt"_s), QByteArray("old\r\n"));
}

void RecoveryTest::nothingChosenIsNothingToDo()
{
    const UnsavedText text{ u"a.txt"_s, u"/folder/"_s, QDateTime::currentDateTime(), 1234567 };
    frmRecovery form(nullptr, { text, text });
    QCOMPARE(form.chosen(), (QList<int>{ 0, 1 }));
    const auto enabled = [&form] {
        int count = 0;
        for (const QPushButton *button : form.findChildren<QPushButton *>())
            count += button->isEnabled() ? 1 : 0;
        return count;
    };
    QCOMPARE(enabled(), 3);
    listOf(form).item(0)->setCheckState(Qt::Unchecked);
    QCOMPARE(form.chosen(), QList<int>{ 1 });
    listOf(form).item(1)->setCheckState(Qt::Unchecked);
    QCOMPARE(enabled(), 1);
    listOf(form).item(1)->setCheckState(Qt::Checked);
    QCOMPARE(enabled(), 3);
}

void RecoveryTest::listTells()
{
    const QDateTime time(QDate(2026, 3, 4), QTime(5, 6, 7));
    frmRecovery form(nullptr, { { u"a.txt"_s, u"/folder/"_s, time, 1234567 }, { u"(new)"_s, {}, time, 1 } });
    QCOMPARE(listOf(form).item(0)->text(), u"a.txt\n/folder/\n2026/03/04 05:06:07\nCharacters: 1,234,567"_s);
    QCOMPARE(listOf(form).item(1)->text().section(u'\n', 1, 1), u"never saved"_s);
}

void RecoveryTest::unwritableFolderIsTold()
{
    const QString folder = UnsavedTexts::folder().chopped(1);
    QVERIFY(QDir().mkpath(QFileInfo(folder).path()));
    QFile inTheWay(folder);
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    const StripInWindow strip(window);
    QTRY_VERIFY(strip.text().startsWith(u"Recovery is off: "_s));
    QVERIFY(inTheWay.remove());
    QVERIFY(strip.click(u"Try again"_s));
    QTRY_VERIFY(!strip.isShown());
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"x"_s });
}

REGISTER_TEST(runStayingTest<RecoveryTest>)
#include "recovery_test.moc"
