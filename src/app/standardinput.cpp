#include "app/standardinput.h"

#include "files/inputreading.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// Else errno says why.
bool canBeRead(int number)
{
    struct stat info;
    const int flags = ::fcntl(number, F_GETFL);
    if (flags == -1 || ::fstat(number, &info) != 0)
        return false;
    errno = S_ISDIR(info.st_mode) ? EISDIR : EBADF;
    return !S_ISDIR(info.st_mode) && (flags & O_ACCMODE) != O_WRONLY;
}

/// Null, with errno, where it cannot be read.
SharedFd readToItsEnd(const SharedFd &input)
{
    InputReading reading(input);
    auto step = InputReading::Step::More;
    while (step == InputReading::Step::More)
        step = reading.step();
    return step == InputReading::Step::Done ? reading.kept() : SharedFd();
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

SharedFd inputFrom(int number)
{
    const int copy = canBeRead(number) ? ::fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1) : -1;
    if (copy == -1)
        return {};
    const auto input = std::make_shared<OpenFd>(copy);
    return ::isatty(number) ? readToItsEnd(input) : input;
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
