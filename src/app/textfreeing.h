#pragma once

#include "text/nodebin.h"

#include <QTimer>

/// While it lives, long texts that documents let go are freed in turns of the event loop; what has become
/// free of them and of closed documents is returned to the system.
class TextFreeing : public QObject {
public:
    TextFreeing();

    /// Documents were closed: in a later turn, once for many of them.
    void giveBackSoon() { m_givingBack.start(); }

private:
    void goOn();

    QTimer m_turns; ///< while there is something to be freed
    QTimer m_givingBack;
    NodeBin m_bin{ [this] { m_turns.start(0); } };
};
