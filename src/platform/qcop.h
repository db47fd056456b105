#pragma once

#include <QDBusMessage>
#include <QString>
#include <QVariantList>

/// Messages between programs over the session bus.
///
/// The channel "QPE/Application/NAME" is the bus name `QPE.Application.NAME` with the object path
/// `/QPE/Application/NAME`; the message "m(QString,QString)" is the call of method `m` on interface
/// `QPE.Application`. The bus is connected to at the first use.
class QCopChannel {
public:
    /// Whether somebody listens; false without a session bus, for a channel whose name cannot be one of the
    /// bus, and when the bus does not answer within half a second.
    static bool isRegistered(const QString &channel);

    /// The bus name and the object path that stand for a channel.
    static QString service(const QString &channel);
    static QString path(const QString &channel);
    /// The call of a method of whoever has the channel; it starts nobody. The channel's name must be one that
    /// the bus can have.
    static QDBusMessage call(
        const QString &channel, const QString &method, const QVariantList &arguments = {});
};

/// One outgoing message: arguments are streamed in, the destructor sends. Never blocks; no reply is awaited,
/// and nobody is started to receive it. Without a session bus or a listener nothing happens. What was sent
/// last is on its way before the application object is gone.
class QCopEnvelope {
public:
    QCopEnvelope(const QString &channel, const QString &message);
    ~QCopEnvelope();
    QCopEnvelope(const QCopEnvelope &) = delete;
    QCopEnvelope &operator=(const QCopEnvelope &) = delete;

    /// What is no Unicode text (a lone surrogate) arrives as U+FFFD: the bus carries UTF-8 only.
    QCopEnvelope &operator<<(const QString &argument);

private:
    QString m_channel;
    QString m_message;
    QVariantList m_arguments;
};
