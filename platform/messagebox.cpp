#include "platform/messagebox.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace {

constexpr int widestText = 480;

/// Width of a line of text beside the icon; a small screen has less than a line may be wide.
int roomForText(const QMessageBox &box)
{
    int around = 0;
    for (const auto metric : { QStyle::PM_MessageBoxIconSize, QStyle::PM_LayoutLeftMargin,
             QStyle::PM_LayoutRightMargin, QStyle::PM_LayoutHorizontalSpacing, QStyle::PM_TitleBarHeight })
        around += box.style()->pixelMetric(metric, nullptr, &box);
    return std::min(widestText, box.screen()->availableSize().width() - around);
}

/// The word with an invisible place to break between any two characters.
QString withBreaks(const QString &word)
{
    QString result;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, word);
    for (qsizetype start = 0, end = 0; (end = finder.toNextBoundary()) >= 0; start = end)
        result += word.sliced(start, end - start) + QChar(0x200b);
    return result;
}

/// The line with places to break in words that are wider than `room`: the name of a file may be.
QString breakable(const QString &line, const QFontMetrics &metrics, int room)
{
    QString result;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Line, line);
    for (qsizetype start = 0, end = 0; (end = finder.toNextBoundary()) >= 0; start = end) {
        const QString word = line.sliced(start, end - start);
        result += metrics.horizontalAdvance(word) <= room ? word : withBreaks(word);
    }
    return result;
}

void setTexts(QMessageBox &box, const QString &title, const QString &text)
{
    box.setTextFormat(Qt::PlainText);
    box.setWindowTitle(title);
    const int room = roomForText(box);
    QStringList lines = text.split(u'\n');
    for (QString &line : lines)
        line = breakable(line, box.fontMetrics(), room);
    box.setText(lines.join(u'\n'));
    // By itself a box breaks its text as if half the screen were enough: on a small one, behind every word.
    auto *const label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
    if (label)
        label->setMinimumWidth(
            label->fontMetrics().boundingRect(QRect(0, 0, room, 0), Qt::TextWordWrap, label->text()).width());
}

/// Shows a box that only tells something. Its button looks like those of a question, which have no picture.
void showWithOk(QMessageBox &box)
{
    box.addButton(QMessageBox::Ok)->setIcon(QIcon());
    box.exec();
}

void show(QMessageBox::Icon icon, QWidget *parent, const QString &title, const QString &text)
{
    QMessageBox box(parent);
    setTexts(box, title, text);
    box.setIcon(icon);
    showWithOk(box);
}

} // namespace

void MessageBox::critical(QWidget *parent, const QString &title, const QString &text)
{
    show(QMessageBox::Critical, parent, title, text);
}

void MessageBox::information(QWidget *parent, const QString &title, const QString &text)
{
    show(QMessageBox::Information, parent, title, text);
}

void MessageBox::about(QWidget *parent, const QString &title, const QString &text)
{
    QMessageBox box(parent);
    setTexts(box, title, text);
    const int size = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &box);
    box.setIconPixmap(box.windowIcon().pixmap(QSize(size, size), box.devicePixelRatioF()));
    showWithOk(box);
}

int MessageBox::question(QWidget *parent, const QString &title, const QString &text,
    const QStringList &buttons, int defaultButton, int escapeButton)
{
    QMessageBox box(parent);
    setTexts(box, title, text);
    box.setIcon(QMessageBox::Information);
    QList<QPushButton *> pushButtons;
    // Every desktop leaves buttons of this role in their order, and none becomes the one for Escape by it.
    for (const QString &button : buttons)
        pushButtons.append(box.addButton(button, QMessageBox::ActionRole));
    box.setDefaultButton(pushButtons.at(defaultButton));
    if (escapeButton != noEscape)
        box.setEscapeButton(pushButtons.at(escapeButton));
    box.exec();
    const auto pressed = static_cast<int>(pushButtons.indexOf(box.clickedButton()));
    return pressed < 0 ? escapeButton : pressed;
}
