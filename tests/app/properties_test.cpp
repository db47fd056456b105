#include "tests/app/testwindow.h"

#include <QAction>

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
    void nothingWithoutDocument();
};

void PropertiesTest::init()
{
    resetSettings();
}

void PropertiesTest::newDocument()
{
    TestWindow window;
    QVERIFY(window.open());
    MessageBoxes boxes;
    window.item(MenuId::File, 4)->trigger();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.shown().at(0).title, u"Document properties"_s);
    QCOMPARE(boxes.shown().at(0).buttons.size(), 1);
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

void PropertiesTest::nothingWithoutDocument()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    MessageBoxes boxes;
    window.slotCmdFileProp();
    QCOMPARE(boxes.count(), 0);
}

QTEST_MAIN(PropertiesTest)
#include "properties_test.moc"
