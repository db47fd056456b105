#pragma once

#include "editor/noticestrip.h"
#include "tests/app/testwindow.h"

#include <QLabel>
#include <QToolButton>

/// The strip of notices in a window, as its user sees it.
class StripInWindow {
public:
    explicit StripInWindow(const QWidget &window)
        : m_strip(window.findChild<NoticeStrip *>())
    {
    }

    NoticeStrip &widget() const { return *m_strip; }
    bool isShown() const { return m_strip->isVisible(); }
    /// The whole text; empty while it is hidden.
    QString text() const { return isShown() ? m_strip->accessibleName() : QString(); }
    QToolButton *button(const QString &text) const
    {
        for (QToolButton *const button : m_strip->findChildren<QToolButton *>()) {
            if (!button->isHidden() && button->text() == text)
                return button;
        }
        return nullptr;
    }
    /// From left to right, without the one that dismisses.
    QStringList offers() const
    {
        QMap<int, QString> texts;
        for (const QToolButton *const button : m_strip->findChildren<QToolButton *>()) {
            if (!button->isHidden() && button->text() != QStringLiteral("×"))
                texts[button->x()] = button->text();
        }
        return texts.values();
    }
    /// With the pen or mouse.
    bool click(const QString &text) const
    {
        QToolButton *const wanted = button(text);
        if (wanted)
            QTest::mouseClick(wanted, Qt::LeftButton);
        return wanted;
    }

private:
    NoticeStrip *m_strip;
};
