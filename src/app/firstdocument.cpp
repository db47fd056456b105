#include "app/firstdocument.h"

#include "app/documentarea.h"
#include "platform/qpeapplication.h"

namespace {

constexpr std::chrono::milliseconds delay{ 200 };

} // namespace

FirstDocument::FirstDocument(const QWidget &window, DocumentArea &documents)
    : m_window(window)
    , m_documents(documents)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &FirstDocument::makeIfNothingComes);
}

void FirstDocument::wait()
{
    m_timer.start(delay);
}

void FirstDocument::noteActivation()
{
    if (m_isDue)
        makeIfNothingComes();
}

/// On a slow machine the window is active before it is on the screen, which files wait for.
void FirstDocument::makeIfNothingComes()
{
    if (QPEApplication::hasRequests())
        wait();
    else
        make();
}

void FirstDocument::make()
{
    m_timer.stop();
    // A window that was closed is active for a moment longer.
    const bool isActive = m_window.isVisible() && m_window.isActiveWindow();
    m_isDue = !m_documents.current() && !isActive;
    if (m_isDue)
        return;
    if (!m_documents.current())
        m_documents.present(m_documents.add());
    m_documents.arrange();
}
