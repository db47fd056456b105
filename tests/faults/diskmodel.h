#pragma once

#include "files/filecalls.h"

#include <QByteArray>

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <random>
#include <vector>

/// What is on a disk: folders with names, and files, which may have several names or none.
struct DiskState {
    using File = int;
    static constexpr File folder = 0; ///< stands for any, as its own name says which it is

    std::map<QByteArray, std::map<QByteArray, File>> folders; ///< by name, ending in "/"
    std::map<File, QByteArray> contents; ///< of a link, where it leads
    std::map<File, bool> links;

    /// A hash, equal for states in which the same is found under the same names.
    QByteArray key(const QByteArray &root) const;
    /// Makes the folder `root` so, which is there and empty.
    void put(const QByteArray &root) const;
};

/// A disk that loses what was not put on it: it notes what calls do in a folder, and tells every state that a
/// power cut may leave.
///
/// Of what was written to a file, or changed in a folder, since that was synced, any part may be on the disk
/// and any other not: a write is two halves, the change of a name is whole. What was synced is there.
class DiskModel {
public:
    /// All that is in the folder `root` (ends in "/") is on the disk.
    explicit DiskModel(QByteArray root);

    /// Does what these do, and notes it. `calls` is copied.
    FileCalls noting(const FileCalls &calls);
    /// What was noted so far is on the disk.
    void begin();

    /// How much was noted since then.
    std::size_t steps() const { return m_steps.size(); }
    /// Calls `visit` with what a power cut right behind the first `steps` may leave: with all there is, or
    /// where that is too much, with so many by chance.
    void visitStatesAfter(std::size_t steps, std::mt19937 &random, std::size_t most,
        const std::function<void(const DiskState &state)> &visit) const;

private:
    struct Step {
        DiskState::File file = -1; ///< whose content it is about, if not a folder's names
        QByteArray folder = {};
        bool isSync = false;
        std::optional<qint64> size = {}; ///< of the file then
        qint64 offset = 0;
        QByteArray bytes = {};
        std::map<QByteArray, std::optional<DiskState::File>> names = {}; ///< that come, or go

        bool isOfSame(const Step &other) const { return file == other.file && folder == other.folder; }
    };

    void scan(const QByteArray &folder, std::map<ino_t, DiskState::File> &known);
    bool isInside(const QByteArray &name) const { return name.startsWith(m_root); }
    std::optional<DiskState::File> fileOf(const QByteArray &name) const;
    void noteOpen(const QByteArray &name, int fd);
    void noteWrite(int fd, const QByteArray &bytes, qint64 offset);
    void noteNames(const QByteArray &folder, std::map<QByteArray, std::optional<DiskState::File>> names);
    void note(Step step);
    static void apply(const Step &step, DiskState &state);

    const QByteArray m_root;
    DiskState m_begun;
    DiskState m_now;
    DiskState::File m_lastFile = DiskState::folder;
    std::map<int, Step> m_open; ///< by descriptor: a step of that file or folder, without what it is
    std::vector<Step> m_steps;
    std::recursive_mutex m_mutex; ///< the program may make its calls in a thread
};
