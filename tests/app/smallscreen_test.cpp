#include "tests/app/programwindow.h"
#include "tests/testprogram.h"

#include <QRect>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

/// The program itself on a handheld's screen, as large as MARLOPAD_TEST_SCREEN says, at the scale that it
/// chooses or QT_SCALE_FACTOR asks for.
class SmallScreenTest : public QObject, private ProgramWindow {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { QCOMPARE(end(), QByteArray()); }
    void dialogsAreWhole_data();
    void dialogsAreWhole();

private:
    static QSize screen()
    {
        const QStringList size = xdotool({ u"getdisplaygeometry"_s }).split(u' ');
        return { size.value(0).toInt(), size.value(1).toInt() };
    }
    /// Of the active window, without its frame.
    static QRect activePlace()
    {
        const QString told = outputOf(u"xwininfo"_s, { u"-id"_s, xdotool({ u"getactivewindow"_s }) });
        const auto number = [&](const QString &name) {
            return QRegularExpression(name + u":\\s+(-?\\d+)"_s).match(told).captured(1).toInt();
        };
        return { number(u"upper-left X"_s), number(u"upper-left Y"_s), number(u"Width"_s),
            number(u"Height"_s) };
    }
};

void SmallScreenTest::init()
{
    QVERIFY(reset());
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    if (variables.value(u"SCREEN_CLASS"_s) == u"VGA")
        variables.insert(u"QWS_DISPLAY"_s, u"QVFb:Vga:0"_s);
    program().setProcessEnvironment(variables);
}

void SmallScreenTest::dialogsAreWhole_data()
{
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("title");
    QTest::newRow("open") << QStringList{ u"ctrl+o"_s } << u"Open"_s;
    QTest::newRow("save as") << QStringList{ u"alt+f"_s, u"a"_s } << u"Save as"_s;
    QTest::newRow("options") << QStringList{ u"alt+e"_s, u"o"_s } << u"Options"_s;
    QTest::newRow("search") << QStringList{ u"ctrl+n"_s } << u"Search"_s;
    QTest::newRow("replace") << QStringList{ u"ctrl+m"_s } << u"Replace"_s;
    QTest::newRow("jump") << QStringList{ u"alt+v"_s, u"j"_s } << u"Jump to"_s;
    QTest::newRow("properties") << QStringList{ u"alt+f"_s, u"p"_s } << u"Document properties"_s;
    QTest::newRow("guide") << QStringList{ u"F1"_s } << u"Guide"_s;
    QTest::newRow("close") << QStringList{ u"x"_s, u"alt+F4"_s } << u"Confirm File Save"_s;
}

void SmallScreenTest::dialogsAreWhole()
{
    QFETCH(QStringList, keys);
    QFETCH(QString, title);
    QVERIFY(start({ write(u"a.txt"_s, "text\n") }));
    press(keys);
    QTRY_COMPARE(activeTitle(), title);
    // A window manager's frame may take the outermost pixels.
    constexpr int frame = 4;
    const QSize size = screen();
    const QRect room = QRect(QPoint(), size).adjusted(-frame, 0, frame, frame);
    const auto isWhole = [&] {
        const QRect place = activePlace();
        return room.contains(place) && place.width() <= size.width() && place.height() <= size.height();
    };
    QTRY_VERIFY(isWhole());
}

REGISTER_TEST(runCoreTest<SmallScreenTest>)
#include "smallscreen_test.moc"
