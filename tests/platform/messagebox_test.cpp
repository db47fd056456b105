#include "platform/messagebox.h"
#include "tests/messageboxes.h"
#include "tests/testprogram.h"
#include "tests/widget/keyboard.h"

#include <QLabel>
#include <QScopeGuard>
#include <QScreen>
#include <QTest>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

/// Message boxes: fixed texts shown as they are, buttons in their order, what Return and Escape press.
class MessageBoxTest : public QObject {
    Q_OBJECT

private slots:
    void showsTextsAsTheyAre_data();
    void showsTextsAsTheyAre();
    void breaksWordsThatHaveNoRoom();
    void answersWithTheButtonPressed_data();
    void answersWithTheButtonPressed();
    void buttonsStandInTheirOrder_data();
    void buttonsStandInTheirOrder();
    void escapePressesItsButton();
    void escapeDoesNothingWithoutItsButton();
    void boxTakenAwayGivesEscape_data();
    void boxTakenAwayGivesEscape();
    void answersNoPressBeforeItCanBeRead_data();
    void answersNoPressBeforeItCanBeRead();
    void answersWhenItCanBeRead_data();
    void answersWhenItCanBeRead();
    void answersNoHeldKey_data();
    void answersNoHeldKey();
    void answersAssistiveTechnologyAtOnce();
};

namespace {

constexpr quint8 returnCode = 36;
const QStringList yesNo{ u"Yes"_s, u"No"_s };

/// Asks with "Yes" as default; `act` gets the box while it is open. -1 unless `act` has had it answered.
int ask(const std::function<void(QMessageBox &)> &act)
{
    QTimer::singleShot(0, qApp, [&act] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        act(*box);
        box->done(QDialog::Rejected);
    });
    return MessageBox::question(nullptr, u"Title"_s, u"Text"_s, yesNo, 0, MessageBox::noEscape);
}

void sendPress(QMessageBox &box, quint64 time, bool isMarked)
{
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, returnCode, 0, 0, {}, isMarked);
    press.setTimestamp(time);
    QApplication::sendEvent(box.defaultButton(), &press);
}

using Act = std::function<void(QMessageBox &)>;

/// Everything that answers "Yes", or closes the box.
void addPresses()
{
    QTest::addColumn<Act>("press");
    const auto key = [](Qt::Key which) {
        return [which](QMessageBox &box) { QTest::keyClick(box.defaultButton(), which); };
    };
    QTest::newRow("Return") << Act(key(Qt::Key_Return));
    QTest::newRow("Enter") << Act(key(Qt::Key_Enter));
    QTest::newRow("Space") << Act(key(Qt::Key_Space));
    QTest::newRow("click") << Act(
        [](QMessageBox &box) { QTest::mouseClick(box.defaultButton(), Qt::LeftButton); });
    QTest::newRow("second press of a double click") << Act([](QMessageBox &box) {
        QTest::mouseDClick(box.defaultButton(), Qt::LeftButton);
        QTest::mouseRelease(box.defaultButton(), Qt::LeftButton);
    });
}

} // namespace

void MessageBoxTest::showsTextsAsTheyAre_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << u"Not found."_s;
    QTest::newRow("mark-up") << u"<b>bold</b> &amp; <img src=\"x\">"_s;
    QTest::newRow("ampersand") << u"this & that"_s;
    QTest::newRow("line ends") << u"first\nsecond"_s;
    QTest::newRow("many line ends") << u"x\n    y\n"_s.repeated(50);
}

void MessageBoxTest::showsTextsAsTheyAre()
{
    QFETCH(QString, text);
    MessageBoxes boxes;
    MessageBox::critical(nullptr, u"Title"_s, text);
    MessageBox::information(nullptr, u"Title"_s, text);
    MessageBox::about(nullptr, u"Title"_s, text);
    MessageBox::question(nullptr, u"Title"_s, text, { u"Yes"_s, u"No"_s }, 0, MessageBox::noEscape);
    QCOMPARE(boxes.shown().size(), 4);
    for (const MessageBoxes::Box &shown : boxes.shown()) {
        QCOMPARE(shown.title, u"Title"_s);
        QCOMPARE(shown.text, text);
        QCOMPARE(shown.format, Qt::PlainText);
    }
    QCOMPARE(boxes.shown().at(0).icon, QMessageBox::Critical);
    QCOMPARE(boxes.shown().at(1).icon, QMessageBox::Information);
    QCOMPARE(boxes.shown().at(1).buttons.size(), 1);
}

/// A name without a space in it is broken wherever the line ends, and nothing of it is lost.
void MessageBoxTest::breaksWordsThatHaveNoRoom()
{
    const QString name = u"e\u0301"_s.repeated(250) + u".txt"_s;
    QString shown;
    int width = 0;
    QTimer::singleShot(0, this, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        const QLabel *label = box->findChild<QLabel *>(u"qt_msgbox_label"_s);
        shown = label->text();
        width = label->fontMetrics()
                    .boundingRect(QRect(0, 0, label->contentsRect().width(), 0), Qt::TextWordWrap, shown)
                    .width();
        QVERIFY(width <= label->contentsRect().width());
        QVERIFY(box->width() <= box->screen()->availableSize().width());
        box->close();
    });
    MessageBox::information(nullptr, u"Title"_s, u"Name: "_s + name);
    QVERIFY(width > 0);
    QVERIFY(!shown.contains(u"e\u200b"_s)); // never inside a character
    QCOMPARE(shown.remove(QChar(0x200b)), u"Name: "_s + name);
}

void MessageBoxTest::answersWithTheButtonPressed_data()
{
    QTest::addColumn<QString>("pressed");
    QTest::addColumn<int>("answer");
    QTest::newRow("first") << u"Yes"_s << 0;
    QTest::newRow("second") << u"No"_s << 1;
    QTest::newRow("third") << u"Cancel"_s << 2;
}

void MessageBoxTest::answersWithTheButtonPressed()
{
    QFETCH(QString, pressed);
    QFETCH(int, answer);
    MessageBoxes boxes({ pressed });
    const QStringList buttons{ u"Yes"_s, u"No"_s, u"Cancel"_s };
    QCOMPARE(MessageBox::question(nullptr, u"Title"_s, u"Text"_s, buttons, 0, 2), answer);
    QCOMPARE(boxes.shown().size(), 1);
    QCOMPARE(boxes.shown().at(0).buttons, buttons);
    QCOMPARE(boxes.shown().at(0).defaultButton, u"Yes"_s);
    QCOMPARE(boxes.shown().at(0).escapeButton, u"Cancel"_s);
}

void MessageBoxTest::buttonsStandInTheirOrder_data()
{
    // The button layouts of the toolkit's desktops, by their numbers in a style sheet.
    QTest::addColumn<int>("layout");
    QTest::newRow("first to last") << 0;
    QTest::newRow("last to first") << 1;
    QTest::newRow("first to last, help first") << 2;
    QTest::newRow("last to first, help first") << 3;
}

void MessageBoxTest::buttonsStandInTheirOrder()
{
    QFETCH(int, layout);
    qApp->setStyleSheet(u"QDialogButtonBox { button-layout: %1 }"_s.arg(layout));
    const auto restore = qScopeGuard([] { qApp->setStyleSheet({}); });
    QStringList seen;
    QTimer::singleShot(0, this, [&seen] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QList<QAbstractButton *> buttons = box->buttons();
        std::ranges::sort(buttons, {}, [](const QAbstractButton *button) { return button->x(); });
        for (const QAbstractButton *button : buttons)
            seen << button->text();
        buttons.constFirst()->click();
    });
    const QStringList buttons{ u"Yes"_s, u"No"_s, u"Cancel"_s };
    QCOMPARE(MessageBox::question(nullptr, u"Title"_s, u"Text"_s, buttons, 0, 2), 0);
    QCOMPARE(seen, buttons);
}

void MessageBoxTest::escapePressesItsButton()
{
    MessageBoxes boxes({ u"Escape"_s });
    QCOMPARE(
        MessageBox::question(nullptr, u"Title"_s, u"Text"_s, { u"Yes"_s, u"No"_s, u"Cancel"_s }, 0, 2), 2);
}

void MessageBoxTest::escapeDoesNothingWithoutItsButton()
{
    MessageBoxes boxes({ u"Escape"_s });
    bool stayedOpen = false;
    QTimer::singleShot(0, this, [&] {
        // Runs behind the key press: the box is still there.
        QTimer::singleShot(0, this, [&] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            stayedOpen = box && box->isVisible() && !box->close();
            box->buttons().at(1)->click();
        });
    });
    QCOMPARE(
        MessageBox::question(nullptr, u"Title"_s, u"Text"_s, { u"Yes"_s, u"No"_s }, 0, MessageBox::noEscape),
        1);
    QVERIFY(stayedOpen);
    QCOMPARE(boxes.shown().at(0).escapeButton, QString());
}

void MessageBoxTest::boxTakenAwayGivesEscape_data()
{
    QTest::addColumn<int>("escapeButton");
    QTest::newRow("a button") << 2;
    QTest::newRow("none") << MessageBox::noEscape;
}

void MessageBoxTest::boxTakenAwayGivesEscape()
{
    QFETCH(int, escapeButton);
    QTimer::singleShot(0, this,
        [] { qobject_cast<QMessageBox *>(QApplication::activeModalWidget())->done(QDialog::Rejected); });
    const QStringList buttons{ u"Yes"_s, u"No"_s, u"Cancel"_s };
    QCOMPARE(MessageBox::question(nullptr, u"Title"_s, u"Text"_s, buttons, 0, escapeButton), escapeButton);
}

void MessageBoxTest::answersNoPressBeforeItCanBeRead_data()
{
    addPresses();
    QTest::newRow("Escape") << Act(
        [](QMessageBox &box) { QTest::keyClick(box.defaultButton(), Qt::Key_Escape); });
}

/// As if a double click might take ten minutes.
void MessageBoxTest::answersNoPressBeforeItCanBeRead()
{
    QFETCH(Act, press);
    const int interval = QApplication::doubleClickInterval();
    QApplication::setDoubleClickInterval(600000);
    const auto restore = qScopeGuard([interval] { QApplication::setDoubleClickInterval(interval); });
    bool isOpen = false;
    QCOMPARE(ask([&](QMessageBox &box) {
        press(box);
        isOpen = box.isVisible();
    }),
        MessageBox::noEscape);
    QVERIFY(isOpen);
}

void MessageBoxTest::answersWhenItCanBeRead_data()
{
    addPresses();
}

void MessageBoxTest::answersWhenItCanBeRead()
{
    QFETCH(Act, press);
    const NoTimeToRead atOnce;
    QCOMPARE(ask(press), 0);
}

void MessageBoxTest::answersNoHeldKey_data()
{
    QTest::addColumn<quint32>("released");
    QTest::addColumn<bool>("isMarked");
    QTest::addColumn<int>("answer");
    QTest::newRow("repeated") << 800U << true << MessageBox::noEscape;
    QTest::newRow("repeated, and not marked so") << 800U << false << MessageBox::noEscape;
    QTest::newRow("released and pressed again") << 790U << false << 0;
}

/// The key went down before the box was there.
void MessageBoxTest::answersNoHeldKey()
{
    QFETCH(quint32, released);
    QFETCH(bool, isMarked);
    const NoTimeToRead atOnce;
    Keyboard keyboard;
    keyboard.press(100, returnCode);
    const int answer = ask([&](QMessageBox &box) {
        keyboard.release(released, returnCode);
        keyboard.press(800, returnCode);
        sendPress(box, 800, isMarked);
    });
    QTEST(answer, "answer");
}

void MessageBoxTest::answersAssistiveTechnologyAtOnce()
{
    QCOMPARE(ask([](QMessageBox &box) { box.defaultButton()->click(); }), 0);
}

REGISTER_TEST(runWindowTest<MessageBoxTest>)
#include "messagebox_test.moc"
