#pragma once

#include "recovery/leftbehind.h"

#include <QObject>
#include <QThreadPool>

#include <vector>

class DocumentArea;
class QWidget;
class RecoveryJournals;
class ctlEditer;

/// Tells the user of texts that were not saved when the program last ended, and brings them back.
class Recovery : public QObject {
    Q_OBJECT
public:
    /// Asks over `window`.
    Recovery(QWidget &window, DocumentArea &documents, RecoveryJournals &journals);

    /// The window has come: looks for such texts as soon as it is on the screen.
    void lookWhenShown();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void look();
    void tell(const std::vector<LeftBehind> &found);
    void ask();
    void restoreAll(const std::vector<LeftBehind> &texts);
    ctlEditer *restore(const LeftBehind &text);
    ctlEditer *documentFor(const LeftBehind &text) const;
    void discardAll(const std::vector<LeftBehind> &texts);

    QWidget &m_window;
    DocumentArea &m_documents;
    RecoveryJournals &m_journals;
    bool m_hasLooked = false;
    std::vector<LeftBehind> m_found;
    QThreadPool m_looking; ///< waits at its end until nobody looks any more
};
