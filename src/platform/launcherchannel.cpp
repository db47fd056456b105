#include "platform/launcherchannel.h"

#include "files/fileaddress.h"
#include "files/filename.h"
#include "platform/qcop.h"
#include "platform/sessionbus.h"

#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QEventLoop>
#include <QTimer>

#include <limits>
#include <utility>

#include <fcntl.h>

namespace {

constexpr int instanceTimeout = 2000; // ms
constexpr int endTimeout = 5000; // ms
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

void registerTypes()
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
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

const QString nameOption = QStringLiteral("name");
const QString recentOption = QStringLiteral("recent");
const QString lineOption = QStringLiteral("line");
const QString columnOption = QStringLiteral("column");
const QString charCodeOption = QStringLiteral("charCode");
const QString inputOption = QStringLiteral("input");
const QString waitingOption = QStringLiteral("waiting");

using OpenFiles = QList<QDBusUnixFileDescriptor>;

/// Requests as a call has them. A message carries few open files: one that many share goes once.
class CarriedRequests {
public:
    explicit CarriedRequests(const FileRequests &requests)
    {
        for (const FileRequest &request : requests)
            m_documents << optionsOf(request);
    }
    QVariantList arguments() const
    {
        OpenFiles carried;
        for (const SharedFd &file : m_files)
            carried << QDBusUnixFileDescriptor(file->number());
        return { QVariant::fromValue(m_documents), QVariant::fromValue(carried) };
    }

private:
    QVariantMap optionsOf(const FileRequest &request)
    {
        QVariantMap options{ { nameOption, nameOnBus(request.fileName) } };
        if (request.place) {
            options[lineOption] = request.place->line;
            options[columnOption] = request.place->column;
        }
        if (request.charCode)
            options[charCodeOption] = int(*request.charCode);
        if (request.isRecent)
            options[recentOption] = true;
        if (request.input)
            options[inputOption] = placeOf(request.input);
        if (request.waiting)
            options[waitingOption] = placeOf(request.waiting);
        return options;
    }
    int placeOf(const SharedFd &file)
    {
        if (!m_files.contains(file))
            m_files << file;
        return int(m_files.indexOf(file));
    }

    QList<QVariantMap> m_documents;
    QList<SharedFd> m_files;
};

/// The numbers that came are closed with the message.
QList<SharedFd> ownFiles(const OpenFiles &carried)
{
    QList<SharedFd> files;
    for (const QDBusUnixFileDescriptor &file : carried) {
        const int own = ::fcntl(file.fileDescriptor(), F_DUPFD_CLOEXEC, 0);
        files << (own == -1 ? SharedFd() : std::make_shared<OpenFd>(own));
    }
    return files;
}

/// With the name as it came.
FileRequest shellRequest(const QVariantMap &options, const QList<SharedFd> &files)
{
    FileRequest request;
    request.from = FileRequest::From::Shell;
    request.fileName = options.value(nameOption).toString();
    if (options.contains(lineOption))
        request.place = { qMax(1LL, options.value(lineOption).toLongLong()),
            qMax(1LL, options.value(columnOption, 1).toLongLong()) };
    request.isRecent = options.value(recentOption).toBool();
    request.charCode = requestedCharCode(options.value(charCodeOption).toInt());
    request.input = files.value(options.value(inputOption, -1).toInt());
    request.waiting = files.value(options.value(waitingOption, -1).toInt());
    return request;
}

/// The process that has the channel, which may come to its end while it is asked.
class Instance {
public:
    explicit Instance(const QDBusConnection &bus)
        : m_bus(bus)
        , m_watcher(QCopChannel::service(ownChannel()), bus, QDBusServiceWatcher::WatchForOwnerChange)
        , m_connection(connectionNow())
    {
        QObject::connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, &m_waiting, [this] {
            m_hasEnded = true;
            m_waiting.quit();
        });
    }
    bool isThere() const { return !m_connection.isEmpty(); }
    // What the bus has told of that may still be on its way here.
    bool hasEnded() const { return m_hasEnded || connectionNow() != m_connection; }
    void awaitEnd()
    {
        QTimer::singleShot(endTimeout, &m_waiting, &QEventLoop::quit);
        if (!m_hasEnded)
            m_waiting.exec();
    }
    /// Shows its window. False if it does not answer in time, or ends before.
    bool raise()
    {
        const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
        const QDBusPendingCallWatcher answer(
            m_bus.asyncCall(callOfInstance(QStringLiteral("raise"), { token }), instanceTimeout));
        await(answer);
        return answer.isFinished() && !answer.isError();
    }
    enum class Answer { Taken, Refused, None };
    // In one call: what is given one by one, the instance opens one by one, and does not know that it has
    // many to open. The answer may have to wait for a question to the user of the instance, as long as that
    // takes.
    Answer give(const FileRequests &requests)
    {
        const QDBusMessage call =
            callOfInstance(QStringLiteral("openFromShell"), CarriedRequests(requests).arguments());
        const QDBusPendingCallWatcher answer(m_bus.asyncCall(call, noTimeout));
        QTimer look;
        look.callOnTimeout(&m_waiting, [this] {
            if (!isAnswered(m_bus, callOfInstance(QStringLiteral("ping"))))
                m_waiting.quit();
        });
        look.start(instanceTimeout);
        await(answer);
        if (!answer.isFinished())
            return Answer::None;
        return answer.isError() ? Answer::Refused : Answer::Taken;
    }

private:
    /// Its name on the bus; empty where nobody has the channel.
    QString connectionNow() const
    {
        const QString name = QCopChannel::service(ownChannel());
        return askBus(m_bus, QStringLiteral("GetNameOwner"), { name }).value(0).toString();
    }
    void await(const QDBusPendingCallWatcher &answer)
    {
        QObject::connect(&answer, &QDBusPendingCallWatcher::finished, &m_waiting, &QEventLoop::quit);
        if (!answer.isFinished() && !m_hasEnded)
            m_waiting.exec();
    }

    QDBusConnection m_bus;
    QEventLoop m_waiting;
    QDBusServiceWatcher m_watcher;
    const QString m_connection; ///< when it was asked first
    bool m_hasEnded = false;
};

} // namespace

LauncherChannel::LauncherChannel(QObject *parent)
    : QObject(parent)
{
}

bool LauncherChannel::open()
{
    auto bus = sessionBus();
    if (!bus)
        return false;
    registerTypes();
    const QString path = QCopChannel::path(ownChannel());
    // The object comes first: a message may follow the name at once.
    const bool isThere = bus->objectRegisteredAt(path) == this
        || bus->registerObject(path, this, QDBusConnection::ExportScriptableSlots);
    return isThere && takeName(*bus, WhenTaken::GiveUp);
}

void LauncherChannel::openLater()
{
    if (const auto bus = sessionBus())
        takeName(*bus, WhenTaken::Wait);
}

void LauncherChannel::close()
{
    if (const auto bus = sessionBus())
        giveUpBusName(*bus, QCopChannel::service(ownChannel()));
}

LauncherChannel::HandOver LauncherChannel::handOver(const FileRequests &requests)
{
    registerTypes();
    const auto bus = sessionBus();
    if (!bus)
        return HandOver::NoInstance;
    Instance instance(*bus);
    if (!instance.isThere())
        return HandOver::NoInstance;
    const auto withoutAnswer = [&] { return instance.hasEnded() ? HandOver::Ended : HandOver::NoAnswer; };
    if (!instance.raise())
        return withoutAnswer();
    if (requests.isEmpty())
        return HandOver::Done;
    switch (instance.give(requests)) {
    case Instance::Answer::Taken:
        return HandOver::Done;
    case Instance::Answer::Refused:
        instance.awaitEnd();
        break;
    case Instance::Answer::None:
        break;
    }
    return withoutAnswer();
}

uint LauncherChannel::instance()
{
    const auto bus = sessionBus();
    const QVariantList answer = bus
        ? askBus(*bus, QStringLiteral("GetConnectionUnixProcessID"), { QCopChannel::service(ownChannel()) })
        : QVariantList();
    return answer.value(0).toUInt();
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

const QString needsAbsoluteName = QStringLiteral("Give the absolute name of a file.");

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
        refuse(ownMessage(), needsAbsoluteName);
}

void LauncherChannel::openFromShell(
    const QList<QVariantMap> &documents, const QList<QDBusUnixFileDescriptor> &files)
{
    const QList<SharedFd> open = ownFiles(files);
    FileRequests requests;
    for (const QVariantMap &options : documents) {
        requests << shellRequest(options, open);
        QString &name = requests.last().fileName;
        const auto absolute = name.isEmpty() ? std::optional(name) : absoluteNameFromBus(name);
        if (!absolute) {
            refuse(ownMessage(), needsAbsoluteName);
            return;
        }
        name = *absolute;
    }
    take(requests, ownMessage());
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
    emit documentsRequested(call.requests);
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
