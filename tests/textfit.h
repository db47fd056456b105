#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QToolButton>

/// Finds the texts of a window that have less room than they need, and the controls without any text.
class TextFit {
public:
    explicit TextFit(const QWidget &window)
    {
        check(&window);
        for (const QWidget *widget : window.findChildren<QWidget *>())
            check(widget);
    }
    /// What is clipped or missing, one text each.
    QStringList faults() const { return m_faults; }

private:
    void check(const QWidget *widget)
    {
        if (!widget->isVisible())
            return;
        if (const auto *label = qobject_cast<const QLabel *>(widget))
            checkLabel(label);
        else if (const auto *combo = qobject_cast<const QComboBox *>(widget))
            checkCombo(combo);
        else if (const auto *group = qobject_cast<const QGroupBox *>(widget))
            checkGroup(group);
        else if (const auto *tabs = qobject_cast<const QTabBar *>(widget))
            checkTabs(tabs);
        else if (const auto *bar = qobject_cast<const QMenuBar *>(widget))
            checkMenuBar(bar);
        else if (const auto *header = qobject_cast<const QHeaderView *>(widget))
            checkHeader(header);
        else if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
            checkButton(button);
    }

    /// Reports `text` unless its widest line has room.
    void needs(const QWidget *widget, const QString &text, int room)
    {
        const QSize size = widget->fontMetrics().size(Qt::TextShowMnemonic, text);
        if (size.width() > room)
            m_faults << QStringLiteral("%1: %2 of %3").arg(text).arg(room).arg(size.width());
    }
    /// Whether scrolling shows all of a widget's children.
    static bool isScrolled(const QWidget *widget)
    {
        const auto *const area = qobject_cast<const QScrollArea *>(
            widget->parentWidget() ? widget->parentWidget()->parentWidget() : nullptr);
        return area && area->widget() == widget;
    }
    /// Reports a control that its window or a parent cuts off and does not scroll to.
    void isWhole(const QWidget *widget, const QString &text)
    {
        for (const QWidget *around = widget; !around->isWindow() && !isScrolled(around);) {
            around = around->parentWidget();
            if (!around->rect().contains(QRect(widget->mapTo(around, QPoint()), widget->size()))) {
                m_faults << text + QStringLiteral(": cut off");
                return;
            }
        }
    }
    void needsHeight(const QWidget *widget, const QString &text)
    {
        const QFontMetrics metrics = widget->fontMetrics();
        if (metrics.ascent() + metrics.descent() > widget->height())
            m_faults << text + QStringLiteral(": too low");
    }
    void isNamed(const QWidget *widget, const QString &text)
    {
        if (text.isEmpty() && widget->toolTip().isEmpty() && widget->accessibleName().isEmpty())
            m_faults << QStringLiteral("%1 without text")
                            .arg(QLatin1StringView(widget->metaObject()->className()));
    }

    void checkLabel(const QLabel *label)
    {
        if (!label->pixmap().isNull())
            return;
        isNamed(label, label->text());
        isWhole(label, label->text());
        if (label->wordWrap()) {
            checkParagraphs(label);
            return;
        }
        needs(label, label->text(), label->contentsRect().width());
        needsHeight(label, label->text());
    }
    /// A text that is broken into lines: no word is too wide, and the last line is not cut off.
    void checkParagraphs(const QLabel *label)
    {
        const QSize room = label->contentsRect().size();
        const int width = label->fontMetrics()
                              .boundingRect(QRect(0, 0, room.width(), 0), Qt::TextWordWrap, label->text())
                              .width();
        const int height = label->heightForWidth(label->width());
        if (width > room.width() || height > label->height())
            m_faults << QStringLiteral("%2 x %3 of %4 x %5: %1")
                            .arg(label->text())
                            .arg(room.width())
                            .arg(label->height())
                            .arg(width)
                            .arg(height);
    }
    void checkButton(const QAbstractButton *button)
    {
        const auto *tool = qobject_cast<const QToolButton *>(button);
        const bool showsText = !tool || tool->toolButtonStyle() != Qt::ToolButtonIconOnly;
        const bool isInternal = button->parentWidget()->inherits("QTabBar");
        if (!isInternal) {
            isNamed(button, button->text());
            isWhole(button, button->text());
        }
        if (!showsText || (tool && tool->text().isEmpty()))
            return;
        const bool hasBox = qobject_cast<const QCheckBox *>(button);
        const int indicator = hasBox
            ? button->style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, button)
                + button->style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, nullptr, button)
            : frame;
        needs(button, button->text(), button->width() - indicator);
        needsHeight(button, button->text());
    }
    void checkGroup(const QGroupBox *group)
    {
        isWhole(group, group->title());
        needs(group, group->title(), group->width() - frame);
    }
    void checkCombo(const QComboBox *combo)
    {
        isWhole(combo, combo->currentText());
        QStyleOptionComboBox option;
        option.initFrom(combo);
        option.editable = combo->isEditable();
        const QRect field =
            combo->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, combo);
        // What an editable list holds is not the program's, and can be scrolled.
        for (int row = 0; row < combo->count() && !combo->isEditable(); ++row)
            needs(combo, QString(combo->itemText(row)).replace(u'&', QStringLiteral("&&")), field.width());
        needsHeight(combo, combo->currentText());
    }
    void checkTabs(const QTabBar *tabs)
    {
        for (int tab = 0; tab < tabs->count(); ++tab) {
            needs(tabs, tabs->tabText(tab), tabs->tabRect(tab).width());
            if (tabs->tabRect(tab).right() > tabs->width())
                m_faults << tabs->tabText(tab) + QStringLiteral(": outside");
        }
    }
    void checkMenuBar(const QMenuBar *bar)
    {
        for (QAction *action : bar->actions()) {
            needs(bar, action->text(), bar->actionGeometry(action).width());
            if (bar->actionGeometry(action).right() > bar->width())
                m_faults << action->text() + QStringLiteral(": outside");
        }
    }
    /// Columns may be scrolled to; each has room for its title and, where it is shown, the arrow beside it.
    void checkHeader(const QHeaderView *header)
    {
        const QStyle *style = header->style();
        const int margin = style->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header);
        for (int column = 0; column < header->count(); ++column) {
            const QString title = header->model()->headerData(column, header->orientation()).toString();
            const bool hasArrow = header->isSortIndicatorShown() && header->sortIndicatorSection() == column;
            const int arrow =
                hasArrow ? style->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, header) + margin : 0;
            needs(header, title, header->sectionSize(column) - 2 * margin - arrow);
        }
        needsHeight(header, header->accessibleName());
    }

    static constexpr int frame = 3;
    QStringList m_faults;
};
