#pragma once

#include <QObject>

class DocumentArea;
class QWidget;
class RecentPlaces;
class ctlEditer;

/// Goes to a line whose number is asked for.
class LineJump {
public:
    /// Asks over `window`.
    LineJump(QWidget &window, DocumentArea &documents, RecentPlaces &places);

    /// In the current document; nothing without one, and for a line there is not. Of a text that is held, one
    /// that has not come yet is gone to when all of it is there, unless its user has gone elsewhere by then.
    void ask();

private:
    void jumpWhenItHasCome(ctlEditer &editor, qint64 line);

    QWidget &m_window;
    DocumentArea &m_documents;
    RecentPlaces &m_places;
    QMetaObject::Connection m_awaited; ///< of the jump that was asked for last
};
