#pragma once

#include "text/wordbounds.h"

#include <QInputMethodEvent>
#include <QVariant>

class CursorFollowers;
class CursorMoves;
class QWidget;
class RowUpdates;
class TextCursor;
class EditableText;
class TextEdits;
class TextStore;
class TextView;
class ViewScroller;
struct Preedit;

/// What an input method and one editor have to do with one another: text is composed, becomes text of the
/// document, and the input method asks for what is around the cursor.
class InputComposer {
public:
    InputComposer(QWidget &editor, EditableText &document, TextCursor &cursor, Preedit &preedit,
        const TextView &view, RowUpdates &updates, ViewScroller &scroller, CursorFollowers &followers,
        CursorMoves &moves, TextEdits &edits);

    bool isComposing() const;
    /// False for what an input method sends that was told to forget what it composed.
    bool compose(const QInputMethodEvent &event);
    /// What is composed becomes text, as if Return had been given to the input method; also where that does
    /// not answer.
    void commit();

    /// Answers for the text and the cursor; rectangles are the viewport's. Invalid for what is not known
    /// here.
    QVariant answer(Qt::InputMethodQuery query, const QVariant &argument) const;

private:
    void commit(const QInputMethodEvent &event);
    void setPreedit(const QInputMethodEvent &event);
    void select(const QInputMethodEvent::Attribute &attribute);
    TextRange surroundings() const;
    QVariant answerAround(Qt::InputMethodQuery query, const QVariant &argument) const;

    QWidget &m_editor;
    EditableText &m_document;
    const TextStore &m_store;
    TextCursor &m_cursor;
    Preedit &m_preedit;
    const TextView &m_view;
    RowUpdates &m_updates;
    ViewScroller &m_scroller;
    CursorFollowers &m_followers;
    CursorMoves &m_moves;
    TextEdits &m_edits;
    bool m_isDeaf = false; ///< while the input method is told to forget what it composed
};
