#pragma once

#include <QObject>

#include <chrono>

class QSocketNotifier;

/// SIGTERM, SIGHUP and SIGINT as the order to end (EndOrder) and as a signal of the event loop. One object
/// for the process; before it is made and after it is gone these signals end the process as ever. Those that
/// were ignored when it was made stay so: whoever started the program wanted that (nohup).
class EndSignals : public QObject {
    Q_OBJECT
public:
    /// How long the process may run on behind the first of the signals: some call to the system may not
    /// return, or some work not ask for the order. It is ended as it stands then; but while something is
    /// under way that should not be broken off (EndOrder::Delay) it has more time.
    struct Patience {
        std::chrono::milliseconds usual{ 900 };
        std::chrono::milliseconds most{ 3000 };
    };
    EndSignals(QObject *parent, Patience patience);
    explicit EndSignals(QObject *parent)
        : EndSignals(parent, Patience())
    {
    }
    ~EndSignals() override;

signals:
    /// Once for any number of signals that arrived since the event loop looked last.
    void endRequested();

private:
    void receive();

    QSocketNotifier *m_notifier = nullptr;
};
