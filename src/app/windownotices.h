#pragma once

#include "app/disknotices.h"
#include "app/interruptedsaves.h"
#include "app/keptfiles.h"
#include "app/obstaclenotices.h"
#include "app/readingnotices.h"
#include "app/writingnotices.h"

class DocumentJournals;
class RecoveryJournals;
struct WindowJobs;

/// Those that look out for what puts the text of a window's documents at risk. Each listens to the documents
/// by itself, and puts what it finds into their notices.
class WindowNotices {
public:
    /// `window` is the one whose coming to the front counts.
    WindowNotices(QWidget &window, DocumentArea &documents, DocumentLoader &loader, DocumentSaver &saver,
        const WindowJobs &jobs, RecoveryJournals &journals, DocumentJournals &documentJournals);

    /// Tells of what earlier runs of the program have left.
    void tellOfEarlierRuns();

private:
    WritingNotices m_writing;
    ReadingNotices m_reading;
    DiskNotices m_disk;
    ObstacleNotices m_obstacles;
    InterruptedSaves m_interruptedSaves;
    KeptFiles m_keptFiles;
};
