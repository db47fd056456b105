#pragma once

#include "text/textsearch.h"

class QMultiLineEdit;

/// Searches the text of an editor from its cursor or selection, selects what it finds, or replaces it.
///
/// The pattern is kept from one search to the next, which mostly looks for the same.
class EditorSearch {
public:
    /// `editor` is not owned and lives longer.
    explicit EditorSearch(QMultiLineEdit &editor)
        : m_editor(editor)
    {
    }

    /// What the next searches look for.
    void setPattern(const QString &text, Qt::CaseSensitivity caseSensitivity);
    const TextPattern &pattern() const { return m_pattern; }

    /// Where a search begins: forward at the cursor or, where text is selected, behind the first character of
    /// that; backward before the cursor or the selection.
    CursorPlace start(SearchDirection direction) const;

    /// Selects the hit; the cursor then stands at its end that is further on in the direction. False, with
    /// cursor and selection as they were, when there is no hit.
    bool selectHit(SearchDirection direction);
    /// Replaces it, and it is never shown as selected before. Forward the cursor goes behind the new text,
    /// backward to its start.
    bool replaceHit(SearchDirection direction, const QString &text);

    /// The same with a hit that was found already.
    void select(SearchDirection direction, const SearchHit &hit);
    void replace(SearchDirection direction, const SearchHit &hit, const QString &text);

private:
    std::optional<SearchHit> find(SearchDirection direction) const;

    QMultiLineEdit &m_editor;
    TextPattern m_pattern;
};
