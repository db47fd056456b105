#include "platform/desktopchannel.h"

#include "platform/filerequest.h"
#include "platform/launcherchannel.h"
#include "platform/sessionbus.h"

#include <QDBusError>

namespace {

/// What the desktop gives as the right to come to the front.
QString activationToken(const QVariantMap &platformData)
{
    const QString token = platformData.value(QStringLiteral("activation-token")).toString();
    return token.isEmpty() ? platformData.value(QStringLiteral("desktop-startup-id")).toString() : token;
}

QString pathOfId()
{
    return u'/' + DesktopChannel::id().replace(u'.', u'/');
}

std::optional<FileRequest> actionNamed(const QString &name)
{
    FileRequest request;
    request.from = FileRequest::From::Shell;
    request.isRecent = name == u"recent-files";
    return request.isRecent || name == u"new-document" ? std::optional(request) : std::nullopt;
}

} // namespace

QString DesktopChannel::id()
{
    return QStringLiteral("example.marlopad.marlopad");
}

DesktopChannel::DesktopChannel(LauncherChannel &launcher)
    : QDBusAbstractAdaptor(new QObject(&launcher))
    , m_launcher(launcher)
{
}

void DesktopChannel::open()
{
    auto bus = sessionBus();
    // The object comes first: a call may follow the name at once.
    if (bus && bus->registerObject(pathOfId(), parent(), QDBusConnection::ExportAdaptors))
        ownBusName(*bus, id(), WhenTaken::Wait);
}

void DesktopChannel::close()
{
    if (const auto bus = sessionBus())
        giveUpBusName(*bus, id());
}

void DesktopChannel::Activate(const QVariantMap &platformData)
{
    m_launcher.raise(activationToken(platformData));
}

void DesktopChannel::Open(
    const QStringList &addresses, const QVariantMap &platformData, const QDBusMessage &message)
{
    QList<QByteArray> bytes;
    for (const QString &address : addresses)
        bytes << address.toUtf8();
    m_launcher.raise(activationToken(platformData));
    m_launcher.take(requestsByAddresses(bytes), message);
}

void DesktopChannel::ActivateAction(
    const QString &name, const QVariantList &, const QVariantMap &platformData, const QDBusMessage &message)
{
    m_launcher.raise(activationToken(platformData));
    if (const auto request = actionNamed(name))
        m_launcher.take({ *request }, message);
    else
        m_launcher.refuse(message, QStringLiteral("There is no such action."));
}
