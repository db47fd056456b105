#include "tests/editor/paintedrow.h"
#include "tests/testprogram.h"

#include <QLineEdit>
#include <QScreen>
#include <QVBoxLayout>

using Setting = int AppSettings::*;
using Apply = void (ctlEditer::*)();

namespace {

constexpr QRgb activeColor = qRgb(200, 0, 0);
constexpr QRgb inactiveColor = qRgb(0, 150, 0);
constexpr QRgb lineColor = qRgb(0, 0, 255); // colour 8

/// A window with an editor in which some blanks are selected, and with a field to go to.
struct Window {
    Window()
        : editor(QStringLiteral("      \nsecond row"))
    {
        auto *const column = new QVBoxLayout(&window);
        column->addWidget(&editor);
        column->addWidget(&field);
        QPalette colors = editor.palette();
        colors.setColor(QPalette::Active, QPalette::Highlight, QColor(activeColor));
        colors.setColor(QPalette::Inactive, QPalette::Highlight, QColor(inactiveColor));
        editor.setPalette(colors);
        editor.setCursorPosition(0, 1);
        editor.setCursorPosition(0, 5, true);
        window.resize(400, 300);
        window.show();
    }
    ~Window() { editor.setParent(nullptr); }

    /// What stands on the screen when all that was asked for is painted.
    QImage shown()
    {
        QEvent paintNow(QEvent::UpdateRequest);
        QApplication::sendEvent(&window, &paintNow);
        return window.screen()->grabWindow(window.winId()).toImage().convertToFormat(QImage::Format_RGB32);
    }
    std::size_t count(QRgb color) { return pixelsOf(shown(), color).size(); }

    QWidget window;
    Editor editor;
    QLineEdit field;
};

} // namespace

/// Editors without the focus or in a window that is not the active one, and colours that change.
class InactivePaintingTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        registerLcFont();
        QApplication::setCursorFlashTime(0);
    }
    void init()
    {
        plainSettings();
        appSettings().ActiveHLine = 8;
    }
    void selectionTakesTheColoursOfItsWindow();
    void colorsAreShownAtOnce_data();
    void colorsAreShownAtOnce();
};

void InactivePaintingTest::selectionTakesTheColoursOfItsWindow()
{
    Window shown;
    shown.window.activateWindow();
    shown.editor.setFocus();
    QTRY_VERIFY(shown.editor.hasFocus());
    const std::size_t selected = shown.count(activeColor);
    const std::size_t line = shown.count(lineColor);
    QVERIFY(selected > 0 && line > 0);
    QCOMPARE(shown.count(inactiveColor), 0U);

    // The window is the active one still: only the cursor goes.
    shown.field.setFocus();
    QTRY_VERIFY(shown.field.hasFocus());
    QVERIFY(shown.count(activeColor) >= selected);
    QCOMPARE(shown.count(inactiveColor), 0U);
    QCOMPARE(shown.count(lineColor), line);

    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_VERIFY(!shown.window.isActiveWindow());
    QCOMPARE(shown.count(activeColor), 0U);
    QVERIFY(shown.count(inactiveColor) >= selected);
    QCOMPARE(shown.count(lineColor), line);

    shown.window.activateWindow();
    QTRY_VERIFY(shown.window.isActiveWindow());
    QTRY_VERIFY(shown.count(activeColor) >= selected);
    QCOMPARE(shown.count(inactiveColor), 0U);
}

void InactivePaintingTest::colorsAreShownAtOnce_data()
{
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<Apply>("apply");
    QTest::addRow("line of the cursor")
        << Setting(&AppSettings::ActiveHLine) << Apply(&ctlEditer::applyActiveLineColor);
    QTest::addRow("text") << Setting(&AppSettings::ForeColor) << Apply(&ctlEditer::applyColors);
    QTest::addRow("background") << Setting(&AppSettings::BackColor) << Apply(&ctlEditer::applyColors);
    QTest::addRow("row numbers") << Setting(&AppSettings::RowNoColor) << Apply(&ctlEditer::applyColors);
}

void InactivePaintingTest::colorsAreShownAtOnce()
{
    QFETCH(Setting, setting);
    QFETCH(Apply, apply);
    constexpr int green = 7;
    appSettings().RowNo = 2;
    Window shown;
    QVERIFY(QTest::qWaitForWindowExposed(&shown.window));
    QCOMPARE(shown.count(qRgb(0, 255, 0)), 0U);
    appSettings().*setting = green;
    (shown.editor.*apply)();
    QVERIFY(shown.count(qRgb(0, 255, 0)) > 0);
}

REGISTER_TEST(runPaintingTest<InactivePaintingTest>)
#include "inactivepainting_test.moc"
