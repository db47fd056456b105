#pragma once

#include <QtGlobal>

#include <memory>

#include <unistd.h>

/// An open file of the system's, by its number, closed when the last who holds it lets go of it.
class OpenFd {
public:
    explicit OpenFd(int number)
        : m_number(number)
    {
    }
    ~OpenFd() { ::close(m_number); }
    Q_DISABLE_COPY_MOVE(OpenFd)

    int number() const { return m_number; }

private:
    const int m_number;
};

/// Null: none.
using SharedFd = std::shared_ptr<const OpenFd>;
