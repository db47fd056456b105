#include "platform/qpeapplication.h"

#include "files/endorder.h"
#include "platform/composingescape.h"
#include "platform/desktopchannel.h"
#include "platform/endsignals.h"
#include "platform/fingerscrolling.h"
#include "platform/launcherchannel.h"
#include "platform/requestqueue.h"
#include "platform/returnedfocus.h"
#include "platform/strayinput.h"
#include "platform/windowmanager.h"
#include "platform/windowsystem.h"
#include "rows/fontmessages.h"
#include "rows/lcfont.h"

#include <QDir>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QThread>
#include <QWidget>

#include <cstdlib>
#include <utility>

namespace {

/// The memory of large texts takes seconds to be freed, in which nobody would be answered.
void closeChannels()
{
    DesktopChannel::close();
    LauncherChannel::close();
}

} // namespace

QPEApplication::QPEApplication(int &argc, char **argv)
    : QApplication(argc, argv)
    , m_requests(new RequestQueue(this))
    , m_channel(new LauncherChannel(this))
    , m_desktop(new DesktopChannel(*m_channel))
{
    hideFontMessages();
    registerLcFont();
    StrayInput::instance();
    new FingerScrolling(this);
    new ComposingEscape(this);
    new ReturnedFocus(this);
    connect(m_channel, &LauncherChannel::documentsRequested, this, &QPEApplication::requestAll);
    connect(m_channel, &LauncherChannel::documentsRequested, this, &QPEApplication::raiseWindow);
    connect(m_requests, &RequestQueue::delivered, this, &QPEApplication::requestDelivered);
    connect(m_channel, &LauncherChannel::raiseRequested, this, &QPEApplication::raiseWindow);
}

QPEApplication::~QPEApplication()
{
    EndOrder::setObedience({});
}

QString QPEApplication::qpeDir()
{
    QString given = QDir::cleanPath(qEnvironmentVariable("QPEDIR"));
    if (!given.isEmpty())
        return given;
    // Asked for with every picture.
    static const QString own = [] {
        const QString program = applicationDirPath();
        const QString installed = QDir::cleanPath(program + QLatin1String("/../share/marlopad"));
        const QString built = program + QLatin1String("/share/marlopad");
        return QFileInfo::exists(installed) || !QFileInfo::exists(built) ? installed : built;
    }();
    return own;
}

bool QPEApplication::handOver(const FileRequests &requests)
{
    m_given = requests;
    if (handGivenOver())
        return true;
    m_desktop->open();
    return false;
}

/// Where one process has ended, several that it has refused may want to take its place: one of them does.
bool QPEApplication::handGivenOver()
{
    using HandOver = LauncherChannel::HandOver;
    while (!m_channel->open()) {
        const HandOver result = LauncherChannel::handOver(m_given);
        if (result == HandOver::Ended)
            continue;
        if (result != HandOver::Done)
            m_channel->openLater();
        return result == HandOver::Done;
    }
    return false;
}

void QPEApplication::showMainWidget(QWidget *window, bool noMaximize)
{
    m_window = window;
    if (m_endQuestions == 0)
        m_channel->setTaking(LauncherChannel::Taking::AtOnce);
    if (noMaximize)
        window->show();
    else
        window->showMaximized();
    // Nobody else gives it the keys.
    if (!WindowManager::isPresent())
        WindowSystem::activate(*window);
    m_requests->setReceiver(window);
    if (!m_endSignals) {
        m_endSignals = new EndSignals(this);
        connect(m_endSignals, &EndSignals::endRequested, this, &QPEApplication::endAtOnce);
        EndOrder::setObedience([this] { endAtOnce(); });
    }
    requestAll(std::exchange(m_given, {}));
}

void QPEApplication::holdRequests(bool hold)
{
    m_requests->setHeld(hold);
}

void QPEApplication::postponeRequests(bool postpone)
{
    m_requests->setPostponed(postpone);
}

void QPEApplication::dropRequests()
{
    m_requests->drop();
}

bool QPEApplication::isBusy()
{
    const auto *application = qobject_cast<QPEApplication *>(instance());
    return application && application->m_requests->isBusy();
}

bool QPEApplication::hasRequests()
{
    const auto *application = qobject_cast<QPEApplication *>(instance());
    return application && application->m_requests->isAwaitingFiles();
}

void QPEApplication::setEndOpen(bool open)
{
    m_endQuestions += open ? 1 : -1;
    Q_ASSERT(m_endQuestions >= 0);
    m_channel->setTaking(LauncherChannel::Taking::Later);
    // The window is closed by who asked, after the question.
    if (!open)
        QMetaObject::invokeMethod(this, &QPEApplication::settleEnd, Qt::QueuedConnection);
}

void QPEApplication::settleEnd()
{
    using Taking = LauncherChannel::Taking;
    const bool hasWindow = m_window && m_window->isVisible();
    if (m_endQuestions == 0)
        m_channel->setTaking(hasWindow ? Taking::AtOnce : Taking::Never);
}

void QPEApplication::request(const FileRequest &request)
{
    m_requests->add(request);
}

void QPEApplication::requestAll(const FileRequests &requests)
{
    for (const FileRequest &each : requests)
        request(each);
}

void QPEApplication::endAtOnce()
{
    // Also what is written now may ask whether the end was ordered.
    if (QThread::currentThread() != thread() || m_isEnding)
        return;
    const QScopedValueRollback ending(m_isEnding, true);
    emit endingAtOnce();
    closeChannels();
    leave();
}

// Who only runs the event loop takes leave of the session manager as is usual.
void QPEApplication::endWithSession()
{
    emit sessionEnded();
    if (thread()->loopLevel() > 1) {
        endAtOnce();
        return;
    }
    emit endingAtOnce();
    closeChannels();
    exit(EXIT_SUCCESS);
}

// Not by way of the event loop: every dialog that is open would return to its caller, which would take that
// for an answer.
void QPEApplication::leave()
{
    std::_Exit(EXIT_SUCCESS);
}

bool QPEApplication::event(QEvent *event)
{
    // Only the platform sends one from outside; quitting from within is not spontaneous.
    if (event->type() != QEvent::Quit || !event->spontaneous())
        return QApplication::event(event);
    endWithSession();
    return true;
}

// A dialog that waits for an answer is what the user needs to see.
void QPEApplication::raiseWindow()
{
    QWidget *window = activeModalWidget() ? activeModalWidget() : m_window.data();
    if (!window)
        return;
    if (window->isMinimized())
        window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    WindowSystem::activate(*window);
}
