#include "editor/noticestrip.h"

#include "editor/noticequeue.h"
#include "platform/heldkeys.h"
#include "platform/keypause.h"
#include "platform/menu.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QStyleOption>
#include <QToolButton>
#include <QToolTip>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int textMargin = 2; ///< on both sides of the text, in platform pixels
constexpr int menuArrow = 8; ///< beside the text of an offer with a menu, in platform pixels
constexpr int leastShareOfText = 3; ///< the text keeps one in so many parts of the strip
constexpr std::chrono::seconds whileItIsMeant{ 2 }; ///< by who asks for a notice that has gone by itself

/// An alert: tools read it to the user when it appears.
QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    auto *const strip = qobject_cast<NoticeStrip *>(object);
    return strip ? new QAccessibleWidget(strip, QAccessible::AlertMessage) : nullptr;
}

/// An arrow beside its text tells of its menu; the style would draw a mark of its own besides.
class OfferButton : public QToolButton {
public:
    using QToolButton::QToolButton;

protected:
    void initStyleOption(QStyleOptionToolButton *option) const override
    {
        QToolButton::initStyleOption(option);
        option->features.setFlag(QStyleOptionToolButton::HasMenu, false);
    }
};

/// What is dropped may be what was just pressed.
void drop(QWidget *widget)
{
    if (!widget)
        return;
    widget->hide();
    widget->deleteLater();
}

void installInterfaces()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

} // namespace

NoticeStrip::NoticeStrip(NoticeQueue &queue, QWidget *parent)
    : QWidget(parent)
    , m_queue(queue)
    , m_label(new QLabel(this))
    , m_more(createButton())
    , m_dismiss(createButton())
{
    installInterfaces();
    setPalette(QToolTip::palette());
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    setAutoFillBackground(true);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setForegroundRole(QPalette::ToolTipText);
    m_label->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_more->setText(u"…"_s);
    m_more->setMenu(new Menu(m_more));
    m_more->setPopupMode(QToolButton::InstantPopup);
    m_dismiss->setText(u"×"_s);
    m_dismiss->setAutoRaise(true);
    nameControls();
    hide();
    connect(&m_queue, &NoticeQueue::changed, this, &NoticeStrip::refresh);
}

QToolButton *NoticeStrip::createButton()
{
    auto *button = new OfferButton(this);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    button->setIconSize({ menuArrow, menuArrow });
    button->setFocusPolicy(Qt::TabFocus);
    button->installEventFilter(this);
    connect(button, &QToolButton::pressed, this, [this] { m_pressed = m_shown; });
    connect(button, &QToolButton::clicked, this, [this, button] { press(button); });
    return button;
}

void NoticeStrip::nameControls()
{
    m_more->setToolTip(tr("More offers"));
    m_more->setAccessibleName(m_more->toolTip());
    m_more->menu()->setAccessibleName(m_more->toolTip());
    m_dismiss->setToolTip(tr("Dismiss"));
    m_dismiss->setAccessibleName(m_dismiss->toolTip());
    nameText();
}

/// Assistive tools come to it also while it says nothing.
void NoticeStrip::nameText()
{
    const QString name = m_spoken.isEmpty() ? tr("Notices") : m_spoken;
    m_label->setAccessibleName(name);
    setAccessibleName(name);
}

void NoticeStrip::setDocument(const QObject *document)
{
    m_document = document;
    refresh();
}

bool NoticeStrip::hasJustGone() const
{
    return !m_gone.hasExpired();
}

bool NoticeStrip::hasKeys() const
{
    return isAncestorOf(QApplication::focusWidget());
}

void NoticeStrip::takeKeys()
{
    if (!m_shown)
        return;
    shownButtons().constFirst()->setFocus(Qt::ShortcutFocusReason);
    if (m_label->text() != m_text)
        showWholeText(mapToGlobal(rect().bottomLeft()));
}

/// A pen and a keyboard have no other way to the whole of a shortened text.
void NoticeStrip::showWholeText(QPoint globalPlace)
{
    QToolTip::showText(globalPlace, toolTip(), this);
}

QSize NoticeStrip::sizeHint() const
{
    int height = qMax(m_dismiss->sizeHint().height(), m_more->sizeHint().height());
    for (const QToolButton *button : m_buttons)
        height = qMax(height, button->sizeHint().height());
    return { 0, height };
}

std::optional<NoticeStrip::Shown> NoticeStrip::shownOf(const Notice *notice)
{
    if (!notice)
        return std::nullopt;
    QStringList offers;
    for (const NoticeOffer &offer : notice->offers)
        offers << offer.text();
    return Shown{ notice->kind, notice->about, offers };
}

void NoticeStrip::refresh()
{
    // Keys meant for what was shown are not for what comes in its place.
    if (hasKeys() && shownOf(m_queue.heaviest(m_document)) != m_shown) {
        if (!m_isChosen)
            KeyPause::begin(KeyPause::untilNoticed);
        emit keysGivenBack();
    }
    const Notice *const notice = m_queue.heaviest(m_document);
    const bool isOther = shownOf(notice) != m_shown;
    m_shown = shownOf(notice);
    const QString before = m_spoken;
    m_text = notice ? notice->text() : QString();
    m_spoken = notice && notice->spoken ? notice->spoken() : m_text;
    m_escaped = notice ? notice->escaped : nullptr;
    nameText();
    if (notice)
        showNotice(*notice);
    if (isHidden() != !notice) {
        m_gone.setRemainingTime(notice || m_isChosen ? std::chrono::seconds() : whileItIsMeant);
        setVisible(notice != nullptr);
        emit toggled();
    }
    layOut();
    if (notice && (isOther || m_spoken != before))
        announce();
}

void NoticeStrip::showNotice(const Notice &notice)
{
    m_offers = notice.offers;
    while (m_buttons.size() > qsizetype(m_offers.size()))
        drop(m_buttons.takeLast());
    while (m_buttons.size() < qsizetype(m_offers.size()))
        m_buttons << createButton();
    for (qsizetype i = 0; i < m_buttons.size(); ++i)
        showOffer(*m_buttons[i], m_offers[std::size_t(i)]);
    m_dismiss->setVisible(notice.isDismissable);
    m_label->setToolTip(u"<qt>"_s + m_text.toHtmlEscaped() + u"</qt>"_s);
    setToolTip(m_label->toolTip());
}

void NoticeStrip::showOffer(QToolButton &button, const NoticeOffer &offer)
{
    button.setText(offer.text());
    const bool hasMenu = !offer.choices.empty();
    button.setArrowType(hasMenu ? Qt::DownArrow : Qt::NoArrow);
    button.setToolButtonStyle(hasMenu ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonTextOnly);
    // Assistive tools press no button that shows a menu at once, not even when it has none.
    button.setPopupMode(hasMenu ? QToolButton::InstantPopup : QToolButton::DelayedPopup);
    if (!hasMenu) {
        drop(button.menu());
        button.setMenu(nullptr);
        return;
    }
    if (!button.menu())
        button.setMenu(new Menu(&button));
    button.menu()->setAccessibleName(button.text());
    fill(*button.menu(), offer.choices);
}

void NoticeStrip::fill(QMenu &menu, std::span<const NoticeOffer> offers)
{
    for (QMenu *const choices : menu.findChildren<QMenu *>(Qt::FindDirectChildrenOnly))
        drop(choices);
    for (QAction *const action : menu.actions()) {
        menu.removeAction(action);
        if (!action->menu())
            action->deleteLater();
    }
    for (const NoticeOffer &offer : offers) {
        if (!offer.choices.empty()) {
            auto *choices = new Menu(&menu);
            choices->setTitle(offer.text());
            fill(*choices, offer.choices);
            menu.addMenu(choices);
            continue;
        }
        QAction *const action = menu.addAction(offer.text());
        connect(action, &QAction::triggered, this, [this, act = offer.act] { choose(act); });
    }
}

void NoticeStrip::press(const QToolButton *button)
{
    if (m_pressed != m_shown)
        return;
    if (button == m_dismiss) {
        dismiss();
        return;
    }
    const qsizetype index = m_buttons.indexOf(button);
    if (index < 0 || button->menu())
        return;
    const auto act = m_offers[std::size_t(index)].act; // which may take the offer away
    choose(act);
}

void NoticeStrip::choose(const std::function<void()> &act)
{
    const QScopedValueRollback chosenNow(m_isChosen, true);
    emit chosen(act);
}

void NoticeStrip::dismiss()
{
    const bool hadKeys = hasKeys();
    const Shown shown = *m_shown;
    choose([this, shown] { m_queue.dismiss(shown.kind, shown.about); });
    if (hadKeys)
        emit keysGivenBack();
}

void NoticeStrip::announce()
{
    if (!QAccessible::isActive())
        return;
    for (const QAccessible::Event type : { QAccessible::ObjectShow, QAccessible::Alert }) {
        QAccessibleEvent event(this, type);
        QAccessible::updateAccessibility(&event);
    }
}

/// From right to left: what puts the notice away, the menu, the offers, and in what is left the text.
void NoticeStrip::layOut()
{
    if (!m_shown)
        return;
    int right = width();
    const auto place = [&](QToolButton *button) {
        const int buttonWidth = button->sizeHint().width();
        right -= buttonWidth;
        button->setGeometry(right, 0, buttonWidth, height());
    };
    if (!m_dismiss->isHidden())
        place(m_dismiss);
    const qsizetype fitting = offersThatFit(right - 2 * textMargin);
    const bool hasMore = fitting < m_buttons.size();
    if (hasMore) {
        fill(*m_more->menu(), std::span(m_offers).subspan(std::size_t(fitting)));
        place(m_more);
    }
    m_more->setVisible(hasMore);
    for (qsizetype i = m_buttons.size(); i-- > 0;) {
        m_buttons[i]->setVisible(i < fitting);
        if (i < fitting)
            place(m_buttons[i]);
    }
    const int room = qMax(0, right - 2 * textMargin);
    m_label->setGeometry(textMargin, 0, room, height());
    m_label->setText(shortenedText(room));
}

/// How many of the first offers have room beside the part of the text that is always shown.
qsizetype NoticeStrip::offersThatFit(int room) const
{
    int left = room - qMin(fontMetrics().horizontalAdvance(m_text), room / leastShareOfText);
    int all = 0;
    for (const QToolButton *button : m_buttons)
        all += button->sizeHint().width();
    if (all <= left)
        return m_buttons.size();
    left -= m_more->sizeHint().width();
    qsizetype count = 0;
    while ((left -= m_buttons[count]->sizeHint().width()) >= 0)
        ++count;
    return count;
}

/// Beside Japanese letters "…" comes from their font and is wider than it is by itself.
QString NoticeStrip::shortenedText(int room) const
{
    const QFontMetrics metrics = fontMetrics();
    QString shown = m_text;
    for (int tried = room; tried > 0 && metrics.horizontalAdvance(shown) > room; --tried)
        shown = metrics.elidedText(m_text, Qt::ElideRight, tried);
    return shown;
}

/// In the order they stand in.
QList<QToolButton *> NoticeStrip::shownButtons() const
{
    QList<QToolButton *> shown = m_buttons;
    shown << m_more << m_dismiss;
    shown.removeIf([](const QToolButton *button) { return button->isHidden(); });
    return shown;
}

void NoticeStrip::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        nameControls();
        refresh();
    }
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        layOut();
}

void NoticeStrip::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOut();
}

void NoticeStrip::keyPressEvent(QKeyEvent *event)
{
    auto *const button = qobject_cast<QToolButton *>(QApplication::focusWidget());
    switch (event->key()) {
    case Qt::Key_Escape:
        escape();
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (button && isAncestorOf(button) && !HeldKeys::isHeld(*event))
            pressByKey(*button);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

/// What the notice has for it may put another document in the place of this one.
void NoticeStrip::escape()
{
    if (m_escaped) {
        KeyPause::begin(KeyPause::untilNoticed);
        choose(std::function(m_escaped));
    }
    emit keysGivenBack();
}

/// Most offers give the keys back to the text, which a key that is still held was not meant for. A work that
/// is stopped may take its document along: who presses once more means that, and not the document behind it.
void NoticeStrip::pressByKey(QToolButton &button)
{
    if (!button.menu())
        KeyPause::begin(m_escaped ? KeyPause::untilNoticed : std::chrono::milliseconds());
    button.click();
}

void NoticeStrip::contextMenuEvent(QContextMenuEvent *event)
{
    auto *const menu = new Menu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("&More options"), this, &NoticeStrip::moreOptionsWanted);
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    menu->popup(isByKey ? mapToGlobal(rect().bottomLeft()) : event->globalPos());
    event->accept();
}

void NoticeStrip::mousePressEvent(QMouseEvent *event)
{
    showWholeText(event->globalPosition().toPoint());
}

bool NoticeStrip::eventFilter(QObject *button, QEvent *event)
{
    return event->type() == QEvent::MouseButtonDblClick || QWidget::eventFilter(button, event);
}

bool NoticeStrip::focusNextPrevChild(bool next)
{
    const QList<QToolButton *> buttons = shownButtons();
    const qsizetype at = buttons.indexOf(QApplication::focusWidget());
    if (at < 0)
        return false;
    const qsizetype to = (at + (next ? 1 : -1) + buttons.size()) % buttons.size();
    buttons[to]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}
