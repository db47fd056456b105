#include "editor/worknotice.h"

#include "editor/noticequeue.h"

using namespace Qt::StringLiterals;

WorkNotice::WorkNotice(NoticeQueue &notices, const QObject &document, Work work, std::function<void()> stop)
    : m_notices(notices)
    , m_document(document)
    , m_work(work)
    , m_stop(std::move(stop))
{
    show();
}

/// Its end is said by the strip, which then goes.
WorkNotice::~WorkNotice()
{
    if (!m_notices.has(NoticeKind::Work, &m_document))
        return;
    m_step = Step::Ended;
    show();
    m_notices.withdraw(NoticeKind::Work, &m_document);
}

void WorkNotice::setProgress(std::optional<int> percent)
{
    if (percent == m_percent)
        return;
    m_percent = percent;
    show();
}

void WorkNotice::refuse()
{
    if (m_step == Step::Refused)
        return;
    m_step = Step::Refused;
    show();
}

void WorkNotice::show()
{
    constexpr int quarter = 25;
    const auto text = [work = m_work, step = m_step, percent = m_percent] {
        return textOf(work, step, percent);
    };
    const auto spoken = [work = m_work, step = m_step, percent = m_percent] {
        return textOf(work, step, percent ? std::optional(*percent / quarter * quarter) : std::nullopt);
    };
    Notice notice{ NoticeKind::Work, &m_document, text, {} };
    notice.offers.push_back({ [] { return tr("Stop"); }, m_stop });
    notice.isDismissable = false;
    notice.spoken = spoken;
    notice.escaped = m_stop;
    m_notices.put(std::move(notice));
}

QString WorkNotice::textOf(Work work, Step step, std::optional<int> percent)
{
    const bool isLoading = work == Work::Loading;
    QString text;
    switch (step) {
    case Step::Ended:
        return isLoading ? tr("Loading has ended") : tr("Saving has ended");
    case Step::Refused:
        text = isLoading ? tr("Not while it is loading") : tr("Not while it is being saved");
        break;
    case Step::Begun:
        text = isLoading ? tr("Loading") : tr("Saving");
        break;
    }
    return percent ? tr("%1: %2%").arg(text).arg(*percent) : text + u"…"_s;
}
