#include "editor/ctlediter.h"

#include "codec/charcode.h"
#include "codec/returncode.h"
#include "rows/fontmeasure.h"
#include "settings/settings.h"
#include "tests/testprogram.h"
#include "tests/widget/rows.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <memory>

namespace {

/// Gives tests the font's measures, which rows are wrapped by.
class MeasuredEditor : public ctlEditer {
public:
    using ctlEditer::ctlEditer;
    qreal xWidth() const { return fontMeasure()->xWidth(); }
};

} // namespace

class CtlEditerTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newDocument();
    void newDocumentHasTheDefaultCodes_data();
    void newDocumentHasTheDefaultCodes();
    void newDocumentIsAsLargeAsItsParent();
    void colorOfIndex_data();
    void colorOfIndex();
    void colorsAreApplied();
    void colorsOutsideTheRangeAreWhite_data();
    void colorsOutsideTheRangeAreWhite();
    void fontIsApplied();
    void fontSizesOutsideTheRangeAreUsable_data();
    void fontSizesOutsideTheRangeAreUsable();
    void fontWithoutANameIsTheApplications();
    void marginFollowsTheRowNumbers_data();
    void marginFollowsTheRowNumbers();
    void wrapModeNone();
    void wrapModeWidget();
    void wrapModeWidgetKeepsItsWidth();
    void wrapModeColumn_data();
    void wrapModeColumn();
    void wrapModeOutsideTheRangeChangesNothing();
    void wrapModeTellsNobody();
    void wrapAfterAFontChange();
    void tabWidthsOutsideTheRangeAreUsable();
    void copyRemovesTheSelection();
    void copyOfNothingKeepsTheClipboard();
    void undoAndRedoAreRelayed();
    void slotsStoreAndRelay();
    void isEditedWhileThereIsSomethingToUndo();

private:
    AppSettings &settings() { return appSettings(); }
    MeasuredEditor *newEditor();

    std::unique_ptr<QWidget> m_window;
};

void CtlEditerTest::init()
{
    settings() = AppSettings();
    settings().FontName = QStringLiteral("monospace");
    m_window = std::make_unique<QWidget>();
    m_window->resize(640, 400);
}

void CtlEditerTest::cleanup()
{
    m_window.reset();
    QMultiLineEdit::setDefaultTabStop(4);
}

MeasuredEditor *CtlEditerTest::newEditor()
{
    return new MeasuredEditor(m_window.get());
}

void CtlEditerTest::newDocument()
{
    const ctlEditer editor(m_window.get());
    QCOMPARE(editor.name(), QStringLiteral("(new document)"));
    QCOMPARE(editor.path(), QString());
    QCOMPARE(editor.charCode(), int(CharCode::ShiftJis));
    QCOMPARE(editor.returnCode(), int(ReturnCode::CrLf));
    QCOMPARE(editor.charCodeName(), QStringLiteral("Shift-JIS"));
    QCOMPARE(editor.returnCodeName(), QStringLiteral("CR+LF"));
    QVERIFY(!editor.undoAvailable());
    QVERIFY(!editor.redoAvailable());
    QVERIFY(!editor.edited());
    QVERIFY(editor.isUndoEnabled());
    QCOMPARE(editor.undoDepth(), 256);
    QCOMPARE(editor.frameStyle(), 51);
    QCOMPARE(editor.text(), QString());
}

void CtlEditerTest::newDocumentHasTheDefaultCodes_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("codeName");
    QTest::addColumn<int>("lineEnd");
    QTest::addColumn<QString>("lineEndName");
    QTest::newRow("UTF-8 and LF") << 2 << QStringLiteral("UTF8") << 3 << QStringLiteral("LF");
    QTest::newRow("EUC and CR") << 4 << QStringLiteral("EUC") << 1 << QStringLiteral("CR");
    QTest::newRow("JIS and CR+LF") << 5 << QStringLiteral("JIS") << 2 << QStringLiteral("CR+LF");
    QTest::newRow("values nobody knows") << 99 << QStringLiteral("????") << -7 << QStringLiteral("??");
}

void CtlEditerTest::newDocumentHasTheDefaultCodes()
{
    QFETCH(int, code);
    QFETCH(int, lineEnd);
    settings().DefCodec = code;
    settings().DefCRLF = lineEnd;
    const ctlEditer editor(m_window.get());
    QCOMPARE(editor.charCode(), code);
    QCOMPARE(editor.returnCode(), lineEnd);
    QTEST(editor.charCodeName(), "codeName");
    QTEST(editor.returnCodeName(), "lineEndName");
}

void CtlEditerTest::newDocumentIsAsLargeAsItsParent()
{
    settings().WrapMode = 1;
    const ctlEditer *editor = newEditor();
    QCOMPARE(editor->size(), QSize(640, 400));
    QVERIFY(editor->wrapColumnOrWidth() > 500);
    const ctlEditer alone(nullptr);
    QVERIFY(alone.wrapColumnOrWidth() >= 1);
}

void CtlEditerTest::colorOfIndex_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QColor>("color");
    const auto row = [](const char *name, int index, Qt::GlobalColor color) {
        QTest::newRow(name) << index << QColor(color);
    };
    row("1 black", 1, Qt::black);
    row("2 white", 2, Qt::white);
    row("3 dark gray", 3, Qt::darkGray);
    row("4 gray", 4, Qt::gray);
    row("5 light gray", 5, Qt::lightGray);
    row("6 red", 6, Qt::red);
    row("7 green", 7, Qt::green);
    row("8 blue", 8, Qt::blue);
    row("9 cyan", 9, Qt::cyan);
    row("10 magenta", 10, Qt::magenta);
    row("11 yellow", 11, Qt::yellow);
    row("12 dark red", 12, Qt::darkRed);
    row("13 dark green", 13, Qt::darkGreen);
    row("14 dark blue", 14, Qt::darkBlue);
    row("15 dark cyan", 15, Qt::darkCyan);
    row("16 dark magenta", 16, Qt::darkMagenta);
    row("17 dark yellow", 17, Qt::darkYellow);
    row("0", 0, Qt::white);
    row("18", 18, Qt::white);
    row("400", 400, Qt::white);
    row("-1", -1, Qt::white);
}

void CtlEditerTest::colorOfIndex()
{
    QFETCH(int, index);
    QTEST(ctlEditer::colorOfIndex(index), "color");
}

void CtlEditerTest::colorsAreApplied()
{
    ctlEditer *editor = newEditor();
    const QPalette before = editor->palette();
    settings().BackColor = 1;
    settings().ForeColor = 11;
    settings().RowNoColor = 6;
    settings().ActiveHLine = 13;
    editor->applyColors();
    QCOMPARE(editor->backColor(), QColor(Qt::black));
    QCOMPARE(editor->foreColor(), QColor(Qt::yellow));
    QCOMPARE(editor->rowNoColor(), QColor(Qt::red));
    QCOMPARE(editor->activeLineColor(), QColor(Qt::blue));
    editor->applyActiveLineColor();
    QCOMPARE(editor->activeLineColor(), QColor(Qt::darkGreen));
    for (const auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled }) {
        QCOMPARE(editor->palette().color(group, QPalette::Base), QColor(Qt::black));
        QCOMPARE(editor->palette().color(group, QPalette::Text), before.color(group, QPalette::Text));
    }
}

void CtlEditerTest::colorsOutsideTheRangeAreWhite_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("400") << 400;
    QTest::newRow("-1") << -1;
    QTest::newRow("smallest integer") << std::numeric_limits<int>::min();
}

void CtlEditerTest::colorsOutsideTheRangeAreWhite()
{
    QFETCH(int, index);
    settings().BackColor = settings().ForeColor = settings().RowNoColor = settings().ActiveHLine = index;
    const ctlEditer editor(m_window.get());
    QCOMPARE(editor.backColor(), QColor(Qt::white));
    QCOMPARE(editor.foreColor(), QColor(Qt::white));
    QCOMPARE(editor.rowNoColor(), QColor(Qt::white));
    QCOMPARE(editor.activeLineColor(), QColor(Qt::white));
    QCOMPARE(settings().BackColor, index);
}

void CtlEditerTest::fontIsApplied()
{
    ctlEditer *editor = newEditor();
    QCOMPARE(editor->font().pointSize(), 18);
    const int height = editor->cellHeight();
    settings().FontName = QStringLiteral("serif");
    settings().FontSize = 36;
    editor->applyFont();
    QCOMPARE(editor->font().pointSize(), 36);
    QCOMPARE(editor->font().families(), QStringList{ QStringLiteral("serif") });
    QVERIFY(editor->updatesEnabled());
    QVERIFY(editor->cellHeight() > height);
}

void CtlEditerTest::fontSizesOutsideTheRangeAreUsable_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("-5") << -5;
    QTest::newRow("0") << 0;
    QTest::newRow("100000") << 100000;
    QTest::newRow("largest integer") << std::numeric_limits<int>::max();
}

void CtlEditerTest::fontSizesOutsideTheRangeAreUsable()
{
    QFETCH(int, size);
    settings().FontSize = size;
    ctlEditer *editor = newEditor();
    QVERIFY(editor->font().pointSize() >= 1);
    QVERIFY(editor->font().pointSize() <= 500);
    editor->insert(QStringLiteral("text\n"));
    QVERIFY(editor->cellHeight() > 0);
    QCOMPARE(settings().FontSize, size);
}

void CtlEditerTest::fontWithoutANameIsTheApplications()
{
    settings().FontName = QString();
    const ctlEditer editor(m_window.get());
    QCOMPARE(editor.font().families(), QApplication::font().families());
}

void CtlEditerTest::marginFollowsTheRowNumbers_data()
{
    QTest::addColumn<int>("rowNo");
    QTest::addColumn<int>("margin");
    QTest::newRow("none") << 0 << 2;
    QTest::newRow("small") << 1 << 25;
    QTest::newRow("large") << 2 << 36;
    QTest::newRow("9") << 9 << 36;
    QTest::newRow("-1") << -1 << 36;
}

void CtlEditerTest::marginFollowsTheRowNumbers()
{
    QFETCH(int, rowNo);
    ctlEditer *editor = newEditor();
    settings().RowNo = rowNo;
    editor->applyRowNoMargin();
    QTEST(editor->hMargin(), "margin");
}

void CtlEditerTest::wrapModeNone()
{
    ctlEditer *editor = newEditor();
    settings().WrapMode = 1;
    editor->applyWrapMode();
    settings().WrapMode = 0;
    editor->applyWrapMode();
    QCOMPARE(editor->wordWrap(), QMultiLineEdit::NoWrap);
    QCOMPARE(editor->wrapPolicy(), QMultiLineEdit::Anywhere);
    editor->insert(QString(10000, u'x'));
    QCOMPARE(editor->horizontalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    QCOMPARE(editor->numLines(), 1);
}

void CtlEditerTest::wrapModeWidget()
{
    settings().WrapMode = 1;
    settings().RowNo = 2;
    MeasuredEditor *editor = newEditor();
    const int scrollBar = editor->verticalScrollBar()->sizeHint().width();
    QVERIFY(scrollBar > 0);
    QCOMPARE(editor->wordWrap(), QMultiLineEdit::FixedPixelWidth);
    QCOMPARE(editor->wrapColumnOrWidth(), 640 - 36 - scrollBar - 3);
    editor->insert(QString(10000, u'x'));
    QCOMPARE(editor->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    const auto columns = qint64(editor->wrapColumnOrWidth() / editor->xWidth());
    QCOMPARE(rowText(*editor, 0).size(), columns);
}

void CtlEditerTest::wrapModeWidgetKeepsItsWidth()
{
    settings().WrapMode = 1;
    ctlEditer *editor = newEditor();
    const int width = editor->wrapColumnOrWidth();
    m_window->show();
    editor->resize(400, 300);
    QTRY_COMPARE(editor->width(), 400);
    QCOMPARE(editor->wrapColumnOrWidth(), width);
    editor->applyWrapMode();
    QCOMPARE(editor->wrapColumnOrWidth(), width - 240);
    editor->resize(10, 10);
    editor->applyWrapMode();
    editor->insert(QStringLiteral("narrow"));
    QCOMPARE(editor->numLines(), 6);
}

void CtlEditerTest::wrapModeColumn_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("columns");
    QTest::newRow("30") << 30 << 30;
    QTest::newRow("40") << 40 << 40;
    QTest::newRow("1") << 1 << 1;
    QTest::newRow("0 counts as 1") << 0 << 1;
    QTest::newRow("-40 counts as 1") << -40 << 1;
    QTest::newRow("largest integer") << std::numeric_limits<int>::max() << 100000;
}

void CtlEditerTest::wrapModeColumn()
{
    QFETCH(int, length);
    QFETCH(int, columns);
    settings().WrapMode = 2;
    settings().WrapLen = length;
    MeasuredEditor *editor = newEditor();
    QCOMPARE(editor->wordWrap(), QMultiLineEdit::FixedPixelWidth);
    QCOMPARE(editor->wrapColumnOrWidth(), int(std::ceil(columns * editor->xWidth())));
    editor->insert(QString(columns + 1, u'x'));
    QCOMPARE(editor->horizontalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    QCOMPARE(editor->numLines(), 2);
    QCOMPARE(rowText(*editor, 1), QStringLiteral("x"));
    QVERIFY(!editor->store().row(RowIndex(0)).endsLine);
    QCOMPARE(settings().WrapLen, length);
}

void CtlEditerTest::wrapModeOutsideTheRangeChangesNothing()
{
    settings().WrapMode = 2;
    ctlEditer *editor = newEditor();
    const int width = editor->wrapColumnOrWidth();
    for (const int mode : { 3, 9, -1 }) {
        settings().WrapMode = mode;
        settings().WrapLen = 77;
        editor->applyWrapMode();
        QCOMPARE(editor->wordWrap(), QMultiLineEdit::FixedPixelWidth);
        QCOMPARE(editor->wrapColumnOrWidth(), width);
    }
}

void CtlEditerTest::wrapModeTellsNobody()
{
    ctlEditer *editor = newEditor();
    editor->insert(QString(1000, u'x'));
    QSignalSpy changed(editor, &QMultiLineEdit::textChanged);
    QSignalSpy undo(editor, &QMultiLineEdit::undoAvailable);
    settings().WrapMode = 2;
    editor->applyWrapMode();
    QCOMPARE(editor->numLines(), 34);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(undo.count(), 0);
    QVERIFY(!editor->signalsBlocked());
    QVERIFY(editor->updatesEnabled());
    QVERIFY(editor->undoAvailable());
    QCOMPARE(editor->text().size(), 1000);
}

void CtlEditerTest::wrapAfterAFontChange()
{
    settings().WrapMode = 2;
    settings().WrapLen = 10;
    MeasuredEditor *editor = newEditor();
    editor->insert(QString(25, u'x'));
    settings().FontSize = 31;
    editor->applyFont();
    editor->applyWrapMode();
    QCOMPARE(editor->wrapColumnOrWidth(), int(std::ceil(10 * editor->xWidth())));
    QCOMPARE(editor->numLines(), 3);
}

void CtlEditerTest::tabWidthsOutsideTheRangeAreUsable()
{
    for (const int tab : { 0, -8, 1, std::numeric_limits<int>::max() }) {
        QMultiLineEdit::setDefaultTabStop(tab);
        ctlEditer *editor = newEditor();
        editor->insert(QStringLiteral("\t\ta\tb"));
        QCOMPARE(rowText(*editor, 0), QStringLiteral("\t\ta\tb"));
        settings().WrapMode = 2;
        editor->applyWrapMode();
        QVERIFY(editor->numLines() >= 1);
        QCOMPARE(editor->text(), QStringLiteral("\t\ta\tb"));
        settings().WrapMode = 0;
    }
}

void CtlEditerTest::copyRemovesTheSelection()
{
    ctlEditer *editor = newEditor();
    editor->insert(QStringLiteral("one two"));
    editor->setCursorPosition(0, 0);
    editor->setCursorPosition(0, 3, true);
    QSignalSpy spy(editor, &QMultiLineEdit::copyAvailable);
    editor->copy();
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("one"));
    QVERIFY(!editor->hasMarkedText());
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy[0][0].toBool(), false);
    QCOMPARE(editor->text(), QStringLiteral("one two"));
}

void CtlEditerTest::copyOfNothingKeepsTheClipboard()
{
    ctlEditer *editor = newEditor();
    editor->insert(QStringLiteral("one two"));
    QApplication::clipboard()->setText(QStringLiteral("before"));
    editor->copy();
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("before"));
}

void CtlEditerTest::undoAndRedoAreRelayed()
{
    ctlEditer *editor = newEditor();
    QSignalSpy undo(editor, &ctlEditer::undoAvailable2);
    QSignalSpy redo(editor, &ctlEditer::redoAvailable2);
    editor->insert(QStringLiteral("text"));
    QCOMPARE(undo.count(), 1);
    QCOMPARE(undo[0][0].value<ctlEditer *>(), editor);
    QCOMPARE(undo[0][1].toBool(), true);
    QVERIFY(editor->undoAvailable());
    editor->undo();
    QCOMPARE(undo.count(), 2);
    QCOMPARE(undo[1][1].toBool(), false);
    QCOMPARE(redo.count(), 1);
    QCOMPARE(redo[0][0].value<ctlEditer *>(), editor);
    QCOMPARE(redo[0][1].toBool(), true);
    QVERIFY(!editor->undoAvailable());
    QVERIFY(editor->redoAvailable());
}

void CtlEditerTest::slotsStoreAndRelay()
{
    ctlEditer *editor = newEditor();
    QSignalSpy undo(editor, &ctlEditer::undoAvailable2);
    QSignalSpy redo(editor, &ctlEditer::redoAvailable2);
    editor->slotEdUndoAvailable(true);
    editor->slotEdUndoAvailable(true);
    editor->slotEdRedoAvailable(true);
    QCOMPARE(undo.count(), 2);
    QCOMPARE(redo.count(), 1);
    QVERIFY(undo[0][1].toBool() && undo[1][1].toBool() && redo[0][1].toBool());
    QVERIFY(editor->undoAvailable() && editor->redoAvailable());
}

void CtlEditerTest::isEditedWhileThereIsSomethingToUndo()
{
    ctlEditer *editor = newEditor();
    for (int i = 0; i < 400; ++i)
        insertAt(*editor, QStringLiteral("line\n"), 0, 0);
    QVERIFY(editor->edited());
    while (editor->undoAvailable())
        editor->undo();
    QVERIFY(!editor->edited());
    QCOMPARE(editor->text(), QString());
    editor->redo();
    QVERIFY(editor->edited());
}

REGISTER_TEST(runWindowTest<CtlEditerTest>)
#include "ctlediter_test.moc"
