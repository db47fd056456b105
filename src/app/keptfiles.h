#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QStringList>

class DocumentArea;
class DocumentLoader;

/// Tells the user where what a file was is kept that a save has written over: because another program had
/// changed it, or because the user wanted it. One after the other, the last one first, also of documents that
/// are closed by then, and at the next start if the program has ended meanwhile.
class KeptFiles : public QObject {
    Q_DECLARE_TR_FUNCTIONS(frmMain)
public:
    KeptFiles(DocumentArea &documents, DocumentLoader &loader);

    /// Tells of those that the user has not been told of before.
    void tell();

private:
    void add(const QString &copy);
    void tellNext();
    void open();
    void goOn();

    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    QStringList m_copies; ///< full names, the present one first
};
