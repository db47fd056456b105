#include "platform/waitingstart.h"

#include "files/filecalls.h"

#include <array>
#include <cstdlib>

#include <fcntl.h>
#include <sys/socket.h>

namespace {

constexpr char closed = '.';

/// Until all have been closed, or nobody holds the other end any more.
[[noreturn]] void waitFor(qsizetype documents, int end)
{
    std::array<char, 64> told{};
    ssize_t count = 1;
    while (documents > 0 && count > 0) {
        count = retried([&] { return ::read(end, told.data(), told.size()); });
        documents -= count;
    }
    std::_Exit(count > 0 ? EXIT_SUCCESS : EXIT_FAILURE);
}

/// The shell's keys and its end are the waiting process's, and so is what is read from its output.
void leaveShell()
{
    ::setsid();
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nothing == -1)
        return;
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(nothing, STDOUT_FILENO);
    ::close(nothing);
}

} // namespace

SharedFd WaitingStart::begin(qsizetype documents)
{
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return {};
    const pid_t child = ::fork();
    if (child > 0) {
        ::close(ends[1]);
        waitFor(documents, ends[0]);
    }
    ::close(ends[0]);
    SharedFd waiting = std::make_shared<OpenFd>(ends[1]);
    if (child == -1)
        return {};
    leaveShell();
    return waiting;
}

/// There may be nobody any more who waits.
void WaitingStart::tellClosed(const SharedFd &waiting)
{
    [[maybe_unused]] const ssize_t told =
        retried([&] { return ::send(waiting->number(), &closed, 1, MSG_NOSIGNAL); });
}
