#include "app/fullscreen.h"

#include "platform/windowmanager.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>

namespace {

/// A window manager that has not answered by then never will.
constexpr std::chrono::seconds patience{ 5 };

// Maximised as well, which it is again at the end: Wayland takes that back in one step.
constexpr Qt::WindowStates covering = Qt::WindowMaximized | Qt::WindowFullScreen;

} // namespace

FullScreen::FullScreen(QWidget *window)
    : QObject(window)
    , m_window(window)
{
    window->installEventFilter(this);
}

void FullScreen::toggle()
{
    if (!m_answer.hasExpired()) {
        m_isOn = !m_isOn;
    } else if (WindowManager::isPresent()) {
        if (m_isAskedOn != m_isToldOn)
            m_isOn = m_isToldOn; // It left the last request undone, or has changed its mind.
        m_isOn = !m_isOn;
        request();
    } else {
        m_isOn ? uncoverScreen() : coverScreen();
    }
}

void FullScreen::keep()
{
    if (m_isOn && !WindowManager::isPresent() && m_window->size() != m_window->screen()->size())
        place(m_window->screen()->geometry());
}

bool FullScreen::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show)
        m_window->windowHandle()->installEventFilter(this);
    if (event->type() != QEvent::WindowStateChange)
        return false;
    if (!event->spontaneous()) {
        noteRequest();
    } else if (const auto *window = qobject_cast<QWindow *>(watched)) {
        // A window that is not on the screen keeps its state for when it is.
        if (window->isVisible() && !(window->windowStates() & Qt::WindowMinimized))
            hear(window->windowStates() & Qt::WindowFullScreen);
    }
    return false;
}

void FullScreen::request()
{
    m_window->setWindowState(m_isOn ? covering : Qt::WindowMaximized);
}

/// It may come from elsewhere in the program.
void FullScreen::noteRequest()
{
    m_isOn = m_window->isFullScreen();
    if (m_isOn == m_isToldOn || !WindowManager::isPresent())
        return;
    m_isAskedOn = m_isOn;
    m_isAnswered = false;
    m_answer.setRemainingTime(patience);
}

void FullScreen::coverScreen()
{
    m_before = m_window->geometry();
    m_window->setWindowState(covering);
    place(m_window->screen()->geometry());
}

void FullScreen::uncoverScreen()
{
    m_window->setWindowState(Qt::WindowMaximized);
    place(m_before);
}

/// A widget that is given a size itself takes this for the end of full screen.
void FullScreen::place(const QRect &geometry)
{
    m_window->windowHandle()->setGeometry(geometry);
}

void FullScreen::hear(bool isCovering)
{
    if (!WindowManager::isPresent())
        return;
    m_isToldOn = isCovering;
    if (m_answer.hasExpired()) {
        m_isOn = isCovering;
    } else if (isCovering == m_isAskedOn && !m_isAnswered) {
        m_isAnswered = true;
        // The widget is told next; until then it takes a request for one that it has carried out already.
        QMetaObject::invokeMethod(this, &FullScreen::takeAnswer, Qt::QueuedConnection);
    }
}

void FullScreen::takeAnswer()
{
    if (!m_isAnswered)
        return; // Something else was asked for meanwhile.
    m_isAnswered = false;
    m_answer = {};
    if (m_isOn == m_isAskedOn)
        m_isOn = m_isToldOn;
    else if (m_isOn != m_isToldOn)
        request();
}
