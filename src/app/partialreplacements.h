#pragma once

#include "document/placesintext.h"
#include "text/textstore.h"

#include <QCoreApplication>
#include <QObject>

class NoticeQueue;
class ctlEditer;

/// The replacements of the last run in one document that took the place of a part of their hit only, as they
/// do where a hit holds a whole wrapped row; and the notice of them.
class PartialReplacements : public QObject {
    Q_DECLARE_TR_FUNCTIONS(frmMain)
public:
    /// Those of an editor, to which they belong; made when first asked for.
    static PartialReplacements &of(ctlEditer &editor, NoticeQueue &notices);

    /// A run begins that replaces hits of one length by a text of another, each by one edit; what is known of
    /// the last one is forgotten.
    void begin(qint64 hitLength, qint64 textLength);
    /// The run is over: tells the user, if there is anything to tell.
    void end();

private:
    PartialReplacements(ctlEditer &editor, NoticeQueue &notices);

    void follow(const TextChange &change);
    void noteReplacement(const TextChange &change);
    void noteEdit(qint64 placesBefore);
    void forget();
    void tell();
    void goToNext();
    void undoAll();

    ctlEditer &m_editor;
    NoticeQueue &m_notices;
    PlacesInText m_places;
    TextPiece m_before; ///< the whole text before the run
    qint64 m_replacements = 0;
    qint64 m_hitLength = 0;
    qint64 m_textLength = 0;
    bool m_isRunning = false;
    bool m_canUndoAll = false; ///< nothing was edited since
};
