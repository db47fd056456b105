#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QScreen>

using namespace Qt::StringLiterals;

/// The window on a compositor that ends a program whose window has another size than it was given.
class WaylandTest : public QObject {
    Q_OBJECT

private slots:
    void init() { resetSettings(); }
    void fullScreenAndBack();
    void fullScreenOfANormalWindow();
    void compositorEndsFullScreen();
};

/// Over the whole screen; then maximised, beside nothing but the frame.
static bool coversScreen(const frmMain &window, bool covering)
{
    const QSize screen = window.screen()->size();
    const bool isWhole = window.size() == screen;
    const bool isMaximized =
        window.isMaximized() && !window.isFullScreen() && !isWhole && window.frameGeometry().size() == screen;
    return window.isCoveringScreen() == covering
        && (covering ? isWhole && window.isFullScreen() : isMaximized);
}

void WaylandTest::fullScreenAndBack()
{
    QCOMPARE(QGuiApplication::platformName(), u"wayland"_s);
    frmMain window;
    window.showMaximized();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.slotCmdFileNew();
    window.currentEditor()->insert(u"unsaved"_s);
    QTRY_VERIFY(coversScreen(window, false));
    const QSize before = window.size();
    for (int i = 0; i < 3; ++i) {
        window.slotCmdViewFull();
        QTRY_VERIFY(coversScreen(window, true));
        window.slotCmdViewFull();
        QTRY_VERIFY(coversScreen(window, false));
        QTRY_COMPARE(window.size(), before);
    }
    QCOMPARE(window.currentEditor()->text(), u"unsaved"_s);
    window.currentEditor()->setEdited(false);
}

void WaylandTest::fullScreenOfANormalWindow()
{
    frmMain window;
    window.resize(500, 300);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.slotCmdViewFull();
    QTRY_VERIFY(coversScreen(window, true));
    window.slotCmdViewFull();
    QTRY_VERIFY(coversScreen(window, false));
}

void WaylandTest::compositorEndsFullScreen()
{
    frmMain window;
    window.showMaximized();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.slotCmdViewFull();
    QTRY_VERIFY(coversScreen(window, true));
    window.setWindowState(Qt::WindowMaximized);
    QTRY_VERIFY(coversScreen(window, false));
    window.slotCmdViewFull();
    QTRY_VERIFY(coversScreen(window, true));
}

REGISTER_TEST(runWindowTest<WaylandTest>)
#include "wayland_test.moc"
