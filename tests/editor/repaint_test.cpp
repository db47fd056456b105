#include "app/settings.h"
#include "editor/ctlediter.h"
#include "tests/seeds.h"

#include <QApplication>
#include <QRandomGenerator>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

namespace {

constexpr int steps = 40;

QString sampleText()
{
    return QStringLiteral("first line\n\tindented \u3000 line\n\n\u6f22\u5b57\u304b\u306a line\n"
                          "\u0627\u0644\u0633\u0644\u0627\u0645 e\u0301 line\n"
                          "line \u0627\u0644\u0633\u0644\u0627\u0645\nend of line marks, and much more\n"
                          "\u0e17\u0e35\u0e48\u0e19\u0e35\u0e48 \U00020000\u00a0\u200b\u0001\n")
               .repeated(40)
        + QStringLiteral("a line that is wider than the view ").repeated(20);
}

class Editor : public ctlEditer {
public:
    Editor()
        : ctlEditer(nullptr)
    {
        resize(400, 301);
        setText(sampleText());
    }
    using QMultiLineEdit::updateRow;

    /// What stands on the screen when all that was asked for is painted.
    QImage shown()
    {
        QEvent paintNow(QEvent::UpdateRequest);
        QApplication::sendEvent(this, &paintNow);
        return screen()->grabWindow(winId()).toImage();
    }
    void wheel(int turned)
    {
        const QPointF middle = viewport()->rect().center();
        QWheelEvent event(middle, viewport()->mapToGlobal(middle), QPoint(), QPoint(0, turned), Qt::NoButton,
            Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport(), &event);
    }
    void act(int what);
};

void Editor::act(int what)
{
    struct Press {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
    };
    static const Press presses[] = { { Qt::Key_Down, {} }, { Qt::Key_Up, {} }, { Qt::Key_Right, {} },
        { Qt::Key_Left, {} }, { Qt::Key_End, {} }, { Qt::Key_Home, {} }, { Qt::Key_PageDown, {} },
        { Qt::Key_PageUp, {} }, { Qt::Key_Down, Qt::ShiftModifier }, { Qt::Key_Right, Qt::ShiftModifier },
        { Qt::Key_PageDown, Qt::ShiftModifier }, { Qt::Key_Return, {} }, { Qt::Key_Backspace, {} },
        { Qt::Key_Delete, {} }, { Qt::Key_A, {} }, { Qt::Key_Tab, {} }, { Qt::Key_End, Qt::ControlModifier },
        { Qt::Key_Z, Qt::ControlModifier } };
    const int count = int(std::size(presses));
    if (what < count)
        QTest::keyClick(this, presses[what].key, presses[what].modifiers);
    else if (what < count + 3)
        updateRow(cursorPosition().row); // as the cursor blinks
    else if (what < count + 5)
        wheel(what == count + 3 ? -120 : 120);
    else
        horizontalScrollBar()->triggerAction(
            what == count + 5 ? QScrollBar::SliderSingleStepAdd : QScrollBar::SliderSingleStepSub);
}

constexpr int actions = 25;

} // namespace

/// What is on the screen after any steps is what painting everything anew would show: no row's edge is left
/// out when it alone is repainted, and what is moved instead of painted fits its neighbours.
class RepaintTest : public QObject {
    Q_OBJECT
private slots:
    void screenIsAsPaintedAnew_data();
    void screenIsAsPaintedAnew();
    void joinedLinesRenumberWhatFollows();
};

void RepaintTest::screenIsAsPaintedAnew_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("wrapMode");
    QTest::addColumn<int>("fontSize");
    QTest::addColumn<int>("marks");
    const std::tuple<int, int, int> looks[] = { { 0, 13, 0 }, { 0, 12, 1 }, { 1, 18, 1 }, { 2, 9, 0 } };
    for (const auto &[wrapMode, fontSize, marks] : looks) {
        const quint32 seed = seedOr(QRandomGenerator::global()->generate());
        QTest::addRow("seed %u, wrap mode %d, font size %d, marks %d", seed, wrapMode, fontSize, marks)
            << seed << wrapMode << fontSize << marks;
    }
}

void RepaintTest::screenIsAsPaintedAnew()
{
    QFETCH(quint32, seed);
    QFETCH(int, wrapMode);
    QFETCH(int, fontSize);
    QFETCH(int, marks);
    appSettings() = AppSettings();
    appSettings().WrapMode = wrapMode;
    appSettings().FontSize = fontSize;
    appSettings().RowNo = 2;
    appSettings().ActiveHLine = 8;
    appSettings().ShowKAI = marks;
    appSettings().ShowEOF = marks;
    appSettings().ShowTAB = marks;
    appSettings().ShowZEN = marks;
    Editor editor;
    editor.show();
    editor.activateWindow();
    editor.setFocus();
    QTRY_VERIFY(editor.hasFocus());
    QRandomGenerator random(seed);
    for (int step = 0; step < steps; ++step) {
        const int what = random.bounded(actions);
        editor.act(what);
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

void RepaintTest::joinedLinesRenumberWhatFollows()
{
    appSettings() = AppSettings();
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 9;
    appSettings().RowNo = 2;
    Editor editor;
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

// One point is one pixel, as in the program; the cursor does not blink by itself.
int main(int argc, char **argv)
{
    qputenv("QT_FONT_DPI", "72");
    QApplication application(argc, argv);
    QApplication::setCursorFlashTime(0);
    RepaintTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "repaint_test.moc"
