#pragma once

#include <QObject>

class QSocketNotifier;

/// SIGTERM, SIGHUP and SIGINT as a signal of the event loop. One object for the process; before it is made
/// and after it is gone these signals end the process as ever. Those that were ignored when it was made stay
/// so: whoever started the program wanted that (nohup).
class EndSignals : public QObject {
    Q_OBJECT
public:
    explicit EndSignals(QObject *parent);
    ~EndSignals() override;

signals:
    /// Once for any number of signals that arrived since the event loop looked last.
    void endRequested();

private:
    void receive();

    QSocketNotifier *m_notifier = nullptr;
};
