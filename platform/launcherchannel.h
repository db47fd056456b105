#pragma once

#include <QDBusContext>
#include <QObject>
#include <QStringList>

/// Our own channel, "QPE/Application/marlopad": how the launcher, other programs and a second start of this
/// one reach the running instance.
class LauncherChannel : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "QPE.Application")
public:
    explicit LauncherChannel(QObject *parent);

    /// Takes the channel. False without a session bus, and when another process has it.
    bool open();

    /// Gives the process that has the channel these files (absolute names), taking from the list each that it
    /// has confirmed; without any it is asked to show its window. True when it confirmed everything; false as
    /// soon as it fails to answer within two seconds.
    static bool handOver(QStringList &fileNames);

public slots:
    /// An absolute name, or a "file://" address: so travels a name that is no Unicode text. Anything else is
    /// answered with an error.
    Q_SCRIPTABLE void setDocument(const QString &fileName);
    Q_SCRIPTABLE void raise();
    /// With what the launcher gave a second start as its right to come to the front.
    Q_SCRIPTABLE void raise(const QString &activationToken);

signals:
    void documentRequested(const QString &fileName);
    void raiseRequested();
};
