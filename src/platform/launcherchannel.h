#pragma once

#include "platform/filerequest.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QList>
#include <QObject>
#include <QVariantMap>

/// Our own channel, "QPE/Application/marlopad": how the launcher, other programs and a second start of this
/// one reach the running instance.
class LauncherChannel : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "QPE.Application")
public:
    /// When files that are handed over are taken.
    enum class Taking {
        AtOnce,
        Later, ///< they and their answers wait for one of the others
        Never, ///< refused: who hands one over has to see to it
    };

    explicit LauncherChannel(QObject *parent);

    /// Takes the channel; may be tried again. False without a session bus, and when another process has it.
    bool open();
    /// Takes it as soon as the process that has it is gone.
    void openLater();
    /// The process ends: gives the channel up, for whoever starts meanwhile. What comes by it is not answered
    /// any more.
    static void close();

    /// AtOnce at first. What waits is taken or refused now, unless it goes on waiting.
    void setTaking(Taking taking);

    /// What came of files that were handed over.
    enum class HandOver {
        Done, ///< they were taken
        Ended, ///< who was to take them has ended before: somebody else may have the channel
        NoInstance, ///< nobody has the channel, or there is no session bus
        NoAnswer, ///< none within two seconds, or who has refused them does not end within five
    };
    /// Gives the process that has the channel these files, all of them or none; without any it is asked to
    /// show its window. As long as it takes files later, it is waited for.
    static HandOver handOver(const FileRequests &requests);
    /// The process that has the channel; 0 where there is none.
    static uint instance();

    /// Files that a call of the bus brings, which is answered when they are taken or refused.
    void take(const FileRequests &requests, const QDBusMessage &message);
    /// Answers a call that makes no sense.
    static void refuse(const QDBusMessage &message, const QString &reason);

public slots:
    /// An absolute name, or a "file://" address: so travels a name that is no Unicode text. Anything else is
    /// answered with an error.
    Q_SCRIPTABLE void setDocument(const QString &fileName);
    /// The same from a command line, for all that stand there: each by its name, which may be empty, and
    /// what stands beside it, see FileRequest. Where one has a place among `files`, its input and who waits
    /// for it. With a name that is not absolute, none of them is opened.
    Q_SCRIPTABLE void openFromShell(
        const QList<QVariantMap> &documents, const QList<QDBusUnixFileDescriptor> &files);
    Q_SCRIPTABLE void raise();
    /// With what the launcher gave a second start as its right to come to the front.
    Q_SCRIPTABLE void raise(const QString &activationToken);
    /// Does nothing: the answer says that the program does not hang.
    Q_SCRIPTABLE void ping() { }

signals:
    /// Those of one call.
    void documentsRequested(const FileRequests &requests);
    void raiseRequested();

private:
    struct Call {
        FileRequests requests;
        QDBusMessage message; ///< to be answered
    };

    QDBusMessage ownMessage() const;
    void settle(const Call &call);

    Taking m_taking = Taking::AtOnce;
    QList<Call> m_waiting;
};
