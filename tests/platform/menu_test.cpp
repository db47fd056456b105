#include "platform/menu.h"
#include "platform/shortenedpath.h"
#include "tests/testprogram.h"

#include <QApplication>
#include <QScreen>
#include <QSet>
#include <QTemporaryFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// Not at the origin, where the platform gives a window without a place its own.
constexpr const char *smallAndLargeScreen = R"({"screens": [
    {"name": "small", "x": 10, "y": 10, "width": 320, "height": 240,
        "logicalDpi": 72, "logicalBaseDpi": 72, "dpr": 1},
    {"name": "large", "x": 330, "y": 10, "width": 640, "height": 480,
        "logicalDpi": 72, "logicalBaseDpi": 72, "dpr": 1}]})";
constexpr int smallWidth = 320;

const QString widePath =
    u"/home/akiko/documents/projects of the year/quarterly reports/R&&D/Q&&A of May.txt"_s;

QList<QPoint> cornersOf(const QRect &screen)
{
    return { screen.topLeft(), screen.topRight(), screen.bottomLeft(), screen.bottomRight() };
}

QIcon square()
{
    QPixmap picture(16, 16);
    picture.fill(Qt::red);
    return picture;
}

/// What the only item shows left of its right border and of its keys.
QImage shownIn(Menu &menu, int width)
{
    QRect item = menu.actionGeometry(menu.actions().constFirst());
    item.setWidth(width);
    return menu.grab(item).toImage();
}

/// Puts the window into the middle of the screen.
void show(QWidget &window, const QScreen *screen)
{
    window.setGeometry(QRect(screen->geometry().center(), QSize(50, 50)));
    window.show();
    QTRY_COMPARE(window.screen(), screen);
}

const QScreen *smallScreen()
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    const bool isFirst = screens.first()->size().width() == smallWidth;
    return isFirst ? screens.first() : screens.last();
}

/// A menu of the window with one item, as wide as the small screen.
template <typename MenuType> QImage pictureOf(const QString &text, QWidget &window)
{
    MenuType menu(&window);
    menu.addAction(square(), text);
    menu.setMinimumWidth(smallWidth);
    menu.resize(menu.sizeHint());
    return menu.grab(QRect(0, 0, smallWidth, menu.height())).toImage();
}

QFontMetrics menuMetrics()
{
    return QFontMetrics(QApplication::font("QMenu"));
}

/// Of an item with that text.
int roomFor(const QString &text)
{
    return menuMetrics().horizontalAdvance(text);
}

/// The form of the text that looks in the toolkit's own menu like what a menu shows of it.
QString shownForm(QString text)
{
    QWidget window;
    show(window, smallScreen());
    const QImage shown = pictureOf<Menu>(text, window);
    text.replace(u"&&"_s, u"&"_s);
    for (int room = smallWidth; room > 0; --room) {
        QString form = shortenedPath(text, menuMetrics(), room);
        if (pictureOf<QMenu>(QString(form).replace(u'&', u"&&"_s), window) == shown)
            return form;
    }
    return {};
}

} // namespace

/// Menus on a small screen beside a larger one.
class MenuTest : public QObject {
    Q_OBJECT

private slots:
    void staysOnTheScreen_data();
    void staysOnTheScreen();
    void everyItemCanBeSeen();
    void textsAreWhole_data();
    void textsAreWhole();
    void wideTextsAreShortened_data();
    void wideTextsAreShortened();
};

void MenuTest::staysOnTheScreen_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("items");
    QTest::newRow("small") << u"item"_s << 3;
    QTest::newRow("wide") << widePath << 3;
    QTest::newRow("high") << u"item"_s << 50;
    QTest::newRow("wide and high") << widePath << 50;
}

/// Of the window's screen, also when the window was on the other one before, and with one width in each
/// corner.
void MenuTest::staysOnTheScreen()
{
    QFETCH(QString, text);
    QFETCH(int, items);
    QWidget window;
    Menu menu(&window);
    for (int i = 0; i < items; ++i)
        menu.addAction(square(), text);
    for (int time = 0; time < 2; ++time) {
        for (const QScreen *screen : QGuiApplication::screens()) {
            const QRect place = screen->geometry();
            show(window, screen);
            QSet<int> widths;
            for (const QPoint &corner : cornersOf(place)) {
                menu.popup(corner);
                QVERIFY(place.contains(menu.geometry()));
                QVERIFY(menu.actionGeometry(menu.actions().constFirst()).right() < menu.width());
                widths << menu.width();
                menu.hide();
            }
            QCOMPARE(widths.size(), 1);
            QCOMPARE(widths.contains(place.width()), place.width() < roomFor(text));
        }
    }
}

void MenuTest::everyItemCanBeSeen()
{
    Menu menu;
    for (int i = 0; i < 50; ++i)
        menu.addAction(QString::number(i));
    menu.popup(menu.screen()->geometry().topLeft());
    const int left = menu.actionGeometry(menu.actions().constFirst()).left();
    for (QAction *action : menu.actions()) {
        QTest::keyClick(&menu, Qt::Key_Down);
        QCOMPARE(menu.activeAction(), action);
        const QRect item = menu.actionGeometry(action);
        QCOMPARE(item.left(), left);
        QTRY_VERIFY(menu.rect().contains(item.center()));
    }
}

void MenuTest::textsAreWhole_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<int>("fontSize");
    for (const int size : { 10, 18 }) {
        QTest::addRow("letter, %d", size) << u"&Open"_s << QString() << size;
        QTest::addRow("Japanese, %d", size) << u"上書き保存(&S)"_s << QString() << size;
        QTest::addRow("keys, %d", size) << u"Select &All"_s << u"Ctrl+A"_s << size;
        QTest::addRow("path, %d", size) << u"/home/a.txt"_s << QString() << size;
        QTest::addRow("many &, %d", size) << u"a&&b&&c&&d&&e&&f&&g"_s << QString() << size;
    }
}

/// A text looks as it does where there is room to spare.
void MenuTest::textsAreWhole()
{
    QFETCH(QString, text);
    QFETCH(QString, keys);
    QFETCH(int, fontSize);
    Menu menu;
    QFont font = menu.font();
    font.setPixelSize(fontSize);
    menu.setFont(font);
    menu.addAction(square(), text)->setShortcut(QKeySequence(keys));
    menu.popup(menu.screen()->geometry().topLeft());
    const int width = menu.width();
    const int border = 20 + (keys.isEmpty() ? 0 : 20 + menu.fontMetrics().horizontalAdvance(keys));
    const QImage shown = shownIn(menu, width - border);
    menu.setMinimumWidth(width + 100);
    menu.resize(menu.sizeHint());
    QCOMPARE(shown, shownIn(menu, width - border));
}

void MenuTest::wideTextsAreShortened_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("end");
    QTest::newRow("path") << widePath << u"/home/"_s << u"/Q&A of May.txt"_s;
    QTest::newRow("Japanese")
        << u"/home/akiko/書類/平成十九年度/第三四半期/営業部/報告/年間/営業報告書（最終版）.txt"_s
        << u"/home/"_s << u"/営業報告書（最終版）.txt"_s;
    QTest::newRow("wide name") << u"/home/"_s + u"name "_s.repeated(50) + u".txt"_s << u"…/name "_s
                               << u"name .txt"_s;
    QTest::newRow("no path") << u"name "_s.repeated(50) << u"name "_s << u"name "_s;
}

void MenuTest::wideTextsAreShortened()
{
    QFETCH(QString, text);
    QFETCH(QString, start);
    QFETCH(QString, end);
    const QString shown = shownForm(text);
    QVERIFY2(shown.startsWith(start) && shown.endsWith(end), qPrintable(shown));
    const int width = menuMetrics().horizontalAdvance(shown);
    QVERIFY2(width > smallWidth * 3 / 4, qPrintable(shown));
}

namespace {

int runMenuTest(int argc, char **argv)
{
    QTemporaryFile config;
    if (!config.open() || config.write(smallAndLargeScreen) < 0 || !config.flush())
        return 1;
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + config.fileName().toUtf8());
    qputenv("QT_FONT_DPI", "72");
    QApplication application(argc, argv);
    MenuTest test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runMenuTest)
#include "menu_test.moc"
