#pragma once

#include "platform/windowsystem.h"

#include <QByteArray>
#include <QList>

/// Platforms of the toolkit, such as "xcb" or "linuxfb:fb=/dev/fb1".

/// Puts into the environment what the toolkit's words of a command line ("-platform", "-display",
/// "-platformpluginpath") say instead of it, so that whoever asks before the application object is made looks
/// there alone.
void takePlatformWords(const QList<QByteArray> &toolkitWords);

/// What the toolkit tries in this environment, in its order: what is asked for, else Wayland and then X in a
/// Wayland session except GNOME's, else X and then Wayland. Never empty.
QList<QByteArray> wantedPlatforms();

/// Whether the toolkit has a plugin for one of them. Cost: some files are looked into.
bool isWantedPlatformInstalled();

/// Looks whether one of them is installed and has a display: its server answers, or its device is there. The
/// toolkit ends the program with an abort where none has. A display that is not known here counts as there.
/// Cost: a connection to the server, which lasts as long as this: a server that is left by its last client
/// may begin anew, and refuses who comes meanwhile.
class DisplayProbe {
public:
    DisplayProbe();

    bool isThere() const { return m_isThere; }

private:
    bool hasXServer();
    bool has(const QByteArray &platform);

    XConnection m_xServer;
    bool m_isThere;
};
