#pragma once

#include "recovery/recoveryjournals.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// What the journals in the program's folder would bring back.
class UnsavedTexts {
public:
    static QString folder() { return QFile::decodeName(journalFolder()); }
    static void removeAll() { QDir(folder()).removeRecursively(); }

    /// Texts of journals that no program writes any more, in the order of their letters.
    static QStringList leftBehind() { return textsIn(journalFolder()); }
    /// Also of those that are being written: as if their programs were killed now.
    static QStringList now()
    {
        const QTemporaryDir copies;
        const QDir journals(folder());
        for (const QString &name : journals.entryList(QDir::Files))
            QFile::copy(journals.filePath(name), copies.filePath(name));
        return textsIn(QFile::encodeName(copies.path()) + '/');
    }

private:
    static QStringList textsIn(const QByteArray &folder)
    {
        QStringList texts;
        for (const LeftBehind &found : findLeftBehind(folder)) {
            TextDocument document;
            const Restored restored = restore(found.journal, document);
            if (restored.outcome == Restored::Outcome::Edited || restored.outcome == Restored::Outcome::New)
                texts << document.store().text();
        }
        texts.sort();
        return texts;
    }
};
