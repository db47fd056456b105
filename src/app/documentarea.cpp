#include "app/documentarea.h"

#include "editor/ctltabbar.h"

#include <QEvent>
#include <QStackedWidget>

DocumentArea::DocumentArea(QWidget *parent)
    : QWidget(parent)
    , m_stack(new QStackedWidget(this))
    , m_tabBar(new ctlTabBar(this))
{
}

void DocumentArea::arrange()
{
    const QSize hint = m_tabBar->sizeHint();
    const int bottom = height() - 1;
    m_tabBar->setGeometry(0, bottom - hint.height(), qMin(hint.width(), width()), hint.height());
    m_stack->setGeometry(0, 0, width(), height() - hint.height());
    // A document that is not shown may be asked to wrap its text at its width.
    for (int page = 0; page < m_stack->count(); ++page)
        m_stack->widget(page)->resize(m_stack->size());
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
