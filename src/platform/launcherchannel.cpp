#include "platform/launcherchannel.h"

#include "files/fileaddress.h"
#include "files/filename.h"
#include "platform/qcop.h"
#include "platform/sessionbus.h"

#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <QEventLoop>
#include <QTimer>

#include <limits>
#include <utility>

#include <fcntl.h>

namespace {

constexpr int instanceTimeout = 2000; // ms
constexpr int noTimeout = std::numeric_limits<int>::max();

QString ownChannel()
{
    return QStringLiteral("QPE/Application/marlopad");
}

bool takeName(const QDBusConnection &bus, WhenTaken whenTaken)
{
    return ownBusName(bus, QCopChannel::service(ownChannel()), whenTaken);
}

QDBusMessage callOfInstance(const QString &method, const QVariantList &arguments = {})
{
    return QCopChannel::call(ownChannel(), method, arguments);
}

bool isAnswered(const QDBusConnection &bus, const QDBusMessage &call)
{
    return bus.call(call, QDBus::Block, instanceTimeout).type() == QDBusMessage::ReplyMessage;
}

QString nameOnBus(const QString &fileName)
{
    const bool isUnicode = QString::fromUtf8(fileName.toUtf8()) == fileName;
    return isUnicode ? fileName : FileAddress::of(fileName);
}

QString nameFromBus(const QString &text)
{
    return FileAddress::fileName(text.toUtf8()).value_or(text);
}

const QString recentOption = QStringLiteral("recent");
const QString lineOption = QStringLiteral("line");
const QString columnOption = QStringLiteral("column");
const QString charCodeOption = QStringLiteral("charCode");
const QString inputOption = QStringLiteral("input");
const QString waitingOption = QStringLiteral("waiting");

QVariantMap optionsOf(const FileRequest &request)
{
    QVariantMap options;
    if (request.place) {
        options[lineOption] = request.place->line;
        options[columnOption] = request.place->column;
    }
    if (request.charCode)
        options[charCodeOption] = int(*request.charCode);
    if (request.isRecent)
        options[recentOption] = true;
    const auto addFile = [&options](const QString &name, const SharedFd &file) {
        if (file)
            options[name] = QVariant::fromValue(QDBusUnixFileDescriptor(file->number()));
    };
    addFile(inputOption, request.input);
    addFile(waitingOption, request.waiting);
    return options;
}

/// The number that came is closed with the message.
SharedFd fileIn(const QVariantMap &options, const QString &name)
{
    const auto file = options.value(name).value<QDBusUnixFileDescriptor>();
    const int own = file.isValid() ? ::fcntl(file.fileDescriptor(), F_DUPFD_CLOEXEC, 0) : -1;
    return own == -1 ? SharedFd() : std::make_shared<OpenFd>(own);
}

FileRequest shellRequest(const QVariantMap &options)
{
    FileRequest request;
    request.from = FileRequest::From::Shell;
    if (options.contains(lineOption))
        request.place = { qMax(1LL, options.value(lineOption).toLongLong()),
            qMax(1LL, options.value(columnOption, 1).toLongLong()) };
    request.isRecent = options.value(recentOption).toBool();
    request.charCode = requestedCharCode(options.value(charCodeOption).toInt());
    request.input = fileIn(options, inputOption);
    request.waiting = fileIn(options, waitingOption);
    return request;
}

// The answer may have to wait for a question to the user of the instance, as long as that takes.
bool giveDocument(const QDBusConnection &bus, const FileRequest &request)
{
    const QDBusMessage call =
        callOfInstance(QStringLiteral("openFromShell"), { nameOnBus(request.fileName), optionsOf(request) });
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
        && takeName(*bus, WhenTaken::GiveUp);
}

void LauncherChannel::openLater()
{
    if (const auto bus = sessionBus())
        takeName(*bus, WhenTaken::Wait);
}

bool LauncherChannel::handOver(FileRequests &requests)
{
    const auto bus = sessionBus();
    if (!bus || !QCopChannel::isRegistered(ownChannel()))
        return false;
    const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    if (!isAnswered(*bus, callOfInstance(QStringLiteral("raise"), { token })))
        return false;
    while (!requests.isEmpty() && giveDocument(*bus, requests.front()))
        requests.removeFirst();
    return requests.isEmpty();
}

void LauncherChannel::setTaking(Taking taking)
{
    m_taking = taking;
    if (taking == Taking::Later)
        return;
    for (const Call &call : std::exchange(m_waiting, {}))
        settle(call);
}

namespace {

/// Nothing for a name that is not absolute.
std::optional<QString> absoluteNameFromBus(const QString &text)
{
    const QString name = nameFromBus(text);
    return name.startsWith(u'/') ? std::optional(FileName::absolute(FileName::toBytes(name))) : std::nullopt;
}

} // namespace

void LauncherChannel::setDocument(const QString &fileName)
{
    if (const auto name = absoluteNameFromBus(fileName))
        take({ FileRequest{ *name } }, ownMessage());
    else
        refuse(ownMessage(), QStringLiteral("Give the absolute name of a file."));
}

void LauncherChannel::openFromShell(const QString &fileName, const QVariantMap &options)
{
    FileRequest request = shellRequest(options);
    const auto name = fileName.isEmpty() ? std::optional(QString()) : absoluteNameFromBus(fileName);
    request.fileName = name.value_or(QString());
    if (name)
        take({ request }, ownMessage());
    else
        refuse(ownMessage(), QStringLiteral("Give the absolute name of a file."));
}

/// Of no type where the call is the program's own.
QDBusMessage LauncherChannel::ownMessage() const
{
    return calledFromDBus() ? message() : QDBusMessage();
}

namespace {

void answer(const QDBusMessage &call, const QDBusMessage &reply)
{
    const auto bus = sessionBus();
    if (bus && call.isReplyRequired())
        bus->send(reply);
}

} // namespace

void LauncherChannel::refuse(const QDBusMessage &message, const QString &reason)
{
    message.setDelayedReply(true);
    answer(message, message.createErrorReply(QDBusError::InvalidArgs, reason));
}

void LauncherChannel::take(const FileRequests &requests, const QDBusMessage &message)
{
    message.setDelayedReply(true);
    const Call call{ requests, message };
    if (m_taking != Taking::Later) {
        settle(call);
        return;
    }
    m_waiting << call;
    // The user is to see what it waits for.
    emit raiseRequested();
}

/// Takes or refuses files, and answers who gave them.
void LauncherChannel::settle(const Call &call)
{
    if (m_taking == Taking::Never) {
        answer(call.message,
            call.message.createErrorReply(QDBusError::Failed, QStringLiteral("The program has ended.")));
        return;
    }
    for (const FileRequest &request : call.requests)
        emit documentRequested(request);
    answer(call.message, call.message.createReply());
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
