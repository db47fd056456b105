#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

/// Pictures of the program by name ("corvex/menu/new"): qpeDir()/pics/NAME.svg or .png where there is such a
/// file, else built in.
class Resource {
public:
    /// The picture at its own size; an empty pixmap for a name that is unknown. It has the pixels, and the
    /// device pixel ratio, of the application's finest screen: ask for deviceIndependentSize(), and scale by
    /// loadIcon() rather than afterwards.
    static QPixmap loadPixmap(const QString &name);
    /// The picture as an icon that is drawn sharp at every size and scale; `disabledName` is its disabled
    /// variant, without which the style greys the picture. Nothing is read before it is first painted. An
    /// icon without a picture for a name that is unknown.
    static QIcon loadIcon(const QString &name, const QString &disabledName = {});
};
