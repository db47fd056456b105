#include "settings/config.h"

#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTest>
#include <QThread>

#include <atomic>
#include <csignal>
#include <map>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

QString folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

QString pathOf(const QString &name)
{
    return folder() + u'/' + name + QLatin1String(".conf");
}

QByteArray contentsOf(const QString &name)
{
    QFile file(pathOf(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

void putContents(const QString &name, const QByteArray &contents)
{
    QDir().mkpath(folder());
    QFile file(pathOf(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(contents), contents.size());
}

uint modeOf(const QString &file)
{
    struct stat info { };
    return stat(QFile::encodeName(file).constData(), &info) == 0 ? info.st_mode & 07777 : 0;
}

const QString testFile = QStringLiteral("test");

} // namespace

class ConfigTest : public QObject {
    Q_OBJECT
private slots:
    void init() { QVERIFY(QDir(folder()).removeRecursively()); }

    void value_survivesRoundTrip_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("empty") << QString();
        QTest::newRow("word") << u"lcfont"_s;
        QTest::newRow("blanks around") << u"  a b  "_s;
        QTest::newRow("one blank") << u" "_s;
        QTest::newRow("tab first") << u"\ta\t"_s;
        QTest::newRow("equals signs") << u"=a=b="_s;
        QTest::newRow("commas, semicolons, quotes") << u"a,b;\"c\",'d';"_s;
        QTest::newRow("backslashes") << u"\\n\\\\x41\\"_s;
        QTest::newRow("percent") << u"%20%%1"_s;
        QTest::newRow("group line") << u"[main]"_s;
        QTest::newRow("comment sign") << u"#a;b"_s;
        QTest::newRow("Japanese") << u"日本語 ｱ"_s;
        QTest::newRow("beyond U+FFFF") << u"𠮷🐟"_s;
        QTest::newRow("LF") << u"a\nb"_s;
        QTest::newRow("CR last") << u"a\r"_s;
        QTest::newRow("CR+LF and a fake entry") << u"a\r\n[recent]\nPath0 = /"_s;
        QTest::newRow("NUL") << u"a"_s + QChar(u'\0') + u'b';
        QTest::newRow("byte-order mark") << u"\xFEFF"_s + u'a';
        QTest::newRow("line separator") << QString(QChar(QChar::LineSeparator));
        QTest::newRow("escaped bytes of a file name") << u"/\xDC83\xDC65\xDCC0\xDC8A"_s;
        QTest::newRow("escaped bytes that are UTF-8 together") << u"\xDCE3\xDC81\xDC82"_s;
        QTest::newRow("lone high surrogate") << QString(QChar(u'\xD800'));
        QTest::newRow("swapped surrogates") << u"\xDC00\xD800"_s;
    }

    void value_survivesRoundTrip()
    {
        QFETCH(QString, value);
        {
            Config config(testFile);
            config.setGroup(u"main"_s);
            config.writeEntry(u"Before"_s, 1);
            config.writeEntry(u"Key"_s, value);
            config.writeEntry(u"After"_s, 2);
            QCOMPARE(config.readEntry(u"Key"_s), value);
        }
        Config config(testFile);
        config.setGroup(u"main"_s);
        QCOMPARE(config.readEntry(u"Key"_s, u"default"_s), value);
        QCOMPARE(config.readNumEntry(u"Before"_s), 1);
        QCOMPARE(config.readNumEntry(u"After"_s), 2);
        QCOMPARE(contentsOf(testFile).count('\n'), 4);
    }

    void newFile_isPlainAndPrivate()
    {
        {
            Config config(testFile);
            config.setGroup(u"main"_s);
            config.writeEntry(u"Lang"_s, 1);
            config.writeEntry(u"FontName"_s, u"lcfont"_s);
            config.setGroup(u"recent"_s);
            config.writeEntry(u"Path0"_s, u"/home/user/"_s);
            config.setGroup(u"main"_s);
            config.writeEntry(u"TabLen"_s, 4);
        }
        QCOMPARE(contentsOf(testFile),
            QByteArray("[main]\nLang = 1\nFontName = lcfont\nTabLen = 4\n\n[recent]\nPath0 = /home/user/\n"));
        QCOMPARE(modeOf(pathOf(testFile)), 0600U);
        QCOMPARE(modeOf(folder()), 0700U);
        QCOMPARE(QDir(folder()).entryList(QDir::Files | QDir::Hidden), QStringList{ u"test.conf"_s });
    }

    void read_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<QString>("value");
        QTest::newRow("as written") << QByteArray("[g]\nk = v\n") << u"v"_s;
        QTest::newRow("no blanks") << QByteArray("[g]\nk=v\n") << u"v"_s;
        QTest::newRow("second blank is the value's") << QByteArray("[g]\nk =  v\n") << u" v"_s;
        QTest::newRow("tab is the value's") << QByteArray("[g]\nk =\tv\n") << u"\tv"_s;
        QTest::newRow("blanks before the key") << QByteArray("[g]\n \tk\t= v\n") << u"v"_s;
        QTest::newRow("CR+LF") << QByteArray("[g]\r\nk = v\r\n") << u"v"_s;
        QTest::newRow("no line end at the end") << QByteArray("[g]\nk = v") << u"v"_s;
        QTest::newRow("byte-order mark before the group") << QByteArray("\xEF\xBB\xBF[g]\nk = v\n") << u"v"_s;
        QTest::newRow("last of two counts") << QByteArray("[g]\nk = u\nk = v\n") << u"v"_s;
        QTest::newRow("group in two places") << QByteArray("[g]\nk = u\n[h]\nk = w\n[g]\nk = v\n") << u"v"_s;
        QTest::newRow("other group's key") << QByteArray("[h]\nk = w\n[g]\n") << u"default"_s;
        QTest::newRow("key of no group") << QByteArray("k = w\n[g]\n") << u"default"_s;
        QTest::newRow("other case") << QByteArray("[g]\nK = w\n[G]\nk = w\n") << u"default"_s;
        QTest::newRow("broken group line is skipped") << QByteArray("[g]\n[h\nk = v\n") << u"v"_s;
        QTest::newRow("line without =") << QByteArray("[g]\nk\nk = v\nk\n") << u"v"_s;
        QTest::newRow("line without key") << QByteArray("[g]\n= x\nk = v\n") << u"v"_s;
        QTest::newRow("empty file") << QByteArray() << u"default"_s;
        QTest::newRow("byte-order mark alone") << QByteArray("\xEF\xBB\xBF") << u"default"_s;
        QTest::newRow("invalid bytes") << QByteArray("[g]\nk = \x83\x65\xE3\x81\n")
                                       << u"\xDC83"
                                          "e\xDCE3\xDC81"_s;
        QTest::newRow("over-long slash stays bytes")
            << QByteArray("[g]\nk = \xC0\xAF\n") << u"\xDCC0\xDCAF"_s;
        QTest::newRow("beyond U+10FFFF")
            << QByteArray("[g]\nk = \xF4\x90\x80\x80\n") << u"\xDCF4\xDC90\xDC80\xDC80"_s;
    }

    void read()
    {
        QFETCH(QByteArray, contents);
        QFETCH(QString, value);
        putContents(testFile, contents);
        {
            Config config(testFile);
            config.setGroup(u"g"_s);
            QCOMPARE(config.readEntry(u"k"_s, u"default"_s), value);
            QCOMPARE(config.readEntries({ u"k"_s }).contains(u"k"_s), value != QLatin1String("default"));
        }
        QCOMPARE(contentsOf(testFile), contents);
    }

    void write_keepsTheRest_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        const auto row = [](const char *name, const QByteArray &before, const QByteArray &after) {
            QTest::newRow(name) << before << after;
        };
        row("missing group", "[h]\nk = 1\n", "[h]\nk = 1\n\n[g]\nk = new\n");
        row("missing key", "[g]\na = 1\n\n[h]\nb = 2\n", "[g]\na = 1\nk = new\n\n[h]\nb = 2\n");
        row("group line alone", "[g]\n[h]\n", "[g]\nk = new\n[h]\n");
        row("no line end at the end", "[g]\na = 1", "[g]\na = 1\nk = new\n");
        row("in place", "[g]\nk = old\nz = 1\n", "[g]\nk = new\nz = 1\n");
        row("the last of two", "[g]\nk = 1\nk = 2\n", "[g]\nk = 1\nk = new\n");
        row("blanks before =", "[g]\n  k   =old\n", "[g]\n  k   = new\n");
        row("CR+LF", "[g]\r\nk = old\r\nz = 1\r\n", "[g]\r\nk = new\r\nz = 1\r\n");
        row("CR+LF, missing key", "[g]\r\nz = 1\r\n", "[g]\r\nz = 1\r\nk = new\r\n");
        row("byte-order mark", "\xEF\xBB\xBF[h]\n", "\xEF\xBB\xBF[h]\n\n[g]\nk = new\n");
        row("invalid bytes, broken lines, comments",
            "# \x83\n[\x83]\n\x83\x65 = \xFF\nrubbish\n[h\n\n[g]\nk = old\n#=\n",
            "# \x83\n[\x83]\n\x83\x65 = \xFF\nrubbish\n[h\n\n[g]\nk = new\n#=\n");
    }

    void write_keepsTheRest()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        putContents(testFile, before);
        {
            Config config(testFile);
            config.setGroup(u"g"_s);
            config.writeEntry(u"k"_s, u"new"_s);
        }
        QCOMPARE(contentsOf(testFile), after);
    }

    void keyWithoutGroup_comesFirst()
    {
        putContents(testFile, "\xEF\xBB\xBF[g]\nk = 1\n");
        {
            Config config(testFile);
            config.writeEntry(u"k"_s, u"0"_s);
            QCOMPARE(config.readEntry(u"k"_s), u"0"_s);
        }
        QCOMPARE(contentsOf(testFile), QByteArray("\xEF\xBB\xBFk = 0\n[g]\nk = 1\n"));
    }

    void number_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::newRow("zero") << u"0"_s << 0;
        QTest::newRow("negative") << u"-1"_s << -1;
        QTest::newRow("largest") << u"2147483647"_s << 2147483647;
        QTest::newRow("too large") << u"2147483648"_s << 7;
        QTest::newRow("blanks around") << u" 12 "_s << 12;
        QTest::newRow("word") << u"yes"_s << 7;
        QTest::newRow("number and word") << u"12px"_s << 7;
        QTest::newRow("hexadecimal") << u"0x10"_s << 7;
        QTest::newRow("fraction") << u"1.5"_s << 7;
        QTest::newRow("empty") << u""_s << 7;
    }

    void number()
    {
        QFETCH(QString, text);
        QFETCH(int, number);
        Config config(testFile);
        config.writeEntry(u"k"_s, text);
        QCOMPARE(config.readNumEntry(u"k"_s, 7), number);
    }

    void number_smallestRoundTrips()
    {
        Config config(testFile);
        config.writeEntry(u"k"_s, std::numeric_limits<int>::min());
        QCOMPARE(config.readNumEntry(u"k"_s), std::numeric_limits<int>::min());
    }

    void unchangedEntry_doesNotWrite()
    {
        putContents(testFile, "[g]\nk=v\n");
        const QFileInfo before(pathOf(testFile));
        struct stat info { };
        QCOMPARE(stat(QFile::encodeName(pathOf(testFile)).constData(), &info), 0);
        const auto inode = info.st_ino;
        {
            Config config(testFile);
            config.setGroup(u"g"_s);
            config.writeEntry(u"k"_s, u"v"_s);
            QVERIFY(config.write());
        }
        QCOMPARE(contentsOf(testFile), QByteArray("[g]\nk=v\n"));
        QCOMPARE(stat(QFile::encodeName(pathOf(testFile)).constData(), &info), 0);
        QCOMPARE(info.st_ino, inode);
    }

    void reading_createsNothing()
    {
        {
            Config config(testFile);
            QCOMPARE(config.readEntry(u"k"_s, u"d"_s), u"d"_s);
        }
        QVERIFY(!QFileInfo::exists(folder()));
    }

    void existingMode_isKept()
    {
        putContents(testFile, "[g]\n");
        QVERIFY(
            QFile::setPermissions(pathOf(testFile), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        {
            Config config(testFile);
            config.writeEntry(u"k"_s, u"v"_s);
        }
        QCOMPARE(modeOf(pathOf(testFile)), 0640U);
    }

    void symbolicLink_data()
    {
        QTest::addColumn<bool>("targetExists");
        QTest::newRow("to a file") << true;
        QTest::newRow("dangling") << false;
    }

    void symbolicLink()
    {
        QFETCH(bool, targetExists);
        QVERIFY(QDir().mkpath(folder() + u"/real"_s));
        if (targetExists)
            putContents(u"real/target"_s, "[g]\nk = old\n");
        QVERIFY(QFile::link(u"real/target.conf"_s, pathOf(testFile)));
        {
            Config config(testFile);
            config.setGroup(u"g"_s);
            config.writeEntry(u"k"_s, u"new"_s);
            QVERIFY(config.write());
        }
        QVERIFY(QFileInfo(pathOf(testFile)).isSymLink());
        QCOMPARE(contentsOf(u"real/target"_s), QByteArray("[g]\nk = new\n"));
    }

    void notAFile_isEmptyAndNotWritten()
    {
        QVERIFY(QDir().mkpath(folder()));
        QCOMPARE(mkfifo(QFile::encodeName(pathOf(testFile)).constData(), 0600), 0);
        Config config(testFile);
        QCOMPARE(config.readEntry(u"k"_s, u"d"_s), u"d"_s);
        config.writeEntry(u"k"_s, u"v"_s);
        QVERIFY(!config.write());
        QVERIFY(!QFileInfo(pathOf(testFile)).isFile());
    }

    void folderOfTheName_isEmptyAndNotWritten()
    {
        QVERIFY(QDir().mkpath(pathOf(testFile)));
        Config config(testFile);
        QVERIFY(!config.readEntries({ u"k"_s }).contains(u"k"_s));
        config.writeEntry(u"k"_s, u"v"_s);
        QVERIFY(!config.write());
        QVERIFY(QFileInfo(pathOf(testFile)).isDir());
    }

    void unwritableFolder_failsAndKeepsTheFile()
    {
        putContents(testFile, "[g]\nk = old\n");
        QVERIFY(QFile::link(u"/proc"_s, folder() + u"/proc"_s));
        QVERIFY(QFile::link(u"proc/marlopad.conf"_s, pathOf(u"other"_s)));
        Config config(u"other"_s);
        config.writeEntry(u"k"_s, u"v"_s);
        QVERIFY(!config.write());
        QVERIFY(!config.write());
        QCOMPARE(contentsOf(testFile), QByteArray("[g]\nk = old\n"));
    }

    void enormousFile_isEmptyAndNotWritten()
    {
        constexpr qint64 enormous = qint64{ 64 } << 20;
        putContents(testFile, "[g]\nk = old\n");
        QVERIFY(QFile::resize(pathOf(testFile), enormous));
        Config config(testFile);
        config.setGroup(u"g"_s);
        QVERIFY(!config.readEntries({ u"k"_s }).contains(u"k"_s));
        config.writeEntry(u"k"_s, u"v"_s);
        QVERIFY(!config.write());
        QCOMPARE(QFileInfo(pathOf(testFile)).size(), enormous);
        QVERIFY(QFile::remove(pathOf(testFile)));
    }

    void manyShortLines_stay_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("empty") << QByteArray("\n");
        QTest::newRow("empty, CR+LF") << QByteArray("\r\n");
        QTest::newRow("blank") << QByteArray(" \n");
        QTest::newRow("no entry") << QByteArray("a\n");
        QTest::newRow("entry") << QByteArray("a=\n");
        QTest::newRow("group") << QByteArray("[a]\n");
    }

    void manyShortLines_stay()
    {
        QFETCH(QByteArray, line);
        constexpr qsizetype size = qsizetype{ 1 } << 20;
        const QByteArray many = line.repeated(size / line.size());
        putContents(testFile, "[g]\nk = old\n" + many + "[h]\nl = 1\n");
        {
            Config config(testFile);
            config.setGroup(u"h"_s);
            QCOMPARE(config.readNumEntry(u"l"_s), 1);
            config.writeEntry(u"m"_s, 2);
            config.setGroup(u"g"_s);
            QCOMPARE(config.readEntry(u"k"_s), u"old"_s);
            config.writeEntry(u"k"_s, u"new"_s);
        }
        QVERIFY(contentsOf(testFile) == "[g]\nk = new\n" + many + "[h]\nl = 1\nm = 2\n");
    }

    void random_entriesAtOnce_areAsOneByOne_data() { addSeeds(20); }

    void random_entriesAtOnce_areAsOneByOne()
    {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        const auto below = [&](qsizetype bound) { return random.bounded(static_cast<int>(bound)); };
        static const QByteArrayList parts = { "[", "]", "=", "\n", "\r\n", "a", "bb", "[g]\n", "[h]\r\n",
            "\na = ", "\nbb=", "\t", " ", "\n[]\n", "\xFF", "\xEF\xBB\xBF" };
        static const QStringList keys = { u"a"_s, u"bb"_s, u"a b"_s, u"あ"_s };
        for (int step = 0; step < 200; ++step) {
            QByteArray contents = below(8) ? "" : "\xEF\xBB\xBF";
            for (int i = below(16); i > 0; --i)
                contents += parts[below(parts.size())];
            const QString group = QStringList{ u""_s, u"g"_s, u"h"_s, u"new"_s }[below(4)];
            KeyFile atOnce(contents), oneByOne(contents);
            QList<KeyFile::Entry> entries;
            QHash<QString, QString> values;
            bool isChanged = false;
            for (const QString &key : keys) {
                if (const auto value = oneByOne.value(group, key))
                    values[key] = *value;
                if (below(2))
                    entries.append({ key, QStringList{ u""_s, u" x"_s, u"\n"_s }[below(3)] });
            }
            QCOMPARE(atOnce.values(group, keys), values);
            for (const auto &[key, value] : entries)
                isChanged |= oneByOne.setValues(group, { { key, value } });
            QCOMPARE(atOnce.setValues(group, entries), isChanged);
            QCOMPARE(atOnce.contents(), oneByOne.contents());
        }
    }

    void change_leavesNoLock()
    {
        {
            Config config(testFile, Config::User, Config::Change);
            config.writeEntry(u"k"_s, u"v"_s);
            QVERIFY(config.write());
        }
        QCOMPARE(contentsOf(testFile), QByteArray("k = v\n"));
        QCOMPARE(modeOf(folder()), 0700U);
        QCOMPARE(QDir(folder()).entryList(QDir::Files | QDir::Hidden), QStringList{ u"test.conf"_s });
    }

    void change_waitsForTheOther()
    {
        auto mine = std::make_unique<Config>(testFile, Config::User, Config::Change);
        std::atomic<bool> isOpen = false;
        const std::unique_ptr<QThread> other(QThread::create([&] {
            Config theirs(testFile, Config::User, Config::Change);
            isOpen = true;
            theirs.writeEntry(u"theirs"_s, theirs.readEntry(u"mine"_s));
        }));
        other->start();
        mine->writeEntry(u"mine"_s, u"1"_s);
        QVERIFY(mine->write());
        const bool wasOpen = isOpen;
        mine.reset();
        QVERIFY(other->wait());
        QVERIFY(!wasOpen);
        QCOMPARE(contentsOf(testFile), QByteArray("mine = 1\ntheirs = 1\n"));
    }

    void fullDisk_keepsTheFile_data()
    {
        QTest::addColumn<int>("room");
        QTest::addColumn<int>("needed");
        QTest::newRow("no room") << 0 << 100;
        QTest::newRow("room for a part") << 10 << 100;
        QTest::newRow("room for a part of many buffers") << 50000 << 100000;
    }

    // A limit of the size of files stands for a full disk: the system writes what there is room for.
    void fullDisk_keepsTheFile()
    {
        QFETCH(int, room);
        QFETCH(int, needed);
        const QByteArray old = "[other]\nkeep = me\n[g]\nk = old\n";
        putContents(testFile, old);
        Config config(testFile);
        config.setGroup(u"g"_s);
        config.writeEntry(u"k"_s, QString(needed, u'v'));
        const auto previous = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &limit), 0);
        const rlimit small{ static_cast<rlim_t>(room), limit.rlim_max };
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        const bool isWritten = config.write();
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
        std::signal(SIGXFSZ, previous);
        QVERIFY(!isWritten);
        QCOMPARE(contentsOf(testFile), old);
        QCOMPARE(QDir(folder()).entryList(QDir::Files | QDir::Hidden), QStringList{ u"test.conf"_s });
        QVERIFY(config.write());
        QVERIFY(contentsOf(testFile).size() > needed);
    }

    void random_roundTrip_data() { addSeeds(40); }

    // Several runs of a program on one file, against a plain map; lines of others stand in between.
    void random_roundTrip()
    {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        const auto below = [&](int bound) { return static_cast<int>(random.bounded(bound)); };
        const auto randomText = [&] {
            static const QStringList parts = { u"a"_s, u" "_s, u"="_s, u"["_s, u"]"_s, u"\n"_s, u"\r"_s,
                u"\\"_s, u"\""_s, u"あ"_s, u"🐟"_s, u"\t"_s, QChar(u'\xDC83'), QChar(u'\xDCC0'),
                QChar(u'\xDC8A'), QChar(u'\xD800'), QChar(u'\0'), u"#"_s };
            QString text;
            for (int i = below(6); i > 0; --i)
                text += parts[below(static_cast<int>(parts.size()))];
            return text;
        };
        const QByteArray foreign = "junk \xFF\n[other]\nk1 = \x83\n";
        putContents(testFile, foreign);
        std::map<std::pair<QString, QString>, QString> model;
        for (int run = 0; run < 8; ++run) {
            Config config(testFile);
            for (int step = below(12); step > 0; --step) {
                const QString group = QStringLiteral("g%1").arg(below(3));
                const QString key = QStringLiteral("k%1").arg(below(4));
                config.setGroup(group);
                if (below(2)) {
                    const QString value = randomText();
                    config.writeEntry(key, value);
                    model[{ group, key }] = value;
                }
                const auto known = model.find({ group, key });
                QCOMPARE(config.readEntries({ key }).contains(key), known != model.end());
                if (known != model.end())
                    QCOMPARE(config.readEntry(key), known->second);
            }
        }
        Config config(testFile);
        for (const auto &[where, value] : model) {
            config.setGroup(where.first);
            QCOMPARE(config.readEntry(where.second), value);
        }
        QVERIFY(contentsOf(testFile).startsWith(foreign));
    }
};

REGISTER_TEST(runCoreTest<ConfigTest>)
#include "config_test.moc"
