#pragma once

#include "app/textfreeing.h"
#include "editor/noticequeue.h"

#include <QWidget>

class ctlEditer;
class ctlTabBar;
class NoticeStrip;
class QStackedWidget;

/// The open documents, inside the main window: a stack of editors, of which one shows, their tab bar below,
/// and above them the strip of the notices about them, when there is one.
///
/// The current document is the editor that the stack shows, and nobody else knows of it; the tab bar follows.
/// Owns the editors.
class DocumentArea : public QWidget {
    Q_OBJECT
public:
    explicit DocumentArea(QWidget *parent);

    ctlTabBar *tabBar() const { return m_tabBar; }
    /// About the documents and the program. Those about a document go when it is closed.
    NoticeQueue &notices() { return m_notices; }
    /// Null without documents.
    ctlEditer *current() const;
    /// In the order of their tabs.
    QList<ctlEditer *> editors() const;
    /// The document of the file with this full name; null when it is not open.
    ctlEditer *editorOfFile(const QString &fileName) const;

    /// A new document with the last tab, not current unless it is the only one. An empty caption is the
    /// editor's own name.
    ctlEditer *add(const QString &caption = {});
    /// Does nothing while a dialog or a run of replacements is in the way.
    void setCurrent(ctlEditer *editor);
    /// Makes a document current and gives it the keys.
    void present(ctlEditer *editor);
    /// The next tab by id, round at the end.
    void showNext();
    /// The previous tab by id, round at the start.
    void showPrevious();
    /// Takes a document away; its editor goes when the event loop runs next, and says nothing until then.
    void close(ctlEditer *editor);
    /// The same with many, in this order. The current one is the last of them to go: the others are never
    /// current, not for a moment.
    void close(const QList<ctlEditer *> &editors);
    /// Shows the name of a document, whether it is edited, and its codes as they are now.
    void refresh(ctlEditer *editor);

    /// Has what an input method holds back written into the current document. To be called by whatever reads
    /// a document, or puts another one in its place: that text counts as written for who sees it.
    void commitComposition();
    /// False when a dialog or a run of replacements is in the way of a command. Otherwise what is being
    /// composed is text then.
    bool beginCommand();

    /// The keys go from the text to the notice, or back; nothing without one.
    void toggleNoticeKeys();
    /// Whether the notice has them.
    bool hasNoticeKeys() const;
    /// Where on the screen the notice is; empty while none is shown.
    QRect noticePlace() const;

    /// A line below the tabs, a child of this; it has room there while it is not hidden.
    void setFooter(QWidget *footer);
    /// Gives the tab bar the width and height it asks for, at most the area's width, at the lower left edge,
    /// one pixel up so that the tabs touch the document; the strip its line above the
    /// stack, which gets the rest.
    void arrange();

signals:
    /// A document was made; it has no text yet.
    void added(ctlEditer *editor);
    /// A document was made current, which may be the same one, or the last one was closed: null.
    void currentChanged(ctlEditer *editor);
    /// A document may have another name, codes, or other edits than before.
    void refreshed(ctlEditer *editor);
    /// A document was read, saved or searched behind the window, and has told the state of its commands; it
    /// may not be the one that is shown.
    void workEnded();
    /// A document was taken away.
    void closed(ctlEditer *editor);
    /// The line of the notice has come or gone.
    void noticeToggled();
    /// The notice strip was asked for what can be switched on and off.
    void moreOptionsWanted();

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void showChosen(ctlEditer *editor);
    void letGo(ctlEditer *editor);
    void takeKeys();
    void connectStrip();

    NoticeQueue m_notices;
    NoticeStrip *m_strip;
    QStackedWidget *m_stack;
    QWidget *m_footer = nullptr;
    ctlTabBar *m_tabBar;
    TextFreeing m_freeing;
};
