#pragma once

#include "recovery/recoveryjournals.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
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
        for (;;) {
            const QTemporaryDir copies;
            const QStringList before = journals();
            for (const QFileInfo &journal : QDir(folder()).entryInfoList(QDir::Files))
                QFile::copy(journal.filePath(), copies.filePath(journal.fileName()));
            if (journals() == before) // else one may have come after another one's copy, and taken its place
                return textsIn(QFile::encodeName(copies.path()) + '/');
        }
    }

private:
    /// Names and sizes.
    static QStringList journals()
    {
        QStringList all;
        for (const QFileInfo &journal : QDir(folder()).entryInfoList(QDir::Files))
            all << QStringLiteral("%1 %2").arg(journal.fileName()).arg(journal.size());
        return all;
    }
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
