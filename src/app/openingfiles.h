#pragma once

#include "editor/worksign.h"

#include <QObject>

#include <optional>

class NoticeQueue;
class QKeyEvent;

/// The sign of many files that were asked for at once: how many are open, and "Stop", which keeps those and
/// opens no more. Keys wait until a file is shown, and so for all of them: the sign says so of one that comes
/// meanwhile.
class OpeningFiles : public QObject {
    Q_OBJECT
public:
    /// Not owned, and lives longer.
    explicit OpeningFiles(NoticeQueue &notices);

    /// One of them at least is open, and others wait.
    bool isUnderWay() const { return m_sign.has_value(); }
    /// Those that wait are not opened.
    void end();

signals:
    /// The key that leads to the notice was pressed while keys have to wait.
    void noticeKeysWanted();

private:
    void refuse(const QKeyEvent &press);
    void note(qsizetype waiting);

    NoticeQueue &m_notices;
    qsizetype m_open = 0; ///< of those that were asked for
    std::optional<WorkSign> m_sign; ///< while some wait
};
