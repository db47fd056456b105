#pragma once

#include <QTabBar>

class ctlEditer;

/// The row of document tabs: one tab per editor, each with an id that stays while other tabs come and go.
class ctlTabBar : public QTabBar {
    Q_OBJECT
public:
    explicit ctlTabBar(QWidget *parent);

    /// Adds a tab and gives its id, 0..999: the smallest that is free.
    int addTab(ctlEditer *editor, const QString &caption);
    void setTabCaption(ctlEditer *editor, const QString &caption);
    /// The right neighbour becomes current, or the left one when it was the last.
    void removeTab(ctlEditer *editor);
    void setCurrentTab(ctlEditer *editor);
    void setCurrentTab(int id);

    /// Id of the current tab; -1 without tabs.
    int currentTab() const;
    int idOf(const ctlEditer *editor) const;
    /// Null for an id that has no tab.
    ctlEditer *editorOf(int id) const;
    /// In the order of the tabs.
    QList<ctlEditer *> editors() const;

signals:
    void currentChanged(ctlEditer *editor);
    void popupMenu();

public slots:
    void slotTabSelected(int id);
};
