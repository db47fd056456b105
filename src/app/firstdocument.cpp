#include "app/firstdocument.h"

#include "app/documentarea.h"

namespace {

constexpr std::chrono::milliseconds delay{ 200 };

} // namespace

FirstDocument::FirstDocument(const QWidget &window, DocumentArea &documents)
    : m_window(window)
    , m_documents(documents)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &FirstDocument::make);
}

void FirstDocument::wait()
{
    m_timer.start(delay);
}

void FirstDocument::noteActivation()
{
    if (m_isDue)
        make();
}

void FirstDocument::make()
{
    m_timer.stop();
    m_isDue = !m_documents.current() && !m_window.isActiveWindow();
    if (m_isDue)
        return;
    if (!m_documents.current())
        m_documents.present(m_documents.add());
    m_documents.arrange();
}
