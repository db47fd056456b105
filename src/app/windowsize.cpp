#include "app/windowsize.h"

#include "settings/moresettings.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>

namespace {

constexpr QSize firstSize{ 640, 480 };
constexpr QSize smallest{ 100, 80 }; ///< that a window has on purpose

bool isUsable(const QSize &size)
{
    return size.expandedTo(smallest) == size;
}

} // namespace

WindowSize::WindowSize(QWidget *window)
    : QObject(window)
    , m_window(window)
{
    window->installEventFilter(this);
}

void WindowSize::restore()
{
    const MoreSettings &settings = moreSettings();
    const QSize noted(settings.WindowWidth, settings.WindowHeight);
    const QSize size = settings.KeepWindowSize != 0 && isUsable(noted) ? noted : firstSize;
    m_window->resize(size.boundedTo(m_window->screen()->availableSize()));
}

bool WindowSize::eventFilter(QObject *, QEvent *event)
{
    constexpr Qt::WindowStates others = Qt::WindowMaximized | Qt::WindowFullScreen | Qt::WindowMinimized;
    const bool isPlain = event->type() == QEvent::Resize && m_window->isVisible()
        && !(m_window->windowState() & others) && !isLikeMaximised();
    if (isPlain && isUsable(m_window->size())) {
        moreSettings().WindowWidth = m_window->width();
        moreSettings().WindowHeight = m_window->height();
    }
    return false;
}

/// A window manager may tell the size of a maximised window before it tells that it is one.
bool WindowSize::isLikeMaximised() const
{
    const QSize available = m_window->screen()->availableSize();
    return m_window->width() >= available.width() && m_window->height() >= available.height() * 9 / 10;
}
