#pragma once

#include <QObject>

class DocumentArea;
class DocumentLoader;
class DocumentSaver;
class RecentPlaces;
class RecoveryJournals;

/// What is written when the program ends without asking, whatever is open or under way.
class LastWrites : public QObject {
public:
    /// Writes when the application says that it ends at once.
    LastWrites(DocumentArea &documents, const DocumentLoader &loader, DocumentSaver &saver,
        RecentPlaces &places, RecoveryJournals &journals);

private:
    void write();

    DocumentArea &m_documents;
    const DocumentLoader &m_loader;
    DocumentSaver &m_saver;
    RecentPlaces &m_places;
    RecoveryJournals &m_journals;
};
