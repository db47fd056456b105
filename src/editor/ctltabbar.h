#pragma once

#include "widget/pressedpointer.h"

#include <QHash>
#include <QSet>
#include <QTabBar>

class QHelpEvent;
class ctlEditer;

/// The row of document tabs: one tab per editor, each with an id that stays while other tabs come and go.
///
/// A tab is moved by dragging it, and the wheel scrolls tabs that have no room, where the settings allow
/// that; a drag ends when tabs come, go or are chosen meanwhile. A tab that is pressed and held still asks
/// for its menu, for who has a pen or a finger alone.
///
/// Editors are not owned; a tab is removed before its editor is destroyed. Lookups walk the tabs from the
/// first one.
class ctlTabBar : public QTabBar {
    Q_OBJECT
public:
    explicit ctlTabBar(QWidget *parent);

    /// Adds a tab behind the others and gives its id, one above the highest in use; once 999 is in use, the
    /// lowest free one. The first tab is current at once; nothing is emitted.
    int addTab(ctlEditer *editor, const QString &caption);
    /// Shows `caption`, shortened to about 160 pixels, as it is. Does nothing for an editor without a tab.
    void setTabCaption(ctlEditer *editor, const QString &caption);
    /// The right neighbour becomes current, or the left one when it was the last, whichever tab was current
    /// before.
    void removeTab(ctlEditer *editor);
    /// Removes many, none of which is current, and lays the others out once. Emits nothing.
    void removeTabs(const QSet<ctlEditer *> &editors);
    void setCurrentTab(ctlEditer *editor);
    void setCurrentTab(int id);

    /// Id of the current tab; -1 without tabs.
    int currentTab() const;
    /// -1 for an editor that has no tab.
    int idOf(const ctlEditer *editor) const;
    /// Null for an id that has no tab.
    ctlEditer *editorOf(int id) const;
    /// In the order of the tabs.
    QList<ctlEditer *> editors() const;
    /// Those in use, ascending.
    QList<int> ids() const;

    /// The caption a tab shows for a text: the shortest beginning of whole characters that is wider than 160
    /// pixels, followed by "..."; the whole text where only the whole text is wider.
    QString shortened(const QString &caption) const;
    QString labelOf(const QString &text) const;

    /// How far tabs without room are scrolled, in pixels; each tab that becomes current scrolls itself into
    /// view.
    int scrolled() const;
    /// As far as there are tabs.
    void scrollTo(int pixels);

    /// Whether tabs can be dragged.
    void applySettings();

public slots:
    /// Emits currentChanged() with the editor of this id; nothing for an id that has no tab.
    void slotTabSelected(int id);

signals:
    /// A tab was chosen: by setCurrentTab(), a click (on the current tab too) or as the neighbour of a
    /// removed one. Never null.
    void currentChanged(ctlEditer *editor);
    void popupMenu();
    /// The middle button was pressed and released on a tab.
    void closeWanted(ctlEditer *editor);
    /// The menu of a tab was asked for, at a place of the screen.
    void menuWanted(ctlEditer *editor, QPoint place);

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;
    void initStyleOption(QStyleOptionTab *option, int index) const override;
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    int indexOf(const ctlEditer *editor) const;
    int indexOfId(int id) const;
    ctlEditer *editorAt(int index) const;
    int idAt(int index) const;
    int freeId() const;
    void select(int index);
    void nameControls();
    void showToolTip(const QHelpEvent &event);
    void askForMenuHeld();
    void endPress();
    void scroll(int tabs);
    bool mayBeInView(int index) const;

    mutable QHash<QString, QSize> m_sizes; ///< of tabs that are not current, by their labels
    PressedPointer m_pointer; ///< the left button, a pen or a finger
    bool m_isLeftDown = false; ///< and the base has not heard of its release
    const ctlEditer *m_pressed = nullptr; ///< its tab had the middle button pressed on it; not followed
    int m_turned = 0; ///< of the wheel, not enough for a tab yet
    bool m_choosing =
        true; ///< off while tabs come, go and are moved: the base then changes its current tab by itself
};
