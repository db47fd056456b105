#pragma once

#include "files/filecalls.h"
#include "files/fileversion.h"

#include <QString>

#include <optional>

/// Why a file was not read.
enum class ReadFailure {
    Missing,
    NotOpened, ///< for lack of permission, mostly
    Folder,
    Device, ///< or a pipe
    TooLarge, ///< for the machine's memory
    BrokenOff, ///< a read error within the file
};

/// A file that is read block by block.
///
/// A folder, a pipe or a device is refused without being opened; a file of size 0 is at its end without being
/// opened either. File names may hold any bytes, see files/filename.h.
class FileReader {
public:
    /// `calls` is not owned.
    explicit FileReader(const FileCalls &calls = FileCalls::system());
    ~FileReader();
    Q_DISABLE_COPY_MOVE(FileReader)

    /// Nothing when all is well.
    std::optional<ReadFailure> open(const QString &fileName);
    /// Of the file as it was opened.
    const FileStamp &stamp() const { return m_stamp; }
    /// How many bytes have come of up to `size`, which are at `offset` of the file: 0 at its end. Nothing: a
    /// read error.
    std::optional<qint64> read(char *to, qint64 size, qint64 offset) const;

private:
    static constexpr int noFile = -1;

    std::optional<ReadFailure> take(const struct stat &status);

    const FileCalls &m_calls;
    int m_file = noFile;
    FileStamp m_stamp;
};

/// Reads a file from an offset on; nothing when all is well, else why not, with `bytes` as they were. `stamp`
/// is of the file as it was before, with the size that was read. A folder, a pipe or a device is refused
/// without being opened; a file of size 0 gives an empty array without being opened either; a file that
/// becomes shorter or longer while it is read is taken as far as it goes; a read error is an error, not an
/// end of file. File names may hold any bytes, see files/filename.h. Cost: memory speed.
std::optional<ReadFailure> readFileFrom(const QString &fileName, qint64 from, QByteArray &bytes,
    FileStamp &stamp, const FileCalls &calls = FileCalls::system());
