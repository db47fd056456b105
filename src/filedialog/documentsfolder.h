#pragma once

#include <QString>

/// The folder that is offered for documents that were never saved. A bare account has none yet, and one whose
/// desktop speaks another language may have one of another name.
namespace DocumentsFolder {

/// Ends in "/".
QString path();
/// Whether a save there makes the folder first: it is the one, is not there, and can be made. Other folders
/// are not made: their names are more likely mistyped. Nor is what a link leads to, such as a disk that is
/// not there now.
bool isMadeBySaving(const QString &folder);
/// It is the one, and cannot be: a file stands in its place.
bool isFileInstead(const QString &folder);
/// Makes the folder if a save there is to.
void makeForSaving(const QString &folder);

} // namespace DocumentsFolder
