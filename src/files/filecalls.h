#pragma once

#include <cerrno>
#include <functional>

#include <dirent.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/types.h>

/// The system calls that reading and writing files takes, each with the signature and the errors of its
/// namesake.
///
/// Everything the program writes for its users goes through such a table, so that tests can let any single
/// step fail.
struct FileCalls {
    std::function<int(const char *name, int flags, mode_t mode)> open;
    std::function<int(int fd)> close;
    std::function<ssize_t(int fd, void *to, size_t size, off_t offset)> pread;
    std::function<ssize_t(int fd, const void *from, size_t size, off_t offset)> pwrite;
    std::function<int(int fd)> fsync;
    std::function<int(int fd, off_t size)> ftruncate;
    std::function<int(const char *name, struct stat *info)> stat;
    std::function<int(int fd, struct stat *info)> fstat;
    std::function<ssize_t(const char *name, char *to, size_t size)> readlink;
    std::function<int(int fd, uid_t owner, gid_t group)> fchown;
    std::function<int(int fd, mode_t mode)> fchmod;
    std::function<ssize_t(int fd, char *names, size_t size)> flistxattr;
    std::function<ssize_t(int fd, const char *name, void *value, size_t size)> fgetxattr;
    std::function<int(int fd, const char *name, const void *value, size_t size, int flags)> fsetxattr;
    std::function<int(int fd, const char *name)> fremovexattr;
    std::function<int(const char *from, const char *to)> rename;
    std::function<int(const char *name)> unlink;
    std::function<int(const char *name, mode_t mode)> mkdir;
    std::function<int(int fd, int operation)> flock;
    std::function<DIR *(const char *name)> opendir;
    std::function<dirent *(DIR *folder)> readdir;
    std::function<int(DIR *folder)> closedir;
    /// faccessat() from the current folder.
    std::function<int(const char *name, int mode, int flags)> access;
    std::function<int(const char *name, struct statvfs *info)> statvfs;

    /// The system's own.
    static const FileCalls &system();
};

/// Repeats a call as long as a signal interrupts it.
template <typename Call> auto retried(const Call &call) -> decltype(call())
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}
