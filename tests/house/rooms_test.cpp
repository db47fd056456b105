#include "tests/testprogram.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// What ARCHITECTURE.md says of a room.
struct Room {
    int floor = 0;
    QStringList files; ///< without their endings
};

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The rooms as drawn between the first two fences of ARCHITECTURE.md. Two blanks or more end a word of a
/// line; the first line of a room begins with its floor and its name, and the last word of every line is a
/// list of files.
QMap<QString, Room> readMap()
{
    static const QRegularExpression gap(u" {2,}"_s);
    const QString drawn = contentOf(QStringLiteral(SOURCE_FOLDER "/ARCHITECTURE.md")).section(u"```"_s, 1, 1);
    QMap<QString, Room> rooms;
    QString room;
    for (const QString &line : drawn.split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList words = line.split(gap);
        if (!words[0].isEmpty()) {
            room = words.value(1);
            rooms[room].floor = words[0].toInt();
        }
        rooms[room].files << words.last().split(u' ');
    }
    return rooms;
}

const QMap<QString, Room> &rooms()
{
    static const QMap<QString, Room> map = readMap();
    return map;
}

/// Rooms that know of the toolkit its Core alone.
const QStringList coreRooms{ u"text"_s, u"files"_s, u"jobs"_s, u"codec"_s, u"document"_s, u"recovery"_s,
    u"settings"_s };

QString productFolder()
{
    return QStringLiteral(SOURCE_FOLDER "/src");
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

/// The map of the product, and which of its rooms knows which.
class RoomsTest : public QObject {
    Q_OBJECT

private slots:
    void everyFolderIsARoom();
    void everyRoomHasTests_data() { addRooms(); }
    void everyRoomHasTests();
    void benchmarksStandInRooms_data();
    void benchmarksStandInRooms();
    void everyFuzzTargetHasInputs();
    void everyFileIsOnTheMap_data() { addRooms(); }
    void everyFileIsOnTheMap();
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
    for (const QString &room : rooms().keys())
        QTest::newRow(qPrintable(room)) << room;
}

void RoomsTest::everyFolderIsARoom()
{
    const QDir product(productFolder());
    QCOMPARE(product.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name), rooms().keys());
}

void RoomsTest::everyRoomHasTests()
{
    QFETCH(QString, room);
    const QDir tests(QStringLiteral(SOURCE_FOLDER "/tests/") + room);
    QVERIFY(!tests.entryList({ u"*_test.cpp"_s }).isEmpty());
}

void RoomsTest::benchmarksStandInRooms_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("bench") << u"bench"_s;
    QTest::newRow("fuzz") << u"fuzz"_s;
}

void RoomsTest::benchmarksStandInRooms()
{
    QFETCH(QString, folder);
    const QDir mirror(QStringLiteral(SOURCE_FOLDER "/") + folder);
    for (const QString &room : mirror.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        QVERIFY2(rooms().contains(room) || room == u"corpus"_s, qPrintable(room));
}

void RoomsTest::everyFuzzTargetHasInputs()
{
    const QString fuzz = QStringLiteral(SOURCE_FOLDER "/fuzz/");
    QStringList targets;
    for (const QString &room : rooms().keys()) {
        for (const QFileInfo &target : QDir(fuzz + room).entryInfoList({ u"*_fuzz.cpp"_s }))
            targets << target.baseName();
    }
    targets.sort();
    QCOMPARE(QDir(fuzz + u"corpus"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name), targets);
    for (const QString &target : targets)
        QVERIFY2(!QDir(fuzz + u"corpus/"_s + target).isEmpty(), qPrintable(target));
}

void RoomsTest::everyFileIsOnTheMap()
{
    QFETCH(QString, room);
    QSet<QString> present;
    for (const QString &path : sourcesOf(room))
        present << QFileInfo(path).baseName();
    present.remove(u"CMakeLists"_s);
    const QStringList drawn = rooms()[room].files;
    const QSet<QString> onTheMap(drawn.begin(), drawn.end());
    const QStringList missing = (present - onTheMap).values();
    QVERIFY2(missing.isEmpty(), qPrintable(u"not on the map: "_s + missing.join(u' ')));
    const QStringList gone = (onTheMap - present).values();
    QVERIFY2(gone.isEmpty(), qPrintable(u"on the map but not there: "_s + gone.join(u' ')));
    QCOMPARE(drawn.size(), onTheMap.size());
}

void RoomsTest::includesGoDown()
{
    QFETCH(QString, room);
    const QStringList sources = sourcesOf(room);
    QVERIFY(sources.size() > 1);
    for (const QString &path : sources) {
        for (const QString &included : includedRooms(path)) {
            const bool isBelow = rooms().contains(included) && rooms()[included].floor < rooms()[room].floor;
            QVERIFY2(included == room || isBelow, qPrintable(path + u" includes from "_s + included));
        }
    }
}

void RoomsTest::linksGoDown()
{
    QFETCH(QString, room);
    for (const QString &linked : linkedRooms(room))
        QVERIFY2(rooms().value(linked, Room{ 99, {} }).floor < rooms()[room].floor,
            qPrintable(room + u" links "_s + linked));
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
