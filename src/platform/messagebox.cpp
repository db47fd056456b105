#include "platform/messagebox.h"

#include "platform/strayinput.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
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

QLabel *textOf(const QMessageBox &box)
{
    return box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
}

QSize sizeOfText(const QLabel &label, int width)
{
    return label.fontMetrics().boundingRect(QRect(0, 0, width, 0), Qt::TextWordWrap, label.text()).size();
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
    if (QLabel *const label = textOf(box))
        label->setMinimumWidth(sizeOfText(*label, room).width());
}

/// Puts the text, which is `textHeight` high, into a view of a height.
void scrollText(QMessageBox &box, QLabel *label, int textHeight, int height)
{
    label->setMinimumHeight(textHeight);
    auto *const area = new QScrollArea(&box);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setFixedSize(label->minimumWidth() + area->verticalScrollBar()->sizeHint().width(), height);
    delete box.layout()->replaceWidget(label, area);
    area->setWidget(label);
}

/// Three buttons beside one another may be wider than a small screen, and a long text higher.
void fitToScreen(QMessageBox &box)
{
    auto *const buttons = box.findChild<QDialogButtonBox *>();
    auto *const label = textOf(box);
    if (!buttons || !label)
        return;
    const QMargins margins = box.layout()->contentsMargins();
    const int title = box.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &box);
    const QSize room = box.screen()->availableSize().shrunkBy(margins) - QSize(0, title);
    if (buttons->sizeHint().width() > room.width())
        buttons->setOrientation(Qt::Vertical);
    const int spacing = box.style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing, nullptr, &box);
    const int height = room.height() - buttons->sizeHint().height() - 2 * spacing;
    const int textHeight = sizeOfText(*label, label->minimumWidth()).height();
    if (textHeight > height)
        scrollText(box, label, textHeight, height);
}

/// A box often comes under the pointer or the finger that asked for it.
void run(QMessageBox &box)
{
    fitToScreen(box);
    StrayInput::instance().letBeRead(&box);
    box.exec();
}

/// Shows a box that only tells something. Its button looks like those of a question, which have no picture.
void showWithOk(QMessageBox &box)
{
    box.addButton(QMessageBox::Ok)->setIcon(QIcon());
    run(box);
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
    run(box);
    const auto pressed = static_cast<int>(pushButtons.indexOf(box.clickedButton()));
    return pressed < 0 ? escapeButton : pressed;
}
