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
    /// The process is ended, as it stands, when it still runs `patience` after the first of the signals: some
    /// call to the system does not return.
    explicit EndSignals(QObject *parent, std::chrono::milliseconds patience = std::chrono::seconds(3));
    ~EndSignals() override;

signals:
    /// Once for any number of signals that arrived since the event loop looked last.
    void endRequested();

private:
    void receive();

    QSocketNotifier *m_notifier = nullptr;
};
