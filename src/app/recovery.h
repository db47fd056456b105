#pragma once

#include "app/arrivingfile.h"
#include "recovery/claimedjournal.h"
#include "recovery/leftbehind.h"

#include <QPointer>
#include <QStringList>

#include <deque>
#include <functional>
#include <optional>
#include <vector>

class DocumentArea;
class DocumentLoader;
class QWidget;
class RecoveryJournals;
class ctlEditer;
struct Restored;

/// Tells the user of texts that were not saved when the program last ended, and brings them back.
///
/// The file of a long one is read behind the window, one after the other. If one is stopped or closed,
/// neither it nor what waits is restored: all that is offered again.
class Recovery : public QObject {
    Q_OBJECT
public:
    /// Asks over `window`.
    Recovery(QWidget &window, DocumentArea &documents, DocumentLoader &loader, RecoveryJournals &journals);

    /// The window has come: looks for such texts as soon as it is on the screen.
    void lookWhenShown();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void tell(const std::vector<LeftBehind> &found);
    void ask();
    /// Where a text comes.
    struct Place {
        ctlEditer *editor;
        bool isMade; ///< for the text: goes when that does not come
        QPointer<ctlEditer> ofFile; ///< the document that had the file before; null for none
    };
    /// A text whose file is read behind the window.
    struct LongText {
        LeftBehind text;
        ClaimedJournal journal; ///< until its edits are made again
        std::optional<Place> place = {}; ///< nothing: its turn has not come
    };

    void restoreAll(const std::vector<LeftBehind> &texts);
    ctlEditer *restore(const LeftBehind &text);
    ctlEditer *restoreLong(const LeftBehind &text);
    void beginNext(ctlEditer *fresh);
    void endReading(ArrivingFile::End end);
    void restoreRead(LongText &&text, ArrivingFile::End end);
    void noteClosed(const ctlEditer *editor);
    bool take(const LeftBehind &text, const Place &place, const Restored &restored);
    void addLost(const LeftBehind &text);
    void tellLost();
    bool isLong(const LeftBehind &text) const;
    void tellApart(ctlEditer &editor, const std::function<QString()> &why, const QString &file);
    void showFile(const QString &file);
    ctlEditer *freshInView() const;
    Place placeFor(const LeftBehind &text, ctlEditer *fresh);
    static bool isToBeTaken(const ctlEditer &ofFile, const LeftBehind &text);
    void discardAll(const std::vector<LeftBehind> &texts);

    QWidget &m_window;
    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    RecoveryJournals &m_journals;
    bool m_hasLooked = false;
    std::vector<LeftBehind> m_found;
    std::deque<LongText> m_long; ///< the first one's file is being read
    QStringList m_lost; ///< names of what could not be restored, until the user is told
};
