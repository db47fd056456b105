#pragma once

#include "tests/faults/faultkinds.h"
#include "tests/files/faults.h"
#include "tests/files/quickcalls.h"

#include <QByteArrayList>

#include <atomic>
#include <csignal>
#include <mutex>

#include <unistd.h>

/// Whether a call of this name can meet it: only reads and writes come short, and a signal interrupts only
/// what may wait.
inline bool canMeet(const FaultKind &kind, const QByteArray &call)
{
    static const QByteArrayList moving{ "pread", "pwrite" };
    static const QByteArrayList waiting{ "open", "pread", "pwrite", "fsync", "ftruncate", "flock", "fchmod",
        "fchown" };
    if (kind.effect == FaultKind::Effect::IsShort)
        return moving.contains(call);
    return kind.error != EINTR || waiting.contains(call);
}

/// Lets one call meet a fault, once: the step-th after begin(), if it can. In step 0 none does.
class OneFault {
public:
    OneFault(const FaultKind &kind, qsizetype step)
        : m_kind(kind)
        , m_step(step)
        , m_calls(withFaults(withShortCounts(), [this](const QByteArray &call) { return meet(call); }))
    {
    }
    Q_DISABLE_COPY_MOVE(OneFault)

    const FileCalls &calls() const { return m_calls; }
    /// Calls before it are not counted and meet nothing.
    void begin()
    {
        const std::lock_guard lock(m_mutex);
        m_isOn = true;
    }
    /// The calls so far, by their names.
    QByteArrayList seen() const
    {
        const std::lock_guard lock(m_mutex);
        return m_seen;
    }

private:
    /// The fault of this call, as errno.
    int meet(const QByteArray &call)
    {
        const std::lock_guard lock(m_mutex);
        if (!m_isOn)
            return 0;
        m_seen.append(call);
        if (m_seen.size() != m_step || !canMeet(m_kind, call))
            return 0;
        if (m_kind.effect == FaultKind::Effect::Kills)
            ::kill(::getpid(), SIGKILL);
        m_isShort = m_kind.effect == FaultKind::Effect::IsShort;
        return m_kind.error;
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
    const qsizetype m_step;
    mutable std::mutex m_mutex; ///< a thread of the program's may make the calls
    bool m_isOn = false;
    QByteArrayList m_seen;
    std::atomic<bool> m_isShort = false;
    const FileCalls m_calls;
};
