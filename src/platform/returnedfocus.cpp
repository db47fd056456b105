#include "platform/returnedfocus.h"

#include "platform/windowmanager.h"
#include "platform/windowsystem.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QWidget>

namespace {

/// The window that a dialog on the screen stands before; null for everything else.
QWidget *windowBehind(const QObject *object)
{
    const auto *const dialog = qobject_cast<const QWidget *>(object);
    if (!dialog || dialog->windowType() != Qt::Dialog || !dialog->parentWidget())
        return nullptr;
    QWidget *const window = dialog->parentWidget()->window();
    return window->isVisible() ? window : nullptr;
}

} // namespace

ReturnedFocus::ReturnedFocus(QCoreApplication *application)
    : QObject(application)
{
    application->installEventFilter(this);
}

bool ReturnedFocus::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() != QEvent::Hide || event->spontaneous())
        return false;
    // Another program that has the keys keeps them.
    QWidget *const window = windowBehind(object);
    if (window && QGuiApplication::applicationState() == Qt::ApplicationActive && !WindowManager::isPresent())
        WindowSystem::activate(*window);
    return false;
}
