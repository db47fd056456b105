#include "platform/strayinput.h"
#include "tests/testprogram.h"
#include "tests/widget/keyboard.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Two windows and a popup that write down which presses reach them.
class Windows : public QObject {
public:
    Windows()
    {
        for (const char16_t name : { u'A', u'B', u'P' }) {
            auto *window = new QWidget(nullptr, name == u'P' ? Qt::Popup : Qt::Window);
            window->setObjectName(QString(name));
            window->installEventFilter(this);
            m_windows.emplace_back(window);
            if (name != u'P')
                window->show();
        }
    }

    QWidget *window(QChar name) const
    {
        for (const auto &window : m_windows) {
            if (window->objectName() == name)
                return window.get();
        }
        return nullptr;
    }
    QStringList reached;
    QString step;

    bool eventFilter(QObject *, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            reached << step;
            return true;
        default:
            return false;
        }
    }

private:
    std::vector<std::unique_ptr<QWidget>> m_windows;
};

} // namespace

/// What was meant for one window does not reach the one that comes in its place.
class StrayInputTest : public QObject {
    Q_OBJECT

private slots:
    void keys_data();
    void keys();
    void clicks_data();
    void clicks();
    void windowThatIsGone();
};

void StrayInputTest::keys_data()
{
    QTest::addColumn<QString>("events");
    QTest::addColumn<QString>("reached");
    const auto row = [](const char *name, const char16_t *events, const char16_t *reached) {
        QTest::newRow(name) << QString::fromUtf16(events) << QString::fromUtf16(reached);
    };
    row("one window", u"A+1 A-2 A+3 A-4", u"A+1 A+3");
    row("repeated in its window", u"A+1 A+2r A+3r A-4", u"A+1 A+2r A+3r");
    row("released in between", u"A+1 A-2 B+3 B-4", u"A+1 B+3");
    row("held over to another window", u"A+1 B+5r B+6r B-7", u"A+1");
    row("held over, the mark lost", u"A+1 B-5 B+5 B-6 B+6", u"A+1");
    row("released where nobody is told", u"A+1 B+5", u"A+1 B+5");
    row("pressed anew in the other window", u"A+1 B+5r B-7 B+8", u"A+1 B+8");
    row("pressed anew after a mark was lost", u"A+1 B-5 B+5 B-7 B+8", u"A+1 B+8");
    row("held over and back", u"A+1 B+5r A+6r", u"A+1 A+6r");
    row("repeated without a press before", u"A+5r", u"A+5r");
    row("on the way to a popup", u"A+1 P+1 P-2 A+3", u"A+1 P+1 A+3");
    row("times unknown", u"A+0 A-0 B+0 B-0", u"A+0 B+0");
}

/// "A+3r": at the third millisecond a press, marked as repeated, is sent to window A; "-" is a release. The
/// releases and presses of one moment are a key that is held.
void StrayInputTest::keys()
{
    QFETCH(QString, events);
    Keyboard keyboard;
    Windows windows;
    StrayInput::instance();
    static quint8 row = 0;
    const quint8 code = ++row; // no two rows share a key
    for (const QString &event : events.split(u' ')) {
        windows.step = event;
        const bool isPress = event[1] == u'+';
        const bool isRepeated = event.endsWith(u'r');
        QKeyEvent key(isPress ? QEvent::KeyPress : QEvent::KeyRelease, Qt::Key_Return, Qt::NoModifier, code,
            0, 0, {}, isRepeated);
        const quint32 time = event.sliced(2).remove(u'r').toUInt();
        key.setTimestamp(time);
        if (isPress)
            keyboard.press(time, code);
        else
            keyboard.release(time, code);
        QApplication::sendEvent(windows.window(event[0]), &key);
    }
    QTEST(windows.reached.join(u' '), "reached");
}

void StrayInputTest::clicks_data()
{
    QTest::addColumn<QString>("events");
    QTest::addColumn<QString>("reached");
    const auto row = [](const char *name, const char16_t *events, const char16_t *reached) {
        QTest::newRow(name) << QString::fromUtf16(events) << QString::fromUtf16(reached);
    };
    row("double click in one window", u"A1000@10 A1200@10d", u"A1000@10 A1200@10d");
    row("second press in another window", u"A1000@10 B1200@10d", u"A1000@10");
    row("not marked as the second", u"A1000@10 B1200@12", u"A1000@10");
    row("third press", u"A1000@10 B1200@10d B1500@10", u"A1000@10");
    row("later", u"A1000@10 B1400@10", u"A1000@10 B1400@10");
    row("elsewhere", u"A1000@10 B1200@90", u"A1000@10 B1200@90");
    row("in a popup that came", u"A1000@10 P1200@10", u"A1000@10 P1200@10");
    row("times unknown", u"A0@10 B0@10", u"A0@10 B0@10");
}

/// "B1200@10d": at that millisecond a press, marked as a double click's second, at x 10 of the screen.
void StrayInputTest::clicks()
{
    QFETCH(QString, events);
    QCOMPARE(QApplication::doubleClickInterval(), 400);
    Windows windows;
    StrayInput::instance();
    for (const QString &event : events.split(u' ')) {
        windows.step = event;
        static const QRegularExpression form(u"(.)([0-9]+)@([0-9]+)(d?)"_s);
        const QRegularExpressionMatch match = form.match(event);
        const QPointF at(match.captured(3).toInt(), 0);
        QMouseEvent press(
            match.captured(4).isEmpty() ? QEvent::MouseButtonPress : QEvent::MouseButtonDblClick, at, at,
            Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        press.setTimestamp(match.captured(2).toULongLong());
        QApplication::sendEvent(windows.window(event[0]), &press);
    }
    QTEST(windows.reached.join(u' '), "reached");
}

/// Also where the new window lies at the old one's address.
void StrayInputTest::windowThatIsGone()
{
    StrayInput::instance();
    const auto press = [](Windows &windows, quint64 time) {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_F7, Qt::NoModifier, 99, 0, 0, {}, time > 1);
        key.setTimestamp(time);
        QApplication::sendEvent(windows.window(u'A'), &key);
    };
    auto windows = std::make_unique<Windows>();
    press(*windows, 1);
    QCOMPARE(windows->reached.size(), 1);
    windows = std::make_unique<Windows>();
    press(*windows, 5);
    QCOMPARE(windows->reached, QStringList());
}

REGISTER_TEST(runWindowTest<StrayInputTest>)
#include "strayinput_test.moc"
