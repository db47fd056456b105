#pragma once

#include <QtGlobal>

#include <csignal>

#include <sys/resource.h>

/// No file can be made longer than this while it lives.
class FullDisk {
public:
    explicit FullDisk(rlim_t longest)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit full{ longest, m_before.rlim_max };
        ::setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    Q_DISABLE_COPY_MOVE(FullDisk)

private:
    rlimit m_before{};
};
