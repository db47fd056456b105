#include "tests/app/sessionmanager.h"

#include <QSocketNotifier>

#include <array>
#include <vector>

extern "C" {
#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>
}

namespace {

// The interface of the library lacks `const`.
std::array vendor{ 'm', 'a', 'r', 'l', 'o', 'p', 'a', 'd', '\0' };
std::array release{ '1', '\0' };

Bool acceptAnyHost(char * /*hostName*/)
{
    return True;
}

} // namespace

struct SessionManager::Private {
    explicit Private(SessionManager *manager)
        : q(manager)
    {
    }

    void listen();
    void accept(IceListenObj listener);
    void watch(IceConn connection);
    void setCallbacks(SmsCallbacks &callbacks);
    void note(const QString &what) { q->log << what; }
    void forget();

    SessionManager *q;
    int listenerCount = 0;
    IceListenObj *listeners = nullptr;
    std::vector<std::unique_ptr<QSocketNotifier>> notifiers;
    IceConn connection = nullptr;
    SmsConn client = nullptr;
    bool isFirstSave = true;
};

namespace {

SessionManager::Private *managerOf(SmPointer data)
{
    return static_cast<SessionManager::Private *>(data);
}

Status registerClient(SmsConn client, SmPointer /*data*/, char *previousId)
{
    char *const id = previousId ? previousId : SmsGenerateClientID(client);
    SmsRegisterClientReply(client, id);
    std::free(id);
    if (!previousId)
        SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
    return True;
}

void interactRequest(SmsConn client, SmPointer data, int /*dialogType*/)
{
    managerOf(data)->note(QStringLiteral("asks"));
    SmsInteract(client);
}

void interactDone(SmsConn /*client*/, SmPointer data, Bool cancelsShutdown)
{
    managerOf(data)->note(cancelsShutdown ? QStringLiteral("cancels") : QStringLiteral("done"));
}

void saveDone(SmsConn client, SmPointer data, Bool isSaved)
{
    SessionManager::Private *const d = managerOf(data);
    if (!d->isFirstSave)
        d->note(isSaved ? QStringLiteral("saved") : QStringLiteral("not saved"));
    d->isFirstSave = false;
    SmsSaveComplete(client);
}

void closeConnection(SmsConn /*client*/, SmPointer data, int count, char **reasons)
{
    SmFreeReasons(count, reasons);
    managerOf(data)->forget();
}

void saveYourself(SmsConn, SmPointer, int, Bool, int, Bool, Bool) { }
void savePhase2(SmsConn client, SmPointer /*data*/)
{
    SmsSaveYourselfPhase2(client);
}
void setProperties(SmsConn, SmPointer, int count, SmProp **properties)
{
    for (int i = 0; i < count; ++i)
        SmFreeProperty(properties[i]);
    std::free(properties);
}
void deleteProperties(SmsConn, SmPointer, int count, char **names)
{
    for (int i = 0; i < count; ++i)
        std::free(names[i]);
    std::free(names);
}
void getProperties(SmsConn client, SmPointer /*data*/)
{
    SmsReturnProperties(client, 0, nullptr);
}

Status newClient(
    SmsConn client, SmPointer data, unsigned long *mask, SmsCallbacks *callbacks, char ** /*failureReason*/)
{
    managerOf(data)->client = client;
    managerOf(data)->setCallbacks(*callbacks);
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask
        | SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask | SmsSaveYourselfDoneProcMask
        | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask
        | SmsGetPropertiesProcMask;
    return True;
}

} // namespace

void SessionManager::Private::setCallbacks(SmsCallbacks &callbacks)
{
    callbacks = { { registerClient, this }, { interactRequest, this }, { interactDone, this },
        { saveYourself, this }, { savePhase2, this }, { saveDone, this }, { closeConnection, this },
        { setProperties, this }, { deleteProperties, this }, { getProperties, this } };
}

void SessionManager::Private::listen()
{
    std::array<char, 256> error{};
    if (!SmsInitialize(
            vendor.data(), release.data(), newClient, this, acceptAnyHost, int(error.size()), error.data())
        || !IceListenForConnections(&listenerCount, &listeners, int(error.size()), error.data())) {
        qWarning("no session manager: %s", error.data());
        return;
    }
    for (int i = 0; i < listenerCount; ++i) {
        IceListenObj listener = listeners[i];
        IceSetHostBasedAuthProc(listener, acceptAnyHost);
        notifiers.push_back(
            std::make_unique<QSocketNotifier>(IceGetListenConnectionNumber(listener), QSocketNotifier::Read));
        QObject::connect(
            notifiers.back().get(), &QSocketNotifier::activated, q, [this, listener] { accept(listener); });
    }
}

void SessionManager::Private::accept(IceListenObj listener)
{
    IceAcceptStatus status = IceAcceptFailure;
    if (IceConn accepted = IceAcceptConnection(listener, &status))
        watch(accepted);
}

void SessionManager::Private::watch(IceConn accepted)
{
    connection = accepted;
    notifiers.push_back(
        std::make_unique<QSocketNotifier>(IceConnectionNumber(accepted), QSocketNotifier::Read));
    QSocketNotifier *const notifier = notifiers.back().get();
    QObject::connect(notifier, &QSocketNotifier::activated, q, [this, notifier] {
        if (connection && IceProcessMessages(connection, nullptr, nullptr) == IceProcessMessagesIOError)
            forget();
        notifier->setEnabled(connection);
    });
}

void SessionManager::Private::forget()
{
    if (!connection)
        return;
    IceSetShutdownNegotiation(connection, False);
    if (client) {
        note(QStringLiteral("left"));
        SmsCleanUp(std::exchange(client, nullptr));
    }
    IceCloseConnection(std::exchange(connection, nullptr));
}

SessionManager::SessionManager()
    : d(std::make_unique<Private>(this))
{
    d->listen();
}

SessionManager::~SessionManager()
{
    d->forget();
    d->notifiers.clear();
    if (d->listeners)
        IceFreeListenObjs(d->listenerCount, d->listeners);
}

QString SessionManager::address() const
{
    if (!d->listeners)
        return {};
    char *const ids = IceComposeNetworkIdList(d->listenerCount, d->listeners);
    QString address = QString::fromLocal8Bit(ids);
    std::free(ids);
    return address;
}

bool SessionManager::hasClient() const
{
    return d->client && !d->isFirstSave;
}

void SessionManager::requestShutdown(Interaction interaction)
{
    SmsSaveYourself(d->client, SmSaveBoth, True,
        interaction == Interaction::Any ? SmInteractStyleAny : SmInteractStyleNone, False);
}

void SessionManager::requestCheckpoint()
{
    SmsSaveYourself(d->client, SmSaveBoth, False, SmInteractStyleNone, False);
}

void SessionManager::cancelShutdown()
{
    SmsShutdownCancelled(d->client);
}

void SessionManager::endProgram()
{
    SmsDie(d->client);
}
