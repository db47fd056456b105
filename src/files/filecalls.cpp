#include "files/filecalls.h"

#include <cstdio>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/xattr.h>
#include <unistd.h>

const FileCalls &FileCalls::system()
{
    static const FileCalls calls{
        .open = [](const char *name, int flags, mode_t mode) { return ::open(name, flags, mode); },
        .close = ::close,
        .pread = ::pread,
        .pwrite = ::pwrite,
        .fsync = ::fsync,
        .ftruncate = ::ftruncate,
        .stat = [](const char *name, struct stat *info) { return ::stat(name, info); },
        .fstat = [](int fd, struct stat *info) { return ::fstat(fd, info); },
        .readlink = ::readlink,
        .fchown = ::fchown,
        .fchmod = ::fchmod,
        .flistxattr = ::flistxattr,
        .fgetxattr = ::fgetxattr,
        .fsetxattr = ::fsetxattr,
        .fremovexattr = ::fremovexattr,
        .rename = ::rename,
        .unlink = ::unlink,
        .mkdir = ::mkdir,
        .flock = ::flock,
        .opendir = ::opendir,
        .readdir = ::readdir,
        .closedir = ::closedir,
        .access = [](const char *name, int mode,
                      int flags) { return ::faccessat(AT_FDCWD, name, mode, flags); },
        .statvfs = [](const char *name, struct statvfs *info) { return ::statvfs(name, info); },
    };
    return calls;
}
