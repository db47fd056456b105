#pragma once

#include "platform/qcop.h"
#include "recovery/journalfolder.h"
#include "tests/waiting.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// The program itself, in a window of a window manager, driven from outside by keys; and a folder of files.
class ProgramWindow {
public:
    static constexpr int doubleClickTime = 400; ///< the toolkit's, in ms

    /// A new folder, settings of a first start in English, and no program.
    bool reset(const QByteArray &moreSettings = {})
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_program = std::make_unique<QProcess>();
        QDir(QFile::decodeName(journalFolder())).removeRecursively();
        return writeSettings(moreSettings);
    }
    /// Ends the program if it still runs; gives what it has said on standard error.
    QByteArray end()
    {
        if (m_program->state() != QProcess::NotRunning) {
            m_program->kill();
            m_program->waitForFinished();
        }
        return m_program->readAllStandardError();
    }

    QProcess &program() { return *m_program; }
    QString folder() const { return m_folder->path(); }
    QString write(const QString &name, const QByteArray &content) const
    {
        QFile file(m_folder->filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }
    QByteArray read(const QString &name) const
    {
        QFile file(m_folder->filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static QString settingsFile()
    {
        return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
            + QStringLiteral("/marlopad.conf");
    }
    /// English, so that windows are known by their titles, and nothing of the test before.
    static bool writeSettings(const QByteArray &more = {})
    {
        QFile file(settingsFile());
        const QByteArray content = "[main]\nLang = 0\n" + more;
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

    /// Starts the program and waits until its window is active, shows a document and takes keys.
    bool start(const QStringList &files = {})
    {
        m_program->start(QStringLiteral(MARLOPAD_PROGRAM), files);
        const auto showsDocument = [this] { return title().startsWith(QLatin1String("Marlo!Pad QT  [")); };
        return m_program->waitForStarted() && waitUntil(showsDocument)
            && waitUntil([this] { return isActive(); }) && takesKeys();
    }
    /// Waits until keys go to the document that was just loaded: some turns of the event loop after its title
    /// is there. The program answers to each call in a turn of its own.
    static bool takesKeys()
    {
        constexpr int turns = 10;
        const QDBusConnection bus = QDBusConnection::sessionBus();
        const QDBusMessage ping =
            QCopChannel::call(QStringLiteral("QPE/Application/marlopad"), QStringLiteral("ping"));
        for (int turn = 0; turn < turns; ++turn) {
            if (bus.call(ping).type() != QDBusMessage::ReplyMessage)
                return false;
        }
        return true;
    }
    bool hasEnded()
    {
        return m_program->state() == QProcess::NotRunning
            || (m_program->waitForFinished(1) && m_program->state() == QProcess::NotRunning);
    }

    QString window() const
    {
        return xdotool({ QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                           QStringLiteral("^Marlo!Pad QT") })
            .section(u'\n', 0, 0);
    }
    QString title() const { return xdotool({ QStringLiteral("getwindowname"), window() }); }
    /// As the title shows it: CR+LF, CR or LF; empty while there is none.
    QString lineEnd() const { return title().section(u'[', 2).section(u']', 0, 0); }
    QString states() const
    {
        return outputOf(
            QStringLiteral("xprop"), { QStringLiteral("-id"), window(), QStringLiteral("_NET_WM_STATE") });
    }
    bool isActive() const { return xdotool({ QStringLiteral("getactivewindow") }) == window(); }
    static QString activeTitle()
    {
        return xdotool({ QStringLiteral("getactivewindow"), QStringLiteral("getwindowname") });
    }
    static void press(const QStringList &keys) { xdotool(QStringList{ QStringLiteral("key") } + keys); }

    /// Waits for the message box of that title and presses the key in it until it is gone.
    static bool answer(const QString &title, const QString &key)
    {
        return waitUntil([&title] { return activeTitle() == title; })
            && leave(QStringLiteral("getactivewindow"), key);
    }
    /// Presses a key in the window in front, which `inFront` asks for, until it is gone: at first it may
    /// answer to none. What is pressed too often is for that window alone, and lost with it.
    static bool leave(const QString &inFront, const QString &key)
    {
        const QString window = xdotool({ inFront });
        const auto isGone = [&] { return xdotool({ inFront }) != window; };
        // One press after the other: those that wait together look like a repeated key. The window may be
        // gone before the release, which then has to be made up for.
        return waitUntil([&] {
            xdotool({ QStringLiteral("key"), QStringLiteral("--window"), window, key });
            xdotool({ QStringLiteral("keyup"), key });
            return QTest::qWaitFor(isGone, doubleClickTime / 2);
        });
    }
    /// Gives the message box that is active the time after which it answers. Nothing tells that it has
    /// passed.
    static void letBoxBeRead() { QTest::qWait(5 * doubleClickTime); }

    static QString xdotool(const QStringList &arguments)
    {
        return outputOf(QStringLiteral("xdotool"), arguments);
    }
    /// What a program prints, without the line end.
    static QString outputOf(const QString &program, const QStringList &arguments)
    {
        QProcess process;
        process.start(program, arguments);
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_program;
};
