#pragma once

#include <QPointer>

class TextCursor;
class TextExchange;
class TextMimeData;

/// The selected text as the window system's primary selection, where there is one.
///
/// What was offered follows the selection until that changes to something else than more or less of the same;
/// from then on it is what it was.
class PrimarySelection {
public:
    PrimarySelection(const TextCursor &cursor, const TextExchange &exchange);
    /// Freezes what was offered.
    ~PrimarySelection();
    Q_DISABLE_COPY_MOVE(PrimarySelection)

    void offer();
    /// The selected text is about to change: what was offered stays what it is, or goes where it is too long
    /// to be kept.
    void freeze();

private:
    const TextCursor &m_cursor;
    const TextExchange &m_exchange;
    QPointer<TextMimeData> m_offered; ///< last; it still follows the selection
};
