#include "files/filename.h"

#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

/// Names of any bytes go through strings and back.
using namespace Qt::StringLiterals;

class FilenameTest : public QObject {
    Q_OBJECT

private slots:
    void decodes_data();
    void decodes();
    void everyShortNameComesBack();
    void randomNamesComeBack_data();
    void randomNamesComeBack();
    void encodes_data();
    void encodes();
    void exists();
    void shows_data();
    void shows();
    void showsLines_data();
    void showsLines();
    void absolute_data();
    void absolute();
    void absoluteFromTheShellsFolder_data();
    void absoluteFromTheShellsFolder();
};

void FilenameTest::decodes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("ASCII") << QByteArray("a.b") << QStringLiteral("a.b");
    QTest::newRow("two, three, four bytes")
        << QByteArray("\xC3\xA9\xE6\xBC\xA2\xF0\x9F\x98\x80") << QStringLiteral(u"\u00E9\u6F22\U0001F600");
    QTest::newRow("byte-order mark kept") << QByteArray("\xEF\xBB\xBF.txt") << QStringLiteral(u"\uFEFF.txt");
    QTest::newRow("Shift-JIS") << QByteArray("\x8A\xBF.txt") << QStringLiteral(u"\xDC8A\xDCBF.txt");
    QTest::newRow("overlong slash") << QByteArray("\xC0\xAF") << QStringLiteral(u"\xDCC0\xDCAF");
    QTest::newRow("overlong three") << QByteArray("\xE0\x80\xAF") << QStringLiteral(u"\xDCE0\xDC80\xDCAF");
    QTest::newRow("encoded surrogate") << QByteArray("\xED\xB2\x8A") << QStringLiteral(u"\xDCED\xDCB2\xDC8A");
    QTest::newRow("beyond U+10FFFF") << QByteArray("\xF4\x90\x80\x80")
                                     << QStringLiteral(u"\xDCF4\xDC90\xDC80\xDC80");
    QTest::newRow("cut sequence") << QByteArray("a\xE6\xBC") << QStringLiteral(u"a\xDCE6\xDCBC");
    QTest::newRow("cut by ASCII") << QByteArray("\xE6\xBCz") << QStringLiteral(u"\xDCE6\xDCBCz");
}

void FilenameTest::decodes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, name);
    QCOMPARE(FileName::fromBytes(bytes), name);
    QCOMPARE(FileName::toBytes(name), bytes);
}

void FilenameTest::everyShortNameComesBack()
{
    for (int first = 1; first < 256; ++first) {
        for (int second = 1; second < 256; ++second) {
            const QByteArray bytes = QByteArray(1, char(first)) + char(second);
            QCOMPARE(FileName::toBytes(FileName::fromBytes(bytes)), bytes);
        }
    }
}

void FilenameTest::randomNamesComeBack_data()
{
    addSeeds(3);
}

void FilenameTest::randomNamesComeBack()
{
    QFETCH(uint, seed);
    QRandomGenerator random(seed);
    const QByteArray nasty("a/\x7F\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xDF\xE0\xE1\xED\xEF\xF0\xF4\xF5\xFF");
    for (int round = 0; round < 20000; ++round) {
        QByteArray bytes;
        for (int size = random.bounded(12); size > 0; --size)
            bytes += nasty[random.bounded(int(nasty.size()))];
        QCOMPARE(FileName::toBytes(FileName::fromBytes(bytes)), bytes);
    }
}

void FilenameTest::encodes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("high surrogate alone") << QStringLiteral(u"a\xD83Dz") << QByteArray("a\xEF\xBF\xBDz");
    QTest::newRow("high surrogate at the end") << QStringLiteral(u"a\xD83D") << QByteArray("a\xEF\xBF\xBD");
    QTest::newRow("low surrogate that is no escape")
        << QStringLiteral(u"\xDE00z") << QByteArray("\xEF\xBF\xBDz");
    QTest::newRow("pair whose second half looks like an escape")
        << QStringLiteral(u"\xD83D\xDC80") << QByteArray("\xF0\x9F\x92\x80");
}

void FilenameTest::encodes()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QCOMPARE(FileName::toBytes(name), bytes);
}

void FilenameTest::exists()
{
    const QTemporaryDir folder;
    const QByteArray base = folder.path().toUtf8() + '/';
    const QByteArray bytes = base + "\x8A\xBF.txt";
    QVERIFY(!FileName::exists(FileName::fromBytes(bytes)));
    const int file = ::open(bytes.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    QVERIFY(file >= 0);
    ::close(file);
    QVERIFY(FileName::exists(FileName::fromBytes(bytes)));
    QVERIFY(FileName::exists(folder.path()));
    QCOMPARE(::symlink("nowhere", (base + "dangling").constData()), 0);
    QVERIFY(!FileName::exists(folder.filePath(QStringLiteral("dangling"))));
    QCOMPARE(::symlink("loop", (base + "loop").constData()), 0);
    QVERIFY(!FileName::exists(folder.filePath(QStringLiteral("loop"))));
    QVERIFY(!FileName::exists(folder.filePath(QString(300, u'n'))));
}

void FilenameTest::shows_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    QTest::newRow("plain") << QStringLiteral("a b.txt") << QStringLiteral("a b.txt");
    QTest::newRow("undecodable byte") << QStringLiteral(u"\xDC8A.txt") << QStringLiteral(u"\uFFFD.txt");
    QTest::newRow("line end and tab") << QStringLiteral("a\nb\tc") << QStringLiteral(u"a\uFFFDb\uFFFDc");
    QTest::newRow("line separator") << QStringLiteral(u"a\u2028b") << QStringLiteral(u"a\uFFFDb");
    QTest::newRow("surrogate pair") << QStringLiteral(u"\U0001F480") << QStringLiteral(u"\U0001F480");
    QTest::newRow("right-to-left mark") << u"a\u200Fb"_s << u"a\u200Fb"_s;
    for (const int code : { 0x202A, 0x202B, 0x202C, 0x202D, 0x202E, 0x2066, 0x2067, 0x2068, 0x2069 })
        QTest::addRow("direction U+%04X", code) << u"a%1b"_s.arg(QChar(code)) << QStringLiteral(u"a\uFFFDb");
}

void FilenameTest::shows()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    QCOMPARE(FileName::forDisplay(name), shown);
}

void FilenameTest::showsLines_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    QTest::newRow("one line") << u"a b.txt"_s << u"a b.txt"_s;
    QTest::newRow("line feeds") << u"\na\n\nb"_s << u"\na\n\nb"_s;
    QTest::newRow("other controls") << u"a\tb\n\rc\u2028"_s << u"a\uFFFDb\n\uFFFDc\uFFFD"_s;
    QTest::newRow("undecodable bytes") << u"\xDC8A\n\xDCBF"_s << u"\uFFFD\n\uFFFD"_s;
    QTest::newRow("override") << u"a\u202Eb\nc"_s << u"a\uFFFDb\nc"_s;
}

void FilenameTest::showsLines()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    QCOMPARE(FileName::forMessage(name), shown);
}

void FilenameTest::absolute_data()
{
    QTest::addColumn<QByteArray>("given");
    QTest::addColumn<QByteArray>(
        "absolute"); // "." for the current folder, which has far/target and a link to it
    QTest::newRow("plain") << QByteArray("a.txt") << QByteArray("./a.txt");
    QTest::newRow("absolute") << QByteArray("/a/b") << QByteArray("/a/b");
    QTest::newRow("dots and doubled slashes") << QByteArray("././far//a") << QByteArray("./far/a");
    QTest::newRow("up") << QByteArray("far/../a") << QByteArray("./a");
    QTest::newRow("up through a link") << QByteArray("link/../a") << QByteArray("./far/a");
    QTest::newRow("up from a missing folder") << QByteArray("none/../a") << QByteArray("./a");
    QTest::newRow("link kept") << QByteArray("link/a") << QByteArray("./link/a");
    QTest::newRow("undecodable bytes") << QByteArray("\x83\x65") << QByteArray("./\x83\x65");
    QTest::newRow("above the root") << QByteArray("/../../a") << QByteArray("/a");
}

void FilenameTest::absolute()
{
    QFETCH(QByteArray, given);
    QFETCH(QByteArray, absolute);
    const QTemporaryDir folder;
    const QByteArray root = folder.path().toUtf8();
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("far/target")));
    QCOMPARE(::symlink("far/target", (root + "/link").constData()), 0);
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder.path()));
    const QByteArray result = FileName::toBytes(FileName::absolute(given));
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(result, absolute.startsWith('.') ? root + absolute.sliced(1) : absolute);
}

void FilenameTest::absoluteFromTheShellsFolder_data()
{
    QTest::addColumn<QByteArray>(
        "shell"); // $PWD; "." for a folder with far/target and link, which leads there
    QTest::addColumn<QByteArray>("given");
    QTest::addColumn<QByteArray>("absolute"); // of the file, named in far/target
    const auto add = [](const char *row, const char *shell, const char *given, const char *absolute) {
        QTest::newRow(row) << QByteArray(shell) << QByteArray(given) << QByteArray(absolute);
    };
    add("came by a link", "./link", "a", "./link/a");
    add("dot", "./link", "./a", "./link/a");
    add("up is up from where the link leads", "./link", "../a", "./far/a");
    add("no link", "./far/target", "a", "./far/target/a");
    add("another folder", "./far", "a", "./far/target/a");
    add("a folder that is gone", "./gone", "a", "./far/target/a");
    add("relative", "../target", "a", "./far/target/a");
    add("nothing", "", "a", "./far/target/a");
}

void FilenameTest::absoluteFromTheShellsFolder()
{
    QFETCH(QByteArray, shell);
    QFETCH(QByteArray, given);
    QFETCH(QByteArray, absolute);
    const QTemporaryDir folder;
    const QByteArray root = folder.path().toUtf8();
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("far/target")));
    QCOMPARE(::symlink("far/target", (root + "/link").constData()), 0);
    const QString before = QDir::currentPath();
    const QByteArray shellBefore = qgetenv("PWD");
    QVERIFY(QDir::setCurrent(folder.filePath(QStringLiteral("far/target"))));
    qputenv("PWD", shell.startsWith("./") ? root + shell.sliced(1) : shell);
    const QByteArray result = FileName::toBytes(FileName::absolute(given));
    qputenv("PWD", shellBefore);
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(result, root + absolute.sliced(1));
}

REGISTER_TEST(runCoreTest<FilenameTest>)
#include "filename_test.moc"
