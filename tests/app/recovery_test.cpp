#include "app/frmrecovery.h"
#include "recovery/recoveryjournals.h"
#include "tests/app/stayingapplication.h"
#include "tests/app/stripinwindow.h"
#include "tests/app/testwindow.h"
#include "tests/app/unsavedtexts.h"
#include "tests/testprogram.h"

#include <QListWidget>
#include <QPushButton>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Acts in the list of unsaved texts when it is shown.
class InList : public QObject {
public:
    explicit InList(std::function<void(frmRecovery &)> action)
        : m_action(std::move(action))
    {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *form = qobject_cast<frmRecovery *>(object);
        if (form && event->type() == QEvent::Show)
            QTimer::singleShot(0, form, [this, form] { m_action(*form); });
        return false;
    }

private:
    std::function<void(frmRecovery &)> m_action;
};

QListWidget &listOf(frmRecovery &form)
{
    return *form.findChild<QListWidget *>();
}

void press(frmRecovery &form, const QString &text)
{
    for (QPushButton *button : form.findChildren<QPushButton *>()) {
        if (button->text() == text)
            button->click();
    }
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
            document.load(folder, name, {}, {});
        document.replace(Offset(0), 0, text);
    }
    bool isWritten() { return m_journals.flush(10s); }

private:
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
    void missingPartsAreTold();
    void documentOfTheFileIsTaken();
    void chosenOnesAreRestored();
    void listStaysWhatItIsWhileItIsShown();
    void laterKeepsAll_data();
    void laterKeepsAll();
    void discardingAsks_data();
    void discardingAsks();
    void nothingChosenIsNothingToDo();
    void listTells();
    void closingEndsTheJournal();
    void savingEndsTheJournal();
    void everyEditIsKept();
    void substitutedTextIsKeptUntilItIsSeen_data();
    void substitutedTextIsKeptUntilItIsSeen();
    void textOfADeletedFileIsKept();
    void textOfADeletedFileIsKeptWhileItIsOpen();
    void textOfADeletedFileIsKeptAtASuddenEnd();
    void detachedTextComesBackAsSuch();
    void textThatIsElsewhereIsNotKept();
    void unwritableFolderIsTold();

private:
    /// "x" in front of each.
    void leaveBehind(const QStringList &names);
    bool restore(TestWindow &window);

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

/// All that there is.
bool RecoveryTest::restore(TestWindow &window)
{
    const InList restoring([](frmRecovery &form) { press(form, u"Restore"_s); });
    return StripInWindow(window).click(u"Restore"_s);
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
    QVERIFY(restore(window));
    QCOMPARE(window.currentEditor()->text(), u"xold\n"_s);
}

void RecoveryTest::restores()
{
    leaveBehind({ u"a.txt"_s });
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restore(window));
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
    QVERIFY(restore(window));
    QVERIFY(placeIn(*window.currentEditor()) == place);
}

void RecoveryTest::restoresNewDocuments()
{
    leaveBehind({ QString(), QString() });
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restore(window));
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
    QVERIFY(restore(window));
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
    QVERIFY(restore(window));
    QCOMPARE(window.currentEditor()->text(), u"xold\n"_s);
    QCOMPARE(StripInWindow(window).text(), u"The file is gone; this text is in no file yet"_s);
    QCOMPARE(StripInWindow(window).offers(), QStringList());
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
    QVERIFY(restore(window));
    QVERIFY(window.currentEditor()->text().startsWith(u"x"_s));
    QVERIFY(window.currentEditor()->text().endsWith(u"\n[...]\n"_s));
    QCOMPARE(StripInWindow(window).text(), u"Parts are missing; a line with dots stands for each"_s);
}

void RecoveryTest::documentOfTheFileIsTaken()
{
    leaveBehind({ u"a.txt"_s });
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(m_files->folder() + u"a.txt"_s);
    window.slotCmdFileNew();
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restore(window));
    QCOMPARE(window.tabBar()->count(), 3);
    QCOMPARE(window.currentEditor()->text(), u"xold\n"_s);
    QCOMPARE(window.currentEditor()->name(), u"a.txt"_s);
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
        isFound = QTest::qWaitFor([&strip] { return strip.text() == u"2 documents were not saved"_s; });
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
    QCOMPARE(listOf(form).item(0)->text(), u"a.txt\n/folder/\n2026/03/04 05:06:07  Characters: 1,234,567"_s);
    QCOMPARE(listOf(form).item(1)->text().section(u'\n', 1, 1), u"never saved"_s);
}

void RecoveryTest::closingEndsTheJournal()
{
    TestWindow window;
    QVERIFY(openModified(window, *m_files, { u"a.txt"_s, u"b.txt"_s }));
    QTRY_COMPARE(UnsavedTexts::now(), QStringList(2, u"xold"_s));
    const MessageBoxes boxes({ u"No"_s, u"No"_s });
    window.slotCmdFileCloseTab();
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"xold"_s });
    window.close();
    QCOMPARE(UnsavedTexts::now(), QStringList());
}

void RecoveryTest::savingEndsTheJournal()
{
    TestWindow window;
    QVERIFY(openModified(window, *m_files, { u"a.txt"_s }));
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"xold"_s });
    window.slotCmdFileSave();
    QTRY_COMPARE(UnsavedTexts::now(), QStringList());
    QTest::keyClicks(window.currentEditor(), u"y"_s);
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"xyold"_s });
    window.slotCmdEditUndo();
    QTRY_COMPARE(UnsavedTexts::now(), QStringList());
}

void RecoveryTest::everyEditIsKept()
{
    TestWindow window;
    QVERIFY(openModified(window, *m_files, { u"a.txt"_s }));
    window.slotCmdFileNew();
    QTest::keyClicks(window.currentEditor(), u"new"_s);
    QTRY_COMPARE(UnsavedTexts::now(), (QStringList{ u"new"_s, u"xold"_s }));
    static_cast<QPEApplication *>(qApp)->endAtOnce();
    QCOMPARE(UnsavedTexts::now(), (QStringList{ u"new"_s, u"xold"_s }));
}

void RecoveryTest::substitutedTextIsKeptUntilItIsSeen_data()
{
    QTest::addColumn<bool>("isDismissed");
    QTest::newRow("not seen") << false;
    QTest::newRow("dismissed") << true;
}

/// What is in the file then is not what was in the window.
void RecoveryTest::substitutedTextIsKeptUntilItIsSeen()
{
    QFETCH(bool, isDismissed);
    const QString name = m_files->write(u"a.txt"_s, "\x93\xFA\x96\x7B\x8C\xEA\r\n");
    {
        TestWindow window;
        QVERIFY(window.open());
        window.setDocument(name);
        window.currentEditor()->insert(u"5 €, "_s);
        window.slotCmdFileSave();
        QCOMPARE(m_files->read(u"a.txt"_s), QByteArray("5 ?, \x93\xFA\x96\x7B\x8C\xEA\r\n"));
        const StripInWindow strip(window);
        QTRY_COMPARE(strip.text(), u"Characters saved as \"?\": 1 (€)"_s);
        QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"5 €, 日本語\n"_s });
        if (isDismissed) {
            QVERIFY(strip.click(u"×"_s));
            QTRY_COMPARE(UnsavedTexts::now(), QStringList());
        }
    }
    QCOMPARE(UnsavedTexts::leftBehind().isEmpty(), isDismissed);
    if (isDismissed)
        return;
    TestWindow window;
    QVERIFY(window.open());
    QTRY_COMPARE(StripInWindow(window).text(), u"1 document was not saved"_s);
    QVERIFY(restore(window));
    QCOMPARE(window.currentEditor()->text(), u"5 €, 日本語\n"_s);
    QVERIFY(window.currentEditor()->path().isEmpty());
    QVERIFY(window.currentEditor()->edited());
}

void RecoveryTest::textOfADeletedFileIsKept()
{
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(m_files->write(u"a.txt"_s, "old\r\n"));
    QVERIFY(QFile::remove(m_files->folder() + u"a.txt"_s));
    {
        const MessageBoxes boxes;
        window.slotCmdFileCloseTab();
        QCOMPARE(boxes.count(), 0);
    }
    QTRY_COMPARE(StripInWindow(window).text(), u"1 document was not saved"_s);
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList{ u"old\n"_s });
    QVERIFY(restore(window));
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
    QCOMPARE(window.currentEditor()->text(), u"old\n"_s);
    QCOMPARE(window.currentEditor()->path(), QString());
    window.slotCmdViewLangFr();
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
    window.slotCmdViewLangEn();
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"old\n"_s });
}

/// The program may be killed before its user closes the document.
void RecoveryTest::textOfADeletedFileIsKeptWhileItIsOpen()
{
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(m_files->write(u"a.txt"_s, "old\n"));
    QVERIFY(QFile::remove(m_files->folder() + u"a.txt"_s));
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"old\n"_s });
    const StripInWindow strip(window);
    QVERIFY(strip.click(u"Keep mine"_s));
    window.slotCmdFileNew();
    window.slotCmdViewWinPrev();
    window.currentEditor()->insert(u"x"_s);
    window.currentEditor()->undo();
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"old\n"_s });
    m_files->write(u"a.txt"_s, "old\n");
    QTRY_COMPARE(UnsavedTexts::now(), QStringList());
}

/// Nobody has looked at the one that is not shown.
void RecoveryTest::textOfADeletedFileIsKeptAtASuddenEnd()
{
    TestWindow window;
    QVERIFY(window.open());
    for (const QString &name : { u"a.txt"_s, u"b.txt"_s })
        window.setDocument(m_files->write(name, "old\n"));
    QVERIFY(QFile::remove(m_files->folder() + u"a.txt"_s));
    static_cast<QPEApplication *>(qApp)->endAtOnce();
    QCOMPARE(UnsavedTexts::now(), QStringList{ u"old\n"_s });
}

/// What "Show both" opens is that of no file, also after the program was killed.
void RecoveryTest::detachedTextComesBackAsSuch()
{
    {
        TestWindow window;
        QVERIFY(window.open());
        window.setDocument(m_files->write(u"a.txt"_s, "old\n"));
        m_files->write(u"a.txt"_s, "new\n");
        const StripInWindow strip(window);
        QTRY_VERIFY(strip.isShown());
        QVERIFY(strip.click(u"Show both"_s));
        QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"new\n"_s });
        QTest::keyClicks(window.currentEditor(), u"x"_s);
        QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"xnew\n"_s });
    }
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restore(window));
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt on disk"_s });
    QCOMPARE(window.currentEditor()->path(), QString());
    QCOMPARE(window.currentEditor()->text(), u"xnew\n"_s);
    QVERIFY(!StripInWindow(window).isShown());
}

void RecoveryTest::textThatIsElsewhereIsNotKept()
{
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(m_files->write(u"a.txt"_s, "old"));
    window.slotCmdFileCloseTab();
    window.setDocument(m_files->write(u"empty.txt"_s, ""));
    QVERIFY(QFile::remove(m_files->folder() + u"empty.txt"_s));
    window.slotCmdFileCloseTab();
    window.setDocument(m_files->write(u"b.txt"_s, "old"));
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    QVERIFY(QFile::remove(m_files->folder() + u"b.txt"_s));
    const MessageBoxes boxes({ u"No"_s });
    window.slotCmdFileCloseTab();
    window.close();
    QCOMPARE(UnsavedTexts::now(), QStringList());
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

namespace {

int runRecoveryTest(int argc, char **argv)
{
    StayingApplication application(argc, argv);
    RecoveryTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runRecoveryTest)

#include "recovery_test.moc"
