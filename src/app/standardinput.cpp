#include "app/standardinput.h"

#include "files/filecalls.h"

#include <QByteArray>
#include <QDir>
#include <QFile>

#include <array>
#include <cstdlib>

#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace {

/// Null: there can be none.
SharedFd namelessFile()
{
    QByteArray name = QFile::encodeName(QDir::tempPath()) + "/marlopad-" + QByteArray(6, 'X');
    const int number = ::mkostemp(name.data(), O_CLOEXEC);
    if (number == -1)
        return {};
    ::unlink(name.constData());
    return std::make_shared<OpenFd>(number);
}

bool writeAll(int to, const char *bytes, ssize_t count)
{
    while (count > 0) {
        const ssize_t written = retried([&] { return ::write(to, bytes, size_t(count)); });
        if (written == -1)
            return false;
        bytes += written;
        count -= written;
    }
    return true;
}

} // namespace

void occupyStandardFiles()
{
    // In order, as each call gives the lowest number that is free.
    int number = STDIN_FILENO;
    while (number != -1 && number <= STDERR_FILENO) {
        const bool isFree = ::fcntl(number, F_GETFD) == -1;
        const int of = number == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        number = isFree && ::open("/dev/null", of) == -1 ? -1 : number + 1;
    }
}

SharedFd readInput(int number)
{
    SharedFd file = namelessFile();
    std::array<char, 65536> block{};
    ssize_t count = file ? 1 : 0;
    while (count > 0) {
        count = retried([&] { return ::read(number, block.data(), block.size()); });
        if (count == -1 || !writeAll(file->number(), block.data(), count))
            return {};
    }
    return file;
}

std::optional<int> ownFileNamed(const QString &name)
{
    for (const QLatin1StringView folder : { "/dev/fd/"_L1, "/proc/self/fd/"_L1 }) {
        bool isNumber = false;
        const int number = name.startsWith(folder) ? name.sliced(folder.size()).toInt(&isNumber) : -1;
        if (isNumber && ::fcntl(number, F_GETFD) != -1)
            return number;
    }
    return std::nullopt;
}
