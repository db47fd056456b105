#pragma once

#include <QObject>

class DocumentArea;

/// Ctrl with the wheel above a text asks for another size of the text, where the settings allow that.
class TextSizeWheel : public QObject {
    Q_OBJECT
public:
    /// A child of the documents.
    explicit TextSizeWheel(DocumentArea &documents);

    bool eventFilter(QObject *viewport, QEvent *event) override;

signals:
    /// So many notches, larger when positive.
    void turned(int notches);

private:
    DocumentArea &m_documents;
    int m_rest = 0; ///< turned so far, not enough for a notch
};
