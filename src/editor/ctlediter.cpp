#include "editor/ctlediter.h"

#include "editor/memorybox.h"
#include "platform/freeturn.h"
#include "rows/fontmeasure.h"
#include "settings/settings.h"
#include "widget/updatesoff.h"
#include "widget/viewlayout.h"

#include <QApplication>
#include <QScrollBar>
#include <QSignalBlocker>

#include <cmath>

namespace {

constexpr int undoSteps = 256;
constexpr int largestFontSize = 500;
constexpr int longestWrap = 100000;

} // namespace

ctlEditer::ctlEditer(QWidget *parent)
    : QMultiLineEdit(parent)
{
    applyFont();
    if (parent)
        resize(parent->size());
    setFrameStyle(QFrame::WinPanel | QFrame::Sunken);
    setUndoEnabled(true);
    setUndoDepth(undoSteps);
    setEdited(false);
    applyActiveLineColor();
    applyRowNoMargin();
    applyWrapMode();
    applyColors();
    document().setCodes(defaultCodes());
    connect(this, &QMultiLineEdit::undoAvailable, this, &ctlEditer::slotEdUndoAvailable);
    connect(this, &QMultiLineEdit::redoAvailable, this, &ctlEditer::slotEdRedoAvailable);
    connect(this, &QMultiLineEdit::tooLittleMemory, this,
        [this] { FreeTurn::once(this, [this] { tellTooLittleMemory(this); }); });
}

QString ctlEditer::name() const
{
    const bool isUnnamed = path().isEmpty() && document().name().isEmpty();
    return isUnnamed ? nameOfUnnamed() : document().name();
}

QString ctlEditer::nameOfUnnamed()
{
    return tr("(new document)");
}

QString ctlEditer::charCodeName() const
{
    return infoOf(document().charCode()).name;
}

QString ctlEditer::returnCodeName() const
{
    return infoOf(document().returnCode()).name;
}

void ctlEditer::applySettings()
{
    const bool wasEdited = edited();
    applyFont();
    applyRowNoMargin(); // before the wrap, whose width depends on it
    applyWrapMode();
    applyActiveLineColor();
    applyColors();
    setEdited(wasEdited);
}

void ctlEditer::applyFont()
{
    QFont font = QApplication::font();
    font.setPointSize(qBound(1, appSettings().FontSize, largestFontSize));
    if (!appSettings().FontName.isEmpty())
        font.setFamilies({ appSettings().FontName });
    const UpdatesOff quiet(*this);
    setFont(font);
}

void ctlEditer::applyWrapMode()
{
    const UpdatesOff quiet(*this);
    const QSignalBlocker blocker(this);
    setWrapPolicy(Anywhere);
    switch (appSettings().WrapMode) {
    case 0:
        viewLayout().setBarPolicy(Qt::ScrollBarAsNeeded);
        setWordWrap(NoWrap);
        break;
    case 1:
        viewLayout().setBarPolicy(Qt::ScrollBarAlwaysOff);
        setWordWrap(FixedPixelWidth);
        setWrapColumnOrWidth(width() - hMargin() - verticalScrollBar()->sizeHint().width() - 3);
        break;
    case 2:
        viewLayout().setBarPolicy(Qt::ScrollBarAsNeeded);
        setWordWrap(FixedPixelWidth);
        setWrapColumnOrWidth(fixedWrapWidth());
        break;
    default:
        break;
    }
}

int ctlEditer::fixedWrapWidth() const
{
    // Not the measure of the text as it is laid out now: it may wait for this very width. Rounded up: a part
    // of a pixel is never to cost a column.
    const qreal character = FontMeasure::forFont(font(), devicePixelRatioF())->xWidth();
    return int(std::ceil(qBound(1, appSettings().WrapLen, longestWrap) * character));
}

void ctlEditer::applyRowNoMargin()
{
    switch (appSettings().RowNo) {
    case 0:
        return setHMargin(2);
    case 1:
        return setHMargin(25);
    default:
        return setHMargin(36);
    }
}

void ctlEditer::applyActiveLineColor()
{
    m_activeLineColor = colorOfIndex(appSettings().ActiveHLine);
    updateView();
}

void ctlEditer::applyColors()
{
    m_backColor = colorOfIndex(appSettings().BackColor);
    m_foreColor = colorOfIndex(appSettings().ForeColor);
    m_rowNoColor = colorOfIndex(appSettings().RowNoColor);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, m_backColor);
    setPalette(colors);
    updateView(); // the palette knows nothing of the other two
}

QColor ctlEditer::colorOfIndex(int index)
{
    static constexpr Qt::GlobalColor colors[] = { Qt::black, Qt::white, Qt::darkGray, Qt::gray, Qt::lightGray,
        Qt::red, Qt::green, Qt::blue, Qt::cyan, Qt::magenta, Qt::yellow, Qt::darkRed, Qt::darkGreen,
        Qt::darkBlue, Qt::darkCyan, Qt::darkMagenta, Qt::darkYellow };
    return index >= 1 && index <= int(std::size(colors)) ? colors[index - 1] : Qt::white;
}

void ctlEditer::copy()
{
    if (!hasMarkedText())
        return;
    QMultiLineEdit::copy();
    deselect();
}

void ctlEditer::slotEdUndoAvailable(bool available)
{
    announced().undo = available;
    emit undoAvailable2(this, available);
}

void ctlEditer::slotEdRedoAvailable(bool available)
{
    announced().redo = available;
    emit redoAvailable2(this, available);
}
