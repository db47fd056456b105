#pragma once

#include "platform/freememory.h"
#include "text/nodebin.h"

#include <QTimer>

#include <functional>

/// While it lives, long texts that documents let go are freed in turns of the event loop; what has become
/// free of them and of closed documents is returned to the system.
///
/// Not amid a run of replacements, which takes for its own leaves what was free: giving back what lies
/// between them took a tenth of a second there, in one call that cannot be divided.
class TextFreeing : public QObject {
public:
    explicit TextFreeing(const std::function<void()> &giveBack = giveBackFreeMemory);

    /// Documents were closed: in a later turn, once for many of them.
    void giveBackSoon() { m_givingBack.start(); }

private:
    void goOn();

    QTimer m_turns; ///< while there is something to be freed
    QTimer m_givingBack;
    NodeBin m_bin{ [this] { m_turns.start(0); } };
};
