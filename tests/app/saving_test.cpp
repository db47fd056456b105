#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QAction>

using namespace Qt::StringLiterals;

using MakeTrouble = std::function<void(TestWindow &, const TestFiles &)>;

namespace {

/// Which document is shown, at the tab bar and in the window, when the user is asked for a name or told
/// something.
class Askings : public QObject {
public:
    explicit Askings(TestWindow &window)
        : m_window(window)
    {
        qApp->installEventFilter(this);
        window.whileChoosing = [this] { note(u"Save as"_s); };
    }
    QStringList titles() const { return m_titles; }
    QList<const ctlEditer *> documents() const { return m_documents; }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        const auto *box = qobject_cast<QMessageBox *>(object);
        if (box && event->type() == QEvent::Show)
            note(box->windowTitle());
        return false;
    }

private:
    void note(const QString &title)
    {
        const ctlTabBar *tabs = m_window.tabBar();
        const ctlEditer *shown = m_window.currentEditor();
        m_titles << title;
        m_documents << (tabs->editorOf(tabs->currentTab()) == shown ? shown : nullptr);
    }

    TestWindow &m_window;
    QStringList m_titles;
    QList<const ctlEditer *> m_documents;
};

} // namespace

/// Save, Save As and Save All: what is written, asked and shown.
class SavingTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void saveWritesTheDocument();
    void saveOfANewDocumentAsksForAName();
    void saveAsCancelledWritesNothing();
    void saveAsTakesNameAndCodes();
    void failedSaveLeavesItEdited();
    void failedSaveAsShowsTheCodesTaken();
    void failedSaveAsComesAgain_data();
    void failedSaveAsComesAgain();
    void binaryTextIsAskedForItsNameOnce();
    void missingDocumentsFolderIsMade();
    void documentsFolderBehindADeadLinkIsNotMade();
    void unreadFileIsKeptBeforeItIsWritten();

    void saveAllWritesModifiedOnes();
    void saveAllStopsAtTheFirstFailure();
    void saveAllStopsWhenCancelled();

    void asksInFrontOfTheDocument_data();
    void asksInFrontOfTheDocument();
    void saveAllGoesBackToTheDocument();
};

void SavingTest::init()
{
    resetSettings();
}

void SavingTest::saveWritesTheDocument()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, "one\r\n"));
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    QCOMPARE(window.tabTexts().at(1), u"* a.txt"_s);
    MessageBoxes boxes;
    window.item(FileCommand::Save)->trigger();
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("xone\r\n"));
    QCOMPARE(window.tabTexts().at(1), u"a.txt"_s);
    QVERIFY(!window.currentEditor()->edited());
    QCOMPARE(window.editStates(), u"----"_s);
    QCOMPARE(boxes.count(), 0);
}

void SavingTest::saveOfANewDocumentAsksForAName()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.slotCmdFileSave();
    QCOMPARE(window.requests.size(), 1);
    QCOMPARE(window.requests.at(0).mode, frmFileDialog::SaveAs);
    QCOMPARE(window.requests.at(0).folder, QDir::homePath() + u"/Documents/"_s);
    QCOMPARE(window.requests.at(0).name, u".txt"_s);
    QCOMPARE(window.tabTexts(), QStringList{ u"* (new document)"_s });
    window.choices << FileChoice{ files.folder(), u"n.txt"_s, CharCode::Utf8, ReturnCode::Lf };
    window.slotCmdFileSave();
    QCOMPARE(files.read(u"n.txt"_s), QByteArray("x"));
    QCOMPARE(window.tabTexts(), QStringList{ u"n.txt"_s });
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT  [UTF8][LF]"_s);
}

void SavingTest::saveAsCancelledWritesNothing()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    QVERIFY(!window.slotCmdFileSaveAs(window.currentEditor()));
    QCOMPARE(window.requests.at(0).folder, files.folder());
    QCOMPARE(window.requests.at(0).name, u"a.txt"_s);
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("old"));
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
}

void SavingTest::saveAsTakesNameAndCodes()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, "\x82\xA0\r\n"));
    window.choices << FileChoice{ files.folder(), u"b.txt"_s, CharCode::Euc, ReturnCode::Cr };
    window.item(FileCommand::SaveAs)->trigger();
    QCOMPARE(files.read(u"b.txt"_s), QByteArray("\xA4\xA2\r"));
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("\x82\xA0\r\n"));
    QCOMPARE(window.currentEditor()->name(), u"b.txt"_s);
    QCOMPARE(window.tabTexts().at(1), u"b.txt"_s);
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT  [EUC][CR]"_s);
}

void SavingTest::failedSaveLeavesItEdited()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    breakSaving(window.currentEditor());
    MessageBoxes boxes;
    QVERIFY(!window.slotCmdFileSave(window.currentEditor()));
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
    QVERIFY(window.currentEditor()->edited());
}

void SavingTest::failedSaveAsShowsTheCodesTaken()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT  [Shift-JIS][CR+LF]"_s);
    window.choices << FileChoice{ files.folder() + u"missing/"_s, u"b.txt"_s, CharCode::Euc, ReturnCode::Lf };
    MessageBoxes boxes;
    window.slotCmdFileSaveAs();
    QCOMPARE(boxes.titles(), QStringList{ u"File Write Error"_s });
    QCOMPARE(window.requests.size(), 2);
    QCOMPARE(window.currentEditor()->charCodeName(), u"EUC"_s);
    QCOMPARE(window.windowTitle(), u"Marlo!Pad QT  [EUC][LF]"_s);
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
}

void SavingTest::failedSaveAsComesAgain_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("name");
    QTest::newRow("a folder") << QString() << u"sub"_s;
    QTest::newRow("this folder") << QString() << u"."_s;
    QTest::newRow("the folder above") << QString() << u".."_s;
    QTest::newRow("in a folder that is missing") << u"missing/"_s << u"b.txt"_s;
    QTest::newRow("in a folder that is a file") << u"file/"_s << u"b.txt"_s;
}

/// With all that was chosen, until it is cancelled or saved.
void SavingTest::failedSaveAsComesAgain()
{
    QFETCH(QString, folder);
    QFETCH(QString, name);
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    files.write(u"file"_s, {});
    QVERIFY(QDir(files.folder()).mkdir(u"sub"_s));
    folder = files.folder() + folder;
    window.choices << FileChoice{ folder, name, CharCode::Euc, ReturnCode::Lf }
                   << FileChoice{ folder, name, CharCode::Jis, ReturnCode::Cr }
                   << FileChoice{ files.folder(), u"c.txt"_s, CharCode::Utf8, ReturnCode::Lf };
    MessageBoxes boxes;
    QVERIFY(window.slotCmdFileSaveAs(window.currentEditor()));
    QCOMPARE(boxes.titles(), QStringList({ u"File Write Error"_s, u"File Write Error"_s }));
    QCOMPARE(window.requests.size(), 3);
    for (const TestWindow::Request &again : window.requests.sliced(1)) {
        QCOMPARE(again.folder, folder);
        QCOMPARE(again.name, name);
    }
    QCOMPARE(window.requests.at(1).charCode, std::optional(CharCode::Euc));
    QCOMPARE(window.requests.at(1).returnCode, std::optional(ReturnCode::Lf));
    QCOMPARE(window.requests.at(2).charCode, std::optional(CharCode::Jis));
    QCOMPARE(files.read(u"c.txt"_s), QByteArray("xold"));
    QVERIFY(QDir(files.folder() + u"sub"_s).isEmpty());
}

void SavingTest::binaryTextIsAskedForItsNameOnce()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.bin"_s, QByteArray("\0binary", 7)));
    QCOMPARE(window.currentEditor()->charCode(), int(CharCode::Binary));
    window.choices << FileChoice{ files.folder(), u"b.bin"_s };
    MessageBoxes boxes;
    QVERIFY(!window.slotCmdFileSaveAs(window.currentEditor()));
    QCOMPARE(boxes.texts(), QStringList{ u"Error|The binary file cannot be saved."_s });
    QCOMPARE(window.requests.size(), 1);
}

void SavingTest::missingDocumentsFolderIsMade()
{
    const QString documents = QDir::homePath() + u"/Documents"_s;
    QVERIFY(QDir(documents).removeRecursively());
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.slotCmdFileSave();
    QVERIFY(!QFile::exists(documents)); // it was cancelled
    window.choices << FileChoice{ documents + u'/', u"n.txt"_s };
    window.slotCmdFileSave();
    QVERIFY(QFile::exists(documents + u"/n.txt"_s));
    QCOMPARE(window.tabTexts(), QStringList{ u"n.txt"_s });
}

/// What a link leads to may be a disk that is not there now.
void SavingTest::documentsFolderBehindADeadLinkIsNotMade()
{
    const QString documents = QDir::homePath() + u"/Documents"_s;
    const QString elsewhere = QDir::homePath() + u"/not there"_s;
    QVERIFY(QDir(documents).removeRecursively());
    QVERIFY(QFile::link(elsewhere, documents));
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.choices << FileChoice{ documents + u'/', u"n.txt"_s };
    const MessageBoxes boxes;
    window.slotCmdFileSave();
    QCOMPARE(boxes.count(), 1);
    QVERIFY(!QFile::exists(elsewhere));
    QCOMPARE(window.currentEditor()->text(), u"x"_s);
    QVERIFY(window.currentEditor()->edited());
    QVERIFY(QFile::remove(documents));
}

/// The tab of a file that could not be read has its name; what it writes there replaces what nobody has seen.
void SavingTest::unreadFileIsKeptBeforeItIsWritten()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    MessageBoxes boxes;
    window.setDocument(files.folder() + u"a.txt"_s);
    QCOMPARE(boxes.titles(), QStringList{ u"File Load Error!"_s });
    files.write(u"a.txt"_s, "unread");
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.item(FileCommand::Save)->trigger();
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("x"));
    QCOMPARE(boxes.titles().value(1), u"Confirm File Save"_s);
    QFile kept(boxes.shown().at(1).text.section(u'\n', 1));
    QVERIFY2(kept.fileName().startsWith(qEnvironmentVariable("XDG_STATE_HOME")), qPrintable(kept.fileName()));
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), QByteArray("unread"));
    window.item(FileCommand::Save)->trigger();
    QCOMPARE(boxes.count(), 2);
}

void SavingTest::saveAllWritesModifiedOnes()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s, u"c.txt"_s }));
    window.tabBar()->setCurrentTab(window.editorAt(1));
    QVERIFY(window.slotCmdFileSave(window.editorAt(1)));
    files.write(u"b.txt"_s, "changed by others");
    window.item(FileCommand::SaveAll)->trigger();
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("xold"));
    QCOMPARE(files.read(u"b.txt"_s), QByteArray("changed by others"));
    QCOMPARE(files.read(u"c.txt"_s), QByteArray("xold"));
    QCOMPARE(window.tabTexts(), QStringList({ u"a.txt"_s, u"b.txt"_s, u"c.txt"_s }));
    QCOMPARE(window.currentEditor(), window.editorAt(1));
}

void SavingTest::saveAllStopsAtTheFirstFailure()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s, u"c.txt"_s }));
    breakSaving(window.editorAt(1));
    MessageBoxes boxes;
    window.slotCmdFileSaveAll();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("xold"));
    QCOMPARE(files.read(u"c.txt"_s), QByteArray("old"));
    QCOMPARE(window.tabTexts(), QStringList({ u"a.txt"_s, u"* b.txt"_s, u"* c.txt"_s }));
}

void SavingTest::saveAllStopsWhenCancelled()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.setDocument(files.write(u"a.txt"_s, "old"));
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.slotCmdFileSaveAll();
    QCOMPARE(window.requests.size(), 1);
    QCOMPARE(files.read(u"a.txt"_s), QByteArray("old"));
}

void SavingTest::asksInFrontOfTheDocument_data()
{
    QTest::addColumn<FileCommand>("item");
    QTest::addColumn<MakeTrouble>("makeTrouble");
    QTest::addColumn<QString>("asked");
    const auto rows = [](const char *name, const QString &asked, const MakeTrouble &makeTrouble) {
        QTest::addRow("Save All, %s", name) << FileCommand::SaveAll << makeTrouble << asked;
        QTest::addRow("Quit with Save, %s", name) << FileCommand::QuitWithSave << makeTrouble << asked;
    };
    rows("never saved", u"Save as"_s, [](TestWindow &window, const TestFiles &) { window.slotCmdFileNew(); });
    rows("cannot be written", u"File Write Error"_s, [](TestWindow &window, const TestFiles &files) {
        window.setDocument(files.write(u"c.txt"_s, "old"));
        breakSaving(window.currentEditor());
    });
    rows("binary", u"Error"_s, [](TestWindow &window, const TestFiles &files) {
        window.setDocument(files.write(u"c.txt"_s, QByteArray("\1\0", 2)));
    });
}

/// Whoever is asked or told about one of many documents sees which it is.
void SavingTest::asksInFrontOfTheDocument()
{
    QFETCH(FileCommand, item);
    QFETCH(MakeTrouble, makeTrouble);
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    makeTrouble(window, files);
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    const ctlEditer *const troubled = window.currentEditor();
    window.tabBar()->setCurrentTab(window.editorAt(0));

    const Askings askings(window);
    MessageBoxes boxes;
    window.item(item)->trigger();
    QTEST(askings.titles().join(u", "_s), "asked");
    QCOMPARE(askings.documents(), QList<const ctlEditer *>{ troubled });
    QCOMPARE(window.currentEditor(), troubled);
    QVERIFY(window.isVisible());
}

void SavingTest::saveAllGoesBackToTheDocument()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    window.slotCmdFileNew();
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.tabBar()->setCurrentTab(window.editorAt(0));
    window.choices << FileChoice{ files.folder(), u"b.txt"_s };
    window.slotCmdFileSaveAll();
    QCOMPARE(window.tabTexts(), QStringList({ u"a.txt"_s, u"b.txt"_s }));
    QCOMPARE(window.currentEditor(), window.editorAt(0));
}

REGISTER_TEST(runWindowTest<SavingTest>)
#include "saving_test.moc"
