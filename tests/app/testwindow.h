#pragma once

#include "app/frmmain.h"
#include "app/sessionend.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "files/statefolder.h"
#include "platform/qpeapplication.h"
#include "settings/moresettings.h"
#include "settings/settings.h"
#include "tests/messageboxes.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QInputMethodQueryEvent>
#include <QMenu>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

/// For the tests whose program is one.
inline QPEApplication &theApplication()
{
    return *static_cast<QPEApplication *>(qApp);
}

/// The main window with answers in the place of its dialogs.
class TestWindow : public frmMain {
public:
    explicit TestWindow(WindowJobs jobs = {})
        : frmMain(nullptr,
            { [this](QWidget *, frmFileDialog::Mode mode, const FileChoice &start) {
                 return answer(mode, start);
             },
                [this](QWidget *) { return options(); }, [this](QWidget *) { return moreOptions(); } },
            std::move(jobs))
    {
    }

    /// What the file dialog was opened with.
    struct Request : FileChoice {
        frmFileDialog::Mode mode;
    };

    /// Shows the window, active and with its first document, for which it does not wait.
    bool open()
    {
        showMaximized();
        const bool isActive = QTest::qWaitForWindowActive(this);
        slotEtcFirstNewDoc();
        return isActive && tabBar()->count() == 1;
    }

    /// What the window answers a session manager that is about to end the session.
    bool endSession(bool mayAsk) { return findChild<SessionEnd *>()->prepare(mayAsk); }

    QStringList tabTexts() const
    {
        QStringList texts;
        for (int i = 0; i < tabBar()->count(); ++i)
            texts << tabBar()->tabText(i);
        return texts;
    }
    ctlEditer *editorAt(int index) const { return tabBar()->editors().at(index); }
    /// The tool bar with the buttons, not the one that holds the menus.
    QToolBar *toolBar() const
    {
        const QList<QToolBar *> bars = findChildren<QToolBar *>();
        return bars.size() == 2 ? bars.last() : nullptr;
    }
    bool isItemEnabled(CommandId command) const { return item(command)->isEnabled(); }
    /// Enabled states of Undo, Redo, Cut, Copy, as "u", "r", "x", "c" or "-".
    QString editStates() const
    {
        QString states;
        for (const auto &[command, letter] :
            { std::pair(EditCommand::Undo, u'u'), std::pair(EditCommand::Redo, u'r'),
                std::pair(EditCommand::Cut, u'x'), std::pair(EditCommand::Copy, u'c') })
            states += isItemEnabled(command) ? letter : u'-';
        return states;
    }

    QList<FileChoice> choices; ///< what the file dialog is left with, in turn; cancelled when there is none
    QList<Request> requests;
    std::function<void()> whileChoosing = [] {};
    std::function<bool()> options = [] { return false; };
    std::function<bool()> moreOptions = [] { return false; };

private:
    std::optional<FileChoice> answer(frmFileDialog::Mode mode, const FileChoice &start)
    {
        requests << Request{ start, mode };
        whileChoosing();
        if (choices.isEmpty())
            return std::nullopt;
        return choices.takeFirst();
    }
};

/// A folder of files for one test.
class TestFiles {
public:
    /// Ends in "/".
    QString folder() const { return m_folder.path() + u'/'; }
    /// Full name of a new file.
    QString write(const QString &name, const QByteArray &content) const
    {
        QFile file(folder() + name);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }
    QByteArray read(const QString &name) const
    {
        QFile file(folder() + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be read)");
    }

private:
    QTemporaryDir m_folder;
};

/// Everything that is already under way has been done after it.
inline void settle()
{
    for (int turn = 0; turn < 10; ++turn)
        QCoreApplication::processEvents();
}

/// Whether keys go to the focus again: those that are pressed before what was read is on the screen do not.
inline bool takesKeys()
{
    QInputMethodQueryEvent query(Qt::ImEnabled);
    return QApplication::focusWidget() && QCoreApplication::sendEvent(QApplication::focusWidget(), &query)
        && query.value(Qt::ImEnabled).toBool();
}

/// Opens files of these names, "old" in each and an "x" typed in front of it; the document of the window's
/// start is closed.
inline bool openModified(TestWindow &window, const TestFiles &files, const QStringList &names)
{
    if (!window.open())
        return false;
    window.slotCmdFileCloseTab();
    for (const QString &name : names) {
        window.setDocument(files.write(name, "old"));
        QTest::keyClicks(window.currentEditor(), QStringLiteral("x"));
    }
    return window.tabBar()->count() == names.size();
}

/// Makes saving a document fail: a folder stands where its file should be written.
inline void breakSaving(const ctlEditer *editor)
{
    QFile::remove(editor->path() + editor->name());
    QDir().mkpath(editor->path() + editor->name());
}

inline QString settingsFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/marlopad.conf");
}

/// Settings as a first start has them, English, and no file of them; and nothing is left of earlier runs.
inline void resetSettings()
{
    QFile::remove(settingsFile());
    QDir(QFile::decodeName(stateFolder())).removeRecursively();
    appSettings() = {};
    appSettings().Lang = 0;
    recentFiles() = {};
    moreSettings() = {};
    writeSettings();
}
