#include "tests/app/told.h"

#include <QtEndian>

#include <chrono>
#include <climits>

#include <unistd.h>

namespace {

struct Head {
    qint64 time;
    qint32 document;
    quint16 units;
    Told::Kind kind;
};

} // namespace

Told Told::ofText(Kind kind, int document, const QString &text)
{
    return { kind, document, now(), text };
}

Told Told::of(Kind kind, int document)
{
    return { kind, document, now(), {} };
}

qint64 Told::now()
{
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return qint64{ std::chrono::duration_cast<std::chrono::milliseconds>(time).count() };
}

void tell(int pipe, const Told &told)
{
    const Head head{ told.time, told.document, quint16(told.text.size()), told.kind };
    QByteArray bytes(reinterpret_cast<const char *>(&head), sizeof head);
    bytes.append(
        reinterpret_cast<const char *>(told.text.utf16()), told.text.size() * qsizetype(sizeof(QChar)));
    // So much arrives as a whole or not at all.
    Q_ASSERT(bytes.size() <= PIPE_BUF);
    if (write(pipe, bytes.constData(), size_t(bytes.size())) != bytes.size())
        _exit(1);
}

bool Listener::has(qsizetype bytes)
{
    while (m_heard.size() < bytes) {
        char block[PIPE_BUF];
        const ssize_t got = read(m_pipe, block, sizeof block);
        if (got <= 0)
            return false;
        m_heard.append(block, got);
    }
    return true;
}

std::optional<Told> Listener::next()
{
    Head head;
    if (!has(sizeof head))
        return std::nullopt;
    memcpy(&head, m_heard.constData(), sizeof head);
    const qsizetype bytes = head.units * qsizetype(sizeof(QChar));
    if (!has(qsizetype(sizeof head) + bytes))
        return std::nullopt;
    QString text(head.units, Qt::Uninitialized);
    memcpy(text.data(), m_heard.constData() + sizeof head, size_t(bytes));
    m_heard.remove(0, qsizetype(sizeof head) + bytes);
    return Told{ head.kind, head.document, head.time, text };
}
