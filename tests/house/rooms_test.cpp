#include "tests/testprogram.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// A room knows only what is below it.
const QMap<QString, int> floors{
    { u"app"_s, 6 },
    { u"editor"_s, 5 },
    { u"widget"_s, 4 },
    { u"options"_s, 4 },
    { u"search"_s, 4 },
    { u"filedialog"_s, 4 },
    { u"document"_s, 3 },
    { u"settings"_s, 3 },
    { u"platform"_s, 3 },
    { u"rows"_s, 2 },
    { u"codec"_s, 2 },
    { u"text"_s, 1 },
    { u"files"_s, 1 },
};

/// Rooms that know of the toolkit its Core alone.
const QStringList coreRooms{ u"text"_s, u"files"_s, u"codec"_s, u"document"_s, u"settings"_s };

QString productFolder()
{
    return QStringLiteral(SOURCE_FOLDER "/src");
}

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList sourcesOf(const QString &room)
{
    QStringList sources;
    QDirIterator found(productFolder() + u'/' + room, QDir::Files);
    while (found.hasNext())
        sources << found.next();
    return sources;
}

QStringList matchesOf(const QRegularExpression &pattern, const QString &text)
{
    QStringList matches;
    for (auto match = pattern.globalMatch(text); match.hasNext();)
        matches << match.next().captured(1);
    return matches;
}

/// The rooms that a room's files include from, itself too.
QStringList includedRooms(const QString &path)
{
    static const QRegularExpression include(u"#include \"([^\"/]*)/[^\"]*\""_s);
    return matchesOf(include, contentOf(path));
}

QStringList linkedRooms(const QString &room)
{
    static const QRegularExpression list(u"LINK ([^)]*)\\)"_s);
    static const QRegularExpression library(u"marlopad_(\\w+)"_s);
    const QString build = contentOf(productFolder() + u'/' + room + u"/CMakeLists.txt"_s);
    return matchesOf(library, matchesOf(list, build).value(0));
}

} // namespace

/// Which room of the product knows which.
class RoomsTest : public QObject {
    Q_OBJECT

private slots:
    void everyFolderIsARoom();
    void includesGoDown_data() { addRooms(); }
    void includesGoDown();
    void linksGoDown_data() { addRooms(); }
    void linksGoDown();
    void coreRoomsIncludeNoWidget();

private:
    static void addRooms();
};

void RoomsTest::addRooms()
{
    QTest::addColumn<QString>("room");
    for (const QString &room : floors.keys())
        QTest::newRow(qPrintable(room)) << room;
}

void RoomsTest::everyFolderIsARoom()
{
    const QDir product(productFolder());
    QCOMPARE(product.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name), floors.keys());
}

void RoomsTest::includesGoDown()
{
    QFETCH(QString, room);
    const QStringList sources = sourcesOf(room);
    QVERIFY(sources.size() > 1);
    for (const QString &path : sources) {
        for (const QString &included : includedRooms(path)) {
            const bool isBelow = floors.contains(included) && floors[included] < floors[room];
            QVERIFY2(included == room || isBelow, qPrintable(path + u" includes from "_s + included));
        }
    }
}

void RoomsTest::linksGoDown()
{
    QFETCH(QString, room);
    for (const QString &linked : linkedRooms(room))
        QVERIFY2(floors.value(linked, 99) < floors[room], qPrintable(room + u" links "_s + linked));
}

void RoomsTest::coreRoomsIncludeNoWidget()
{
    static const QRegularExpression include(
        u"#include <(QApplication|QWidget|QMessageBox|Q[A-Z]\\w*Event|QPixmap|QFont)>"_s);
    for (const QString &room : coreRooms) {
        for (const QString &path : sourcesOf(room))
            QVERIFY2(matchesOf(include, contentOf(path)).isEmpty(), qPrintable(path));
        for (const QString &linked : linkedRooms(room))
            QVERIFY2(coreRooms.contains(linked), qPrintable(room + u" links "_s + linked));
        const QString build = contentOf(productFolder() + u'/' + room + u"/CMakeLists.txt"_s);
        QVERIFY2(!build.contains(u"Qt6::Gui"_s) && !build.contains(u"Qt6::Widgets"_s), qPrintable(room));
    }
}

REGISTER_TEST(runPlainTest<RoomsTest>)
#include "rooms_test.moc"
