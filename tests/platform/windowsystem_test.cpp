#include "platform/windowsystem.h"

#include "tests/testprogram.h"

#include <QApplication>
#include <QTest>

#include <memory>

#include <xcb/xcb.h>

/// What windows are shown by; run without a screen, on an X server and on Wayland.
class WindowSystemTest : public QObject {
    Q_OBJECT

private slots:
    void isNothingWithoutAnApplication();
    void isToldByTheApplication();
    void answersOfAnXServer();
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

REGISTER_TEST(runPlainTest<WindowSystemTest>)
#include "windowsystem_test.moc"
