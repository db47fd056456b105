#pragma once

#include "document/unwritabletext.h"

#include <chrono>

class DocumentArea;
class DocumentSaver;
class ctlEditer;

/// The notice of one document that it has characters which its code cannot write.
///
/// It stays until the text is mended or the user puts it away; then it comes back after a save that wrote
/// other characters, or when the text had none in between.
class WritingNotice : public QObject {
    Q_OBJECT
public:
    /// From an edit until the notice says what it has changed; a long text takes longer.
    static constexpr std::chrono::milliseconds longestWait{ 16 };

    /// Belongs to the editor.
    WritingNotice(ctlEditer &editor, DocumentArea &documents, DocumentSaver &saver);

signals:
    /// See WritingNotices.
    void substituted();
    void settled();

private:
    void noteSaved();
    void update();
    void tell();
    void withdraw();
    void settle();

    QString text() const;
    QString listed() const;
    void goToNext();
    void saveAsUtf8();

    ctlEditer &m_editor;
    DocumentArea &m_documents;
    DocumentSaver &m_saver;
    UnwritableText m_unwritable;
    QTimer m_soon; ///< what many edits in a row change is told once
    bool m_isDismissed = false;
    bool m_isSubstituted = false; ///< in the file are other characters
};
