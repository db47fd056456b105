#pragma once

#include "app/windowdialogs.h"
#include "document/readwork.h"
#include "editor/worksign.h"
#include "jobs/job.h"
#include "jobs/workturns.h"
#include "text/layoutchange.h"

#include <QDeadlineTimer>

#include <deque>
#include <functional>
#include <optional>

class InputReading;
class JobRunner;
class NoticeQueue;
class TextDocument;
class ctlEditer;
struct WindowJobs;

/// One file, or what comes from a pipe, on its way into a document, read behind the window.
///
/// Where the document has no text, what has come is shown, part by part. Where it has, it keeps that until
/// the other one is whole. The strip tells how far it is. The document is held until then; whoever stops it
/// says what becomes of the document. Of a pipe, which may never end, "Stop" takes what has come for all;
/// what has come of it may be read once more as any other file.
class ArrivingFile : public QObject {
    Q_OBJECT
public:
    enum class Shown { PartByPart, WhenWhole };
    enum class End { Whole, Stopped, Failed };

    /// How bytes become text.
    struct As {
        std::optional<CharCode> code = {}; ///< nothing: the one that is detected
        std::optional<Utf16Form> utf16 = {}; ///< instead of any code
    };
    struct Source {
        FileChoice file;
        std::optional<Utf16Form> utf16 = {}; ///< instead of the file's code
        /// The text is to be that of no file, and has this name.
        std::optional<QString> nameApart = {};
        /// Asked once, when all is read: as what it is read once more then; nothing: it was right.
        std::function<std::optional<As>(const ReadFindings &found)> again = {};
        /// What writes the file, or has written it, where that is read once more for a document that has
        /// its text.
        std::shared_ptr<InputReading> input = {};
    };
    /// Begins at once. Nothing is owned; the document may be closed before this goes.
    ArrivingFile(
        ctlEditer &editor, const Source &source, Shown shown, NoticeQueue &notices, const WindowJobs &jobs);
    /// What has not come by then never does.
    ~ArrivingFile() override;

    bool isShownInParts() const { return m_shown == Shown::PartByPart; }
    /// Also where it is read once more.
    bool isOfInput() const { return m_source.input != nullptr; }
    /// ended() comes at once. Not of what comes from a pipe.
    void stop();
    /// What has come from a pipe by now is all: ended() comes when it is the text.
    void endInput();
    /// What is shown of what comes from a pipe is all of the text from now on, for an end that waits for
    /// nothing. ended() never comes.
    void settle();
    /// Where it has failed.
    ReadFailure failure() const;

signals:
    /// Another part is shown.
    void came();
    /// The whole text is about to take the place of the document's, which is still there.
    void aboutToReplace();
    /// The last signal. The document is held no more, and has all of the text; or it is as after a load that
    /// failed; or it was stopped, and may have a part of the text that is to be taken away. What came from a
    /// pipe is kept also where more of it could not be read.
    void ended(ArrivingFile::End end);

private:
    bool isComingIn() const { return isOfInput() && isShownInParts(); }
    void begin(const As &as);
    void beginInput();
    void beginReading(std::unique_ptr<ReadWork> work, JobRunner &runner);
    QString folder() const;
    QString name() const;
    void collect();
    bool takeSome(QDeadlineTimer end);
    void noteTaken();
    void fail();
    const TextStore &text() const;
    void beginText(FileCodes codes);
    bool updateLayout(QDeadlineTimer end);
    void giveLayout();
    void takePart(ReadWork::Part &&part);
    void noteCodes(FileCodes codes);
    void note(const JobProgress &progress);
    void endReading(JobOutcome outcome);
    void showWhole();
    void detach();
    void keepWhatCame();
    void forgetWork();
    void end(End how);

    ctlEditer &m_editor;
    TextDocument &m_document;
    Source m_source;
    const Shown m_shown;
    const FileCodes m_codesBefore;
    const WindowJobs &m_jobs;
    std::optional<WorkSign> m_sign; ///< until the end
    std::deque<ReadWork::Part> m_waiting; ///< parts to be taken into the text
    WorkTurns m_taking;
    TextStore m_aside; ///< what has come and is not shown
    std::optional<LayoutChange> m_layoutChange; ///< of that
    quint64 m_layoutGiven = 0; ///< what is still to be read is measured by
    bool m_isRead = false; ///< what waits is the rest
    bool m_hasTooLittleMemory = false; ///< to take over what was read
    ReadWork *m_work = nullptr; ///< owned by the job
    std::optional<Job> m_job;
};
