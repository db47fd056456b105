#include "files/inputreading.h"

#include "files/filecalls.h"

#include <QByteArray>
#include <QDir>
#include <QFile>

#include <cstdlib>
#include <utility>

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

InputReading::InputReading(SharedFd input, std::chrono::milliseconds patience)
    : m_input(std::move(input))
    , m_patience(patience)
    , m_kept(namelessFile())
{
}

InputReading::Step InputReading::step()
{
    constexpr qsizetype most = qsizetype{ 1 } << 20;
    if (!m_kept)
        return Step::Failed;
    if (m_isEnded)
        return Step::Done;
    if (!isThereMore())
        return Step::More;
    QByteArray bytes(most, Qt::Uninitialized);
    const ssize_t count =
        retried([&] { return ::read(m_input->number(), bytes.data(), size_t(bytes.size())); });
    if (count == 0)
        return Step::Done;
    if (count < 0)
        return errno == EAGAIN ? Step::More : Step::Failed;
    return keep(bytes.constData(), count) ? Step::More : Step::Failed;
}

/// Or its end, or an error.
bool InputReading::isThereMore() const
{
    pollfd input{ m_input->number(), POLLIN, 0 };
    return retried([&] { return ::poll(&input, 1, int(m_patience.count())); }) != 0;
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
