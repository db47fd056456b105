#pragma once

#include "files/filecalls.h"

#include <QByteArray>

#include <fcntl.h>

/// A fault table's decision: 0 lets the call through, else it fails with that error.
using Fault = std::function<int(const QByteArray &call)>;

/// What a call returns that fails.
template <typename Result> Result failure()
{
    if constexpr (std::is_pointer_v<Result>)
        return nullptr;
    else
        return -1;
}

template <typename Result, typename... Args>
void guard(std::function<Result(Args...)> &call, const char *name, const Fault &fault)
{
    call = [inner = call, name, fault](Args... args) -> Result {
        if (const int error = fault(name)) {
            errno = error;
            return failure<Result>();
        }
        return inner(args...);
    };
}

/// Closes all the same: what was closed is closed, whatever the call says.
template <typename Result, typename... Args>
void guardClosing(std::function<Result(Args...)> &call, const char *name, const Fault &fault)
{
    call = [inner = call, name, fault](Args... args) -> Result {
        const int error = fault(name);
        const Result result = inner(args...);
        errno = error ? error : errno;
        return error ? failure<Result>() : result;
    };
}

inline FileCalls withFaults(FileCalls calls, const Fault &fault)
{
    guard(calls.open, "open", fault);
    guardClosing(calls.close, "close", fault);
    guard(calls.pread, "pread", fault);
    guard(calls.pwrite, "pwrite", fault);
    guard(calls.fsync, "fsync", fault);
    guard(calls.ftruncate, "ftruncate", fault);
    guard(calls.stat, "stat", fault);
    guard(calls.fstat, "fstat", fault);
    guard(calls.readlink, "readlink", fault);
    guard(calls.fchown, "fchown", fault);
    guard(calls.fchmod, "fchmod", fault);
    guard(calls.flistxattr, "flistxattr", fault);
    guard(calls.fgetxattr, "fgetxattr", fault);
    guard(calls.fsetxattr, "fsetxattr", fault);
    guard(calls.fremovexattr, "fremovexattr", fault);
    guard(calls.rename, "rename", fault);
    guard(calls.unlink, "unlink", fault);
    guard(calls.mkdir, "mkdir", fault);
    guard(calls.flock, "flock", fault);
    guard(calls.access, "access", fault);
    guard(calls.statvfs, "statvfs", fault);
    guard(calls.opendir, "opendir", fault);
    guard(calls.readdir, "readdir", fault);
    guardClosing(calls.closedir, "closedir", fault);
    return calls;
}

/// A folder in which nobody may make files, also for tests that run as root.
inline FileCalls withClosedFolder(FileCalls calls, const QByteArray &folder)
{
    calls.open = [inner = calls.open, folder](const char *name, int flags, mode_t mode) {
        if ((flags & O_CREAT) && QByteArray(name).startsWith(folder)) {
            errno = EACCES;
            return -1;
        }
        return inner(name, flags, mode);
    };
    return calls;
}
