#pragma once

#include "editor/notice.h"

#include <QObject>

/// The notices of one window that the user has not put away.
class NoticeQueue : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// Takes the place of that of the same kind about the same document, where there is one.
    void put(Notice notice);
    /// There is no reason for it any more; nothing when it is not there.
    void withdraw(NoticeKind kind, const QObject *about = nullptr);
    /// The document was closed; one that is destroyed needs no call.
    void withdrawAllAbout(const QObject *document);
    /// The user puts it away.
    void dismiss(NoticeKind kind, const QObject *about);
    /// Other kinds may be wanted now.
    void applySettings();

    bool has(NoticeKind kind, const QObject *about = nullptr) const;
    /// The heaviest one about a document, which may be null, or about the program; of equal ones the oldest.
    /// One that is not wanted does not count. Null when there is none. Valid until the next change.
    const Notice *heaviest(const QObject *document) const;

signals:
    /// Some notice came, went or says something else.
    void changed();

private:
    std::vector<Notice>::iterator find(NoticeKind kind, const QObject *about);

    std::vector<Notice> m_notices; ///< the oldest first
};
