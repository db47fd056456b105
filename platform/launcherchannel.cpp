#include "platform/launcherchannel.h"

#include "platform/filename.h"
#include "platform/qcop.h"
#include "platform/sessionbus.h"

#include <QDBusMessage>

namespace {

constexpr int busTimeout = 500; // ms
constexpr int instanceTimeout = 2000; // ms
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;
constexpr QLatin1String addressPrefix("file://");

QString ownChannel()
{
    return QStringLiteral("QPE/Application/marlopad");
}

// The toolkit's own registration waits without an end.
bool requestName(const QDBusConnection &bus)
{
    const QString busName = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage request = QDBusMessage::createMethodCall(
        busName, QStringLiteral("/org/freedesktop/DBus"), busName, QStringLiteral("RequestName"));
    request << QCopChannel::service(ownChannel()) << doNotQueue;
    const QDBusMessage answer = bus.call(request, QDBus::Block, busTimeout);
    return answer.type() == QDBusMessage::ReplyMessage && answer.arguments().value(0) == primaryOwner;
}

bool callInstance(const QDBusConnection &bus, const QString &method, const QString &argument)
{
    QDBusMessage call = QDBusMessage::createMethodCall(QCopChannel::service(ownChannel()),
        QCopChannel::path(ownChannel()), QStringLiteral("QPE.Application"), method);
    call << argument;
    call.setAutoStartService(false);
    return bus.call(call, QDBus::Block, instanceTimeout).type() == QDBusMessage::ReplyMessage;
}

QString toAddress(const QString &fileName)
{
    const bool isUnicode = QString::fromUtf8(fileName.toUtf8()) == fileName;
    if (isUnicode)
        return fileName;
    return addressPrefix + QString::fromLatin1(FileName::toBytes(fileName).toPercentEncoding("/"));
}

QString fromAddress(const QString &text)
{
    if (!text.startsWith(addressPrefix))
        return text;
    return FileName::fromBytes(QByteArray::fromPercentEncoding(text.sliced(addressPrefix.size()).toUtf8()));
}

} // namespace

LauncherChannel::LauncherChannel(QObject *parent)
    : QObject(parent)
{
}

bool LauncherChannel::open()
{
    auto bus = sessionBus();
    // The object comes first: a message may follow the name at once.
    return bus
        && bus->registerObject(QCopChannel::path(ownChannel()), this, QDBusConnection::ExportScriptableSlots)
        && requestName(*bus);
}

bool LauncherChannel::handOver(QStringList &fileNames)
{
    const auto bus = sessionBus();
    if (!bus || !QCopChannel::isRegistered(ownChannel()))
        return false;
    if (!callInstance(*bus, QStringLiteral("raise"), qEnvironmentVariable("XDG_ACTIVATION_TOKEN")))
        return false;
    while (!fileNames.isEmpty()
        && callInstance(*bus, QStringLiteral("setDocument"), toAddress(fileNames.front())))
        fileNames.removeFirst();
    return fileNames.isEmpty();
}

void LauncherChannel::setDocument(const QString &fileName)
{
    const QString name = fromAddress(fileName);
    if (name.startsWith(u'/'))
        emit documentRequested(FileName::absolute(FileName::toBytes(name)));
    else if (calledFromDBus())
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("Give the absolute name of a file."));
}

void LauncherChannel::raise()
{
    emit raiseRequested();
}

void LauncherChannel::raise(const QString &activationToken)
{
    if (!activationToken.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    raise();
}
