#include "platform/qcop.h"

#include "platform/sessionbus.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <optional>

namespace {

// The bus library ends a program that gives it a malformed name.
bool isName(QStringView text)
{
    const auto isLetter = [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_';
    };
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    return !text.isEmpty() && isLetter(text.front())
        && std::all_of(text.begin(), text.end(), [&](QChar c) { return isLetter(c) || isDigit(c); });
}

bool isChannel(const QString &text)
{
    const QStringList parts = text.split(u'/');
    return parts.size() > 1 && text.size() < 256 && std::all_of(parts.begin(), parts.end(), isName);
}

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

// Messages leave from the toolkit's bus thread, in their order; at the end of the program it would drop those
// that still wait. An answer to a later question says that they are out.
void awaitSent()
{
    if (const auto bus = sessionBus())
        askBus(*bus, QStringLiteral("GetId"));
}

void awaitSentAtExit()
{
    static const bool isPlanned = (qAddPostRoutine(awaitSent), true);
    Q_UNUSED(isPlanned)
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
    const auto bus = isChannel(channel) ? sessionBus() : std::nullopt;
    return bus && askBus(*bus, QStringLiteral("NameHasOwner"), { service(channel) }).value(0).toBool();
}

QDBusMessage QCopChannel::call(const QString &channel, const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        service(channel), path(channel), QStringLiteral("QPE.Application"), method);
    call.setArguments(arguments);
    call.setAutoStartService(false);
    return call;
}

QCopEnvelope::QCopEnvelope(const QString &channel, const QString &message)
    : m_channel(channel)
    , m_message(message)
{
}

QCopEnvelope::~QCopEnvelope()
{
    const QString method = m_message.section(u'(', 0, 0);
    Q_ASSERT(isName(method));
    const auto bus = isChannel(m_channel) ? sessionBus() : std::nullopt;
    if (!bus)
        return;
    bus->send(QCopChannel::call(m_channel, method, m_arguments));
    awaitSentAtExit();
}

QCopEnvelope &QCopEnvelope::operator<<(const QString &argument)
{
    m_arguments << toUnicode(argument);
    return *this;
}
