#include "tests/app/testwindow.h"

using namespace Qt::StringLiterals;

/// File names of any characters, in every place that shows them.
class FileNamesTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void namesAreShownAsTheyAre_data();
    void namesAreShownAsTheyAre();
};

void FileNamesTest::init()
{
    resetSettings();
}

void FileNamesTest::namesAreShownAsTheyAre_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("ampersand") << u"a&b&&c.txt"_s;
    QTest::newRow("mark-up") << u"<b>x.txt"_s;
    QTest::newRow("percent") << u"%1 %2.txt"_s;
    QTest::newRow("Japanese") << u"日本語.txt"_s;
}

void FileNamesTest::namesAreShownAsTheyAre()
{
    QFETCH(QString, name);
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(name, "text"));
    QString tab = window.tabTexts().at(1);
    QCOMPARE(tab.replace(u"&&"_s, u"&"_s), name);
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    MessageBoxes boxes({ u"Cancel"_s, u"No"_s });
    window.slotCmdFileCloseTab();
    QCOMPARE(
        boxes.shown().at(0).text, u"\""_s + name + u"\" is edited.\n Would you want to save this file?"_s);
    QCOMPARE(boxes.shown().at(0).format, Qt::PlainText);
    window.slotCmdFileCloseTab();
    QString entry = window.recentMenu()->actions().at(0)->text();
    QCOMPARE(entry.replace(u"&&"_s, u"&"_s), files.folder() + name);
}

QTEST_MAIN(FileNamesTest)
#include "filenames_test.moc"
