#pragma once

#include "document/textdocument.h"
#include "widget/cursorblink.h"
#include "widget/cursorfollowers.h"
#include "widget/cursormoves.h"
#include "widget/inputcomposer.h"
#include "widget/keybindings.h"
#include "widget/pointergestures.h"
#include "widget/preedit.h"
#include "widget/pressedpointer.h"
#include "widget/primaryselection.h"
#include "widget/qmultilineedit.h"
#include "widget/rowformat.h"
#include "widget/rowupdates.h"
#include "widget/selectionhandles.h"
#include "widget/textannouncer.h"
#include "widget/textclipboard.h"
#include "widget/textcursor.h"
#include "widget/textdrag.h"
#include "widget/textedits.h"
#include "widget/textexchange.h"
#include "widget/textview.h"
#include "widget/touchgestures.h"
#include "widget/viewlayout.h"
#include "widget/viewscroller.h"

class ViewScrollBar;

/// What a QMultiLineEdit is made of. Each part knows parts above it in this list and none below; what comes
/// back is the one signal that the text has changed.
///
///     format  document  cursor  preedit      the facts: how rows are set, the text, what is selected, what
///                                            an input method composes
///     view                                   which part of the text is shown, and where each place stands
///     updates                                what is to be painted anew
///     scroller  blink                        the view goes to where it is wanted; the cursor blinks
///     exchange  primary  announcer           text that others get; assistive technology
///     followers                              everybody who follows the cursor
///     layout  moves                          rows are brought up to date; the cursor moves
///     edits                                  the text changes
///     composer  clipboard  drag              what input methods, clipboards and drags do with it
///     pressed  pointer  handles  touch  keys what people do
struct QMultiLineEdit::Parts {
    Parts(QMultiLineEdit &edit, ViewScrollBar &verticalBar, ViewScrollBar &horizontalBar);

    RowFormat format; // outlives the document, whose rows are laid out by it
    TextDocument document;
    TextCursor cursor;
    Preedit preedit;
    TextView view;
    RowUpdates updates;
    ViewScroller scroller;
    CursorBlink blink;
    TextExchange exchange;
    PrimarySelection primary;
    TextAnnouncer announcer;
    CursorFollowers followers;
    ViewLayout layout;
    CursorMoves moves;
    TextEdits edits;
    InputComposer composer;
    TextClipboard clipboard;
    TextDrag drag;
    PressedPointer pressed;
    PointerGestures pointer;
    SelectionHandles handles;
    TouchGestures touch;
    KeyBindings keys;
};
