#pragma once

#include "document/textdocument.h"
#include "widget/cursorblink.h"
#include "widget/cursorfollowers.h"
#include "widget/cursormoves.h"
#include "widget/preedit.h"
#include "widget/primaryselection.h"
#include "widget/rowformat.h"
#include "widget/rowupdates.h"
#include "widget/textannouncer.h"
#include "widget/textcursor.h"
#include "widget/textedits.h"
#include "widget/textexchange.h"
#include "widget/textview.h"
#include "widget/viewscrollbar.h"
#include "widget/viewscroller.h"

#include <QWidget>

/// The parts that a text is shown, moved in and edited by, without an editor around them.
struct ViewParts {
    explicit ViewParts(const QString &text, int wrapColumns = 0)
        : viewport(&editor)
    {
        viewport.resize(300, 200);
        format.setFont(editor.font(), editor.devicePixelRatioF());
        format.setWraps(wrapColumns > 0);
        format.setWrapWidth(qCeil(wrapColumns * format.measure().xWidth()));
        document.layOut(format.layoutRule());
        TextStore::Builder builder(format.layoutRule());
        builder.append(text);
        document.setText(builder.finish());
        document.setEdited(false);
    }

    QString text() const { return document.store().text(); }
    void setCursor(qint64 place) { cursor.set({ Offset(place) }); }
    void select(qint64 from, qint64 to) { cursor.set({ Offset(to) }, { Offset(from) }); }

    QWidget editor;
    QWidget viewport;
    ViewScrollBar verticalBar{ Qt::Vertical, &editor };
    ViewScrollBar horizontalBar{ Qt::Horizontal, &editor };
    RowFormat format; // outlives the document
    TextDocument document;
    TextCursor cursor{ document.store() };
    Preedit preedit;
    TextView view{ viewport, document.store(), format, cursor, preedit };
    RowUpdates updates{ viewport, document.store(), format, cursor, view };
    ViewScroller scroller{ verticalBar, horizontalBar, format, cursor, view, updates };
    CursorBlink blink{ editor, updates };
    TextExchange exchange{ editor, document, cursor };
    PrimarySelection primary{ cursor, exchange };
    TextAnnouncer announcer{ editor };
    CursorFollowers followers{ editor, cursor, document.history(), blink, announcer };
    CursorMoves moves{ document, cursor, view, updates, scroller, primary, followers };
    TextEdits edits{ document, cursor, view, updates, scroller, verticalBar, primary, announcer, followers,
        moves };
};
