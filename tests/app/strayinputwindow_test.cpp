#include "tests/app/programwindow.h"
#include "tests/testprogram.h"

#include <QPoint>

using namespace Qt::StringLiterals;

/// Double clicks and held keys that open or close a dialog, in the program itself: the rest of them acts on
/// nothing that comes in its place.
class StrayInputWindowTest : public QObject, private ProgramWindow {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void doubleClickReplacesNoFile_data();
    void doubleClickReplacesNoFile();
    void heldReturnReplacesNoFile();
    void keyPressedAnewAnswers();
    void doubleClickMovesNoCursor_data();
    void doubleClickMovesNoCursor();
    void heldReturnOpensAndTypesNothing();

private:
    static constexpr int fileCount = 40;
    QString fileName(int index) const { return u"file%1.txt"_s.arg(index); }
    /// Whether each of the files still has its text.
    bool areFilesUntouched() const;
    void openSaveAs();
    static int numberIn(const QString &told, const QString &name);
    /// On the screen, from per cent of the active window's size.
    static QPoint pointInActive(int across, int down);
    /// Presses and releases the first button: once, or twice after `delay` ms.
    static void click(QPoint at, int delay = 0);
    /// The server repeats a key that is held, and nobody else sees it do so.
    static void holdReturn();
};

void StrayInputWindowTest::init()
{
    QVERIFY(reset());
    for (int i = 0; i < fileCount; ++i)
        write(fileName(i), "old");
    QVERIFY(start({ write(u"a.txt"_s, "text\n") }));
}

void StrayInputWindowTest::cleanup()
{
    xdotool({ u"keyup"_s, u"Return"_s });
    QCOMPARE(end(), QByteArray());
}

bool StrayInputWindowTest::areFilesUntouched() const
{
    for (int i = 0; i < fileCount; ++i) {
        if (read(fileName(i)) != "old")
            return false;
    }
    return true;
}

void StrayInputWindowTest::openSaveAs()
{
    press({ u"x"_s, u"alt+f"_s, u"a"_s });
    QTRY_COMPARE(activeTitle(), u"Save as"_s);
}

/// The number of that name in what xdotool tells with --shell.
int StrayInputWindowTest::numberIn(const QString &told, const QString &name)
{
    return told.split(u'\n').filter(name + u'=').value(0).section(u'=', 1).toInt();
}

/// The pointer goes there: where a window stands within its frame is nothing to rely on.
QPoint StrayInputWindowTest::pointInActive(int across, int down)
{
    const QString window = xdotool({ u"getactivewindow"_s });
    const QString size = xdotool({ u"getwindowgeometry"_s, u"--shell"_s, window });
    xdotool(
        { u"mousemove"_s, u"--window"_s, window, QString::number(numberIn(size, u"WIDTH"_s) * across / 100),
            QString::number(numberIn(size, u"HEIGHT"_s) * down / 100) });
    const QString place = xdotool({ u"getmouselocation"_s, u"--shell"_s });
    return { numberIn(place, u"X"_s), numberIn(place, u"Y"_s) };
}

void StrayInputWindowTest::click(QPoint at, int delay)
{
    QStringList arguments{ u"mousemove"_s, QString::number(at.x()), QString::number(at.y()), u"click"_s };
    if (delay > 0)
        arguments << u"--repeat"_s << u"2"_s << u"--delay"_s << QString::number(delay);
    xdotool(arguments << u"1"_s);
}

void StrayInputWindowTest::holdReturn()
{
    constexpr int serversDelay = 660; // ms before the first repetition
    xdotool({ u"keydown"_s, u"Return"_s });
    QTest::qWait(serversDelay + 3 * doubleClickTime);
}

void StrayInputWindowTest::doubleClickReplacesNoFile_data()
{
    QTest::addColumn<int>("delay");
    for (const int delay : { 100, 150, 200 })
        QTest::addRow("after %d ms", delay) << delay;
}

/// On the selected row that lies where the question has its "Yes".
void StrayInputWindowTest::doubleClickReplacesNoFile()
{
    QFETCH(int, delay);
    openSaveAs();
    const QPoint nameField = pointInActive(50, 68);
    press({ u"Tab"_s, u"Return"_s });
    QTRY_COMPARE(activeTitle(), u"Replace confirm"_s);
    const QPoint yes = pointInActive(27, 78);
    QVERIFY(answer(u"Replace confirm"_s, u"Escape"_s));
    QTRY_COMPARE(activeTitle(), u"Save as"_s);

    click(yes); // selects the row
    click(nameField); // so that the next press is a first one
    click(yes, delay);
    QVERIFY(answer(u"Replace confirm"_s, u"Escape"_s));
    QTRY_COMPARE(activeTitle(), u"Save as"_s);
    QVERIFY(areFilesUntouched());

    // It was "Yes" that lay there.
    click(nameField);
    press({ u"Return"_s });
    QTRY_COMPARE(activeTitle(), u"Replace confirm"_s);
    letBoxBeRead();
    click(yes);
    QTRY_VERIFY(isActive());
    QTRY_VERIFY(!areFilesUntouched());
}

void StrayInputWindowTest::heldReturnReplacesNoFile()
{
    openSaveAs();
    press({ u"Tab"_s });
    holdReturn();
    QCOMPARE(activeTitle(), u"Replace confirm"_s);
    QCOMPARE(read(u"a.txt"_s), QByteArray("text\n"));
}

/// Released where the dialog had the focus or where the question has it.
void StrayInputWindowTest::keyPressedAnewAnswers()
{
    openSaveAs();
    press({ u"Tab"_s });
    holdReturn();
    xdotool({ u"keyup"_s, u"Return"_s });
    QCOMPARE(activeTitle(), u"Replace confirm"_s);
    press({ u"Return"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("xtext\n"));
    QTRY_VERIFY(isActive());

    openSaveAs();
    press({ u"Tab"_s, u"Return"_s });
    QTRY_COMPARE(activeTitle(), u"Replace confirm"_s);
    letBoxBeRead();
    press({ u"Return"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("xxtext\n"));
}

void StrayInputWindowTest::doubleClickMovesNoCursor_data()
{
    QTest::addColumn<bool>("isSelected");
    QTest::addColumn<int>("delay");
    for (const int delay : { 100, 200 }) {
        QTest::addRow("on the selected file, after %d ms", delay) << true << delay;
        QTest::addRow("on another file, after %d ms", delay) << false << delay;
    }
}

void StrayInputWindowTest::doubleClickMovesNoCursor()
{
    QFETCH(bool, isSelected);
    QFETCH(int, delay);
    for (int i = 0; i < fileCount; ++i)
        write(fileName(i), QByteArray("one two three\n").repeated(100));
    press({ u"ctrl+o"_s });
    QTRY_COMPARE(activeTitle(), u"Open"_s);
    // The list is filled a moment after the dialog is there, and nothing tells.
    QTest::qWait(doubleClickTime);
    const QPoint row = pointInActive(25, 33);
    const QPoint nameField = pointInActive(50, 68);
    if (isSelected) {
        click(row);
        click(nameField);
    }
    click(row, delay);
    QTRY_VERIFY(isActive());
    // What is typed over a selected word, or elsewhere than at the top, is seen in the file.
    press({ u"x"_s, u"ctrl+s"_s });
    const auto changed = [this] {
        for (int i = 0; i < fileCount; ++i) {
            if (read(fileName(i)) != QByteArray("one two three\n").repeated(100))
                return read(fileName(i));
        }
        return QByteArray();
    };
    QTRY_COMPARE(changed(), 'x' + QByteArray("one two three\n").repeated(100));
}

void StrayInputWindowTest::heldReturnOpensAndTypesNothing()
{
    press({ u"ctrl+o"_s });
    QTRY_COMPARE(activeTitle(), u"Open"_s);
    press({ u"Tab"_s });
    xdotool({ u"type"_s, fileName(7) });
    holdReturn();
    QTRY_VERIFY(isActive());
    xdotool({ u"keyup"_s, u"Return"_s });
    press({ u"x"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(fileName(7)), QByteArray("xold"));
}

REGISTER_TEST(runCoreTest<StrayInputWindowTest>)
#include "strayinputwindow_test.moc"
