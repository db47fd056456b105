#pragma once

#include <QInputMethodEvent>
#include <QList>
#include <QString>

/// Text that an input method is still composing: shown at the cursor, no part of the document.
struct Preedit {
    QString text;
    QList<QInputMethodEvent::Attribute> formats; ///< of kind TextFormat; start and length in `text`
    int cursor = 0; ///< the cursor's place in `text`
    bool cursorVisible = true;
};
