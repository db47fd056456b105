#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

class DocumentArea;
class DocumentSaver;
class WritingNotice;
class ctlEditer;

/// Tells the user of characters that a document's code cannot write: as soon as the text has one, and once
/// more after a save that has written others in their place.
class WritingNotices : public QObject {
    Q_OBJECT
public:
    WritingNotices(DocumentArea &documents, DocumentSaver &saver);

signals:
    /// A save has written other characters than the document has.
    void substituted(ctlEditer *editor);
    /// The user has put the notice of that away, or there is nothing left that cannot be written.
    void settled(ctlEditer *editor);

private:
    void add(ctlEditer *editor);
    void remove(const ctlEditer *editor);
    void setShown(const ctlEditer *editor);

    DocumentArea &m_documents;
    DocumentSaver &m_saver;
    QHash<const ctlEditer *, WritingNotice *> m_notices; ///< of every document
    QPointer<WritingNotice> m_shown; ///< of the current one
};
