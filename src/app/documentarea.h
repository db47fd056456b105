#pragma once

#include <QWidget>

class ctlTabBar;
class QStackedWidget;

/// The inside of the main window: the open documents as a stack, of which one shows, and their tab bar below.
class DocumentArea : public QWidget {
    Q_OBJECT
public:
    explicit DocumentArea(QWidget *parent);

    QStackedWidget *stack() const { return m_stack; }
    ctlTabBar *tabBar() const { return m_tabBar; }

    /// Gives the tab bar the width and height it asks for, at most the area's width, at the lower left edge,
    /// one pixel up so that the tabs touch the document; the stack gets the rest.
    void arrange();

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QStackedWidget *m_stack;
    ctlTabBar *m_tabBar;
};
