#include "tests/app/testwindow.h"

#include <QScrollBar>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

QByteArray numberedLines(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += "line " + QByteArray::number(i) + " with some words behind it to be wrapped\n";
    return text;
}

/// Logical line at the top of the view.
qint64 topLine(const ctlEditer *editor)
{
    return editor->store().lineOfRow(editor->topRow());
}

} // namespace

Q_DECLARE_METATYPE(std::function<void()>)

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
    void keepsModifiedMarks();
    void keepsUndoHistory();
    void manyDocumentsKeepTheirPlaces();
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
    window.item(MenuId::Edit, 8)->trigger();
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
    window.setDocument(files.write(u"shown.txt"_s, numberedLines(1000)));
    window.setDocument(files.write(u"other.txt"_s, numberedLines(1000)));
    window.options = [&] {
        change();
        return true;
    };
    for (ctlEditer *editor : { window.editorAt(0), window.editorAt(1) }) {
        window.tabBar()->setCurrentTab(editor);
        editor->setCursorPosition(500, 7);
        editor->setTopRow(500 - editor->viewport()->height() / editor->cellHeight() + 1);
    }
    QList<qint64> before;
    for (const ctlEditer *editor : window.tabBar()->editors())
        before << editor->cursorOffset() << topLine(editor);
    window.slotCmdEditOption();
    for (ctlEditer *editor : window.tabBar()->editors())
        window.tabBar()->setCurrentTab(editor);
    QList<qint64> after;
    for (const ctlEditer *editor : window.tabBar()->editors())
        after << editor->cursorOffset() << topLine(editor);
    QCOMPARE(after, before);
}

void OptionsTest::keepsModifiedMarks()
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
    const QByteArray text = numberedLines(300);
    for (int i = 1; i < documents; ++i)
        window.setDocument(files.write(u"%1.txt"_s.arg(i), text));
    QCOMPARE(window.tabBar()->count(), documents);
    window.editorAt(0)->loadFile(files.folder(), u"1.txt"_s, 0);
    for (int i = 0; i < documents; ++i) {
        window.editorAt(i)->setCursorPosition(i, 3);
        window.editorAt(i)->setTopRow(i);
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
        before << editor->cursorOffset() << topLine(editor);
    window.slotCmdEditOption();
    QCOMPARE(window.tabTexts(), texts);
    QList<qint64> after;
    for (ctlEditer *editor : window.tabBar()->editors()) {
        window.tabBar()->setCurrentTab(editor);
        after << editor->cursorOffset() << topLine(editor);
        QVERIFY(editor->numLines() > 600);
        editor->setEdited(false);
    }
    QCOMPARE(after, before);
}

void OptionsTest::recentItemFollowsCount()
{
    TestWindow window;
    QVERIFY(window.isItemEnabled(MenuId::File, 11));
    for (const int count : { 0, 1, 0, 15 }) {
        window.options = [count] {
            recentFiles().RecentViewCnt = count;
            return true;
        };
        window.slotCmdEditOption();
        QCOMPARE(window.isItemEnabled(MenuId::File, 11), count > 0);
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

QTEST_MAIN(OptionsTest)
#include "options_test.moc"
