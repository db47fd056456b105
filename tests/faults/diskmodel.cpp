#include "tests/faults/diskmodel.h"

#include "files/copycontent.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>

#include <fcntl.h>
#include <unistd.h>

namespace {

QByteArray folderPart(const QByteArray &name)
{
    return name.first(name.lastIndexOf('/') + 1);
}

QByteArray namePart(const QByteArray &name)
{
    return name.sliced(name.lastIndexOf('/') + 1);
}

QByteArray contentUnder(const QByteArray &name)
{
    QFile file(QFile::decodeName(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray linkUnder(const QByteArray &name)
{
    QByteArray target(4096, Qt::Uninitialized);
    target.truncate(qMax<ssize_t>(0, ::readlink(name.constData(), target.data(), size_t(target.size()))));
    return target;
}

void putFile(const QByteArray &name, const QByteArray &content)
{
    QFile file(QFile::decodeName(name));
    if (file.open(QIODevice::WriteOnly))
        file.write(content);
}

} // namespace

QByteArray DiskState::key(const QByteArray &root) const
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const auto &[name, file] : folders.at(root)) {
        hash.addData(name + (file == folder ? "/" : "="));
        const QByteArray content = file == folder ? key(root + name + '/') : contents.at(file);
        hash.addData(QByteArray::number(content.size()) + ':' + content);
    }
    return hash.result();
}

void DiskState::put(const QByteArray &root) const
{
    constexpr mode_t privateFolder = 0700;
    const auto names = folders.find(root);
    if (names == folders.end())
        return;
    std::map<File, QByteArray> made;
    for (const auto &[name, file] : names->second) {
        const QByteArray full = root + name;
        if (file == folder) {
            ::mkdir(full.constData(), privateFolder);
            put(full + '/');
        } else if (links.contains(file)) {
            ::symlink(contents.at(file).constData(), full.constData());
        } else if (const auto [first, isNew] = made.insert({ file, full }); isNew) {
            putFile(full, contents.at(file));
        } else {
            ::link(first->second.constData(), full.constData());
        }
    }
}

DiskModel::DiskModel(QByteArray root)
    : m_root(std::move(root))
{
    std::map<ino_t, DiskState::File> known;
    scan(m_root, known);
    m_begun = m_now;
}

void DiskModel::scan(const QByteArray &folder, std::map<ino_t, DiskState::File> &known)
{
    auto &names = m_now.folders[folder];
    QDirIterator found(
        QFile::decodeName(folder), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (found.hasNext()) {
        const QByteArray full = QFile::encodeName(found.next());
        struct stat info = {};
        ::lstat(full.constData(), &info);
        if (S_ISDIR(info.st_mode)) {
            names[namePart(full)] = DiskState::folder;
            scan(full + '/', known);
            continue;
        }
        const auto [file, isNew] = known.insert({ info.st_ino, m_lastFile + 1 });
        m_lastFile += isNew ? 1 : 0;
        names[namePart(full)] = file->second;
        if (S_ISLNK(info.st_mode))
            m_now.links[file->second] = true;
        m_now.contents[file->second] = S_ISLNK(info.st_mode) ? linkUnder(full) : contentUnder(full);
    }
}

void DiskModel::begin()
{
    m_begun = m_now;
    m_steps.clear();
}

std::optional<DiskState::File> DiskModel::fileOf(const QByteArray &name) const
{
    const auto folder = m_now.folders.find(folderPart(name));
    if (folder == m_now.folders.end())
        return std::nullopt;
    const auto file = folder->second.find(namePart(name));
    return file == folder->second.end() ? std::nullopt : std::optional(file->second);
}

void DiskModel::note(Step step)
{
    apply(step, m_now);
    m_steps.push_back(std::move(step));
}

void DiskModel::apply(const Step &step, DiskState &state)
{
    if (step.file != -1 && !step.isSync) {
        QByteArray &content = state.contents[step.file];
        const qint64 end = step.offset + step.bytes.size();
        content.resize(step.size.value_or(qMax<qint64>(content.size(), end)), '\0');
        std::ranges::copy(step.bytes, content.begin() + step.offset);
    }
    for (const auto &[name, file] : step.names) {
        if (!file) {
            state.folders[step.folder].erase(name);
            continue;
        }
        state.folders[step.folder][name] = *file;
        if (*file == DiskState::folder)
            state.folders[step.folder + name + '/'];
        else
            state.contents[*file];
    }
}

void DiskModel::noteNames(
    const QByteArray &folder, std::map<QByteArray, std::optional<DiskState::File>> names)
{
    note({ .folder = folder, .names = std::move(names) });
}

void DiskModel::noteOpen(const QByteArray &name, int fd)
{
    struct stat info = {};
    if (::fstat(fd, &info) != 0)
        return;
    if (S_ISDIR(info.st_mode)) {
        m_open[fd] = { .folder = name.endsWith('/') ? name : name + '/', .isSync = true };
        return;
    }
    auto file = fileOf(name);
    if (!file) {
        file = ++m_lastFile;
        noteNames(folderPart(name), { { namePart(name), *file } });
    }
    m_open[fd] = { .file = *file, .isSync = true };
}

void DiskModel::noteWrite(int fd, const QByteArray &bytes, qint64 offset)
{
    const auto open = m_open.find(fd);
    if (open == m_open.end())
        return;
    const qsizetype half = bytes.size() / 2;
    if (half > 0)
        note({ .file = open->second.file, .offset = offset, .bytes = bytes.first(half) });
    note({ .file = open->second.file, .offset = offset + half, .bytes = bytes.sliced(half) });
}

FileCalls DiskModel::noting(const FileCalls &calls)
{
    FileCalls noting = calls;
    noting.open = [this, calls](const char *name, int flags, mode_t mode) {
        const std::lock_guard lock(m_mutex);
        const int fd = calls.open(name, flags, mode);
        if (fd != -1 && isInside(name))
            noteOpen(name, fd);
        return fd;
    };
    noting.close = [this, calls](int fd) {
        const std::lock_guard lock(m_mutex);
        m_open.erase(fd);
        return calls.close(fd);
    };
    noting.pwrite = [this, calls](int fd, const void *from, size_t size, off_t offset) {
        const std::lock_guard lock(m_mutex);
        const ssize_t written = calls.pwrite(fd, from, size, offset);
        if (written > 0)
            noteWrite(fd, QByteArray(static_cast<const char *>(from), written), offset);
        return written;
    };
    noting.ftruncate = [this, calls](int fd, off_t size) {
        const std::lock_guard lock(m_mutex);
        const int result = calls.ftruncate(fd, size);
        if (const auto open = m_open.find(fd); result == 0 && open != m_open.end())
            note({ .file = open->second.file, .size = size });
        return result;
    };
    noting.fsync = [this, calls](int fd) {
        const std::lock_guard lock(m_mutex);
        const int result = calls.fsync(fd);
        if (const auto open = m_open.find(fd); result == 0 && open != m_open.end())
            note(open->second);
        return result;
    };
    noting.rename = [this, calls](const char *from, const char *to) {
        const std::lock_guard lock(m_mutex);
        const int result = calls.rename(from, to);
        if (const auto file = fileOf(from); result == 0 && file)
            noteNames(folderPart(to), { { namePart(from), std::nullopt }, { namePart(to), *file } });
        return result;
    };
    noting.unlink = [this, calls](const char *name) {
        const std::lock_guard lock(m_mutex);
        const int result = calls.unlink(name);
        if (result == 0 && isInside(name))
            noteNames(folderPart(name), { { namePart(name), std::nullopt } });
        return result;
    };
    noting.mkdir = [this, calls](const char *name, mode_t mode) {
        const std::lock_guard lock(m_mutex);
        const int result = calls.mkdir(name, mode);
        if (result == 0 && isInside(name))
            noteNames(folderPart(name), { { namePart(name), DiskState::folder } });
        return result;
    };
    return noting;
}

void DiskModel::visitStatesAfter(std::size_t steps, std::mt19937 &random, std::size_t most,
    const std::function<void(const DiskState &state)> &visit) const
{
    DiskState synced = m_begun;
    std::vector<const Step *> open;
    for (std::size_t at = 0; at < steps; ++at) {
        const auto syncs = [&](const Step &later) { return later.isSync && later.isOfSame(m_steps[at]); };
        const auto end = m_steps.begin() + std::ptrdiff_t(steps);
        if (std::any_of(m_steps.begin() + std::ptrdiff_t(at), end, syncs))
            apply(m_steps[at], synced);
        else
            open.push_back(&m_steps[at]);
    }
    const bool isAll = open.size() < 63 && (std::size_t(1) << open.size()) <= most;
    const std::size_t count = isAll ? std::size_t(1) << open.size() : most;
    for (std::size_t number = 0; number < count; ++number) {
        DiskState state = synced;
        for (std::size_t at = 0; at < open.size(); ++at) {
            if (isAll ? (number >> at & 1) == 1 : (random() & 1) == 1)
                apply(*open[at], state);
        }
        visit(state);
    }
}
