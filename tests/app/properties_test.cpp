#include "tests/app/stripinwindow.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <QAction>
#include <QTimer>

using namespace Qt::StringLiterals;

/// The properties box.
class PropertiesTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void newDocument();
    void file_data();
    void file();
    void unsavedEditsCount();
    void wrappedRowsAreOne();
    void belongsToTheWindow();
    void nothingWithoutDocument();
    void longTextIsCountedBehindTheWindow();
    void countingEnds_data();
    void countingEnds();
};

namespace {

constexpr int allCountSteps = 2; ///< of counting the long text

QString textToCount()
{
    return u"a line of a long text\n"_s.repeated(150'000);
}

enum class Leaving { Stop, Edit, NewText, OtherTab, Close };

} // namespace

void PropertiesTest::init()
{
    resetSettings();
}

void PropertiesTest::newDocument()
{
    TestWindow window;
    QVERIFY(window.open());
    MessageBoxes boxes;
    window.item(FileCommand::Properties)->trigger();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.shown().at(0).title, u"Document properties"_s);
    QCOMPARE(boxes.shown().at(0).buttons, QStringList{ u"OK"_s });
    QCOMPARE(boxes.shown().at(0).icon, QMessageBox::Information);
    QCOMPARE(boxes.shown().at(0).text,
        u"Path : \nName : (new document)\n\nChar code  : Shift-JIS\nReturn code: CR+LF\n"
        "File size  : 0 KB (0 byte)\n\nChar count : 0\nRow count  : 1"_s);
}

void PropertiesTest::file_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");
    QTest::newRow("Shift-JIS CR+LF")
        << QByteArray("abc\r\n\x8A\xBF")
        << u"Char code  : Shift-JIS\nReturn code: CR+LF\nFile size  : 1 KB (7 byte)\n\n"
           "Char count : 4\nRow count  : 2"_s;
    QTest::newRow("UTF-8 LF") << QByteArray("abc\n\xE6\xBC\xA2")
                              << u"Char code  : UTF8\nReturn code: LF\nFile size  : 1 KB (7 byte)\n\n"
                                 "Char count : 4\nRow count  : 2"_s;
    QTest::newRow("UTF-16, two kanji") << QByteArray("\xFF\xFE\x22\x6F\x57\x5B")
                                       << u"Char code  : Unicode\nReturn code: CR+LF\nFile size  : 1 KB "
                                          "(4 byte)\n\nChar count : 2\nRow count  : 1"_s;
    QTest::newRow("half-width katakana and one beyond them")
        << QByteArray("\xA1\xDE\xDF\x81\x40\xA1\xDE\r\n")
        << u"Char code  : Shift-JIS\nReturn code: CR+LF\nFile size  : 1 KB (10 byte)\n\n"
           "Char count : 6\nRow count  : 2"_s;
    QTest::newRow("a million characters in a thousand and one rows")
        << (QByteArray(1000, 'a') + "\r\n").repeated(1000)
        << u"Char code  : UTF8\nReturn code: CR+LF\nFile size  : 979 KB (1,002,000 byte)\n\n"
           "Char count : 1,000,000\nRow count  : 1,001"_s;
    QTest::newRow("1024 bytes") << QByteArray(1024, 'a')
                                << u"Char code  : Shift-JIS\nReturn code: CR+LF\n"
                                   "File size  : 1 KB (1,024 byte)\n\nChar count : 1,024\nRow count  : 1"_s;
    QTest::newRow("1025 bytes") << QByteArray(1025, 'a')
                                << u"Char code  : Shift-JIS\nReturn code: CR+LF\n"
                                   "File size  : 2 KB (1,025 byte)\n\nChar count : 1,025\nRow count  : 1"_s;
}

void PropertiesTest::file()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, text);
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"%1 & %3.txt"_s, content));
    MessageBoxes boxes;
    window.slotCmdFileProp();
    QCOMPARE(boxes.shown().at(0).text, u"Path : "_s + files.folder() + u"\nName : %1 & %3.txt\n\n"_s + text);
    QCOMPARE(boxes.shown().at(0).format, Qt::PlainText);
}

void PropertiesTest::unsavedEditsCount()
{
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"ab"_s);
    MessageBoxes boxes;
    window.slotCmdFileProp();
    QVERIFY(boxes.shown().at(0).text.endsWith(u"1 KB (2 byte)\n\nChar count : 2\nRow count  : 1"_s));
}

/// Rows are logical lines, however narrow the window.
void PropertiesTest::wrappedRowsAreOne()
{
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 10;
    writeSettings();
    TestWindow window;
    QVERIFY(window.open());
    window.currentEditor()->setText(QString(100, u'x'));
    QCOMPARE(window.currentEditor()->numLines(), 10);
    MessageBoxes boxes;
    window.slotCmdFileProp();
    QVERIFY(boxes.shown().at(0).text.endsWith(u"Char count : 100\nRow count  : 1"_s));
    window.currentEditor()->setEdited(false);
}

void PropertiesTest::belongsToTheWindow()
{
    TestWindow window;
    QVERIFY(window.open());
    QWidget *parent = nullptr;
    QTimer::singleShot(0, &window, [&parent] {
        QWidget *box = QApplication::activeModalWidget();
        parent = box->parentWidget();
        box->close();
    });
    window.slotCmdFileProp();
    QCOMPARE(parent, &window);
}

void PropertiesTest::nothingWithoutDocument()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    MessageBoxes boxes;
    window.slotCmdFileProp();
    QCOMPARE(boxes.count(), 0);
}

void PropertiesTest::longTextIsCountedBehindTheWindow()
{
    auto steps = std::make_unique<SteppedRunner>();
    SteppedRunner &runner = *steps;
    TestWindow window({ std::move(steps), 1'000'000 });
    QVERIFY(window.open());
    window.currentEditor()->setText(textToCount());
    MessageBoxes boxes;
    window.slotCmdFileProp();
    QCOMPARE(boxes.count(), 0);
    window.slotCmdFileProp(); // is told to wait
    runner.step();
    QCOMPARE(boxes.count(), 0);
    runner.runAll();
    QCOMPARE(boxes.count(), 1);
    QVERIFY(boxes.shown().at(0).text.endsWith(u"Char count : 3,150,000\nRow count  : 150,001"_s));
    window.slotCmdFileProp();
    QCOMPARE(runner.runAll(), allCountSteps);
    QCOMPARE(boxes.count(), 2);
    window.currentEditor()->setEdited(false);
}

void PropertiesTest::countingEnds_data()
{
    QTest::addColumn<Leaving>("how");
    QTest::addColumn<int>("steps");
    const auto rows = [](const char *name, Leaving how) {
        for (int steps = 0; steps < allCountSteps; ++steps)
            QTest::addRow("%s after %d", name, steps) << how << steps;
    };
    rows("stopped", Leaving::Stop);
    rows("edited", Leaving::Edit);
    rows("another text", Leaving::NewText);
    rows("another tab", Leaving::OtherTab);
    rows("closed", Leaving::Close);
}

void PropertiesTest::countingEnds()
{
    QFETCH(Leaving, how);
    QFETCH(int, steps);
    auto owned = std::make_unique<SteppedRunner>();
    SteppedRunner &runner = *owned;
    TestWindow window({ std::move(owned), 1'000'000 });
    QVERIFY(window.open());
    ctlEditer *const editor = window.currentEditor();
    editor->setText(textToCount());
    MessageBoxes boxes;
    window.slotCmdFileProp();
    for (int step = 0; step < steps; ++step)
        runner.step();
    editor->setEdited(false);
    switch (how) {
    case Leaving::Stop:
        QTRY_VERIFY(StripInWindow(window).click(u"Stop"_s));
        break;
    case Leaving::Edit:
        editor->insert(u"x"_s);
        break;
    case Leaving::NewText:
        editor->setText(textToCount());
        break;
    case Leaving::OtherTab:
        window.slotCmdFileNew();
        break;
    case Leaving::Close:
        window.slotCmdFileCloseTab();
        break;
    }
    runner.runAll();
    settle();
    QCOMPARE(boxes.count(), 0);
}

REGISTER_TEST(runWindowTest<PropertiesTest>)
#include "properties_test.moc"
