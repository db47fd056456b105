#include "platform/windowsystem.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

#include <xcb/xcb.h>

bool WindowSystem::isWayland()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

void WindowSystem::activate(QWidget &window)
{
    const QWindow *const focus = QGuiApplication::focusWindow();
    if (!isWayland() || !focus || focus->handle())
        window.activateWindow();
}

xcb_connection_t *WindowSystem::xServer()
{
    const auto *const gui = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    auto *const server = gui ? gui->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return server ? server->connection() : nullptr;
}

XConnection connectToX()
{
    return { xcb_connect(nullptr, nullptr), xcb_disconnect };
}
