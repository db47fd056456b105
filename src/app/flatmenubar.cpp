#include "app/flatmenubar.h"

#include <QStyleOptionMenuItem>
#include <QStylePainter>

FlatMenuBar::FlatMenuBar(QWidget *parent)
    : QMenuBar(parent)
{
    // A bar that the desktop takes away would leave the tool bar empty.
    setNativeMenuBar(false);
}

void FlatMenuBar::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    for (QAction *action : actions()) {
        QStyleOptionMenuItem option;
        initStyleOption(&option, action);
        // Over the whole height, level with the tool bar: the toolkit keeps items at the top of a fixed bar.
        option.rect = actionGeometry(action);
        option.rect.setTop(0);
        option.rect.setHeight(height());
        if (option.state & QStyle::State_Selected) {
            painter.drawControl(QStyle::CE_MenuBarItem, option);
            continue;
        }
        int alignment = Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextDontClip | Qt::TextSingleLine;
        if (!style()->styleHint(QStyle::SH_UnderlineShortcut, &option, this))
            alignment |= Qt::TextHideMnemonic;
        painter.drawItemText(
            option.rect, alignment, option.palette, action->isEnabled(), option.text, QPalette::WindowText);
    }
}
