#pragma once

#include "text/units.h"

#include <QHash>
#include <QObject>

#include <functional>

class DocumentArea;
class DocumentLoader;
class QWidget;
class RecentPlaces;
class ctlEditer;
struct LineColumn;

/// Goes to a line whose number is told, and to the end of a text that is still coming.
class LineJump {
public:
    /// Asks over `window`.
    LineJump(QWidget &window, DocumentArea &documents, const DocumentLoader &loader, RecentPlaces &places);

    /// In the current document; nothing without one, and for a line there is not. Of a text that is held, one
    /// that has not come yet is gone to when all of it is there, unless its user has gone elsewhere by then.
    void ask();
    /// In a document that was just opened or asked for; to the last place there is where the text ends
    /// before. Of a text that is held, when it is not any more, unless its user has gone elsewhere
    /// by then.
    void go(ctlEditer &editor, const LineColumn &place);

private:
    using Jump = std::function<void()>;
    struct Awaited {
        Offset cursor; ///< where it waits
        QMetaObject::Connection released;
        QMetaObject::Connection startedOver;
    };
    void seekEnd(ctlEditer &editor);
    void jumpUnlessMoved(ctlEditer &editor, const Jump &jump);
    void jumpWhenReleased(ctlEditer &editor, const Jump &jump);
    void forget(const ctlEditer &editor);

    QWidget &m_window;
    DocumentArea &m_documents;
    const DocumentLoader &m_loader;
    RecentPlaces &m_places;
    QHash<const ctlEditer *, Awaited> m_awaited; ///< the newest jump in each document
};
