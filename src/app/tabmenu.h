#pragma once

#include <QObject>
#include <QPoint>

#include <functional>

class DocumentArea;
class DocumentCloser;
class DocumentLoader;
class QMenu;
class ctlEditer;

/// What can be done to a document by its tab: the menu of the tab, and the middle button that closes it.
class TabMenu : public QObject {
    Q_OBJECT
public:
    TabMenu(DocumentArea &documents, DocumentLoader &loader, DocumentCloser &closer);

    /// Opens the menu at a place of the screen; nothing while a dialog is in the way.
    void show(ctlEditer *editor, QPoint place);
    /// That of the current document, above its tab.
    void showCurrent();

signals:
    void moreOptionsWanted();

private:
    using Act = std::function<void(ctlEditer *editor)>;

    QMenu *menuFor(ctlEditer *editor);
    void fill(QMenu &menu, ctlEditer *editor);
    void add(QMenu &menu, const QString &text, bool isEnabled, ctlEditer *editor, const Act &act);
    void addCodes(QMenu &menu, ctlEditer *editor);
    void openFolder(const ctlEditer &editor);

    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    DocumentCloser &m_closer;
};
