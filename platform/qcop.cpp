#include "platform/qcop.h"

#include "platform/sessionbus.h"

#include <QDBusMessage>

namespace {

constexpr int busTimeout = 500; // ms

QString toUnicode(QString text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace

QString QCopChannel::service(const QString &channel)
{
    return QString(channel).replace(u'/', u'.');
}

QString QCopChannel::path(const QString &channel)
{
    return u'/' + channel;
}

bool QCopChannel::isRegistered(const QString &channel)
{
    const auto bus = sessionBus();
    if (!bus)
        return false;
    const QString busName = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage question = QDBusMessage::createMethodCall(
        busName, QStringLiteral("/org/freedesktop/DBus"), busName, QStringLiteral("NameHasOwner"));
    question << service(channel);
    const QDBusMessage answer = bus->call(question, QDBus::Block, busTimeout);
    return answer.type() == QDBusMessage::ReplyMessage && answer.arguments().value(0).toBool();
}

QCopEnvelope::QCopEnvelope(const QString &channel, const QString &message)
    : m_channel(channel)
    , m_message(message)
{
}

QCopEnvelope::~QCopEnvelope()
{
    const auto bus = sessionBus();
    if (!bus)
        return;
    const QString method = m_message.section(u'(', 0, 0);
    QDBusMessage call = QDBusMessage::createMethodCall(QCopChannel::service(m_channel),
        QCopChannel::path(m_channel), QStringLiteral("QPE.Application"), method);
    call.setArguments(m_arguments);
    call.setAutoStartService(false);
    bus->send(call);
}

QCopEnvelope &QCopEnvelope::operator<<(const QString &argument)
{
    m_arguments << toUnicode(argument);
    return *this;
}
