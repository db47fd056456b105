#include "files/fileattributes.h"

#include <QByteArrayList>
#include <QtEndian>

#include <algorithm>
#include <optional>

namespace {

constexpr mode_t readAndWriteForAll = 0666;

/// Calls something that tells the size it needs when given none, until it fits: attributes may grow between
/// two calls.
template <typename Read> std::optional<QByteArray> readSized(const Read &read)
{
    for (;;) {
        const ssize_t size = retried([&] { return read(nullptr, 0); });
        if (size <= 0)
            return size == 0 || errno == ENOTSUP ? std::optional(QByteArray()) : std::nullopt;
        QByteArray value(size, Qt::Uninitialized);
        const ssize_t got = retried([&] { return read(value.data(), size_t(size)); });
        if (got >= 0)
            return value.first(got);
        if (errno != ERANGE)
            return std::nullopt;
    }
}

std::optional<QByteArray> attribute(const FileCalls &calls, int fd, const char *name)
{
    return readSized([&](char *to, size_t size) { return calls.fgetxattr(fd, name, to, size); });
}

std::optional<QByteArrayList> attributeNames(const FileCalls &calls, int fd)
{
    const auto list = readSized([&](char *to, size_t size) { return calls.flistxattr(fd, to, size); });
    if (!list)
        return std::nullopt;
    QByteArrayList names = list->split('\0');
    names.removeAll(QByteArray());
    return names;
}

bool copyAttribute(const FileCalls &calls, int from, int to, const char *name)
{
    const auto value = attribute(calls, from, name);
    if (!value)
        return false;
    // A security label may not be set even to what it is already.
    if (!value->isEmpty() && attribute(calls, to, name) == value)
        return true;
    return retried([&] { return calls.fsetxattr(to, name, value->constData(), size_t(value->size()), 0); })
        == 0;
}

/// A new file may have attributes of its own at once, such as an access list that its folder hands down.
bool copyExtendedAttributes(const FileCalls &calls, int from, int to)
{
    const auto wanted = attributeNames(calls, from);
    const auto given = attributeNames(calls, to);
    if (!wanted || !given)
        return false;
    for (const QByteArray &name : *given) {
        if (!wanted->contains(name) && retried([&] { return calls.fremovexattr(to, name.constData()); }) != 0)
            return false;
    }
    return std::all_of(wanted->begin(), wanted->end(),
        [&](const QByteArray &name) { return copyAttribute(calls, from, to, name.constData()); });
}

/// The rights in an access list as the kernel keeps it in "system.posix_acl_default": a 32-bit version, then
/// entries of tag (16 bits), rights (16 bits) and id (32 bits), all little-endian; tags are those of acl(5).
std::optional<mode_t> modeOfAccessList(const QByteArray &list)
{
    enum Tag : quint16 { Owner = 0x01, Group = 0x04, Mask = 0x10, Other = 0x20 };
    constexpr int headerSize = 4;
    constexpr int entrySize = 8;
    std::optional<mode_t> owner, group, mask, other;
    for (qsizetype at = headerSize; at + entrySize <= list.size(); at += entrySize) {
        const auto tag = qFromLittleEndian<quint16>(list.constData() + at);
        const mode_t rights = qFromLittleEndian<quint16>(list.constData() + at + 2) & 7u;
        if (tag == Owner)
            owner = rights;
        else if (tag == Group)
            group = rights;
        else if (tag == Mask)
            mask = rights;
        else if (tag == Other)
            other = rights;
    }
    if (!owner || !group || !other)
        return std::nullopt;
    return *owner << 6 | mask.value_or(*group) << 3 | *other;
}

mode_t fileMask()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return mask;
}

} // namespace

bool copyAttributes(const FileCalls &calls, int from, int to)
{
    struct stat wanted, now;
    if (calls.fstat(from, &wanted) != 0 || calls.fstat(to, &now) != 0)
        return false;
    const bool ownerDiffers = wanted.st_uid != now.st_uid || wanted.st_gid != now.st_gid;
    if (ownerDiffers && retried([&] { return calls.fchown(to, wanted.st_uid, wanted.st_gid); }) != 0)
        return false;
    // The rights come last: a new owner clears some of them, and an access list changes those of the group.
    return copyExtendedAttributes(calls, from, to)
        && retried([&] { return calls.fchmod(to, wanted.st_mode & permissionBits); }) == 0;
}

mode_t modeOfNewFile(const FileCalls &calls, int folder)
{
    if (folder != -1) {
        const auto list = attribute(calls, folder, "system.posix_acl_default");
        if (const auto mode = list ? modeOfAccessList(*list) : std::nullopt)
            return *mode & readAndWriteForAll;
    }
    return readAndWriteForAll & ~fileMask();
}
