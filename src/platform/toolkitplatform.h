#pragma once

#include <QByteArray>
#include <QList>

/// Platforms of the toolkit, such as "xcb" or "linuxfb:fb=/dev/fb1".

/// Puts into the environment what the toolkit's words of a command line ("-platform", "-display") say instead
/// of it, so that whoever asks before the application object is made looks there alone.
void takePlatformWords(const QList<QByteArray> &toolkitWords);

/// What the toolkit tries in this environment, in its order: what is asked for, else Wayland and then X in a
/// Wayland session except GNOME's, else X and then Wayland. Never empty.
QList<QByteArray> wantedPlatforms();

/// Whether one of them has a display: its server answers, or its device is there. The toolkit ends the
/// program with an abort where none has. What is not known here counts as there. Cost: a connection to the
/// server.
bool hasDisplay();
