#pragma once

#include "tests/app/fulldisk.h"
#include "tests/app/jobscene.h"

#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

/// A job that is done behind a window, and everything that may come between.
class JobEvents {
public:
    /// What becomes of a job.
    enum class Fate {
        NotTried,
        Done,
        Stopped,
        Failed,
        Gone, ///< stopped, because the document is closed
        DoneAndGone,
    };

    enum class Moment { Start, Middle, End };

    struct Event {
        const char *name;
        Moment moment;
        void (JobEvents::*act)();
        /// Of a load, a reload, a save, a search, a count, a layout, an edit, a following, a restoring and
        /// standard input, which is of no file; at last of that where it is read once more.
        Fate fates[11];
        int boxes = 0;
        QString answer = {}; ///< of its box; the default one where there is none
        bool endsWindow = false;
    };
    static const std::vector<Event> &events();

protected:
    JobEvents();

    static Fate fateOf(const JobScene::Job &job, const Event &event) { return event.fates[size_t(job.kind)]; }

    void beginScene();
    void endScene();

    void nothing() { }
    void stop();
    void closeTab() { m_scene->window.slotCmdFileCloseTab(); }
    void quit();
    void endByOrder();
    void logOut();
    void requestItsFile();
    void requestAnotherFile();
    void makeFileLonger();
    void deleteFile() { QFile::remove(itsFile()); }
    void replaceFileByFolder();
    void replaceFileByPipe();
    void fillDisk();
    void useUpMemory();
    void changeLanguage();
    void changeFont();
    void typeIntoIt();
    void typeIntoAnotherTab();

    void begin(const JobScene::Job &job);
    void makeStepsInTheLoop();
    void makeStepsBefore(Moment moment);
    void makeTurnsOfLayout(int percent);
    QString itsFile() const { return m_scene->fullName(QString::fromLatin1(m_job->file)); }

    bool isOfInput() const
    {
        using enum JobScene::Kind;
        return m_job->kind == Input || m_job->kind == InputAgain;
    }

    std::unique_ptr<JobScene> m_scene;
    QTimer m_stepping; ///< makes steps while the window waits for them
    const JobScene::Job *m_job = nullptr;
    const Event *m_event = nullptr;
    QPointer<ctlEditer> m_editor; ///< that the job is about
    Offset m_cursor; ///< when the job has begun
    QString m_typed; ///< into it since
    QString m_otherText;
    QByteArray m_otherFile;
    qint64 m_come = 0; ///< bytes of standard input, where no more of it becomes text
    QByteArray m_foreign; ///< what somebody else has written into its file
    std::optional<FullDisk> m_fullDisk;
};
