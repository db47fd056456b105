#include "editor/noticestrip.h"

#include "editor/noticequeue.h"
#include "platform/keypause.h"
#include "tests/testprogram.h"
#include "tests/textfit.h"

#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QToolTip>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

using namespace Qt::StringLiterals;

namespace {

constexpr NoticeKind kind = NoticeKind::CannotWrite;

/// As if assistive technology came or went.
void setHeard(bool heard)
{
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(heard);
}

QStringList alerts; ///< the names of those that were told

void hear(QAccessibleEvent *event)
{
    if (event->type() == QAccessible::Alert)
        alerts << event->accessibleInterface()->text(QAccessible::Name);
}

} // namespace

/// The strip by itself: what it shows, and what it is asked for.
class NoticeStripTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void isHiddenWithoutANotice();
    void showsTheCurrentDocuments();
    void saysWhatWasChosen();
    void choicesAreAMenu();
    void menuHasOneArrow();
    void offersWithoutRoomAreInAMenu();
    void longTextIsShortened_data();
    void longTextIsShortened();
    void keysShowTheWholeText();
    void keysGoRound();
    void returnAndSpacePress();
    void heldReturnPressesOnce();
    void escapeGivesTheKeysBack();
    void keysForWhatHasGoneGoNowhere();
    void anotherNoticeTakesNoKeys();
    void clickIsForWhatWasShown();
    void doubleClickActsOnce();
    void isDismissed();
    void textsAreThoseOfNow();
    void isAnAlertForAssistiveTools();

private:
    Notice notice(const QString &text, const QStringList &offers);
    QToolButton *button(const QString &text) const;
    QStringList shownTexts() const;
    void press(int key) { QTest::keyClick(QApplication::focusWidget(), Qt::Key(key)); }

    std::unique_ptr<NoticeQueue> m_queue;
    std::unique_ptr<QWidget> m_window;
    NoticeStrip *m_strip = nullptr;
    QStringList m_chosen;
};

void NoticeStripTest::init()
{
    m_chosen.clear();
    m_queue = std::make_unique<NoticeQueue>();
    m_window = std::make_unique<QWidget>();
    m_strip = new NoticeStrip(*m_queue, m_window.get());
    connect(m_strip, &NoticeStrip::chosen, this, [](const std::function<void()> &act) { act(); });
    m_window->resize(640, 100);
    m_strip->resize(640, m_strip->sizeHint().height());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void NoticeStripTest::cleanup()
{
    m_window.reset();
}

Notice NoticeStripTest::notice(const QString &text, const QStringList &offers)
{
    Notice made{ kind, nullptr, [=] { return text; }, {} };
    for (const QString &offer : offers)
        made.offers.push_back({ [=] { return offer; }, [=, this] { m_chosen << offer; } });
    return made;
}

QToolButton *NoticeStripTest::button(const QString &text) const
{
    for (QToolButton *const button : m_strip->findChildren<QToolButton *>()) {
        if (button->isVisible() && button->text() == text)
            return button;
    }
    return nullptr;
}

/// Of the buttons that are seen, from left to right.
QStringList NoticeStripTest::shownTexts() const
{
    QMap<int, QString> texts;
    for (const QToolButton *const button : m_strip->findChildren<QToolButton *>()) {
        if (button->isVisible())
            texts[button->x()] = button->text();
    }
    return texts.values();
}

void NoticeStripTest::isHiddenWithoutANotice()
{
    const QSignalSpy toggled(m_strip, &NoticeStrip::toggled);
    QVERIFY(m_strip->isHidden());
    m_strip->takeKeys();
    QVERIFY(!m_strip->hasKeys());
    m_queue->put(notice(u"text"_s, {}));
    QVERIFY(m_strip->isVisible());
    m_queue->put(notice(u"other text"_s, {}));
    QCOMPARE(toggled.count(), 1);
    m_queue->withdraw(kind);
    QVERIFY(m_strip->isHidden());
    QCOMPARE(toggled.count(), 2);
}

void NoticeStripTest::showsTheCurrentDocuments()
{
    const QObject document;
    Notice about = notice(u"text"_s, {});
    about.about = &document;
    m_queue->put(about);
    QVERIFY(m_strip->isHidden());
    m_strip->setDocument(&document);
    QVERIFY(m_strip->isVisible());
    QCOMPARE(m_strip->accessibleName(), u"text"_s);
    m_strip->setDocument(this);
    QVERIFY(m_strip->isHidden());
    m_strip->setDocument(nullptr);
}

void NoticeStripTest::saysWhatWasChosen()
{
    m_queue->put(notice(u"text"_s, { u"Go"_s, u"Mend"_s }));
    QCOMPARE(shownTexts(), QStringList({ u"Go"_s, u"Mend"_s, u"×"_s }));
    QTest::mouseClick(button(u"Mend"_s), Qt::LeftButton);
    QTest::mouseClick(button(u"Go"_s), Qt::LeftButton);
    QCOMPARE(m_chosen, QStringList({ u"Mend"_s, u"Go"_s }));
    QVERIFY(!m_strip->hasKeys()); // a pen does not take them from the text
}

void NoticeStripTest::choicesAreAMenu()
{
    Notice shown = notice(u"text"_s, { u"As"_s });
    shown.offers[0].choices.push_back({ [] { return u"UTF-8"_s; }, [this] { m_chosen << u"8"_s; } });
    m_queue->put(shown);
    QMenu *const menu = button(u"As"_s)->menu();
    QCOMPARE(button(u"As"_s)->arrowType(), Qt::DownArrow);
    QVERIFY(menu);
    QCOMPARE(menu->actions().size(), 1);
    QCOMPARE(menu->actions().at(0)->text(), u"UTF-8"_s);
    menu->actions().at(0)->trigger();
    QCOMPARE(m_chosen, QStringList{ u"8"_s });
    m_queue->put(notice(u"text"_s, { u"As"_s }));
    QVERIFY(!button(u"As"_s)->menu());
}

/// The strip's; the style's mark of a menu would be another one.
void NoticeStripTest::menuHasOneArrow()
{
    Notice shown = notice(u"text"_s, { u"As"_s });
    shown.offers[0].choices.push_back({ [] { return u"UTF-8"_s; }, {} });
    m_queue->put(shown);
    QToolButton *const as = button(u"As"_s);
    const QImage withMenu = as->grab().toImage();
    as->setMenu(nullptr);
    QCOMPARE(withMenu, as->grab().toImage());
}

void NoticeStripTest::offersWithoutRoomAreInAMenu()
{
    m_strip->resize(160, m_strip->height());
    Notice shown = notice(u"a text of some length"_s, { u"First"_s, u"A long second"_s, u"Third"_s });
    shown.offers[2].choices.push_back({ [] { return u"UTF-8"_s; }, [this] { m_chosen << u"8"_s; } });
    m_queue->put(shown);
    QCOMPARE(shownTexts(), QStringList({ u"First"_s, u"…"_s, u"×"_s }));
    const QList<QAction *> actions = button(u"…"_s)->menu()->actions();
    QCOMPARE(actions.size(), 2);
    actions.at(0)->trigger();
    QCOMPARE(actions.at(1)->text(), u"Third"_s);
    actions.at(1)->menu()->actions().at(0)->trigger();
    QCOMPARE(m_chosen, QStringList({ u"A long second"_s, u"8"_s }));
    m_strip->resize(640, m_strip->height());
    QCOMPARE(shownTexts(), QStringList({ u"First"_s, u"A long second"_s, u"Third"_s, u"×"_s }));
}

void NoticeStripTest::longTextIsShortened_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("English") << u"a text that is much too long for its strip"_s.repeated(3);
    QTest::newRow("Japanese") << u"この行には長すぎる文です。"_s.repeated(9);
    QTest::newRow("tags") << u"<b>& a text that is much too long"_s.repeated(4);
}

void NoticeStripTest::longTextIsShortened()
{
    QFETCH(QString, text);
    m_queue->put(notice(text, { u"Go"_s }));
    for (const int width : { 400, 240, 120 }) {
        m_strip->resize(width, m_strip->sizeHint().height());
        const auto *const label = m_strip->findChild<QLabel *>();
        QVERIFY(label->text().endsWith(u'…'));
        QCOMPARE(TextFit(*m_strip).faults().join(u"; "), QString());
        QCOMPARE(label->accessibleName(), text);
        QVERIFY(m_strip->toolTip().contains(text.toHtmlEscaped()));
    }
}

void NoticeStripTest::keysShowTheWholeText()
{
    m_queue->put(notice(u"short"_s, { u"Go"_s }));
    m_strip->takeKeys();
    QVERIFY(!QToolTip::isVisible());
    m_queue->put(notice(u"a text that is much too long for its strip"_s.repeated(3), { u"Go"_s }));
    m_strip->takeKeys();
    QCOMPARE(QApplication::focusWidget(), button(u"Go"_s));
    QVERIFY(QToolTip::isVisible());
    QCOMPARE(QToolTip::text(), m_strip->toolTip());
}

void NoticeStripTest::keysGoRound()
{
    m_queue->put(notice(u"text"_s, { u"Go"_s, u"Mend"_s }));
    m_strip->takeKeys();
    QVERIFY(m_strip->hasKeys());
    QCOMPARE(QApplication::focusWidget(), button(u"Go"_s));
    for (const int key : { Qt::Key_Tab, Qt::Key_Right }) {
        for (const QString &next : { u"Mend"_s, u"×"_s, u"Go"_s }) {
            press(key);
            QCOMPARE(QApplication::focusWidget(), button(next));
        }
    }
    for (const int key : { Qt::Key_Backtab, Qt::Key_Left }) {
        for (const QString &next : { u"×"_s, u"Mend"_s, u"Go"_s }) {
            press(key);
            QCOMPARE(QApplication::focusWidget(), button(next));
        }
    }
}

void NoticeStripTest::returnAndSpacePress()
{
    m_queue->put(notice(u"text"_s, { u"Go"_s }));
    m_strip->takeKeys();
    for (const int key : { Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space })
        press(key);
    QCOMPARE(m_chosen, QStringList({ u"Go"_s, u"Go"_s, u"Go"_s }));
}

/// Nor does it reach the text to which the offer has given the keys.
void NoticeStripTest::heldReturnPressesOnce()
{
    const auto hold = [this](bool isRepeated) {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, isRepeated);
        QApplication::sendEvent(m_window->windowHandle(), &key);
    };
    for (int turn = 0; turn < 10; ++turn) // in which keys pressed before are over
        QCoreApplication::processEvents();
    QLineEdit text(m_window.get());
    text.show();
    const QSignalSpy returns(&text, &QLineEdit::returnPressed);
    m_queue->put(notice(u"text"_s, { u"Go"_s }));
    m_strip->takeKeys();
    hold(true);
    QCOMPARE(m_chosen, QStringList());
    hold(false);
    QCOMPARE(m_chosen, QStringList{ u"Go"_s });
    text.setFocus();
    hold(true);
    QCOMPARE(returns.count(), 0);
    QTRY_VERIFY((hold(false), returns.count() > 0));
}

void NoticeStripTest::escapeGivesTheKeysBack()
{
    const QSignalSpy back(m_strip, &NoticeStrip::keysGivenBack);
    m_queue->put(notice(u"text"_s, { u"Go"_s }));
    m_strip->takeKeys();
    press(Qt::Key_Escape);
    QCOMPARE(back.count(), 1);
    QVERIFY(m_strip->isVisible());
}

/// Which its user may press a moment after it has gone.
void NoticeStripTest::keysForWhatHasGoneGoNowhere()
{
    QLineEdit text(m_window.get());
    text.show();
    text.setFocus();
    const auto type = [this] { QTest::keyClick(m_window->windowHandle(), Qt::Key_X); };
    const QDeadlineTimer noticed(KeyPause::untilNoticed);
    m_queue->put(notice(u"text"_s, { u"Go"_s }));
    m_strip->takeKeys();
    m_queue->withdraw(kind);
    text.setFocus();
    KeyPause::begin(); // of other work that ends with it
    while (!noticed.hasExpired()) {
        type();
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        if (!noticed.hasExpired())
            QCOMPARE(text.text(), QString());
    }
    QTRY_VERIFY((type(), !text.text().isEmpty()));
}

/// A key that was meant for the one before would act on it.
void NoticeStripTest::anotherNoticeTakesNoKeys()
{
    const QSignalSpy back(m_strip, &NoticeStrip::keysGivenBack);
    m_queue->put(notice(u"text"_s, { u"Go"_s }));
    m_strip->takeKeys();
    m_queue->put(notice(u"other text"_s, { u"Go"_s }));
    QCOMPARE(back.count(), 0);
    QVERIFY(m_strip->hasKeys());
    m_queue->put(notice(u"other text"_s, { u"Mend"_s, u"Go"_s }));
    QCOMPARE(back.count(), 1);
    m_strip->takeKeys();
    m_queue->withdraw(kind);
    QCOMPARE(back.count(), 2);
}

void NoticeStripTest::clickIsForWhatWasShown()
{
    m_queue->put(notice(u"text"_s, { u"Go"_s }));
    QTest::mousePress(button(u"Go"_s), Qt::LeftButton);
    Notice heavier = notice(u"other text"_s, { u"Mend"_s });
    heavier.kind = NoticeKind::InterruptedSave;
    m_queue->put(heavier);
    QTest::mouseRelease(button(u"Mend"_s), Qt::LeftButton);
    QCOMPARE(m_chosen, QStringList());
    QTest::mouseClick(button(u"Mend"_s), Qt::LeftButton);
    QCOMPARE(m_chosen, QStringList{ u"Mend"_s });
}

/// Also where the notice goes with the first click: the user has not seen the next one yet.
void NoticeStripTest::doubleClickActsOnce()
{
    m_queue->put(notice(u"text"_s, { u"Go"_s }));
    Notice heavier = notice(u"other text"_s, { u"Mend"_s });
    heavier.kind = NoticeKind::InterruptedSave;
    heavier.offers[0].act = [this] { m_queue->withdraw(NoticeKind::InterruptedSave); };
    m_queue->put(heavier);
    QTest::mouseClick(button(u"Mend"_s), Qt::LeftButton);
    QTest::mouseDClick(button(u"Go"_s), Qt::LeftButton); // its second half alone
    QTest::mouseRelease(button(u"Go"_s), Qt::LeftButton);
    QCOMPARE(m_chosen, QStringList());
    QTest::mouseClick(button(u"Go"_s), Qt::LeftButton);
    QCOMPARE(m_chosen, QStringList{ u"Go"_s });
}

void NoticeStripTest::isDismissed()
{
    Notice shown = notice(u"text"_s, { u"Go"_s });
    bool isDismissed = false;
    shown.dismissed = [&] { isDismissed = true; };
    m_queue->put(shown);
    QTest::mouseClick(button(u"×"_s), Qt::LeftButton);
    QVERIFY(isDismissed);
    QVERIFY(m_strip->isHidden());
    shown.isDismissable = false;
    m_queue->put(shown);
    QCOMPARE(shownTexts(), QStringList{ u"Go"_s });
}

void NoticeStripTest::textsAreThoseOfNow()
{
    QString language = u"one"_s;
    Notice shown{ kind, nullptr, [&] { return language; }, {} };
    shown.offers.push_back({ [&] { return language + u"!"_s; }, [] {} });
    m_queue->put(shown);
    language = u"other"_s;
    QEvent change(QEvent::LanguageChange);
    QApplication::sendEvent(m_strip, &change);
    QCOMPARE(m_strip->accessibleName(), u"other"_s);
    QCOMPARE(shownTexts(), QStringList({ u"other!"_s, u"×"_s }));
}

void NoticeStripTest::isAnAlertForAssistiveTools()
{
    const QAccessible::UpdateHandler before = QAccessible::installUpdateHandler(hear);
    setHeard(true);
    QCOMPARE(QAccessible::queryAccessibleInterface(m_strip)->role(), QAccessible::AlertMessage);
    m_queue->put(notice(u"text"_s, { u"Go"_s }));
    m_queue->put(notice(u"text"_s, { u"Go"_s }));
    m_queue->put(notice(u"other text"_s, { u"Go"_s }));
    m_queue->withdraw(kind);
    QCOMPARE(alerts, QStringList({ u"text"_s, u"other text"_s }));
    setHeard(false);
    QAccessible::installUpdateHandler(before);
}

REGISTER_TEST(runWindowTest<NoticeStripTest>)
#include "noticestrip_test.moc"
