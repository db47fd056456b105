#pragma once

#include <QDeadlineTimer>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>

/// Work that only the window's thread may do and that takes long, in turns of the event loop.
///
/// Where there is too little memory for a turn, the work has failed, and is not gone on with.
class WorkTurns {
public:
    /// Goes on until the time is over, and gets on in any case; whether all is done. It may throw
    /// std::bad_alloc, with everything but the work itself as it was.
    using Turn = std::function<bool(QDeadlineTimer end)>;
    using Then = std::function<void()>;
    /// `done` or `failed` is called at the end, and may destroy this.
    WorkTurns(QObject *parent, std::chrono::milliseconds length, Turn turn, Then done, Then failed);
    Q_DISABLE_COPY_MOVE(WorkTurns)

    /// The first turn is made when the event loop comes round.
    void start();
    /// The next one is made now, the others as they come.
    void goOn();
    void stop() { m_timer.stop(); }
    bool isUnderWay() const { return m_timer.isActive(); }

private:
    std::optional<bool> tryTurn() const;

    const std::chrono::milliseconds m_length;
    const Turn m_turn;
    const Then m_done;
    const Then m_failed;
    QTimer m_timer;
};
