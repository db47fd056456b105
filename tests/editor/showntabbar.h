#pragma once

#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "settings/moresettings.h"

#include <QTest>
#include <QToolTip>

#include <memory>

/// A tab bar in a window, and what its tests do with it.
class ShownTabBar {
protected:
    using Editors = QList<ctlEditer *>;

    bool show()
    {
        moreSettings() = {};
        m_window = std::make_unique<QWidget>();
        m_window->resize(900, 300);
        m_bar = new ctlTabBar(m_window.get());
        m_bar->resize(900, 30);
        m_window->show();
        return QTest::qWaitForWindowExposed(m_window.get());
    }
    void remove()
    {
        QToolTip::hideText();
        m_window.reset();
    }
    ctlEditer *addTab(const QString &caption = QStringLiteral("text"))
    {
        auto *editor = new ctlEditer(m_window.get());
        m_bar->addTab(editor, caption);
        return editor;
    }
    QPoint middleOf(int index) const { return m_bar->tabRect(index).center(); }

    std::unique_ptr<QWidget> m_window;
    ctlTabBar *m_bar = nullptr;
};
