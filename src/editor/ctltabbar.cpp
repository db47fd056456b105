#include "editor/ctltabbar.h"

#include "editor/ctlediter.h"
#include "files/filename.h"
#include "platform/tooltiptext.h"
#include "settings/moresettings.h"
#include "text/graphemes.h"

#include <QHelpEvent>
#include <QPointingDevice>
#include <QScopedValueRollback>
#include <QToolButton>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace {

constexpr int captionWidth = 160;
constexpr int highestId = 999;
constexpr qsizetype labelsKept = 100; ///< whose sizes are known, besides those of the tabs
constexpr auto leftButton = "ScrollLeftButton"; // the toolkit's names
constexpr auto rightButton = "ScrollRightButton";

/// What a tab carries besides its label.
struct TabEntry {
    int id = -1;
    ctlEditer *editor = nullptr;
};

TabEntry entryOf(const QVariant &data)
{
    return data.value<TabEntry>();
}

/// A label in which no character stands for a shortcut.
QString withoutMnemonic(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

} // namespace

Q_DECLARE_METATYPE(TabEntry)

ctlTabBar::ctlTabBar(QWidget *parent)
    : QTabBar(parent)
    , m_pointer(*this)
{
    setShape(QTabBar::TriangularSouth);
    setElideMode(Qt::ElideNone);
    setExpanding(false);
    setUsesScrollButtons(true);
    // The keys belong to the editor; the main window has keys for going from tab to tab.
    setFocusPolicy(Qt::NoFocus);
    applySettings();
    nameControls();
    connect(this, &QTabBar::currentChanged, this, [this](int index) {
        if (m_choosing)
            slotTabSelected(idAt(index));
    });
}

int ctlTabBar::addTab(ctlEditer *editor, const QString &caption)
{
    endPress();
    const QScopedValueRollback quiet(m_choosing, false);
    const int id = freeId();
    const QString text = FileName::forDisplay(caption);
    const int index = QTabBar::addTab(labelOf(text)); // with its text at once: each text lays all tabs out
    setTabData(index, QVariant::fromValue(TabEntry{ id, editor }));
    setAccessibleTabName(index, text);
    return id;
}

int ctlTabBar::freeId() const
{
    const QList<int> used = ids();
    if (used.isEmpty() || used.last() < highestId)
        return used.isEmpty() ? 0 : used.last() + 1;
    int id = 0;
    while (id < used.size() && used[id] == id)
        ++id;
    return id;
}

void ctlTabBar::setTabCaption(ctlEditer *editor, const QString &caption)
{
    const int index = indexOf(editor);
    if (index == -1)
        return;
    const QString text = FileName::forDisplay(caption);
    const QString label = labelOf(text);
    if (label != tabText(index)) // else all tabs would be laid out for nothing
        setTabText(index, label);
    setAccessibleTabName(index, text);
}

QString ctlTabBar::labelOf(const QString &text) const
{
    return withoutMnemonic(shortened(text));
}

QString ctlTabBar::shortened(const QString &caption) const
{
    const QFontMetrics metrics(font());
    for (const qsizetype length : graphemeBoundaries(caption)) {
        if (length < caption.size() && metrics.horizontalAdvance(caption, int(length)) > captionWidth)
            return caption.first(length) + QStringLiteral("...");
    }
    return caption;
}

void ctlTabBar::removeTab(ctlEditer *editor)
{
    endPress();
    const int index = indexOf(editor);
    if (index == -1)
        return;
    if (index + 1 < count())
        select(index + 1);
    else if (index > 0)
        select(index - 1);
    const QScopedValueRollback quiet(m_choosing, false);
    QTabBar::removeTab(index);
}

/// The base lays tabs out when they are seen next.
void ctlTabBar::removeTabs(const QSet<ctlEditer *> &editors)
{
    endPress();
    const QScopedValueRollback quiet(m_choosing, false);
    const bool wasHidden = isHidden();
    hide();
    for (int index = count() - 1; index >= 0; --index) {
        if (editors.contains(editorAt(index)))
            QTabBar::removeTab(index);
    }
    setHidden(wasHidden);
}

void ctlTabBar::setCurrentTab(ctlEditer *editor)
{
    select(indexOf(editor));
}

void ctlTabBar::setCurrentTab(int id)
{
    select(indexOfId(id));
}

/// The base chooses no other tab while one is dragged.
void ctlTabBar::select(int index)
{
    endPress();
    if (index == currentIndex())
        slotTabSelected(idAt(index));
    else
        setCurrentIndex(index);
}

void ctlTabBar::slotTabSelected(int id)
{
    if (ctlEditer *editor = editorOf(id))
        emit currentChanged(editor);
}

int ctlTabBar::currentTab() const
{
    return idAt(currentIndex());
}

int ctlTabBar::idOf(const ctlEditer *editor) const
{
    return idAt(indexOf(editor));
}

ctlEditer *ctlTabBar::editorOf(int id) const
{
    return editorAt(indexOfId(id));
}

QList<ctlEditer *> ctlTabBar::editors() const
{
    QList<ctlEditer *> list;
    for (int index = 0; index < count(); ++index)
        list.append(editorAt(index));
    return list;
}

QList<int> ctlTabBar::ids() const
{
    QList<int> list;
    for (int index = 0; index < count(); ++index)
        list.append(idAt(index));
    std::sort(list.begin(), list.end());
    return list;
}

int ctlTabBar::indexOf(const ctlEditer *editor) const
{
    for (int index = 0; index < count(); ++index) {
        if (editorAt(index) == editor)
            return index;
    }
    return -1;
}

int ctlTabBar::indexOfId(int id) const
{
    for (int index = 0; index < count(); ++index) {
        if (idAt(index) == id)
            return index;
    }
    return -1;
}

ctlEditer *ctlTabBar::editorAt(int index) const
{
    return entryOf(tabData(index)).editor;
}

int ctlTabBar::idAt(int index) const
{
    return entryOf(tabData(index)).id;
}

int ctlTabBar::scrolled() const
{
    return -tabRect(0).left();
}

/// The base goes to a pixel for the wheel of a touch pad alone.
void ctlTabBar::scrollTo(int pixels)
{
    const QPointingDevice pad(QStringLiteral("tabs"), 0, QInputDevice::DeviceType::TouchPad,
        QPointingDevice::PointerType::Finger, QInputDevice::Capability::PixelScroll, 1, 0);
    const QPointF place = rect().center();
    QWheelEvent event(place, mapToGlobal(place), { scrolled() - pixels, 0 }, {}, Qt::NoButton, {},
        Qt::NoScrollPhase, false, Qt::MouseEventSynthesizedByApplication, &pad);
    QTabBar::wheelEvent(&event);
}

/// The base asks for the size of every tab whenever one comes, goes or gets another label. A style sheet may
/// have another size for the current one.
QSize ctlTabBar::tabSizeHint(int index) const
{
    if (index == currentIndex())
        return QTabBar::tabSizeHint(index);
    const QString label = tabText(index);
    const auto known = m_sizes.constFind(label);
    if (known != m_sizes.cend())
        return *known;
    if (m_sizes.size() > labelsKept + 2 * count())
        m_sizes.clear(); // of labels that have gone
    return *m_sizes.insert(label, QTabBar::tabSizeHint(index));
}

/// No label gives way: what has no room is scrolled to.
QSize ctlTabBar::minimumTabSizeHint(int index) const
{
    return tabSizeHint(index);
}

/// The base asks for it to paint every tab, also those that it leaves out then, for which the place is
/// enough.
void ctlTabBar::initStyleOption(QStyleOptionTab *option, int index) const
{
    if (mayBeInView(index))
        QTabBar::initStyleOption(option, index);
    else
        option->rect = tabRect(index);
}

/// A tab beside the one that is dragged comes from as far away as that one is wide.
bool ctlTabBar::mayBeInView(int index) const
{
    const int moved = tabRect(currentIndex()).width();
    const QRect place = tabRect(index);
    return place.right() >= -moved && place.left() <= width() + moved;
}

bool ctlTabBar::event(QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::FontChange || type == QEvent::StyleChange || type == QEvent::ScreenChangeInternal)
        m_sizes.clear();
    if (type != QEvent::ToolTip)
        return QTabBar::event(event);
    showToolTip(*static_cast<QHelpEvent *>(event));
    return true;
}

/// The toolkit names its buttons once only, in the language of that time.
void ctlTabBar::nameControls()
{
    setAccessibleName(tr("Documents"));
    for (QToolButton *const button : findChildren<QToolButton *>(Qt::FindDirectChildrenOnly)) {
        const bool isLeft = button->objectName() == QLatin1String(leftButton);
        button->setAccessibleName(isLeft ? tr("Scroll Left") : tr("Scroll Right"));
    }
}

void ctlTabBar::changeEvent(QEvent *event)
{
    QTabBar::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        nameControls();
}

void ctlTabBar::showToolTip(const QHelpEvent &event)
{
    const int index = tabAt(event.pos());
    const ctlEditer *editor = editorAt(index);
    const QString text = editor ? FileName::forDisplay(editor->path() + editor->name()) : QString();
    QToolTip::showText(event.globalPos(), toolTipText(text), this, tabRect(index));
}

void ctlTabBar::applySettings()
{
    setMovable(moreSettings().TabsByMouse != 0);
}

void ctlTabBar::mousePressEvent(QMouseEvent *event)
{
    const int before = currentIndex();
    const int pressed = tabAt(event->position().toPoint());
    QTabBar::mousePressEvent(event);
    if (event->button() == Qt::LeftButton && pressed == before && before != -1)
        slotTabSelected(idAt(before));
    m_pointer.endLongPress();
    if (event->button() == Qt::LeftButton) {
        m_pointer.press(event->position());
        m_isLeftDown = true;
        m_pointer.awaitLongPress([this] { askForMenuHeld(); });
    }
    m_pressed = event->button() == Qt::MiddleButton ? editorAt(pressed) : nullptr;
}

/// A tab that is moved stays the current one, which is no news.
void ctlTabBar::mouseMoveEvent(QMouseEvent *event)
{
    if (m_pointer.isFar(event->position()))
        m_pointer.endLongPress();
    const QScopedValueRollback quiet(m_choosing, false);
    QTabBar::mouseMoveEvent(event);
}

/// The menu takes the release: the base hears of one before.
void ctlTabBar::askForMenuHeld()
{
    endPress();
    m_pointer.askForMenu();
}

/// A tab that is dragged stays where it has come to; the pointer moves nothing until it is pressed again.
void ctlTabBar::endPress()
{
    if (!std::exchange(m_isLeftDown, false))
        return;
    m_pointer.endLongPress();
    const QPointF at = m_pointer.lastAt();
    QMouseEvent release(QEvent::MouseButtonRelease, at, mapToGlobal(at), Qt::LeftButton, {}, {});
    QTabBar::mouseReleaseEvent(&release);
}

void ctlTabBar::mouseReleaseEvent(QMouseEvent *event)
{
    m_pointer.endLongPress();
    if (event->button() == Qt::LeftButton)
        m_isLeftDown = false;
    QTabBar::mouseReleaseEvent(event);
    if (event->button() != Qt::MiddleButton || moreSettings().TabsByMouse == 0)
        return;
    ctlEditer *const editor = editorAt(tabAt(event->position().toPoint()));
    if (editor && editor == std::exchange(m_pressed, nullptr))
        emit closeWanted(editor);
}

void ctlTabBar::contextMenuEvent(QContextMenuEvent *event)
{
    if (ctlEditer *const editor = editorAt(tabAt(event->pos())))
        emit menuWanted(editor, event->globalPos());
}

/// It does not choose: that would go through documents that nobody asked for.
void ctlTabBar::wheelEvent(QWheelEvent *event)
{
    constexpr int notch = 120; // eighths of a degree
    event->accept();
    if (moreSettings().TabsByMouse == 0)
        return;
    const QPoint angle = event->angleDelta();
    const int turned = qAbs(angle.x()) > qAbs(angle.y()) ? angle.x() : angle.y();
    m_turned = event->phase() == Qt::ScrollBegin || turned * m_turned < 0 ? turned : m_turned + turned;
    scroll(-m_turned / notch);
    m_turned %= notch;
}

/// Tabs that have no room are reached by the toolkit's buttons alone; negative ones to the left.
void ctlTabBar::scroll(int tabs)
{
    auto *const button = findChild<QToolButton *>(QLatin1String(tabs < 0 ? leftButton : rightButton));
    for (int i = qAbs(tabs); i > 0 && button->isVisible() && button->isEnabled(); --i)
        button->click();
}
