#pragma once

#include "platform/freememory.h"
#include "text/nodebin.h"

#include <QTimer>

#include <functional>

/// While it lives, long texts that documents let go are freed in turns of the event loop; what has become
/// free of them and of closed documents is returned to the system.
///
/// That is one call which cannot be divided, and takes a quarter of a second for a gigabyte. So a long text
/// is returned in portions while it is freed, each in a turn of its own. What is less waits for the end of a
/// run of replacements, which takes for its own leaves what was free.
class TextFreeing : public QObject {
public:
    explicit TextFreeing(const std::function<void()> &giveBack = giveBackFreeMemory);

    /// Documents were closed: in a later turn, once for many of them.
    void giveBackSoon() { m_givingBack.start(); }

private:
    void goOn();

    const std::function<void()> m_giveBack;
    QTimer m_turns; ///< while there is something to be freed
    QTimer m_givingBack;
    qint64 m_bytesBefore = 0; ///< that were freed when a portion was given back last
    NodeBin m_bin{ [this] { m_turns.start(0); } };
};
