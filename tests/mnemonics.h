#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QStringList>
#include <QTabWidget>

/// The letters that open something together with Alt, in upper case.
inline QStringList mnemonicsOf(const QStringList &texts)
{
    QStringList letters;
    for (const QString &text : texts) {
        if (const qsizetype at = text.indexOf(u'&'); at >= 0)
            letters << text.mid(at + 1, 1).toUpper();
    }
    return letters;
}

/// What is seen while a page is shown: the titles of all pages, and the page's labels and buttons.
inline QStringList textsWithPage(const QTabWidget &pages, int page)
{
    QStringList texts;
    for (int i = 0; i < pages.count(); ++i)
        texts << pages.tabText(i);
    for (const QLabel *label : pages.widget(page)->findChildren<QLabel *>())
        texts << label->text();
    for (const QAbstractButton *button : pages.widget(page)->findChildren<QAbstractButton *>())
        texts << button->text();
    return texts;
}
