#include "editor/ctlediter.h"
#include "settings/settings.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/widget/heldlayout.h"
#include "tests/widget/rows.h"
#include "widget/viewlayout.h"

#include <QApplication>
#include <QPainter>
#include <QRandomGenerator>
#include <QScreen>
#include <QTest>
#include <QWheelEvent>

namespace {

constexpr int steps = 80;

QString sampleText()
{
    return QStringLiteral("first line\n\tindented \u3000 line\n\n\u6f22\u5b57\u304b\u306a line\n"
                          "\u0627\u0644\u0633\u0644\u0627\u0645 e\u0301 line\n"
                          "line \u0627\u0644\u0633\u0644\u0627\u0645\nend of line signs, and much more\n"
                          "\u0e17\u0e35\u0e48\u0e19\u0e35\u0e48 \U00020000\u00a0\u200b\u0001\n")
               .repeated(40)
        + QStringLiteral("a line that is wider than the view ").repeated(20);
}

class RepaintedEditor : public ctlEditer {
public:
    RepaintedEditor()
        : ctlEditer(nullptr)
    {
        resize(400, 301);
        setText(sampleText());
    }
    using ctlEditer::paintCell;
    using QMultiLineEdit::updateRow;
    using QMultiLineEdit::updateView;

    /// What stands on the screen when all that was asked for is painted.
    QImage shown()
    {
        QCoreApplication::sendPostedEvents(this, QEvent::LayoutRequest);
        QEvent paintNow(QEvent::UpdateRequest);
        QApplication::sendEvent(this, &paintNow);
        return screen()->grabWindow(winId()).toImage();
    }
    void showWithFocus();
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(this, key, modifiers);
    }
    void blink() { updateRow(cursorPosition().row); }
    void wheel(int turned);
    void compose(const QString &text);
    void setting(int AppSettings::*which, int value);
    void recolour(Qt::GlobalColor color);
    void drag(QRandomGenerator &random);
};

void RepaintedEditor::showWithFocus()
{
    show();
    activateWindow();
    setFocus();
    QTRY_VERIFY(hasFocus());
}

void RepaintedEditor::wheel(int turned)
{
    const QPointF middle = viewport()->rect().center();
    QWheelEvent event(middle, viewport()->mapToGlobal(middle), QPoint(), QPoint(0, turned), Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(viewport(), &event);
}

void RepaintedEditor::compose(const QString &text)
{
    QInputMethodEvent event(text, {});
    QApplication::sendEvent(this, &event);
}

void RepaintedEditor::setting(int AppSettings::*which, int value)
{
    appSettings().*which = appSettings().*which == value ? 0 : value;
    applySettings();
}

/// As the desktop does.
void RepaintedEditor::recolour(Qt::GlobalColor color)
{
    QPalette colors = palette();
    colors.setColor(QPalette::Highlight, color);
    setPalette(colors);
}

void RepaintedEditor::drag(QRandomGenerator &random)
{
    const auto place = [&] {
        return QPoint(random.bounded(viewport()->width()), random.bounded(viewport()->height()));
    };
    QTest::mousePress(viewport(), Qt::LeftButton, {}, place());
    QTest::mouseMove(viewport(), place());
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, place());
}

using Action = void (*)(RepaintedEditor &editor, QRandomGenerator &random);
using Random = QRandomGenerator;
using Change = void (*)(RepaintedEditor &editor);

const Action actions[] = {
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_Down); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_Up); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_Right); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_Left); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_End); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_Home); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_PageDown); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_PageUp); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_Down, Qt::ShiftModifier); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_Right, Qt::ShiftModifier); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_PageDown, Qt::ShiftModifier); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_A, Qt::ControlModifier); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_Return); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_Backspace); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_Delete); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_A); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_Tab); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_Insert); },
    [](RepaintedEditor &editor, Random &) { editor.press(Qt::Key_End, Qt::ControlModifier); },
    [](RepaintedEditor &editor, Random &) { editor.undo(); },
    [](RepaintedEditor &editor, Random &) { editor.redo(); },
    [](RepaintedEditor &editor, Random &) { editor.blink(); },
    [](RepaintedEditor &editor, Random &) { editor.blink(); },
    [](RepaintedEditor &editor, Random &) { editor.wheel(-120); },
    [](RepaintedEditor &editor, Random &) { editor.wheel(-120); },
    [](RepaintedEditor &editor, Random &) { editor.wheel(120); },
    [](RepaintedEditor &editor, Random &) { editor.wheel(120); },
    [](RepaintedEditor &editor, Random &) { editor.setXOffset(editor.xOffset() + 17); },
    [](RepaintedEditor &editor, Random &) { editor.setXOffset(editor.xOffset() - 11); },
    [](RepaintedEditor &editor, Random &random) { editor.drag(random); },
    [](RepaintedEditor &editor, Random &) { editor.compose(QStringLiteral("\u304b\u306a")); },
    [](RepaintedEditor &editor, Random &) { editor.compose({}); },
    [](RepaintedEditor &editor, Random &random) {
        insertAt(editor, QStringLiteral("above\n"), random.bounded(editor.numLines()), 0);
    },
    [](RepaintedEditor &editor, Random &random) { removeRow(editor, random.bounded(editor.numLines())); },
    [](RepaintedEditor &editor, Random &random) {
        editor.setTopRow(RowIndex(random.bounded(editor.numLines())));
    },
    [](RepaintedEditor &editor, Random &) { editor.clearFocus(); },
    [](RepaintedEditor &editor, Random &) { editor.setFocus(); },
    [](RepaintedEditor &editor, Random &) { editor.setting(&AppSettings::ShowKAI, 1); },
    [](RepaintedEditor &editor, Random &) { editor.setting(&AppSettings::RowNoColor, 6); },
    [](RepaintedEditor &editor, Random &) { editor.setting(&AppSettings::ForeColor, 7); },
    [](RepaintedEditor &editor, Random &) { editor.recolour(Qt::darkGreen); },
    [](RepaintedEditor &editor, Random &) { editor.recolour(Qt::darkRed); },
    [](RepaintedEditor &editor, Random &random) {
        editor.resize(400 + random.bounded(9), 301 - random.bounded(50));
    },
    [](RepaintedEditor &, Random &) {
        RepaintedEditor().grab();
    }, // which draws in the picture that all share
};

void useLook()
{
    QFETCH(int, wrapMode);
    QFETCH(int, fontSize);
    QFETCH(int, signs);
    appSettings() = AppSettings();
    appSettings().WrapMode = wrapMode;
    appSettings().FontSize = fontSize;
    appSettings().RowNo = 2;
    appSettings().ActiveHLine = 8;
    appSettings().ShowKAI = signs;
    appSettings().ShowEOF = signs;
    appSettings().ShowTAB = signs;
    appSettings().ShowZEN = signs;
}

void takeSteps(RepaintedEditor &editor, quint32 seed)
{
    QRandomGenerator random(seed);
    for (int step = 0; step < steps; ++step) {
        const int what = random.bounded(int(std::size(actions)));
        actions[what](editor, random);
        // Some are painted with what follows them.
        if (step + 1 < steps && random.bounded(3) == 0)
            continue;
        const QImage found = editor.shown();
        for (QWidget *const part : editor.findChildren<QWidget *>())
            part->update();
        const QImage anew = editor.shown();
        if (found == anew)
            continue;
        for (int y = 0; y < anew.height(); ++y) {
            for (int x = 0; x < anew.width(); ++x) {
                if (found.pixel(x, y) != anew.pixel(x, y))
                    QFAIL(qPrintable(QStringLiteral("step %1, action %2, device pixel %3, %4")
                                         .arg(step)
                                         .arg(what)
                                         .arg(x)
                                         .arg(y)));
            }
        }
    }
}

} // namespace

/// What is on the screen after any steps is what painting everything anew would show: no row's edge is left
/// out when it alone is repainted, and what is moved instead of painted fits its neighbours.
class RepaintTest : public QObject {
    Q_OBJECT
private slots:
    void screenIsAsPaintedAnew_data();
    void screenIsAsPaintedAnew();
    void screenIsAsPaintedAnewAmidALayout_data() { screenIsAsPaintedAnew_data(); }
    void screenIsAsPaintedAnewAmidALayout();
    void joinedLinesRenumberWhatFollows();
    void overwriteCursorIsErased();
    void changeTogetherWithAScroll_data();
    void changeTogetherWithAScroll();
};

void RepaintTest::screenIsAsPaintedAnew_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("wrapMode");
    QTest::addColumn<int>("fontSize");
    QTest::addColumn<int>("signs");
    const std::tuple<int, int, int> looks[] = { { 0, 13, 0 }, { 0, 12, 1 }, { 1, 18, 1 }, { 2, 9, 0 } };
    for (const auto &[wrapMode, fontSize, signs] : looks) {
        const quint32 seed = seedOr(QRandomGenerator::global()->generate());
        QTest::addRow("seed %u, wrap mode %d, font size %d, signs %d", seed, wrapMode, fontSize, signs)
            << seed << wrapMode << fontSize << signs;
    }
}

void RepaintTest::screenIsAsPaintedAnew()
{
    QFETCH(quint32, seed);
    useLook();
    RepaintedEditor editor;
    editor.showWithFocus();
    takeSteps(editor, seed);
}

/// What comes into view is laid out then.
void RepaintTest::screenIsAsPaintedAnewAmidALayout()
{
    QFETCH(quint32, seed);
    useLook();
    RepaintedEditor editor;
    const QString text = sampleText();
    editor.setText(text.repeated(ViewLayout::longText / text.size() + 1));
    editor.showWithFocus();
    const HeldLayout held;
    appSettings().FontSize += 2;
    editor.applySettings();
    QVERIFY(editor.store().linesAhead());
    takeSteps(editor, seed);
    editor.store().checkInvariants();
}

void RepaintTest::joinedLinesRenumberWhatFollows()
{
    appSettings() = AppSettings();
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 9;
    appSettings().RowNo = 2;
    RepaintedEditor editor;
    editor.setText(QStringLiteral("aaaaaaaaa\nb\nc\nd"));
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    editor.setCursorPosition(0, 9);
    editor.shown();
    QTest::keyClick(&editor, Qt::Key_Delete);
    QCOMPARE(editor.numLines(), 4); // rows, as before
    const QImage found = editor.shown();
    editor.viewport()->update();
    QCOMPARE(found, editor.shown());
}

void RepaintTest::overwriteCursorIsErased()
{
    appSettings() = AppSettings();
    appSettings().RowNo = 2;
    RepaintedEditor editor;
    editor.setText(QStringLiteral("\u300c\u6f22\u300d\n\tb\n\nd"));
    editor.show();
    editor.activateWindow();
    editor.setFocus();
    QTRY_VERIFY(editor.hasFocus());
    for (const Qt::Key key : { Qt::Key_Insert, Qt::Key_Right, Qt::Key_End, Qt::Key_A, Qt::Key_Down,
             Qt::Key_Home, Qt::Key_B, Qt::Key_Right, Qt::Key_Down, Qt::Key_Up, Qt::Key_Insert }) {
        editor.shown();
        editor.press(key);
        const QImage found = editor.shown();
        editor.updateView();
        QVERIFY2(found == editor.shown(), qPrintable(QKeySequence(key).toString()));
    }
}

void RepaintTest::changeTogetherWithAScroll_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, Change change) { QTest::addRow("%s", name) << change; };
    row("of the desktop's colours", [](RepaintedEditor &editor) { editor.recolour(Qt::darkGreen); });
    row("of an option", [](RepaintedEditor &editor) { editor.setting(&AppSettings::ForeColor, 7); });
    row("of the text above", [](RepaintedEditor &editor) { insertAt(editor, QStringLiteral("\n"), 0, 0); });
    row("of the selection", [](RepaintedEditor &editor) { editor.deselect(); });
    row("of what only a full repaint shows", [](RepaintedEditor &editor) {
        appSettings().RowNo = 0;
        editor.viewport()->update();
        editor.shown();
    });
    row("of another editor", [](RepaintedEditor &) { RepaintedEditor().grab(); });
    row("of another editor's row, and one of this one", [](RepaintedEditor &editor) {
        const auto paintRow = [](RepaintedEditor &painted) {
            QPixmap target(300, 300);
            QPainter painter(&target);
            painted.paintCell(painter, RowIndex(9), painted.cellRect(RowIndex(9)), target.rect());
        };
        RepaintedEditor other;
        paintRow(other);
        paintRow(editor);
    });
}

/// At a fractional scale rows that stay in the view are copied, not drawn, unless they look different now.
void RepaintTest::changeTogetherWithAScroll()
{
    QFETCH(Change, change);
    appSettings() = AppSettings();
    appSettings().RowNo = 2;
    RepaintedEditor editor;
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    editor.selectAll();
    editor.setTopRow(RowIndex(4));
    editor.shown();
    change(editor);
    editor.setTopRow(editor.topRow() + 1);
    const QImage found = editor.shown();
    editor.updateView();
    QCOMPARE(found, editor.shown());
}

// One point is one pixel, as in the program; the cursor does not blink by itself.
namespace {

int runRepaintTest(int argc, char **argv)
{
    qputenv("QT_FONT_DPI", "72");
    QApplication application(argc, argv);
    QApplication::setCursorFlashTime(0);
    RepaintTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runRepaintTest)
#include "repaint_test.moc"
