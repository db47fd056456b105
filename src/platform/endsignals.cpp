#include "platform/endsignals.h"

#include "files/endorder.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array endSignals{ SIGTERM, SIGHUP, SIGINT };

/// A pipe to itself is the one way out of a signal handler. [0] is read by the event loop.
std::array<int, 2> pipeEnds{ -1, -1 };

/// Runs from the first signal on; it sends SIGALRM at its end.
timer_t lastLimit = {};
itimerspec limitTime = {};
/// How often more it is to ask whether something must not be broken off.
volatile sig_atomic_t delaysLeft = 0;
constexpr std::chrono::milliseconds delay{ 50 };

void handleSignal(int /*number*/)
{
    const int error = errno;
    if (!EndOrder::isGiven())
        ::timer_settime(lastLimit, 0, &limitTime, nullptr);
    EndOrder::give();
    // A full pipe already says what is to be said.
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], "", 1);
    errno = error;
}

void handleLimit(int /*number*/)
{
    if (EndOrder::isDelayed() && delaysLeft > 0)
        delaysLeft = delaysLeft - 1;
    else
        ::_exit(EXIT_FAILURE);
}

void setHandler(int number, void (*handler)(int))
{
    struct sigaction old = {};
    ::sigaction(number, nullptr, &old);
    if (old.sa_handler == SIG_IGN)
        return;
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigaction(number, &action, nullptr);
}

timespec timeOf(std::chrono::milliseconds duration)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
    return { seconds.count(), std::chrono::nanoseconds(duration - seconds).count() };
}

bool makeLimit(const EndSignals::Patience &patience)
{
    limitTime = { timeOf(delay), timeOf(patience.usual) };
    delaysLeft = sig_atomic_t((patience.most - patience.usual) / delay);
    struct sigevent event = {};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGALRM;
    return ::timer_create(CLOCK_MONOTONIC, &event, &lastLimit) == 0;
}

} // namespace

EndSignals::EndSignals(QObject *parent, Patience patience)
    : QObject(parent)
{
    Q_ASSERT(pipeEnds[0] == -1);
    if (!makeLimit(patience))
        return;
    if (::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        ::timer_delete(lastLimit);
        return;
    }
    m_notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &EndSignals::receive);
    setHandler(SIGALRM, handleLimit);
    for (const int number : endSignals)
        setHandler(number, handleSignal);
}

EndSignals::~EndSignals()
{
    if (!m_notifier)
        return;
    for (const int number : endSignals)
        setHandler(number, SIG_DFL);
    ::timer_delete(lastLimit);
    setHandler(SIGALRM, SIG_DFL);
    EndOrder::withdraw();
    delete m_notifier;
    for (int &end : pipeEnds) {
        ::close(end);
        end = -1;
    }
}

void EndSignals::receive()
{
    std::array<char, 64> bytes;
    while (::read(pipeEnds[0], bytes.data(), bytes.size()) > 0) { }
    emit endRequested();
}
