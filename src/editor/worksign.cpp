#include "editor/worksign.h"

using namespace std::chrono_literals;

WorkSign::WorkSign(NoticeQueue &notices, const QObject *document, WorkNotice::Work work,
    std::function<void()> stop, Clock::time_point begun)
    : m_notices(notices)
    , m_document(document)
    , m_work(work)
    , m_stop(std::move(stop))
{
    m_waiting.setSingleShot(true);
    m_waiting.callOnTimeout([this] { show(); });
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(begun + 100ms - Clock::now());
    if (left > 0ms)
        m_waiting.start(left);
    else
        show();
}

void WorkSign::show()
{
    m_waiting.stop();
    if (m_notice)
        return;
    m_notice.emplace(m_notices, m_document, m_work, m_stop);
    m_notice->setProgress(m_percent);
}

void WorkSign::setProgress(std::optional<int> percent)
{
    m_percent = percent;
    if (m_notice)
        m_notice->setProgress(percent);
}

void WorkSign::refuse()
{
    show();
    m_notice->refuse();
}

void WorkSign::promise(EditableText::Awaited what)
{
    show();
    m_notice->promise(what);
}
