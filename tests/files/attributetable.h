#pragma once

#include "tests/files/savedfile.h"

#include <QByteArray>

#include <cerrno>
#include <cstring>
#include <map>

/// Extended attributes kept in memory, by file: the same on every file system.
struct AttributeTable {
    std::map<ino_t, std::map<QByteArray, QByteArray>> files;

    static ssize_t give(const QByteArray &value, void *to, size_t size)
    {
        if (size > 0)
            memcpy(to, value.constData(), size_t(value.size()));
        return value.size();
    }
    FileCalls over(FileCalls calls)
    {
        calls.flistxattr = [this](int fd, char *to, size_t size) {
            QByteArray list;
            for (const auto &[name, value] : files[inodeOf(fd)])
                list += name + '\0';
            return give(list, to, size);
        };
        calls.fgetxattr = [this](int fd, const char *name, void *to, size_t size) -> ssize_t {
            const auto &attributes = files[inodeOf(fd)];
            if (!attributes.contains(name)) {
                errno = ENODATA;
                return -1;
            }
            return give(attributes.at(name), to, size);
        };
        calls.fsetxattr = [this](int fd, const char *name, const void *value, size_t size, int) {
            files[inodeOf(fd)][name] = QByteArray(static_cast<const char *>(value), qsizetype(size));
            return 0;
        };
        calls.fremovexattr = [this](int fd, const char *name) {
            files[inodeOf(fd)].erase(name);
            return 0;
        };
        return calls;
    }
};
