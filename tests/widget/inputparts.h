#pragma once

#include "tests/widget/viewparts.h"
#include "widget/inputcomposer.h"
#include "widget/pointergestures.h"
#include "widget/pressedpointer.h"
#include "widget/selectionhandles.h"
#include "widget/textclipboard.h"
#include "widget/textdrag.h"
#include "widget/touchgestures.h"

/// What people put text in and point at it by, without an editor around it.
struct InputParts : ViewParts {
    explicit InputParts(const QString &text)
        : ViewParts(text)
    {
        view.updateLast();
    }

    /// The text with "|" for the cursor and "[" or "]" for the other end of the selection.
    QString drawn() const
    {
        const qint64 place = cursor.place().offset.value();
        const qint64 anchor = cursor.anchor().offset.value();
        QString drawn = text();
        drawn.insert(qMax(place, anchor), place >= anchor ? u'|' : u']');
        if (place != anchor)
            drawn.insert(qMin(place, anchor), place > anchor ? u'[' : u'|');
        return drawn;
    }
    /// A point of the viewport in the character at an offset, near its left edge.
    QPointF at(qint64 offset) const { return view.characterBox(Offset(offset)).center() - QPointF(2, 0); }

    InputComposer composer{ editor, document, cursor, preedit, view, updates, scroller, followers, moves,
        edits };
    TextClipboard clipboard{ cursor, view, exchange, moves, edits };
    TextDrag drag{ editor, viewport, document.store(), format, cursor, view, updates, scroller, exchange,
        clipboard, edits };
    PressedPointer pressed{ viewport };
    PointerGestures pointer{ editor, document.store(), cursor, view, scroller, primary, moves, composer, drag,
        pressed };
    SelectionHandles handles{ editor, viewport, document.store(), cursor, view, moves, [] {} };
    TouchGestures touch{ editor, viewport, pressed, pointer, handles };
};

/// An editor that passes on what an input method sends it.
class Passing : public QObject {
public:
    explicit Passing(InputParts &parts)
        : m_parts(parts)
    {
        parts.editor.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        return event->type() == QEvent::InputMethod
            && m_parts.composer.compose(*static_cast<QInputMethodEvent *>(event));
    }

private:
    InputParts &m_parts;
};
