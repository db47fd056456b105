#pragma once

#include "document/editabletext.h"

/// Offset, units removed and units inserted.
using Change = QList<qint64>;

/// What a text has told of.
class TextListener {
public:
    explicit TextListener(const EditableText &text)
    {
        QObject::connect(&text, &EditableText::changed, &m_context,
            [this](const TextChange &change) { changes << numbers(change); });
        QObject::connect(&text, &EditableText::replaced, &m_context,
            [this](const TextChange &change) { replacements << numbers(change); });
    }

    QList<Change> changes;
    QList<Change> replacements;

private:
    static Change numbers(const TextChange &change)
    {
        return { change.offset.value(), change.removed, change.inserted };
    }

    QObject m_context;
};
