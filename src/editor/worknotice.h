#pragma once

#include "document/editabletext.h"

#include <QCoreApplication>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>

class NoticeQueue;

/// Tells in the strip what is done behind the window, to a document or by the program, and how far it is, and
/// offers to stop it. Goes with the work. Assistive tools hear of its beginning, of each quarter and of its
/// end.
class WorkNotice {
    Q_DECLARE_TR_FUNCTIONS(WorkNotice)
public:
    enum class Work {
        Loading,
        Saving,
        Searching,
        Counting,
        Opening,
        Indenting,
        Pasting,
        LayingOut,
        Restoring
    };

    /// `notices` and `document` are not owned and live longer; without a document it is a work of the
    /// program. `stop` is what "Stop" and Escape in the strip do, which may destroy this.
    WorkNotice(NoticeQueue &notices, const QObject *document, Work work, std::function<void()> stop);
    ~WorkNotice();
    /// How long what was asked for is answered.
    static constexpr std::chrono::seconds answerTime{ 4 };
    Q_DISABLE_COPY_MOVE(WorkNotice)

    /// 0 to 100; nothing: nobody knows.
    void setProgress(std::optional<int> percent);
    /// Something was asked for that has to wait for the end: the strip says so for some seconds. Not of a
    /// work that nothing has to wait for.
    void refuse(std::chrono::milliseconds time = answerTime);
    /// What was asked for is done at the end: the strip says so for some seconds. Nothing where a work has no
    /// words for it.
    void promise(EditableText::Awaited what, std::chrono::milliseconds time = answerTime);

private:
    enum class Step { Begun, Stopping, Ended };
    struct State {
        Step step = Step::Begun;
        const char *answer = nullptr; ///< to what was asked for, which is said now
        std::optional<int> percent = {};
    };

    void show();
    void answer(const char *words, std::chrono::milliseconds time);
    void stop();
    static QString textOf(Work work, const State &state);

    NoticeQueue &m_notices;
    const QObject *const m_document;
    const Work m_work;
    const std::function<void()> m_stop;
    State m_state;
    QTimer m_answering; ///< runs while something is answered
};
