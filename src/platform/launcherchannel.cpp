#include "platform/launcherchannel.h"

#include "files/filename.h"
#include "platform/qcop.h"
#include "platform/sessionbus.h"

#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <QTimer>

#include <limits>
#include <utility>

namespace {

constexpr int instanceTimeout = 2000; // ms
constexpr int noTimeout = std::numeric_limits<int>::max();
constexpr uint queued = 0;
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;
constexpr QLatin1String addressPrefix("file://");

QString ownChannel()
{
    return QStringLiteral("QPE/Application/marlopad");
}

// The toolkit's own registration waits without an end.
bool requestName(const QDBusConnection &bus, uint flags)
{
    const QVariantList answer =
        askBus(bus, QStringLiteral("RequestName"), { QCopChannel::service(ownChannel()), flags });
    return answer.value(0) == primaryOwner;
}

QDBusMessage callOfInstance(const QString &method, const QVariantList &arguments = {})
{
    return QCopChannel::call(ownChannel(), method, arguments);
}

bool isAnswered(const QDBusConnection &bus, const QDBusMessage &call)
{
    return bus.call(call, QDBus::Block, instanceTimeout).type() == QDBusMessage::ReplyMessage;
}

// The answer may have to wait for a question to the user of the instance, as long as that takes.
bool giveDocument(const QDBusConnection &bus, const QString &address)
{
    const QDBusMessage call = callOfInstance(QStringLiteral("setDocument"), { address });
    QDBusPendingCallWatcher answer(bus.asyncCall(call, noTimeout));
    QEventLoop waiting;
    QTimer look;
    QObject::connect(&answer, &QDBusPendingCallWatcher::finished, &waiting, &QEventLoop::quit);
    QObject::connect(&look, &QTimer::timeout, &waiting, [&] {
        if (!isAnswered(bus, callOfInstance(QStringLiteral("ping"))))
            waiting.quit();
    });
    look.start(instanceTimeout);
    if (!answer.isFinished())
        waiting.exec();
    return answer.isFinished() && !answer.isError();
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
        && requestName(*bus, doNotQueue);
}

void LauncherChannel::openLater()
{
    if (const auto bus = sessionBus())
        requestName(*bus, queued);
}

bool LauncherChannel::handOver(QStringList &fileNames)
{
    const auto bus = sessionBus();
    if (!bus || !QCopChannel::isRegistered(ownChannel()))
        return false;
    const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    if (!isAnswered(*bus, callOfInstance(QStringLiteral("raise"), { token })))
        return false;
    while (!fileNames.isEmpty() && giveDocument(*bus, toAddress(fileNames.front())))
        fileNames.removeFirst();
    return fileNames.isEmpty();
}

void LauncherChannel::setTaking(Taking taking)
{
    m_taking = taking;
    if (taking == Taking::Later)
        return;
    for (const Document &document : std::exchange(m_waiting, {}))
        settle(document);
}

void LauncherChannel::setDocument(const QString &fileName)
{
    const QString name = fromAddress(fileName);
    if (!name.startsWith(u'/')) {
        if (calledFromDBus())
            sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("Give the absolute name of a file."));
        return;
    }
    if (calledFromDBus())
        setDelayedReply(true);
    const QString absolute = FileName::absolute(FileName::toBytes(name));
    const Document document{ absolute, calledFromDBus() ? message() : QDBusMessage() };
    if (m_taking != Taking::Later) {
        settle(document);
        return;
    }
    m_waiting << document;
    // The user is to see what it waits for.
    emit raiseRequested();
}

/// Takes or refuses a file, and answers who gave it.
void LauncherChannel::settle(const Document &document)
{
    const bool isTaken = m_taking == Taking::AtOnce;
    if (isTaken)
        emit documentRequested(document.fileName);
    const auto bus = sessionBus();
    if (!bus || !document.message.isReplyRequired())
        return;
    bus->send(isTaken ? document.message.createReply()
                      : document.message.createErrorReply(
                          QDBusError::Failed, QStringLiteral("The program has ended.")));
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
