#pragma once

#include <QStringList>

/// What the user's desktop is set to, by the variables that every program of it gets.
struct DesktopLocale {
    QStringList languages; ///< such as "fr-CH" and "fr", the most wanted first; "C" where none is set
    bool isUtf8 = false; ///< a language is set, and its texts are in UTF-8
};

DesktopLocale desktopLocale();
