#pragma once

#include "files/oldcopy.h"
#include "recovery/leftbehind.h"

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QTemporaryDir>

/// What the start after a fault finds, when it has cleared away what it knows to be nobody's.
struct NextStart {
    QList<LostCopy> copies;
    std::vector<LeftBehind> journals;

    /// The texts that it can bring back from journals.
    QStringList restoredTexts() const;
    /// Whether it has a copy of a file's old bytes.
    bool hasCopy(const QByteArray &file, const QByteArray &bytes) const;
};

/// All the folders of a user: documents, settings, and what the program keeps. They stand in the environment
/// for as long as this lives.
class Sandbox {
public:
    Sandbox();
    Q_DISABLE_COPY_MOVE(Sandbox)

    /// Without any file, and with no folder but that of the documents.
    void empty() const;
    /// Ends in "/", as do the others.
    QByteArray root() const { return m_root; }
    QByteArray documents() const { return m_root + "documents/"; }

    /// All files and links, by their names without the root.
    QStringList files() const;
    /// What a start does before its user can do anything, and its end, which writes the settings.
    NextStart startAgain() const;
    /// A file that is neither one of the user's nor offered by that start; empty if there is none.
    QString unexplained(const NextStart &start) const;

private:
    QTemporaryDir m_dir;
    QByteArray m_root;
};
