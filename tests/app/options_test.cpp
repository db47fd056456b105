#include "tests/app/testwindow.h"

#include "options/frmoption.h"
#include "tests/testprogram.h"

#include <QLineEdit>
#include <QPaintEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

QByteArray numberedContent(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += "line " + QByteArray::number(i) + " with some words behind it to be wrapped\n";
    return text;
}

/// Lines that take several rows each, the more the wider a tab is.
QByteArray tabbedLines(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += "line\t" + QByteArray::number(i) + QByteArray("\tword").repeated(20) + '\n';
    return text;
}

/// Opens new files of the same text, and shows the last one; there are no other documents then.
void openFiles(TestWindow &window, const TestFiles &files, const QStringList &names, const QByteArray &text)
{
    for (const QString &name : names)
        window.setDocument(files.write(name, text));
    window.tabBar()->setCurrentTab(window.editorAt(0));
    window.slotCmdFileCloseTab();
    window.tabBar()->setCurrentTab(window.tabBar()->editors().constLast());
}

/// All that rows depend on.
void changeEveryLayout()
{
    appSettings().FontSize = 17;
    appSettings().FontName = u"monospace"_s;
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 40;
    appSettings().TabLen = 9;
    appSettings().RowNo = 2;
}

/// What of a widget is painted while it lives.
class PaintedArea : public QObject {
public:
    explicit PaintedArea(QWidget &widget) { widget.installEventFilter(this); }
    QRegion area;

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            area |= static_cast<QPaintEvent *>(event)->region();
        return false;
    }
};

/// Logical line at the top of the view.
qint64 topLine(const ctlEditer *editor)
{
    return lineOfRow(editor->store(), editor->topRow()).value();
}

} // namespace

/// Changed settings reach the open documents, and nothing else of them changes.
class OptionsTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void cancelAppliesNothing();
    void runsWithoutDocument();
    void appliesToEveryDocument();
    void keepsPlaces_data();
    void keepsPlaces();
    void keepsTheTextAtTheTopWhenTabsChange_data();
    void keepsTheTextAtTheTopWhenTabsChange();
    void laysOutWhatIsShownOnce();
    void laysOutTheOthersWhenTheyAreShown();
    void recordsPlacesOfDocumentsNotShownAgain();
    void wrapsDocumentsNotShownAtTheirWidth();
    void wrapsBesideTheNewRowNumbers();
    void editedDocumentsStaySo();
    void keepsUndoHistory();
    void manyDocumentsKeepTheirPlaces();
    void repaintsTheShownDocument();
    void dialogIsMadeForEachUse();
    void recentItemFollowsCount();
    void clearedRecentFilesLeaveTheMenu();
};

void OptionsTest::init()
{
    resetSettings();
}

void OptionsTest::cancelAppliesNothing()
{
    TestWindow window;
    QVERIFY(window.open());
    window.options = [] {
        appSettings().RowNo = 2;
        return false;
    };
    window.item(EditCommand::Options)->trigger();
    QCOMPARE(window.currentEditor()->hMargin(), 25);
}

void OptionsTest::runsWithoutDocument()
{
    TestWindow window;
    int runs = 0;
    window.options = [&] {
        ++runs;
        appSettings().TabLen = 9;
        return true;
    };
    window.slotCmdEditOption();
    QCOMPARE(runs, 1);
    QCOMPARE(QMultiLineEdit::defaultTabStop(), 9);
}

void OptionsTest::appliesToEveryDocument()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileNew();
    window.options = [] {
        appSettings().FontSize = 24;
        appSettings().FontName = u"monospace"_s;
        appSettings().WrapMode = 2;
        appSettings().WrapLen = 40;
        appSettings().RowNo = 2;
        appSettings().TabLen = 8;
        appSettings().ActiveHLine = 6;
        appSettings().BackColor = 1;
        appSettings().ForeColor = 2;
        appSettings().RowNoColor = 7;
        return true;
    };
    window.slotCmdEditOption();
    QCOMPARE(QMultiLineEdit::defaultTabStop(), 8);
    for (const ctlEditer *editor : window.tabBar()->editors()) {
        QCOMPARE(editor->font().pointSize(), 24);
        QCOMPARE(editor->font().families(), QStringList{ u"monospace"_s });
        QCOMPARE(editor->wordWrap(), QMultiLineEdit::FixedPixelWidth);
        QCOMPARE(editor->hMargin(), 36);
        QCOMPARE(editor->activeLineColor(), QColor(Qt::red));
        QCOMPARE(editor->backColor(), QColor(Qt::black));
        QCOMPARE(editor->foreColor(), QColor(Qt::white));
        QCOMPARE(editor->rowNoColor(), QColor(Qt::green));
    }
}

void OptionsTest::keepsPlaces_data()
{
    QTest::addColumn<std::function<void()>>("change");
    const std::pair<const char *, std::function<void()>> changes[] = {
        { "larger font", [] { appSettings().FontSize = 40; } },
        { "smaller font", [] { appSettings().FontSize = 10; } },
        { "wrapped at the width", [] { appSettings().WrapMode = 1; } },
        { "wrapped at 12 columns",
            [] {
                appSettings().WrapMode = 2;
                appSettings().WrapLen = 12;
            } },
        { "row numbers and tabs",
            [] {
                appSettings().RowNo = 2;
                appSettings().TabLen = 8;
            } },
        { "everything",
            [] {
                appSettings().FontSize = 30;
                appSettings().WrapMode = 2;
                appSettings().WrapLen = 20;
                appSettings().TabLen = 2;
                appSettings().RowNo = 0;
            } },
    };
    for (const auto &[name, change] : changes)
        QTest::newRow(name) << change;
}

/// Also where the cursor is the last thing in sight, which larger rows push out of it.
void OptionsTest::keepsPlaces()
{
    QFETCH(std::function<void()>, change);
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    openFiles(window, files, { u"other.txt"_s, u"shown.txt"_s }, numberedContent(1000));
    window.options = [&] {
        change();
        return true;
    };
    for (ctlEditer *editor : { window.editorAt(0), window.editorAt(1) }) {
        window.tabBar()->setCurrentTab(editor);
        editor->setCursorPosition(500, 7);
        editor->setTopRow(RowIndex(500 - editor->viewport()->height() / editor->cellHeight() + 1));
    }
    QList<qint64> before;
    for (const ctlEditer *editor : window.tabBar()->editors())
        before << editor->cursorOffset().value() << topLine(editor);
    window.slotCmdEditOption();
    for (ctlEditer *editor : window.tabBar()->editors())
        window.tabBar()->setCurrentTab(editor);
    QList<qint64> after;
    for (const ctlEditer *editor : window.tabBar()->editors())
        after << editor->cursorOffset().value() << topLine(editor);
    QCOMPARE(after, before);
}

void OptionsTest::keepsTheTextAtTheTopWhenTabsChange_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::newRow("wider") << 2 << 12;
    QTest::newRow("narrower") << 12 << 3;
}

/// In wrapped text every row above the view may become another one.
void OptionsTest::keepsTheTextAtTheTopWhenTabsChange()
{
    QFETCH(int, from);
    QFETCH(int, to);
    appSettings().TabLen = from;
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 30;
    writeSettings();
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    openFiles(window, files, { u"other.txt"_s, u"shown.txt"_s }, tabbedLines(300));
    window.options = [to] {
        appSettings().TabLen = to;
        return true;
    };
    QList<Offset> tops;
    for (ctlEditer *editor : window.tabBar()->editors()) {
        editor->setCursorPosition({ rowOfLine(editor->store(), LineIndex(100)) + 1, 2 });
        editor->setTopRow(rowOfLine(editor->store(), LineIndex(100)) + 2);
        tops << editor->store().row(editor->topRow()).start;
    }
    window.slotCmdEditOption();
    for (ctlEditer *editor : window.tabBar()->editors()) {
        window.tabBar()->setCurrentTab(editor);
        const Offset top = tops.takeFirst();
        QVERIFY(rowOfLine(editor->store(), LineIndex(100)) > RowIndex(100 * 2));
        QCOMPARE(editor->topRow(), editor->store().rowColAt(top).row);
        QCOMPARE(topLine(editor), 100);
    }
}

void OptionsTest::laysOutWhatIsShownOnce()
{
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 30;
    writeSettings();
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(files.write(u"shown.txt"_s, tabbedLines(300)));
    ctlEditer *shown = window.currentEditor();
    shown->setTopRow(RowIndex(200));
    QCoreApplication::processEvents();
    window.options = [] {
        changeEveryLayout();
        return true;
    };
    const QSignalSpy moves(shown->verticalScrollBar(), &QScrollBar::valueChanged);
    window.slotCmdEditOption();
    QTRY_COMPARE(moves.count(), 1);
    const int top = moves.at(0).at(0).toInt();
    QVERIFY(top != 200);
    QCOMPARE(shown->topRow(), RowIndex(top));
    QCoreApplication::processEvents();
    QCOMPARE(moves.count(), 1);
}

void OptionsTest::laysOutTheOthersWhenTheyAreShown()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    openFiles(window, files, { u"other.txt"_s, u"shown.txt"_s }, tabbedLines(300));
    ctlEditer *other = window.editorAt(0);
    other->setTopRow(RowIndex(100));
    QCoreApplication::processEvents();
    window.options = [] {
        appSettings().WrapMode = 2;
        appSettings().WrapLen = 40;
        return true;
    };
    const int rowsBefore = other->verticalScrollBar()->maximum();
    const QSignalSpy moves(other->verticalScrollBar(), &QScrollBar::valueChanged);
    window.slotCmdEditOption();
    QCoreApplication::processEvents();
    QCOMPARE(moves.count(), 0);
    QCOMPARE(other->verticalScrollBar()->maximum(), rowsBefore);
    window.tabBar()->setCurrentTab(other);
    QVERIFY(moves.count() > 0);
    QVERIFY(other->verticalScrollBar()->maximum() > 2 * rowsBefore);
}

/// As if the document had been looked at between the options and its end.
void OptionsTest::recordsPlacesOfDocumentsNotShownAgain()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    openFiles(window, files, { u"looked at.txt"_s, u"not.txt"_s, u"shown.txt"_s }, tabbedLines(300));
    for (ctlEditer *editor : window.tabBar()->editors()) {
        window.tabBar()->setCurrentTab(editor);
        editor->setCursorPosition(150, 7);
        editor->setTopRow(RowIndex(140));
    }
    window.options = [] {
        changeEveryLayout();
        return true;
    };
    window.slotCmdEditOption();
    window.tabBar()->setCurrentTab(window.editorAt(0));
    QCoreApplication::processEvents();
    window.tabBar()->setCurrentTab(window.editorAt(2));
    QVERIFY(window.close());
    const auto &entries = recentFiles().entries;
    QCOMPARE(entries[0].name, u"looked at.txt"_s);
    QCOMPARE(entries[1].name, u"not.txt"_s);
    QVERIFY(entries[0].cursorRow > 300);
    QVERIFY(entries[0].scrollY > 300 * 10);
    QCOMPARE(entries[1].cursorRow, entries[0].cursorRow);
    QCOMPARE(entries[1].cursorColumn, entries[0].cursorColumn);
    QCOMPARE(entries[1].scrollX, entries[0].scrollX);
    QCOMPARE(entries[1].scrollY, entries[0].scrollY);
}

/// The window may have another size than when a document was last shown.
void OptionsTest::wrapsDocumentsNotShownAtTheirWidth()
{
    TestWindow window;
    QVERIFY(window.open());
    window.showNormal();
    window.slotCmdFileNew();
    window.options = [] {
        appSettings().WrapMode = 1;
        return true;
    };
    for (const int width : { 500, 700 }) {
        window.resize(width, 400);
        QTRY_COMPARE(window.currentEditor()->width(), width);
        window.slotCmdEditOption();
        QCOMPARE(window.editorAt(0)->wrapColumnOrWidth(), window.editorAt(1)->wrapColumnOrWidth());
        QVERIFY(window.editorAt(1)->wrapColumnOrWidth() > width - 100);
    }
}

/// Else the ends of the rows would be where they are not seen.
void OptionsTest::wrapsBesideTheNewRowNumbers()
{
    appSettings().RowNo = 0;
    writeSettings();
    TestWindow window;
    QVERIFY(window.open());
    window.options = [] {
        appSettings().RowNo = 2;
        appSettings().WrapMode = 1;
        return true;
    };
    window.slotCmdEditOption();
    ctlEditer *editor = window.currentEditor();
    const int scrollBar = editor->verticalScrollBar()->sizeHint().width();
    QCOMPARE(editor->wrapColumnOrWidth(), editor->width() - 36 - scrollBar - 3);
    editor->setText(QString(5000, u'x'));
    QTest::keyClick(editor, Qt::Key_End);
    QVERIFY(editor->cursorPosition().column > 20);
    QCOMPARE(editor->xOffset(), 0);
}

void OptionsTest::editedDocumentsStaySo()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileNew();
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    const QStringList before{ u"(new document)"_s, u"* (new document)"_s };
    QCOMPARE(window.tabTexts(), before);
    window.options = [] {
        appSettings().FontSize = 30;
        appSettings().WrapMode = 1;
        return true;
    };
    window.slotCmdEditOption();
    QCOMPARE(window.tabTexts(), before);
    QVERIFY(!window.editorAt(0)->edited());
    QVERIFY(window.editorAt(1)->edited());
    QCOMPARE(window.editStates(), u"u---"_s);
    window.editorAt(1)->setEdited(false);
}

void OptionsTest::keepsUndoHistory()
{
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"abc"_s);
    window.options = [] {
        appSettings().WrapMode = 2;
        return true;
    };
    window.slotCmdEditOption();
    window.slotCmdEditUndo();
    QCOMPARE(window.currentEditor()->text(), QString());
    QVERIFY(!window.currentEditor()->edited());
}

void OptionsTest::manyDocumentsKeepTheirPlaces()
{
    constexpr int documents = 200;
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    const QByteArray text = numberedContent(300);
    for (int i = 1; i < documents; ++i)
        window.setDocument(files.write(u"%1.txt"_s.arg(i), text));
    QCOMPARE(window.tabBar()->count(), documents);
    window.editorAt(0)->loadFile(files.folder(), u"1.txt"_s, 0);
    for (int i = 0; i < documents; ++i) {
        window.editorAt(i)->setCursorPosition(i, 3);
        window.editorAt(i)->setTopRow(RowIndex(i));
        if (i % 3 == 0)
            window.editorAt(i)->insert(u"x"_s);
    }
    const QStringList texts = window.tabTexts();
    window.options = [] {
        appSettings().FontSize = 12;
        appSettings().WrapMode = 2;
        appSettings().WrapLen = 25;
        appSettings().TabLen = 8;
        return true;
    };
    QList<qint64> before;
    for (const ctlEditer *editor : window.tabBar()->editors())
        before << editor->cursorOffset().value() << topLine(editor);
    window.slotCmdEditOption();
    QCOMPARE(window.tabTexts(), texts);
    QList<qint64> after;
    for (ctlEditer *editor : window.tabBar()->editors()) {
        window.tabBar()->setCurrentTab(editor);
        after << editor->cursorOffset().value() << topLine(editor);
        QVERIFY(editor->numLines() > 600);
        editor->setEdited(false);
    }
    QCOMPARE(after, before);
}

void OptionsTest::repaintsTheShownDocument()
{
    TestWindow window;
    QVERIFY(window.open());
    QWidget *viewport = window.currentEditor()->viewport();
    QCoreApplication::processEvents();
    PaintedArea painted(*viewport);
    window.options = [] {
        appSettings().ShowEOF = 0;
        return true;
    };
    window.slotCmdEditOption();
    QTRY_COMPARE(painted.area, QRegion(viewport->rect()));
}

/// The dialog itself, which lives as long as it is open.
void OptionsTest::dialogIsMadeForEachUse()
{
    frmMain window;
    window.showMaximized();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    for (const auto &[typed, tabLen] : { std::pair("7", 7), { "9", 9 } }) {
        const int before = appSettings().TabLen;
        QString shown;
        QTimer::singleShot(0, &window, [&, typed = typed] {
            auto *dialog = qobject_cast<frmOption *>(QApplication::activeModalWidget());
            if (!dialog || dialog->parentWidget() != &window)
                return;
            auto *field = dialog->findChild<QLineEdit *>(u"TabLen"_s);
            shown = field->text();
            field->setText(QString::fromLatin1(typed));
            dialog->accept();
        });
        window.slotCmdEditOption();
        QCOMPARE(shown, QString::number(before));
        QCOMPARE(appSettings().TabLen, tabLen);
        QCOMPARE(QMultiLineEdit::defaultTabStop(), tabLen);
        QVERIFY(window.findChildren<QDialog *>().isEmpty());
    }
}

void OptionsTest::recentItemFollowsCount()
{
    TestWindow window;
    QVERIFY(window.isItemEnabled(FileCommand::RecentFiles));
    for (const int count : { 0, 1, 0, 15 }) {
        window.options = [count] {
            recentFiles().RecentViewCnt = count;
            return true;
        };
        window.slotCmdEditOption();
        QCOMPARE(window.isItemEnabled(FileCommand::RecentFiles), count > 0);
    }
}

void OptionsTest::clearedRecentFilesLeaveTheMenu()
{
    recentFiles().entries[0] = { u"/folder/"_s, u"a.txt"_s, 0, 0, 0, 0 };
    writeSettings();
    TestWindow window;
    QCOMPARE(window.recentMenu()->actions().at(0)->text(), u"/folder/a.txt"_s);
    window.options = [] {
        recentFiles().entries[0] = {};
        return true;
    };
    window.slotCmdEditOption();
    QCOMPARE(window.recentMenu()->actions().at(0)->text(), u"(no item)"_s);
}

REGISTER_TEST(runWindowTest<OptionsTest>)
#include "options_test.moc"
