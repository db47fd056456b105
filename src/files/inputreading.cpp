#include "files/inputreading.h"

#include "files/filecalls.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

#include <cstdlib>

#include <fcntl.h>
#include <poll.h>

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

} // namespace

InputReading::InputReading(SharedFd input, Pace pace)
    : m_input(std::move(input))
    , m_pace(pace)
    , m_kept(namelessFile())
{
}

/// Small portions that come one soon behind the other are one.
InputReading::Step InputReading::step()
{
    constexpr qint64 most = qint64{ 1 } << 20;
    m_isBroken = !m_kept;
    if (m_isBroken)
        return Step::Failed;
    if (m_isEnded)
        return Step::Done;
    if (!isThereMore(int(m_pace.patience.count())))
        return Step::More;
    const QDeadlineTimer end(m_pace.gathering);
    const qint64 before = m_size;
    QByteArray room(most, Qt::Uninitialized);
    Step made = Step::More;
    do
        made = readSome(room.data(), before + most - m_size);
    while (made == Step::More && m_size < before + most && !end.hasExpired()
        && isThereMore(int(end.remainingTime())));
    m_isBroken = made == Step::Failed;
    return made;
}

InputReading::Step InputReading::readSome(char *room, qint64 size)
{
    const ssize_t count = retried([&] { return ::read(m_input->number(), room, size_t(size)); });
    if (count == 0)
        return Step::Done;
    if (count < 0)
        return errno == EAGAIN ? Step::More : Step::Failed;
    return keep(room, count) ? Step::More : Step::Failed;
}

/// Or its end, or an error.
bool InputReading::isThereMore(int patience) const
{
    pollfd input{ m_input->number(), POLLIN, 0 };
    return retried([&] { return ::poll(&input, 1, patience); }) != 0;
}

bool InputReading::keep(const char *bytes, qint64 count)
{
    for (qint64 done = 0; done < count;) {
        const ssize_t written =
            retried([&] { return ::pwrite(m_kept->number(), bytes + done, size_t(count - done), m_size); });
        if (written == -1)
            return false;
        done += written;
        m_size += written;
    }
    return true;
}
