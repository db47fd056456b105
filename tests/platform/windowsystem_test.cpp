#include "platform/windowsystem.h"

#include "tests/testprogram.h"

#include <QApplication>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include <memory>

#include <private/qguiapplication_p.h>
#include <xcb/xcb.h>

/// What windows are shown by; run without a screen, on an X server and on Wayland.
class WindowSystemTest : public QObject {
    Q_OBJECT

private slots:
    void isNothingWithoutAnApplication();
    void isToldByTheApplication();
    void answersOfAnXServer();
    void activatesAWindow();
    void activatesWhenTheWindowWithTheKeysHasGone();
};

void WindowSystemTest::isNothingWithoutAnApplication()
{
    QVERIFY(!WindowSystem::xServer());
}

void WindowSystemTest::isToldByTheApplication()
{
    int argc = 1;
    char name[] = "test";
    char *argv[] = { name, nullptr };
    const QApplication application(argc, argv);
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    QCOMPARE(WindowSystem::xServer() != nullptr, platform == "xcb");
    QCOMPARE(WindowSystem::isWayland(), platform == "wayland");
}

void WindowSystemTest::answersOfAnXServer()
{
    int argc = 1;
    char name[] = "test";
    char *argv[] = { name, nullptr };
    const QApplication application(argc, argv);
    xcb_connection_t *const server = WindowSystem::xServer();
    QCOMPARE(server != nullptr, qgetenv("QT_QPA_PLATFORM") == "xcb");
    if (!server)
        return;
    const auto focus = xReply(xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
    QVERIFY(focus);
    const auto none = xReply(
        xcb_get_window_attributes_reply(server, xcb_get_window_attributes(server, XCB_WINDOW_NONE), nullptr));
    QVERIFY(!none);
}

void WindowSystemTest::activatesAWindow()
{
    int argc = 1;
    char name[] = "test";
    char *argv[] = { name, nullptr };
    const QApplication application(argc, argv);
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    WindowSystem::activate(window);
    if (!WindowSystem::isWayland()) // where there are no keys
        QTRY_VERIFY(window.isActiveWindow());
}

/// As when it was hidden while its keyboard went.
void WindowSystemTest::activatesWhenTheWindowWithTheKeysHasGone()
{
    int argc = 1;
    char name[] = "test";
    char *argv[] = { name, nullptr };
    const QApplication application(argc, argv);
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QWindow gone;
    QGuiApplicationPrivate::focus_window = &gone;
    WindowSystem::activate(window);
    if (WindowSystem::isWayland())
        QCOMPARE(QGuiApplication::focusWindow(), &gone);
    else
        QTRY_VERIFY(window.isActiveWindow());
}

REGISTER_TEST(runPlainTest<WindowSystemTest>)
#include "windowsystem_test.moc"
