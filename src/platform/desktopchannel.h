#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

class LauncherChannel;

/// The program as desktops call it over the bus, and start it that way: `org.freedesktop.Application` under
/// the name that its launcher entry has. What comes so takes the way of all requests.
class DesktopChannel : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    /// The name of the launcher entry and on the bus.
    static QString id();

    /// Not owned; must outlive this.
    explicit DesktopChannel(LauncherChannel &launcher);

    /// Takes the name, or waits for the process that has it to go.
    void open();
    /// Gives the name up.
    static void close();

public slots:
    /// The window is to come to the front.
    void Activate(const QVariantMap &platformData);
    /// Files by their "file://" addresses; what is none of a file here the window tells its user.
    void Open(const QStringList &addresses, const QVariantMap &platformData, const QDBusMessage &message);
    /// An action of the launcher entry, "new-document" or "recent-files"; others are answered with an error.
    void ActivateAction(const QString &name, const QVariantList &parameters, const QVariantMap &platformData,
        const QDBusMessage &message);

private:
    LauncherChannel &m_launcher;
};
