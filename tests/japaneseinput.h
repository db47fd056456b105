#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

/// A Japanese input method that takes the keys of this process's windows. QT_IM_MODULE is to be "fcitx"
/// before the application object is made.
class JapaneseInput {
public:
    static constexpr int patience = 60'000; ///< ms; the dictionary is read at the first conversion

    bool start()
    {
        if (!write(QStringLiteral("fcitx5/profile"), profile)
            || !write(QStringLiteral("fcitx5/conf/anthy.conf"), forgetful))
            return false;
        m_daemon.setStandardErrorFile(QProcess::nullDevice());
        m_daemon.start(QStringLiteral("fcitx5"), { QStringLiteral("--disable=wayland,waylandim") });
        // Under this name it talks to programs; one that asks sooner is never heard.
        QDBusConnectionInterface *const bus = QDBusConnection::sessionBus().interface();
        const QString name = QStringLiteral("org.freedesktop.portal.Fcitx");
        return m_daemon.waitForStarted()
            && QTest::qWaitFor([&] { return bus->isServiceRegistered(name).value(); }, patience);
    }
    void stop()
    {
        m_daemon.terminate();
        if (!m_daemon.waitForFinished())
            m_daemon.kill();
    }

    /// It names an input method as soon as it knows of a text that has the focus.
    static bool waitUntilOn() { return waitFor(QStringLiteral("anthy")); }
    static bool waitUntilOff() { return waitFor(QString()); }

    /// What a program prints, without the line end.
    static QString outputOf(const QString &program, const QStringList &arguments)
    {
        QProcess process;
        process.start(program, arguments);
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }
    /// Keys as the window system knows them, separated by blanks.
    static void press(const QString &keys)
    {
        outputOf(QStringLiteral("xdotool"), QStringList{ QStringLiteral("key") } + keys.split(u' '));
    }

private:
    /// The input method that knows Japanese is the only one, so that it gets every key.
    static constexpr char profile[] = "[Groups/0]\nName=Default\nDefault Layout=us\nDefaultIM=anthy\n\n"
                                      "[Groups/0/Items/0]\nName=anthy\nLayout=\n\n[GroupOrder]\n0=Default\n";
    /// What it learns it keeps in the user's own home, whatever HOME says.
    static constexpr char forgetful[] = "[General]\nLearnOnManualCommit=False\nLearnOnAutoCommit=False\n";

    /// Writes a file below the folder of settings.
    static bool write(const QString &name, const char *content)
    {
        const QString path =
            QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' + name;
        QFile file(path);
        return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
            && file.write(content) > 0;
    }
    static bool waitFor(const QString &inputMethod)
    {
        const auto isIt = [&] {
            return outputOf(QStringLiteral("fcitx5-remote"), { QStringLiteral("-n") }) == inputMethod;
        };
        return QTest::qWaitFor(isIt, patience);
    }

    QProcess m_daemon;
};
