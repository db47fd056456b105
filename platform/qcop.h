#pragma once

#include <QString>
#include <QVariantList>

/// Messages between programs over the session bus.
///
/// The channel "QPE/Application/NAME" is the bus name `QPE.Application.NAME` with the object path
/// `/QPE/Application/NAME`; the message "m(QString,QString)" is the call of method `m` on interface
/// `QPE.Application`.
class QCopChannel {
public:
    /// Whether somebody listens; false without a session bus.
    static bool isRegistered(const QString &channel);
};

/// One outgoing message: arguments are streamed in, the destructor sends. Never blocks; no reply is awaited.
class QCopEnvelope {
public:
    QCopEnvelope(const QString &channel, const QString &message);
    ~QCopEnvelope();
    QCopEnvelope(const QCopEnvelope &) = delete;
    QCopEnvelope &operator=(const QCopEnvelope &) = delete;

    QCopEnvelope &operator<<(const QString &argument);

private:
    QString m_channel;
    QString m_message;
    QVariantList m_arguments;
};
