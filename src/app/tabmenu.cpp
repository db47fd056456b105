#include "app/tabmenu.h"

#include "app/documentarea.h"
#include "app/documentcloser.h"
#include "app/documentfile.h"
#include "app/documentloader.h"
#include "app/reopenchoices.h"
#include "editor/ctltabbar.h"
#include "files/fileaddress.h"
#include "platform/filemanager.h"
#include "platform/menu.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPointer>
#include <QUrl>

#include <utility>

TabMenu::TabMenu(DocumentArea &documents, DocumentLoader &loader, DocumentCloser &closer)
    : QObject(&documents)
    , m_documents(documents)
    , m_loader(loader)
    , m_closer(closer)
{
    connect(documents.tabBar(), &ctlTabBar::menuWanted, this, &TabMenu::show);
    connect(documents.tabBar(), &ctlTabBar::closeWanted, this, [this](ctlEditer *editor) {
        if (m_documents.beginCommand())
            m_closer.askAndClose(editor);
    });
}

void TabMenu::show(ctlEditer *editor, QPoint place)
{
    if (QMenu *const menu = menuFor(editor))
        menu->popup(place);
}

void TabMenu::showCurrent()
{
    const ctlTabBar &tabs = *m_documents.tabBar();
    ctlEditer *const editor = m_documents.current();
    QMenu *const menu = editor ? menuFor(editor) : nullptr;
    if (!menu)
        return;
    const QPoint tab = tabs.mapToGlobal(tabs.tabRect(tabs.currentIndex()).topLeft());
    menu->popup(tab - QPoint(0, menu->sizeHint().height()));
}

/// Null while a dialog is in the way.
QMenu *TabMenu::menuFor(ctlEditer *editor)
{
    if (!m_documents.beginCommand())
        return nullptr;
    auto *const menu = new Menu(&m_documents);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fill(*menu, editor);
    return menu;
}

void TabMenu::fill(QMenu &menu, ctlEditer *editor)
{
    const bool isOfFile = hasFile(*editor) && !std::as_const(*editor).document().file().isNew();
    add(menu, tr("&Close"), true, editor, [this](ctlEditer *one) { m_closer.askAndClose(one); });
    add(menu, tr("Close &others"), m_documents.editors().size() > 1, editor,
        [this](ctlEditer *one) { m_closer.closeOthers(one); });
    menu.addSeparator();
    add(menu, tr("Copy &path"), hasFile(*editor), editor, [](const ctlEditer *one) {
        QGuiApplication::clipboard()->setText(FileName::forDisplay(fullName(*one)));
    });
    add(menu, tr("Open &folder"), hasFile(*editor), editor,
        [this](const ctlEditer *one) { openFolder(*one); });
    menu.addSeparator();
    add(menu, tr("&Reload"), isOfFile, editor, [this](ctlEditer *one) {
        m_documents.setCurrent(one);
        m_loader.askAndReload();
    });
    QMenu *const codes = new Menu(&menu);
    codes->menuAction()->setText(tr("Reopen &as"));
    codes->menuAction()->setEnabled(isOfFile);
    addCodes(*codes, editor);
    menu.addMenu(codes);
    menu.addSeparator();
    menu.addAction(tr("&More options"), this, [this] {
        if (m_documents.beginCommand())
            emit moreOptionsWanted();
    });
}

/// The document may have been closed while the menu was open.
void TabMenu::add(QMenu &menu, const QString &text, bool isEnabled, ctlEditer *editor, const Act &act)
{
    const auto run = [this, act, one = QPointer(editor)] {
        if (one && m_documents.editors().contains(one) && m_documents.beginCommand())
            act(one);
    };
    menu.addAction(text, this, run)->setEnabled(isEnabled);
}

void TabMenu::addCodes(QMenu &menu, ctlEditer *editor)
{
    for (const NoticeOffer &choice : reopenChoices(m_loader, editor))
        add(menu, choice.text(), true, editor, [this, act = choice.act](ctlEditer *one) {
            m_documents.setCurrent(one);
            act();
        });
}

/// Where there is no program for folders, the dialog shows it.
void TabMenu::openFolder(const ctlEditer &editor)
{
    const QUrl address = QUrl::fromEncoded(FileAddress::of(editor.path()).toLatin1());
    if (!showInFileManager(address))
        m_loader.askAndOpenIn(editor.path());
}
