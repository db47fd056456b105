#pragma once

#include "files/filecalls.h"
#include "files/sharedfd.h"

#include <QByteArray>

#include <utility>

/// A journal that no program writes any more, locked so that no other one restores or removes it meanwhile.
/// Destroyed, it stays where it is.
class ClaimedJournal {
public:
    ClaimedJournal() = default; ///< of none
    ClaimedJournal(ClaimedJournal &&other) noexcept;
    ClaimedJournal &operator=(ClaimedJournal &&other) noexcept;
    ~ClaimedJournal();

    /// Of none if it is in use, not there, not the user's own, or no file. Who only looks what is in it is
    /// waited for, a fifth of a second at most; nobody else. `calls` is not owned.
    static ClaimedJournal claim(const QByteArray &name, const FileCalls &calls);

    explicit operator bool() const { return m_file != -1; }
    int file() const { return m_file; } ///< open for reading
    /// The same file for who reads it in another thread, and may have it open when it is locked no more.
    /// Null, with errno, where it cannot be opened.
    SharedFd openAgain() const;
    /// Removes it; false if it is still there.
    bool discard();

private:
    ClaimedJournal(QByteArray name, int file, const FileCalls &calls)
        : m_name(std::move(name))
        , m_file(file)
        , m_calls(&calls)
    {
    }
    void close();

    QByteArray m_name;
    int m_file = -1;
    const FileCalls *m_calls = nullptr;
};

/// Opens a file of the user's own for reading, if it is one and nobody locks it; -1 else. `lock` as for
/// flock(): those who share it share it for a moment, which is waited for. Nothing else is, whatever the name
/// is of.
int openUnused(const QByteArray &name, int lock, const FileCalls &calls);
