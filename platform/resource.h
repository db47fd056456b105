#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

/// Pictures of the program by name ("corvex/menu/new"): from qpeDir()/pics where such a file is, else built
/// in.
class Resource {
public:
    /// The picture at its own size for a screen of scale 1; an empty pixmap for a name that is unknown.
    static QPixmap loadPixmap(const QString &name);
    /// The picture as an icon that is drawn crisp at every size and scale; `disabledName` is its disabled
    /// variant.
    static QIcon loadIcon(const QString &name, const QString &disabledName = {});
};
