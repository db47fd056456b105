#pragma once

#include "files/sharedfd.h"

#include <QByteArray>
#include <QTest>

#include <array>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>

/// What another program writes, and this one reads.
class Pipe {
public:
    Pipe()
    {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            qFatal("no pipe");
        m_input = std::make_shared<OpenFd>(ends[0]);
        m_end = ends[1];
    }
    ~Pipe() { close(); }
    Q_DISABLE_COPY_MOVE(Pipe)

    /// For the program, once.
    SharedFd takeInput() { return std::exchange(m_input, {}); }
    void put(const QByteArray &bytes) const
    {
        QCOMPARE(::write(m_end, bytes.constData(), size_t(bytes.size())), bytes.size());
    }
    void close()
    {
        if (m_end != -1)
            ::close(std::exchange(m_end, -1));
    }
    /// All that was put has been read.
    bool isEmpty() const
    {
        int waiting = 0;
        return ::ioctl(m_end, FIONREAD, &waiting) == 0 && waiting == 0;
    }
    bool isReadByAnybody() const
    {
        pollfd end{ m_end, POLLOUT, 0 };
        return ::poll(&end, 1, 0) >= 0 && !(end.revents & POLLERR);
    }

private:
    SharedFd m_input;
    int m_end = -1;
};

/// What is read from it from now on is an error: a folder takes its place.
inline void breakInput(const OpenFd &input)
{
    const int folder = ::open("/", O_RDONLY | O_CLOEXEC);
    QCOMPARE(::dup3(folder, input.number(), O_CLOEXEC), input.number());
    ::close(folder);
}
