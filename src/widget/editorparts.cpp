#include "widget/editorparts.h"

QMultiLineEdit::Parts::Parts(QMultiLineEdit &edit, ViewScrollBar &verticalBar, ViewScrollBar &horizontalBar)
    : cursor(document.store())
    , view(*edit.viewport(), document.store(), format, cursor, preedit)
    , updates(*edit.viewport(), document.store(), format, cursor, view)
    , scroller(verticalBar, horizontalBar, format, cursor, view, updates)
    , blink(edit, updates)
    , exchange(edit, document, cursor)
    , primary(cursor, exchange)
    , announcer(edit)
    , followers(edit, cursor, document.history(), blink, announcer)
    , layout(edit, document, format, cursor, view, updates, scroller, followers)
    , moves(document, cursor, view, updates, scroller, primary, followers)
    , edits(document, cursor, view, updates, scroller, verticalBar, primary, announcer, followers, moves)
    , composer(edit, document, cursor, preedit, view, updates, scroller, followers, moves, edits)
    , clipboard(cursor, view, exchange, moves, edits)
    , drag(edit, *edit.viewport(), document.store(), format, cursor, view, updates, scroller, exchange,
          clipboard, edits)
    , pressed(*edit.viewport())
    , pointer(edit, document.store(), cursor, view, scroller, primary, moves, composer, drag, pressed)
    , handles(edit, *edit.viewport(), document.store(), cursor, view, moves, [this] { layout.update(); })
    , touch(edit, *edit.viewport(), pressed, pointer, handles)
    , keys(edit, scroller, moves, edits)
{
}
