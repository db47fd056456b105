#pragma once

#include "settings/settings.h"

#include <QHash>
#include <QList>
#include <QObject>

#include <optional>

class ctlEditer;

/// Remembers the files that were closed last in the table of the settings, and where their cursors and views
/// were.
class RecentPlaces : public QObject {
    Q_OBJECT
public:
    /// Puts a document that is being closed on top of the table; one that was never saved is left out. One
    /// whose file could not be read keeps the place that was remembered of it.
    void add(const ctlEditer &editor);
    /// The same with many, one after the other; the table has changed once then.
    void add(const QList<ctlEditer *> &editors);
    /// Puts cursor and view of a document that was just loaded where they were when it was closed, unless the
    /// user does not want that.
    void restore(ctlEditer &editor) const;

    /// Where cursor and view of a document are now.
    static RecentEntry entryFor(const ctlEditer &editor);
    /// Puts them where an entry has them.
    static void show(ctlEditer &editor, const RecentEntry &entry);

    /// The document's file could not be read: the place that is remembered of it stays with the document
    /// until it can.
    void carry(const ctlEditer &editor);
    /// The document's file was read: restores a place that it has carried.
    void restoreCarried(ctlEditer &editor);
    /// The same while its text is still coming, as soon as that place has come; not for a user who has moved
    /// meanwhile.
    void restoreCarriedIfThere(ctlEditer &editor);
    /// All of it has come.
    void settleCarried(ctlEditer &editor);
    /// The document was saved: what it has carried is no longer true.
    void dropCarried(const ctlEditer &editor);

signals:
    /// The table has another row on top.
    void changed();

private:
    bool enter(const ctlEditer &editor);
    std::optional<RecentEntry> placeOf(const ctlEditer &editor) const;

    QHash<const ctlEditer *, RecentEntry> m_carried;
};
