#pragma once

#include "recovery/leftbehind.h"

#include <QObject>

#include <functional>
#include <vector>

class DocumentArea;
class DocumentLoader;
class QWidget;
class RecoveryJournals;
class ctlEditer;
struct Restored;

/// Tells the user of texts that were not saved when the program last ended, and brings them back.
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
    void restoreAll(const std::vector<LeftBehind> &texts);
    ctlEditer *restore(const LeftBehind &text);
    void tellApart(ctlEditer &editor, const std::function<QString()> &why, const QString &file);
    void showFile(const QString &file);
    ctlEditer *documentFor(const LeftBehind &text) const;
    void discardAll(const std::vector<LeftBehind> &texts);

    QWidget &m_window;
    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    RecoveryJournals &m_journals;
    bool m_hasLooked = false;
    std::vector<LeftBehind> m_found;
};
