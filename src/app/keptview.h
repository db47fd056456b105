#pragma once

#include "editor/ctlediter.h"

#include <memory>

class ArrivingFile;

/// Where a cursor at the end of a text goes that is read again.
enum class CursorAtEnd {
    StaysInRow,
    Follows, ///< to the end of what is there then
};

/// Where cursor and view are in a text that is about to be read again.
class KeptView {
public:
    explicit KeptView(const ctlEditer &editor);
    /// In the new text, in the rows of before.
    void show(ctlEditer &editor, CursorAtEnd atEnd) const;
    /// Keeps it anew just before the text is replaced: it is where its user has gone by then.
    static void renewBeforeReplacing(
        const std::shared_ptr<KeptView> &view, const ctlEditer &editor, const ArrivingFile &arriving);

private:
    RowCol m_cursor;
    RowIndex m_top;
    bool m_isAtEnd;
};
