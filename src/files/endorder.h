#pragma once

#include <QtGlobal>

#include <functional>

/// The order to end at once, which a signal gives in the middle of anything.
///
/// What keeps the event loop waiting for long (reading, decoding and writing a file) asks between two blocks,
/// so that the end does not wait for it.
class EndOrder {
public:
    /// May be called by a signal handler.
    static void give();
    /// For a process that goes on all the same.
    static void withdraw();
    static bool isGiven();

    /// What obeying is: it ends the process, or does nothing where it cannot.
    static void setObedience(std::function<void()> obey);
    /// To be called with nothing left behind that nobody would clear away. Returns where the order was not
    /// given, or nobody obeys.
    static void obeyIfGiven();

    /// Something that should not be broken off half way is under way while one lives, in any thread.
    class Delay {
    public:
        Delay();
        ~Delay();
        Q_DISABLE_COPY_MOVE(Delay)
    };
    /// May be called by a signal handler.
    static bool isDelayed();
};
