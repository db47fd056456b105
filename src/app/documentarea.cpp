#include "app/documentarea.h"

#include "app/documentfile.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "editor/noticestrip.h"
#include "files/filename.h"
#include "platform/keypause.h"
#include "platform/qpeapplication.h"

#include <QEvent>
#include <QStackedWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Going back from the first tab begins here; tabs with higher ids are reached by going forward.
constexpr int lastTabIdBackward = 1000;

int idBehind(const QList<int> &ids, int current)
{
    const auto found = std::upper_bound(ids.begin(), ids.end(), current);
    return found == ids.end() ? ids.first() : *found;
}

int idBefore(const QList<int> &ids, int current)
{
    const auto behind = std::lower_bound(ids.begin(), ids.end(), current);
    if (behind != ids.begin())
        return *std::prev(behind);
    const auto end = std::upper_bound(std::next(behind), ids.end(), lastTabIdBackward);
    return *std::prev(end == std::next(behind) ? ids.end() : end);
}

} // namespace

DocumentArea::DocumentArea(QWidget *parent)
    : QWidget(parent)
    , m_strip(new NoticeStrip(m_notices, this))
    , m_stack(new QStackedWidget(this))
    , m_tabBar(new ctlTabBar(this))
{
    connect(m_tabBar, &ctlTabBar::currentChanged, this, &DocumentArea::showChosen);
    connectStrip();
}

void DocumentArea::connectStrip()
{
    connect(this, &DocumentArea::currentChanged, m_strip, &NoticeStrip::setDocument);
    connect(m_strip, &NoticeStrip::toggled, this, &DocumentArea::arrange);
    connect(m_strip, &NoticeStrip::toggled, this, &DocumentArea::noticeToggled);
    connect(m_strip, &NoticeStrip::chosen, this, [this](const std::function<void()> &act) {
        if (beginCommand())
            act();
    });
    connect(m_strip, &NoticeStrip::moreOptionsWanted, this, [this] {
        if (beginCommand())
            emit moreOptionsWanted();
    });
    connect(m_strip, &NoticeStrip::keysGivenBack, this, &DocumentArea::takeKeys);
}

ctlEditer *DocumentArea::current() const
{
    return qobject_cast<ctlEditer *>(m_stack->currentWidget());
}

QList<ctlEditer *> DocumentArea::editors() const
{
    return m_tabBar->editors();
}

ctlEditer *DocumentArea::editorOfFile(const QString &fileName) const
{
    const QList<ctlEditer *> all = editors();
    const auto found = std::find_if(all.begin(), all.end(),
        [&](const ctlEditer *editor) { return hasFile(*editor) && fullName(*editor) == fileName; });
    return found == all.end() ? nullptr : *found;
}

ctlEditer *DocumentArea::add(const QString &caption)
{
    auto *editor = new ctlEditer(m_stack);
    connect(editor, &ctlEditer::aboutToTell, this, [this, editor] { setCurrent(editor); });
    emit added(editor);
    m_stack->addWidget(editor);
    const QString name = caption.isEmpty() ? editor->name() : caption;
    m_tabBar->addTab(editor, name);
    editor->setAccessibleName(name);
    m_strip->setDocument(current());
    return editor;
}

void DocumentArea::setCurrent(ctlEditer *editor)
{
    m_tabBar->setCurrentTab(editor);
}

/// What the tab bar has chosen. Assistive technology chooses tabs also while a dialog is open.
void DocumentArea::showChosen(ctlEditer *editor)
{
    if (editor != current() && QPEApplication::isBusy()) {
        setCurrent(current());
        return;
    }
    commitComposition();
    m_stack->setCurrentWidget(editor);
    emit currentChanged(editor);
}

void DocumentArea::present(ctlEditer *editor)
{
    setCurrent(editor);
    editor->setFocus();
    arrange();
}

void DocumentArea::showNext()
{
    if (m_tabBar->count() > 1)
        m_tabBar->setCurrentTab(idBehind(m_tabBar->ids(), m_tabBar->idOf(current())));
}

void DocumentArea::showPrevious()
{
    if (m_tabBar->count() > 1)
        m_tabBar->setCurrentTab(idBefore(m_tabBar->ids(), m_tabBar->idOf(current())));
}

void DocumentArea::close(ctlEditer *editor)
{
    m_stack->removeWidget(editor);
    m_tabBar->removeTab(editor);
    letGo(editor);
    takeKeys(); // for the document that the tab bar has chosen
    if (!current())
        emit currentChanged(nullptr);
    arrange();
}

void DocumentArea::close(const QList<ctlEditer *> &editors)
{
    QList<ctlEditer *> others = editors;
    const bool goesCurrent = others.removeOne(current());
    for (ctlEditer *const editor : others)
        m_stack->removeWidget(editor);
    m_tabBar->removeTabs(QSet(others.cbegin(), others.cend()));
    for (ctlEditer *const editor : others)
        letGo(editor);
    if (goesCurrent) {
        close(current());
        return;
    }
    takeKeys();
    arrange();
}

/// Of a document that is in no tab any more.
void DocumentArea::letGo(ctlEditer *editor)
{
    m_notices.withdrawAllAbout(editor);
    emit closed(editor);
    editor->blockSignals(true);
    editor->hide();
    connect(editor, &QObject::destroyed, &m_freeing, &TextFreeing::giveBackSoon);
    editor->deleteLater();
}

void DocumentArea::refresh(ctlEditer *editor)
{
    const QString name = FileName::forDisplay(editor->name());
    m_tabBar->setTabCaption(editor, editor->edited() ? u"* "_s + name : name);
    editor->setAccessibleName(name);
    arrange();
    emit refreshed(editor);
}

void DocumentArea::commitComposition()
{
    if (ctlEditer *editor = current())
        editor->commitPreedit();
}

bool DocumentArea::beginCommand()
{
    if (QPEApplication::isBusy())
        return false;
    commitComposition();
    return true;
}

/// Who asks for a notice that has just gone means that with the next key too.
void DocumentArea::toggleNoticeKeys()
{
    if (m_strip->hasJustGone())
        KeyPause::begin(KeyPause::untilNoticed);
    else if (!hasNoticeKeys())
        m_strip->takeKeys();
    else
        takeKeys();
}

/// Without a document they are the area's: a menu bar that nobody takes them back from keeps Escape.
void DocumentArea::takeKeys()
{
    if (ctlEditer *const editor = current())
        editor->setFocus();
    else
        setFocus();
}

bool DocumentArea::hasNoticeKeys() const
{
    return m_strip->hasKeys();
}

void DocumentArea::setFooter(QWidget *footer)
{
    m_footer = footer;
    arrange();
}

QRect DocumentArea::noticePlace() const
{
    return m_strip->isVisible() ? QRect(m_strip->mapToGlobal(QPoint()), m_strip->size()) : QRect();
}

void DocumentArea::arrange()
{
    const QSize hint = m_tabBar->sizeHint();
    const int footer = m_footer && !m_footer->isHidden() ? m_footer->sizeHint().height() : 0;
    if (m_footer)
        m_footer->setGeometry(0, height() - footer, width(), footer);
    const int bottom = height() - footer - 1;
    m_tabBar->setGeometry(0, bottom - hint.height(), qMin(hint.width(), width()), hint.height());
    const int top = m_strip->isHidden() ? 0 : m_strip->sizeHint().height();
    m_strip->setGeometry(0, 0, width(), top);
    m_stack->setGeometry(0, top, width(), height() - footer - hint.height() - top);
    // A document that is not shown may be asked to wrap its text at its width.
    for (int page = 0; page < m_stack->count(); ++page) {
        if (QWidget *const editor = m_stack->widget(page); editor->size() != m_stack->size())
            editor->resize(m_stack->size());
    }
    m_tabBar->raise();
    m_tabBar->update();
}

bool DocumentArea::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest)
        arrange();
    return handled;
}

void DocumentArea::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange();
}
