#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace {

/// Puts a file that is not there into a row of the table.
void rememberGone(const TestFiles &files, int row, int cursorRow = 12)
{
    recentFiles().entries[size_t(row)] = { files.folder(), u"gone.txt"_s, cursorRow, 3, 40, 50 };
    writeSettings();
}

} // namespace

/// The remembered place of a file that cannot be read, until it can.
class CarriedPlaceTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void unreadFileKeepsItsPlace_data();
    void unreadFileKeepsItsPlace();
    void placeIsCarriedThroughAFullTable();
    void placeComesBackWithTheFile();
    void savedDocumentHasAPlaceOfItsOwn();
};

void CarriedPlaceTest::init()
{
    resetSettings();
}

void CarriedPlaceTest::unreadFileKeepsItsPlace_data()
{
    using Way = std::function<void(TestWindow &, const QString &)>;
    QTest::addColumn<Way>("open");
    QTest::addColumn<int>("restoreScroll");
    const Way fresh = [](TestWindow &window, const QString &) { window.slotCmdMnuRecent(0); };
    const Way tab = [](TestWindow &window, const QString &name) { window.setDocument(name); };
    QTest::newRow("in a fresh document") << fresh << 1;
    QTest::newRow("in a tab of its own") << tab << 1;
    QTest::newRow("places are not restored") << tab << 0;
    QTest::newRow("reloaded in vain") << Way([](TestWindow &window, const QString &name) {
        window.setDocument(name);
        window.slotCmdFileReload();
    }) << 1;
}

void CarriedPlaceTest::unreadFileKeepsItsPlace()
{
    using Way = std::function<void(TestWindow &, const QString &)>;
    QFETCH(Way, open);
    QFETCH(int, restoreScroll);
    appSettings().RestoreScroll = restoreScroll;
    const TestFiles files;
    rememberGone(files, 0);
    TestWindow window;
    QVERIFY(window.open());
    const MessageBoxes boxes;
    open(window, files.folder() + u"gone.txt"_s);
    QVERIFY(boxes.count() > 0);
    window.slotCmdFileCloseTab();
    const RecentEntry &entry = recentFiles().entries[0];
    QCOMPARE(entry.name, u"gone.txt"_s);
    QCOMPARE(entry.cursorRow, 12);
    QCOMPARE(entry.cursorColumn, 3);
    QCOMPARE(entry.scrollX, 40);
    QCOMPARE(entry.scrollY, 50);
}

void CarriedPlaceTest::placeIsCarriedThroughAFullTable()
{
    const TestFiles files;
    for (int i = 0; i < recentEntryCount; ++i)
        recentFiles().entries[size_t(i)] = { u"/nowhere/"_s, u"old"_s + QString::number(i), i, i, i, i };
    rememberGone(files, 19);
    TestWindow window;
    QVERIFY(window.open());
    const MessageBoxes boxes;
    window.setDocument(files.folder() + u"gone.txt"_s);
    ctlEditer *const unread = window.currentEditor();
    window.setDocument(files.write(u"other.txt"_s, "text"));
    window.slotCmdFileCloseTab();
    QVERIFY(recentFiles().entries[19].name != u"gone.txt"_s);
    window.tabBar()->setCurrentTab(unread);
    window.slotCmdFileCloseTab();
    QCOMPARE(recentFiles().entries[0].name, u"gone.txt"_s);
    QCOMPARE(recentFiles().entries[0].cursorRow, 12);
}

/// A memory card is put in again.
void CarriedPlaceTest::placeComesBackWithTheFile()
{
    const TestFiles files;
    rememberGone(files, 0, 2);
    TestWindow window;
    QVERIFY(window.open());
    const MessageBoxes boxes;
    window.setDocument(files.folder() + u"gone.txt"_s);
    files.write(u"gone.txt"_s, "first\nsecond\nthird");
    window.slotCmdFileReload();
    QCOMPARE(window.currentEditor()->cursorPosition(), (RowCol{ RowIndex(2), 3 }));
    window.currentEditor()->setCursorPosition(1, 1);
    window.slotCmdFileCloseTab();
    QCOMPARE(recentFiles().entries[0].cursorRow, 1);
}

void CarriedPlaceTest::savedDocumentHasAPlaceOfItsOwn()
{
    const TestFiles files;
    rememberGone(files, 0);
    TestWindow window;
    QVERIFY(window.open());
    const MessageBoxes boxes;
    window.setDocument(files.folder() + u"gone.txt"_s);
    QTest::keyClicks(window.currentEditor(), u"text"_s);
    window.slotCmdFileSave();
    window.slotCmdFileCloseTab();
    QCOMPARE(files.read(u"gone.txt"_s), QByteArray("text"));
    QCOMPARE(recentFiles().entries[0].cursorRow, 0);
    QCOMPARE(recentFiles().entries[0].cursorColumn, 4);
}

REGISTER_TEST(runWindowTest<CarriedPlaceTest>)
#include "carriedplace_test.moc"
