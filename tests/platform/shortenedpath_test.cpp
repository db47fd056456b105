#include "platform/shortenedpath.h"
#include "rows/lcfont.h"
#include "tests/testprogram.h"

#include <QFontMetrics>
#include <QTest>

using namespace Qt::StringLiterals;

class ShortenedPathTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { registerLcFont(); }

    void losesItsMiddle_data();
    void losesItsMiddle();
    void neverTakesMoreRoom_data();
    void neverTakesMoreRoom();
};

void ShortenedPathTest::losesItsMiddle_data()
{
    QTest::addColumn<int>("room"); // in letters; Japanese ones and … are twice as wide
    QTest::addColumn<QString>("shown");
    const auto row = [](const QString &path, int room, const QString &shown) {
        QTest::addRow("%s, %d", qPrintable(path), room) << room << shown;
    };
    row(u"/home/akiko/a.txt"_s, 17, u"/home/akiko/a.txt"_s);
    row(u"/home/akiko/a.txt"_s, 16, u"/hom…kiko/a.txt"_s);
    row(u"/home/akiko/a.txt"_s, 10, u"/…o/a.txt"_s);
    row(u"/home/akiko/a.txt"_s, 8, u"…/a.txt"_s);
    row(u"/home/akiko/a long name.txt"_s, 18, u"…/a long name.txt"_s);
    row(u"/home/akiko/a long name.txt"_s, 14, u"…/a lo…e.txt"_s);
    row(u"/a long name.txt"_s, 14, u"/a lon…me.txt"_s);
    row(u"a long name"_s, 8, u"a l…ame"_s);
    row(u"/書類/営業部/報告書.txt"_s, 20, u"/書…業部/報告書.txt"_s);
    row(u"/書類/営業部/平成の報告書.txt"_s, 16, u"…/平成の….txt"_s);
    row(u""_s, 5, u""_s);
}

void ShortenedPathTest::losesItsMiddle()
{
    QFETCH(int, room);
    QFont font = lcFont(20);
    font.setPixelSize(20);
    const QFontMetrics metrics(font);
    const QString path = QString::fromUtf8(QTest::currentDataTag()).section(u", "_s, 0, -2);
    QTEST(shortenedPath(path, metrics, room * metrics.horizontalAdvance(u'x')), "shown");
}

void ShortenedPathTest::neverTakesMoreRoom_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("path") << u"/home/akiko/documents/a report.txt"_s;
    QTest::newRow("folder") << u"/home/akiko/documents/"_s;
    QTest::newRow("name") << u"a name without a folder"_s;
    QTest::newRow("full width") << u"/書類/営業部/平成の報告書.txt"_s;
}

void ShortenedPathTest::neverTakesMoreRoom()
{
    QFETCH(QString, path);
    const QFontMetrics metrics{ QFont() };
    const int whole = metrics.horizontalAdvance(path);
    const QString least = u"…"_s + path.sliced(qMax(0, path.lastIndexOf(u'/')));
    QCOMPARE(shortenedPath(path, metrics, whole), path);
    for (int room = whole - 1; room >= 2 * metrics.horizontalAdvance(u'…'); --room) {
        const QString shown = shortenedPath(path, metrics, room);
        QVERIFY(shown.contains(u'…'));
        QVERIFY2(metrics.horizontalAdvance(shown) <= room, qPrintable(shown));
        if (path.contains(u'/') && room >= metrics.horizontalAdvance(least))
            QVERIFY2(shown.endsWith(least.sliced(1)), qPrintable(shown));
    }
}

REGISTER_TEST(runWindowTest<ShortenedPathTest>)
#include "shortenedpath_test.moc"
