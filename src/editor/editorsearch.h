#pragma once

#include "text/textsearch.h"

class QMultiLineEdit;

/// Searches the text of an editor from its cursor or selection, selects what it finds, or replaces it.
///
/// Each search gives false, with cursor and selection as they were, when there is no hit. The pattern is kept
/// from one search to the next, which mostly looks for the same.
class EditorSearch {
public:
    /// `editor` is not owned and lives longer.
    explicit EditorSearch(QMultiLineEdit &editor)
        : m_editor(editor)
    {
    }

    /// What the next searches look for.
    void setPattern(const QString &text, Qt::CaseSensitivity caseSensitivity);

    /// Selects the first hit behind the cursor or, where text is selected, behind the first character of
    /// that.
    bool selectNext();
    /// Selects the last hit before the cursor or the selection, where the cursor then stands.
    bool selectPrevious();
    /// Replace such a hit, which is never shown as selected before. The cursor goes behind the new text, or
    /// to its start.
    bool replaceNext(const QString &text);
    bool replacePrevious(const QString &text);

private:
    std::optional<SearchHit> next() const;
    std::optional<SearchHit> previous() const;
    void replace(const SearchHit &hit, const QString &text);

    QMultiLineEdit &m_editor;
    TextPattern m_pattern;
};
