#include "platform/endsignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array endSignals{ SIGTERM, SIGHUP, SIGINT };

/// A pipe to itself is the one way out of a signal handler. [0] is read by the event loop.
std::array<int, 2> pipeEnds{ -1, -1 };

void handleSignal(int /*number*/)
{
    const int error = errno;
    // A full pipe already says what is to be said.
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], "", 1);
    errno = error;
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

} // namespace

EndSignals::EndSignals(QObject *parent)
    : QObject(parent)
{
    Q_ASSERT(pipeEnds[0] == -1);
    if (::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &EndSignals::receive);
    for (const int number : endSignals)
        setHandler(number, handleSignal);
}

EndSignals::~EndSignals()
{
    if (!m_notifier)
        return;
    for (const int number : endSignals)
        setHandler(number, SIG_DFL);
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
