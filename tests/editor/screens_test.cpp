#include "editor/ctlediter.h"
#include "settings/settings.h"
#include "tests/testprogram.h"

#include <QApplication>
#include <QScreen>
#include <QTemporaryFile>
#include <QTest>
#include <QWindow>

namespace {

/// Screens side by side; the scale is in the name.
constexpr const char *screens = R"({"screens": [
    {"name": "1", "x": 0, "y": 0, "width": 1280, "height": 800, "logicalDpi": 72, "logicalBaseDpi": 72, "dpr": 1},
    {"name": "1.5", "x": 1280, "y": 0, "width": 1280, "height": 800, "logicalDpi": 108, "logicalBaseDpi": 72, "dpr": 1},
    {"name": "2", "x": 2560, "y": 0, "width": 1280, "height": 800, "logicalDpi": 144, "logicalBaseDpi": 72, "dpr": 1}
]})";

constexpr QSize logicalSize(400, 300);
constexpr QSize comparedSize(360, 260); ///< of the text, without scroll bars

QScreen *screenOfScale(double scale)
{
    for (QScreen *screen : QGuiApplication::screens()) {
        if (screen->devicePixelRatio() == scale)
            return screen;
    }
    return nullptr;
}

void fill(ctlEditer &editor)
{
    editor.setText(QStringLiteral("first line\n\tafter a tab \u3000\u6f22\u5b57\ne\u0301 and a longer line\n")
                       .repeated(9));
    editor.setCursorPosition(2, 3);
}

QImage shownOn(ctlEditer &editor, QScreen *screen)
{
    editor.winId();
    editor.windowHandle()->setScreen(screen);
    editor.show();
    editor.activateWindow();
    editor.setFocus();
    if (!QTest::qWaitForWindowActive(&editor) || !waitUntil([&] { return editor.hasFocus(); }))
        return {};
    // The window keeps its device pixels on its way; what is compared is one part of the text at one logical
    // size.
    QCoreApplication::processEvents();
    editor.resize(logicalSize);
    editor.setTopRow(RowIndex(0));
    editor.setXOffset(0);
    return editor.viewport()->grab(QRect(QPoint(), comparedSize)).toImage();
}

} // namespace

/// A window that comes from a screen of another scale looks as one that was always there.
class ScreensTest : public QObject {
    Q_OBJECT
private slots:
    void moveBetweenScales_data();
    void moveBetweenScales();
};

void ScreensTest::moveBetweenScales_data()
{
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<int>("wrapMode");
    for (const int wrapMode : { 0, 2 }) {
        for (const double from : { 1.0, 1.5, 2.0 }) {
            for (const double to : { 1.0, 1.5, 2.0 }) {
                if (from != to)
                    QTest::addRow("from %g to %g, wrap mode %d", from, to, wrapMode)
                        << from << to << wrapMode;
            }
        }
    }
}

void ScreensTest::moveBetweenScales()
{
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(int, wrapMode);
    appSettings() = AppSettings();
    appSettings().WrapMode = wrapMode;
    appSettings().WrapLen = 12;
    appSettings().RowNo = 2;
    appSettings().ActiveHLine = 8;
    QVERIFY(screenOfScale(from) && screenOfScale(to));

    ctlEditer moved(nullptr);
    fill(moved);
    const QImage before = shownOn(moved, screenOfScale(from));
    QCOMPARE(moved.devicePixelRatioF(), from);
    const QImage after = shownOn(moved, screenOfScale(to));
    QCOMPARE(moved.devicePixelRatioF(), to);
    moved.hide();

    ctlEditer fresh(nullptr);
    fill(fresh);
    const QImage expected = shownOn(fresh, screenOfScale(to));
    QVERIFY(!expected.isNull());
    QCOMPARE(after.size(), comparedSize * to);
    QCOMPARE(after, expected);
    QCOMPARE(before.size(), comparedSize * from);
}

// One point is one pixel, as in the program; the cursor does not blink.
namespace {

int runScreensTest(int argc, char **argv)
{
    QTemporaryFile config;
    if (!config.open() || config.write(screens) < 0 || !config.flush())
        return 1;
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + config.fileName().toUtf8());
    QApplication application(argc, argv);
    QApplication::setCursorFlashTime(0);
    ScreensTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runScreensTest)
#include "screens_test.moc"
