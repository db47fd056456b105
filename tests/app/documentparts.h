#pragma once

#include "app/documentarea.h"
#include "app/documentcloser.h"
#include "app/documentloader.h"
#include "app/documentsaver.h"
#include "app/editruns.h"
#include "app/recentplaces.h"
#include "app/windowjobs.h"
#include "tests/app/testwindow.h"
#include "tests/jobs/steppedrunner.h"

#include <QTimer>

/// The documents of a window and what opens, saves and closes them, without a main window. Settings and state
/// are those of a first start.
struct DocumentParts {
    DocumentParts()
    {
        resetSettings();
        window.resize(640, 480);
        documents.resize(window.size());
        window.show();
    }

    ctlEditer *open(const QString &file)
    {
        loader.open(file, {});
        return documents.current();
    }
    QString text() const { return documents.current()->text(); }
    QStringList tabTexts() const
    {
        QStringList texts;
        for (int i = 0; i < documents.tabBar()->count(); ++i)
            texts << documents.tabBar()->tabText(i);
        return texts;
    }

    void makeSteps(int count)
    {
        while (count-- > 0)
            QVERIFY(steps.step());
    }
    /// While a command waits, whenever the event loop comes round.
    void makeStepsInTheLoop()
    {
        m_stepping.callOnTimeout(&m_stepping, [this] { steps.step(); });
        m_stepping.start(0);
    }
    bool isStrip(const ctlEditer *editor) const { return documents.notices().has(NoticeKind::Work, editor); }
    void pressStop(const ctlEditer *editor) const
    {
        const Notice *const notice = documents.notices().heaviest(editor);
        QVERIFY(notice);
        const auto act = notice->offers.front().act;
        act();
    }

    QList<FileChoice> choices; ///< what the file dialog is left with, in turn; cancelled when there is none
    QList<FileChoice> starts; ///< what it was opened with

    TestFiles files;
    QWidget window;
    DocumentArea &documents = *new DocumentArea(&window);
    RecentPlaces places;
    const WindowDialogs dialogs{
        [this](QWidget *, frmFileDialog::Mode, const FileChoice &start) -> std::optional<FileChoice> {
            starts << start;
            return choices.isEmpty() ? std::nullopt : std::optional(choices.takeFirst());
        },
        {}
    };
    SteppedRunner &steps = *new SteppedRunner;
    WindowJobs jobs{ std::unique_ptr<JobRunner>(&steps) };
    DocumentLoader loader{ window, dialogs, documents, places, jobs };
    EditRuns edits{ documents, jobs };
    DocumentSaver saver{ window, dialogs, documents, places, edits, jobs };
    DocumentCloser closer{ window, documents, loader, saver, edits, places };

private:
    QTimer m_stepping;
};
