#pragma once

#include "tests/faults/faultkinds.h"
#include "tests/files/faults.h"

#include <QtGlobal>

#include <atomic>
#include <csignal>
#include <set>

#include <unistd.h>

/// The system's calls, but nothing waits for the disk.
inline FileCalls quickCalls()
{
    FileCalls calls = FileCalls::system();
    calls.fsync = [](int) { return 0; };
    return calls;
}

/// Lets one call meet a fault, once: the step-th after begin(). In step 0 none does.
class OneFault {
public:
    OneFault(const FaultKind &kind, int step)
        : m_kind(kind)
        , m_step(step)
        , m_calls(withFaults(withShortCounts(), [this](const QByteArray &call) { return meet(call); }))
    {
    }
    Q_DISABLE_COPY_MOVE(OneFault)

    const FileCalls &calls() const { return m_calls; }
    /// Calls before it are not counted and meet nothing.
    void begin() { m_isOn = true; }
    /// Calls so far.
    int count() const { return m_count; }

private:
    /// The fault of this call, as errno.
    int meet(const QByteArray &call)
    {
        if (!m_isOn || ++m_count != m_step)
            return 0;
        if (m_kind.effect == FaultKind::Effect::Kills)
            ::kill(::getpid(), SIGKILL);
        m_isShort = m_kind.effect == FaultKind::Effect::IsShort;
        return mayFail(call) ? m_kind.error : 0;
    }
    /// A signal interrupts only what may wait.
    bool mayFail(const QByteArray &call) const
    {
        static const std::set<QByteArray> waiting{ "open", "pread", "pwrite", "fsync", "ftruncate", "flock",
            "fchmod", "fchown" };
        return m_kind.error != EINTR || waiting.contains(call);
    }
    FileCalls withShortCounts()
    {
        FileCalls calls = quickCalls();
        calls.pread = [this](int fd, void *to, size_t size, off_t offset) {
            return ::pread(fd, to, shortened(size), offset);
        };
        calls.pwrite = [this](int fd, const void *from, size_t size, off_t offset) {
            return ::pwrite(fd, from, shortened(size), offset);
        };
        return calls;
    }
    size_t shortened(size_t size) { return m_isShort.exchange(false) ? qMin<size_t>(size, 3) : size; }

    const FaultKind m_kind;
    const int m_step;
    std::atomic<bool> m_isOn = false; ///< a thread of the program's may make the calls
    std::atomic<int> m_count = 0;
    std::atomic<bool> m_isShort = false;
    const FileCalls m_calls;
};
