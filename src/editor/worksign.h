#pragma once

#include "editor/worknotice.h"

#include <QTimer>

#include <chrono>

/// The notice of a work that has taken long: a sign of what is over sooner would only flicker. It goes with
/// this.
class WorkSign {
public:
    using Clock = std::chrono::steady_clock;
    /// As for WorkNotice; what it goes on with has begun at `begun`.
    WorkSign(NoticeQueue &notices, const QObject *document, WorkNotice::Work work, std::function<void()> stop,
        Clock::time_point begun = Clock::now());
    Q_DISABLE_COPY_MOVE(WorkSign)

    void setProgress(std::optional<int> percent);
    /// As WorkNotice::refuse(), which is said at once.
    void refuse();
    /// As WorkNotice::promise(), which is said at once.
    void promise(EditableText::Awaited what);

private:
    void show();

    NoticeQueue &m_notices;
    const QObject *const m_document;
    const WorkNotice::Work m_work;
    const std::function<void()> m_stop;
    QTimer m_waiting;
    std::optional<int> m_percent;
    std::optional<WorkNotice> m_notice; ///< from when it has taken long
};
