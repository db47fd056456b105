#pragma once

#include "app/longrestoring.h"

#include <QPointer>
#include <QStringList>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class DocumentArea;
class DocumentLoader;
class QWidget;
class RecoveryJournals;
class ctlEditer;

/// Tells the user of texts that were not saved when the program last ended, and brings them back.
///
/// Long ones are restored behind the window, one after the other. If one is stopped or closed, neither it nor
/// what waits is restored: all that is offered again.
class Recovery : public QObject {
    Q_OBJECT
public:
    /// Asks over `window`.
    Recovery(QWidget &window, DocumentArea &documents, DocumentLoader &loader, RecoveryJournals &journals,
        const WindowJobs &jobs);
    ~Recovery() override;

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
        QPointer<ctlEditer> ofFile; ///< the document that had the file before; null for none
        std::function<void()> giveBack; ///< to what it was, where the text does not come
    };
    /// A long text that is being restored.
    struct Current {
        LeftBehind text;
        Place place;
        std::unique_ptr<LongRestoring> restoring = {};
    };

    void restoreAll(const std::vector<LeftBehind> &texts);
    ctlEditer *restore(const LeftBehind &text);
    ctlEditer *restoreLong(const LeftBehind &text);
    void beginNext(ctlEditer *fresh);
    Current takeCurrent();
    void endLong(const Restored &restored);
    void stopLong();
    void failLong();
    void giveUp();
    void goOn();
    void noteClosed(const ctlEditer *editor);
    ctlEditer *take(const LeftBehind &text, const Place &place, const Restored &restored);
    void addLost(const LeftBehind &text);
    void tellLost();
    void tellNames(QStringList &texts, const QString &message);
    bool isLong(const LeftBehind &text) const;
    void tellApart(ctlEditer &editor, const std::function<QString()> &why, const QString &file);
    void tellSaved(ctlEditer &editor);
    void showFile(const QString &file);
    ctlEditer *freshInView() const;
    Place placeFor(const LeftBehind &text, ctlEditer *fresh);
    static bool isToBeTaken(const ctlEditer &ofFile, const LeftBehind &text);
    void discardAll(const std::vector<LeftBehind> &texts);

    QWidget &m_window;
    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    RecoveryJournals &m_journals;
    const WindowJobs &m_jobs;
    bool m_hasLooked = false;
    std::vector<LeftBehind> m_found;
    std::optional<Current> m_current; ///< a long one
    std::deque<LongText> m_waiting; ///< long ones
    QStringList m_lost; ///< names of what could not be restored, until the user is told
    QStringList m_tooLarge; ///< the same, for want of memory
};
