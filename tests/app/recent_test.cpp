#include "files/filename.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QAction>
#include <QFileInfo>
#include <QScreen>
#include <QScrollBar>

#include <cstdio>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Names of rows 0, 1, … up to the first unused one.
QStringList names()
{
    QStringList names;
    for (const RecentEntry &entry : recentFiles().entries) {
        if (!entry.isUsed())
            break;
        names << entry.name;
    }
    return names;
}

void fillTable(int rows)
{
    for (int i = 0; i < rows; ++i)
        recentFiles().entries[size_t(i)] = { u"/nowhere/"_s, u"old"_s + QString::number(i), i, i, i, i };
    writeSettings();
}

/// Puts a file into a row of the table, with the cursor behind its second character.
void remember(const QString &fileName, int row)
{
    const QFileInfo info(fileName);
    recentFiles().entries[size_t(row)] = { info.path() + u'/', info.fileName(), 0, 2, 0, 0 };
    writeSettings();
}

} // namespace

/// The recent-files table and its menu.
class RecentTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void menuShowsUsedRows_data();
    void menuShowsUsedRows();
    void everyRowCanBeSeen();
    void widePathStaysOnTheScreen();
    void newDocumentsAreNotRecorded();
    void closedFileGoesToTheTop_data();
    void closedFileGoesToTheTop();
    void closingRebuildsTheMenu();
    void closeAllRecordsEveryFile();
    void recordsPosition();
    void restoresPosition_data();
    void restoresPosition();
    void restoresAPlaceFarToTheRight();
    void restoresPositionWhenReadAgain();
    void reopenedViewIsTheSame_data();
    void reopenedViewIsTheSame();
    void undecodableNameIsReopened();
    void positionBeyondTheText_data();
    void positionBeyondTheText();
    void otherFontOrWrappingKeepsThePlaceWithin_data();
    void otherFontOrWrappingKeepsThePlaceWithin();
    void chosenEntryUsesAFreshDocument();
    void chosenEntryAddsATab();
    void chosenEntrySwitchesToAnOpenFile();
    void chosenEntryNeedsADocument();
    void chosenEntryOfNoRow();
};

void RecentTest::init()
{
    resetSettings();
}

void RecentTest::menuShowsUsedRows_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("rows");
    QTest::newRow("3 of many") << 3 << QStringList{ u"0"_s, u"2"_s };
    QTest::newRow("all 20") << 99 << QStringList{ u"0"_s, u"2"_s, u"5"_s, u"19"_s };
    QTest::newRow("0") << 0 << QStringList();
    QTest::newRow("-1") << -1 << QStringList();
}

void RecentTest::menuShowsUsedRows()
{
    QFETCH(QStringList, rows);
    QFETCH(int, count);
    recentFiles().RecentViewCnt = count;
    for (const size_t row : { 0U, 2U, 5U, 19U })
        recentFiles().entries[row] = { u"/folder/"_s, QString::number(row) };
    recentFiles().entries[1] = { QString(), u"no folder"_s };
    recentFiles().entries[3] = { u"/no name/"_s, QString() };
    writeSettings();
    TestWindow window;
    const QList<QAction *> actions = window.recentMenu()->actions();
    if (rows.isEmpty()) {
        QCOMPARE(actions.size(), 1);
        QCOMPARE(actions.at(0)->text(), u"(no item)"_s);
        QVERIFY(!actions.at(0)->isEnabled());
        return;
    }
    QCOMPARE(actions.size(), rows.size());
    for (qsizetype i = 0; i < rows.size(); ++i) {
        QCOMPARE(actions.at(i)->text(), u"/folder/"_s + rows.at(i));
        QCOMPARE(actions.at(i)->data().toInt(), rows.at(i).toInt());
        QVERIFY(actions.at(i)->isEnabled());
        QVERIFY(!actions.at(i)->icon().isNull());
    }
}

/// More files than the screen has room for: the menu goes to the one that is chosen.
void RecentTest::everyRowCanBeSeen()
{
    recentFiles().RecentViewCnt = recentEntryCount;
    fillTable(recentEntryCount);
    TestWindow window;
    QVERIFY(window.open());
    QMenu *menu = window.recentMenu();
    QFont font = menu->font();
    font.setPixelSize(window.screen()->availableGeometry().height() / 8);
    menu->setFont(font);
    menu->popup(QPoint());
    QVERIFY(QTest::qWaitForWindowExposed(menu));
    for (qsizetype row = 0; row < menu->actions().size(); ++row) {
        QTest::keyClick(menu, Qt::Key_Down);
        QCOMPARE(menu->activeAction(), menu->actions().at(row));
        const QRect place = menu->actionGeometry(menu->activeAction());
        QCOMPARE(place.left(), menu->actionGeometry(menu->actions().at(0)).left());
        QTRY_VERIFY(menu->rect().contains(place.center()));
    }
    menu->close();
}

/// Only what is seen of it is shortened.
void RecentTest::widePathStaysOnTheScreen()
{
    const TestFiles files;
    const QString name = files.write(QString(200, u'w') + u".txt"_s, "text");
    remember(name, 0);
    TestWindow window;
    QVERIFY(window.open());
    QMenu *menu = window.recentMenu();
    const QRect screen = window.screen()->geometry();
    menu->popup(screen.bottomRight());
    QVERIFY(screen.contains(menu->geometry()));
    QVERIFY(menu->rect().contains(menu->actionGeometry(menu->actions().at(0))));
    QCOMPARE(menu->actions().at(0)->text(), name);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    QCOMPARE(window.currentEditor()->path() + window.currentEditor()->name(), name);
}

void RecentTest::newDocumentsAreNotRecorded()
{
    fillTable(2);
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    QCOMPARE(names(), QStringList({ u"old0"_s, u"old1"_s }));
}

void RecentTest::closedFileGoesToTheTop_data()
{
    QTest::addColumn<int>("row"); // where the table of 20 has the file; -1: nowhere
    QTest::newRow("row 0 stays") << 0;
    QTest::newRow("row 5 moves up") << 5;
    QTest::newRow("row 18 moves up") << 18;
    QTest::newRow("row 19 is overwritten") << 19;
    QTest::newRow("unknown file drops the oldest") << -1;
}

void RecentTest::closedFileGoesToTheTop()
{
    QFETCH(int, row);
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "text");
    fillTable(20);
    QStringList expected = names();
    expected.removeAt(row < 0 ? 19 : row);
    expected.prepend(u"a.txt"_s);
    if (row >= 0)
        remember(name, row);
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    window.slotCmdFileCloseTab();
    QCOMPARE(names(), expected);
    QCOMPARE(recentFiles().entries[0].path, files.folder());
}

void RecentTest::closingRebuildsTheMenu()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    const QString name = files.write(u"a.txt"_s, "text");
    window.setDocument(name);
    QVERIFY(!window.recentMenu()->actions().at(0)->isEnabled());
    window.slotCmdFileCloseTab();
    QCOMPARE(window.recentMenu()->actions().size(), 1);
    QCOMPARE(window.recentMenu()->actions().at(0)->text(), name);
}

void RecentTest::closeAllRecordsEveryFile()
{
    const TestFiles files;
    {
        TestWindow window;
        QVERIFY(window.open());
        for (const auto *name : { "a.txt", "b.txt" })
            window.setDocument(files.write(QLatin1StringView(name), "text"));
        QVERIFY(window.close());
    }
    recentFiles() = {};
    readSettings();
    QCOMPARE(names(), QStringList({ u"a.txt"_s, u"b.txt"_s }));
}

void RecentTest::recordsPosition()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"a.txt"_s, QByteArray(500, 'w') + QByteArray("\nline").repeated(500)));
    ctlEditer *editor = window.currentEditor();
    editor->setCursorPosition(200, 3);
    editor->setXOffset(40);
    editor->setTopRow(RowIndex(190));
    const qint64 x = editor->xOffset();
    const qint64 y = editor->yOffset();
    QVERIFY(y > 0);
    window.slotCmdFileCloseTab();
    const RecentEntry &entry = recentFiles().entries[0];
    QCOMPARE(entry.cursorRow, 200);
    QCOMPARE(entry.cursorColumn, 3);
    QCOMPARE(entry.scrollX, x);
    QCOMPARE(entry.scrollY, y);
}

void RecentTest::restoresPosition_data()
{
    QTest::addColumn<int>("restore");
    QTest::newRow("0 starts at the top") << 0;
    QTest::newRow("1 restores") << 1;
    QTest::newRow("2 is not 1") << 2;
}

void RecentTest::restoresPosition()
{
    QFETCH(int, restore);
    appSettings().RestoreScroll = restore;
    writeSettings();
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, QByteArray("line\n").repeated(500));
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    window.currentEditor()->setCursorPosition(200, 3);
    window.currentEditor()->setTopRow(RowIndex(190));
    const qint64 y = window.currentEditor()->yOffset();
    window.slotCmdFileCloseTab();

    const std::function<void()> ways[] = { [&] { window.setDocument(name); },
        [&] { window.recentMenu()->actions().at(0)->trigger(); },
        [&] {
            window.choices << FileChoice{ files.folder(), u"a.txt"_s };
            window.slotCmdFileOpen();
        } };
    for (const auto &open : ways) {
        for (const bool hasFreshDocument : { true, false }) {
            window.slotCmdFileNew();
            if (!hasFreshDocument)
                QTest::keyClicks(window.currentEditor(), u"x"_s);
            open();
            const ctlEditer *editor = window.currentEditor();
            QCOMPARE(editor->name(), u"a.txt"_s);
            QCOMPARE(editor->cursorPosition().row, RowIndex(restore == 1 ? 200 : 0));
            QCOMPARE(editor->cursorPosition().column, restore == 1 ? 3 : 0);
            QCOMPARE(editor->yOffset(), restore == 1 ? y : 0);
            window.currentEditor()->setCursorPosition(200, 3);
            window.currentEditor()->setTopRow(RowIndex(190));
            window.slotCmdFileCloseTab();
        }
    }
}

void RecentTest::restoresAPlaceFarToTheRight()
{
    constexpr qint64 place = (1LL << 40) - 77;
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, QByteArray(1 << 20, '\t'));
    TestWindow window;
    QVERIFY(window.open());
    QMultiLineEdit::setDefaultTabStop(1 << 18);
    window.setDocument(name);
    window.currentEditor()->setXOffset(place);
    window.slotCmdFileCloseTab();
    QCOMPARE(recentFiles().entries[0].scrollX, place);
    window.setDocument(name);
    QCOMPARE(window.currentEditor()->xOffset(), place);
    QMultiLineEdit::setDefaultTabStop(appSettings().TabLen);
}

/// A file that is open and modified is opened and read again: the place is the remembered one, not the top.
void RecentTest::restoresPositionWhenReadAgain()
{
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "text");
    remember(name, 4);
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    QTest::keyClicks(window.currentEditor(), u"xyz"_s);
    MessageBoxes boxes({ u"Yes"_s });
    window.setDocument(name);
    QCOMPARE(boxes.titles(), QStringList{ u"Existing File"_s });
    QCOMPARE(window.currentEditor()->text(), u"text"_s);
    QCOMPARE(window.currentEditor()->cursorPosition().column, 2);
}

void RecentTest::reopenedViewIsTheSame_data()
{
    QTest::addColumn<int>("wrapMode");
    QTest::addColumn<qint64>("topRow");
    QTest::addColumn<int>("xOffset");
    QTest::addColumn<qint64>("cursorRow");
    for (const int wrapMode : { 0, 1, 2 }) {
        const auto row = [&](const char *title, qint64 topRow, int xOffset, qint64 cursorRow) {
            QTest::addRow("wrap mode %d, %s", wrapMode, title) << wrapMode << topRow << xOffset << cursorRow;
        };
        row("cursor in view", 100, 0, 105);
        row("cursor above the view", 100, 0, 3);
        row("cursor below the view", 100, 0, 290);
        row("moved to the side", 100, 57, 101);
        row("at the end", 10000, 0, 10000);
    }
}

void RecentTest::reopenedViewIsTheSame()
{
    QFETCH(int, wrapMode);
    QFETCH(qint64, topRow);
    QFETCH(int, xOffset);
    QFETCH(qint64, cursorRow);
    appSettings().WrapMode = wrapMode;
    writeSettings();
    const TestFiles files;
    QByteArray text;
    for (int line = 0; line < 300; ++line)
        text += QByteArray::number(line).repeated(line % 90) + "\r\n";
    const QString name = files.write(u"a.txt"_s, text);
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    ctlEditer *editor = window.currentEditor();
    editor->setCursorPosition(cursorRow, 1);
    editor->setTopRow(RowIndex(topRow));
    editor->setXOffset(xOffset);
    QCoreApplication::processEvents();
    const QImage before = editor->viewport()->grab().toImage();
    window.slotCmdFileCloseTab();
    window.setDocument(name);
    QCoreApplication::processEvents();
    QVERIFY(window.currentEditor()->viewport()->grab().toImage() == before);
    QVERIFY(window.close());

    TestWindow next;
    QVERIFY(next.open());
    next.setDocument(name);
    QCoreApplication::processEvents();
    QVERIFY(next.currentEditor()->viewport()->grab().toImage() == before);
}

/// A name in Shift-JIS, as old memory cards carry them, through the settings file and back.
void RecentTest::undecodableNameIsReopened()
{
    const TestFiles files;
    const QByteArray name = QFile::encodeName(files.folder()) + "\x93\xFA\x96\x7B.txt";
    const auto content = [&name] {
        const std::unique_ptr<FILE, int (*)(FILE *)> file(std::fopen(name.constData(), "rb"), std::fclose);
        QByteArray bytes(100, '\0');
        return file ? bytes.first(qsizetype(std::fread(bytes.data(), 1, 100, file.get()))) : QByteArray();
    };
    const std::unique_ptr<FILE, int (*)(FILE *)> file(std::fopen(name.constData(), "wb"), std::fclose);
    QVERIFY(file);
    std::fputs("one\r\ntwo\r\n", file.get());
    std::fflush(file.get());
    {
        TestWindow window;
        QVERIFY(window.open());
        window.choices << FileChoice{ files.folder(), FileName::fromBytes("\x93\xFA\x96\x7B.txt") };
        window.slotCmdFileOpen();
        QCOMPARE(window.currentEditor()->text(), u"one\ntwo\n"_s);
        QTest::keyClicks(window.currentEditor(), u"x"_s);
        QTest::keyClick(window.currentEditor(), Qt::Key_Down);
        window.slotCmdFileSave();
        QCOMPARE(content(), QByteArray("xone\r\ntwo\r\n"));
        QVERIFY(window.close());
    }
    recentFiles() = {};
    TestWindow window;
    QVERIFY(window.open());
    window.recentMenu()->actions().at(0)->trigger();
    QCOMPARE(window.tabBar()->count(), 1);
    QCOMPARE(window.currentEditor()->text(), u"xone\ntwo\n"_s);
    QVERIFY((window.currentEditor()->cursorPosition() == RowCol{ RowIndex(1), 1 }));
    QTest::keyClicks(window.currentEditor(), u"y"_s);
    QVERIFY(window.slotCmdFileSave(window.currentEditor()));
    QCOMPARE(content(), QByteArray("xone\r\ntywo\r\n"));
}

void RecentTest::positionBeyondTheText_data()
{
    QTest::addColumn<qint64>("row");
    QTest::addColumn<qint64>("column");
    QTest::addColumn<qint64>("scroll");
    QTest::newRow("shorter now") << 1000LL << 1000LL << 5000LL;
    QTest::newRow("negative") << -5LL << -5LL << -5LL;
    const qint64 most = std::numeric_limits<qint64>::max(), least = std::numeric_limits<qint64>::min();
    QTest::newRow("largest") << most << most << most;
    QTest::newRow("least") << least << least << least;
}

void RecentTest::positionBeyondTheText()
{
    QFETCH(qint64, row);
    QFETCH(qint64, column);
    QFETCH(qint64, scroll);
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "one\ntwo");
    recentFiles().entries[0] = { files.folder(), u"a.txt"_s, row, column, scroll, scroll };
    writeSettings();
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    const RowCol cursor = window.currentEditor()->cursorPosition();
    QVERIFY(cursor == (row < 0 ? RowCol{ RowIndex(0), 0 } : RowCol{ RowIndex(1), 3 }));
    QVERIFY(!window.grab().isNull());
}

void RecentTest::otherFontOrWrappingKeepsThePlaceWithin_data()
{
    QTest::addColumn<int>("fontSize");
    QTest::addColumn<int>("wrapMode");
    for (const int size : { 10, 18, 72, 500 }) {
        for (const int wrapMode : { 0, 1, 2 })
            QTest::addRow("%d points, wrap mode %d", size, wrapMode) << size << wrapMode;
    }
}

/// The numbers were stored under other settings: the place is within the text and nothing beyond it shows.
void RecentTest::otherFontOrWrappingKeepsThePlaceWithin()
{
    QFETCH(int, fontSize);
    QFETCH(int, wrapMode);
    const TestFiles files;
    const QString name =
        files.write(u"a.txt"_s, (QByteArray("some words ").repeated(30) + '\n').repeated(100));
    {
        TestWindow window;
        QVERIFY(window.open());
        window.setDocument(name);
        window.currentEditor()->setCursorPosition(100, 0);
        window.currentEditor()->setXOffset(10000);
        QVERIFY(window.close());
    }
    appSettings().FontSize = fontSize;
    appSettings().WrapMode = wrapMode;
    writeSettings();
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    ctlEditer *editor = window.currentEditor();
    const RowIndex topRow = editor->topRow();
    const qint64 xOffset = editor->xOffset();
    QVERIFY(editor->cursorPosition().row <= editor->store().lastRow());
    editor->setTopRow(RowIndex(std::numeric_limits<int>::max()));
    editor->setXOffset(std::numeric_limits<int>::max());
    QVERIFY(topRow <= editor->topRow());
    QVERIFY(xOffset <= editor->xOffset());
}

void RecentTest::chosenEntryUsesAFreshDocument()
{
    const TestFiles files;
    remember(files.write(u"a.txt"_s, "text"), 3);
    TestWindow window;
    QVERIFY(window.open());
    ctlEditer *editor = window.currentEditor();
    window.slotCmdMnuRecent(3);
    QCOMPARE(window.tabTexts(), QStringList{ u"a.txt"_s });
    QCOMPARE(window.currentEditor(), editor);
    QCOMPARE(editor->text(), u"text"_s);
    QCOMPARE(editor->cursorPosition().column, 2);
    QCOMPARE(QApplication::focusWidget(), editor);
}

void RecentTest::chosenEntryAddsATab()
{
    const TestFiles files;
    remember(files.write(u"a.txt"_s, "text"), 0);
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.slotCmdMnuRecent(0);
    QCOMPARE(window.tabTexts(), QStringList({ u"* (new document)"_s, u"a.txt"_s }));
}

void RecentTest::chosenEntrySwitchesToAnOpenFile()
{
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "text");
    remember(name, 0);
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    window.tabBar()->setCurrentTab(window.editorAt(0));
    window.slotCmdMnuRecent(0);
    QCOMPARE(window.tabTexts(), QStringList({ u"(new document)"_s, u"a.txt"_s }));
    QCOMPARE(window.currentEditor(), window.editorAt(1));
}

void RecentTest::chosenEntryNeedsADocument()
{
    const TestFiles files;
    remember(files.write(u"a.txt"_s, "text"), 0);
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    window.slotCmdMnuRecent(0);
    QCOMPARE(window.tabBar()->count(), 0);
}

void RecentTest::chosenEntryOfNoRow()
{
    TestWindow window;
    QVERIFY(window.open());
    for (const int id : { -1, 0, 19, 20, 1000 })
        window.slotCmdMnuRecent(id);
    QCOMPARE(window.tabTexts(), QStringList{ u"(new document)"_s });
}

REGISTER_TEST(runWindowTest<RecentTest>)
#include "recent_test.moc"
