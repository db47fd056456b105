#pragma once

#include "codec/codecs.h"
#include "recovery/recoveryjournals.h"
#include "tests/document/documentfolder.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

/// Documents and their journals, each in a folder of its own, and a clock that only the test steps.
class RecoveryFolder {
public:
    /// The folder of the journals; it is not there before there is a journal.
    QByteArray journals() const { return QFile::encodeName(m_folder.path()) + "state/journals/"; }
    const DocumentFolder &documents() const { return m_folder; }

    JournalClock clock()
    {
        return [this] { return now; };
    }
    qint64 now = 1000;

    std::vector<LeftBehind> leftBehind() const { return findLeftBehind(journals()); }
    QStringList files() const
    {
        return QDir(QFile::decodeName(journals()))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private:
    DocumentFolder m_folder;
};

/// What a program does between its start and a moment at which it is killed: nothing is ended or flushed when
/// it is destroyed.
class Run {
public:
    explicit Run(RecoveryFolder &folder, const FileCalls &calls = FileCalls::system())
        : journals(folder.journals(), calls, folder.clock())
        , m_folder(folder)
    {
        document.startNew(QStringLiteral("new"), { CharCode::Utf8, ReturnCode::Lf }, utf8Codec());
        journals.attach(document, [this] { return place; });
    }

    /// Lets typing pause for long enough, and what is due be written.
    bool pause()
    {
        m_folder.now += 10000;
        journals.writeDue();
        return journals.flush(std::chrono::minutes(1));
    }
    QString text() const { return document.store().text(); }

    ViewPlace place;
    RecoveryJournals journals;
    TextDocument document;

private:
    RecoveryFolder &m_folder;
};
