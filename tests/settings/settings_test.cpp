#include "settings/settings.h"

#include "settings/moresettings.h"
#include "tests/testprogram.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

QString settingsFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/marlopad.conf"_s;
}

void writeFile(const QByteArray &content)
{
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    QFile file(settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(content), content.size());
}

QStringList linesOfFile()
{
    QFile file(settingsFile());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

QByteArray contentsOfFile()
{
    QFile file(settingsFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

/// Fills the table: "a b" has the files "/a" and "/b".
void setRecent(const QString &drawn)
{
    recentFiles().entries = {};
    auto entry = recentFiles().entries.begin();
    for (const QString &name : drawn.split(u' ', Qt::SkipEmptyParts))
        *entry++ = { u"/"_s, name, 10, 20, 30, 40 };
}

QString drawnRecent()
{
    QStringList names;
    for (const RecentEntry &entry : recentFiles().entries) {
        if (entry.isUsed())
            names << entry.name;
    }
    return names.join(u' ');
}

/// The keys of a group, in the file's order.
QStringList keysOf(const QString &group)
{
    QStringList keys;
    bool isInside = false;
    for (const QString &line : linesOfFile()) {
        if (line.startsWith(u'['))
            isInside = line == u"["_s + group + u']';
        else if (isInside)
            keys << line.section(u'=', 0, 0).trimmed();
    }
    return keys;
}

} // namespace

/// The settings record and the recent-files table, and their file.
class SettingsTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void defaultsWithoutFile();
    void readsEachNumber_data();
    void readsEachNumber();
    void filesFromBeforeOffersNeedNone();
    void repairsFontSize_data();
    void repairsFontSize();
    void keepsOddFontNames_data();
    void keepsOddFontNames();
    void writesKeysInOrder();
    void writesFontSizeUnrepaired();
    void keepsValuesOutOfRange();
    void switchesAreKept();
    void everySwitchSaysWhatItDoes();
    void keepsEntriesThatAreNoNumbers();
    void keepsAllRecentRows();
    void cursorRowIsUnderCurX();
    void keepsPositionsBeyond32Bits();
    void defaultsWithoutGroupRecent();
    void forgetsWhatWasReadBefore();
    void unwritableFileIsSilent();

    void takesOverWhatOthersChanged_data();
    void takesOverWhatOthersChanged();
    void keepsWhatTheFileLost();
    void mergesRecentFiles_data();
    void mergesRecentFiles();
    void unchangedRecentFilesStayAsTheyAre();
    void failedWriteLosesNothing();
    void smallFontSizeStaysAsItWasSet();
    void processesAtOnce();
};

void SettingsTest::init()
{
    QFile::remove(settingsFile());
    appSettings() = {};
    recentFiles() = {};
    moreSettings() = {};
}

void SettingsTest::defaultsWithoutFile()
{
    appSettings().Lang = 2;
    readSettings();
    const AppSettings &s = appSettings();
    QCOMPARE(s.Lang, 1);
    QCOMPARE(s.ShowKAI, 1);
    QCOMPARE(s.ShowTAB, 1);
    QCOMPARE(s.ShowZEN, 1);
    QCOMPARE(s.ShowEOF, 1);
    QCOMPARE(s.FontSize, 18);
    QCOMPARE(s.FontName, u"lcfont"_s);
    QCOMPARE(s.AutoIndent, 2);
    QCOMPARE(s.WrapMode, 0);
    QCOMPARE(s.WrapLen, 30);
    QCOMPARE(s.TabLen, 4);
    QCOMPARE(s.RestoreScroll, 1);
    QCOMPARE(s.RowNo, 1);
    QCOMPARE(s.ActiveHLine, 8);
    QCOMPARE(s.DefCodec, 3);
    QCOMPARE(s.DefCRLF, 2);
    QCOMPARE(s.BackColor, 2);
    QCOMPARE(s.ForeColor, 1);
    QCOMPARE(s.RowNoColor, 0);
    QCOMPARE(s.LangOffered, 0);
    QCOMPARE(s.CodecOffered, 0);
    QCOMPARE(recentFiles().RecentViewCnt, 10);
    for (const RecentEntry &entry : recentFiles().entries) {
        QVERIFY(!entry.isUsed());
        QCOMPARE(entry.cursorRow + entry.cursorColumn + entry.scrollX + entry.scrollY, 0);
    }
}

void SettingsTest::readsEachNumber_data()
{
    QTest::addColumn<int AppSettings::*>("field");
#define ROW(key) QTest::newRow(#key) << &AppSettings::key
    ROW(Lang);
    ROW(ShowKAI);
    ROW(ShowTAB);
    ROW(ShowZEN);
    ROW(ShowEOF);
    ROW(FontSize);
    ROW(AutoIndent);
    ROW(WrapMode);
    ROW(WrapLen);
    ROW(TabLen);
    ROW(RestoreScroll);
    ROW(RowNo);
    ROW(ActiveHLine);
    ROW(DefCodec);
    ROW(DefCRLF);
    ROW(BackColor);
    ROW(ForeColor);
    ROW(RowNoColor);
    ROW(LangOffered);
    ROW(CodecOffered);
#undef ROW
}

void SettingsTest::readsEachNumber()
{
    QFETCH(int AppSettings::*, field);
    const QByteArray key = QTest::currentDataTag();
    writeFile("[main]\n" + key + " = 57\n");
    readSettings();
    QCOMPARE(appSettings().*field, 57);

    appSettings().*field = 58;
    writeSettings();
    appSettings() = {};
    readSettings();
    QCOMPARE(appSettings().*field, 58);
    QVERIFY(linesOfFile().contains(QString::fromLatin1(key) + u" = 58"_s));
}

void SettingsTest::filesFromBeforeOffersNeedNone()
{
    writeFile("[main]\nLang = 1\n");
    readSettings();
    QCOMPARE(appSettings().LangOffered, 1);
    QCOMPARE(appSettings().CodecOffered, 1);
    writeFile("[main]\nLang = 1\nLangOffered = 1\nCodecOffered = 0\n");
    readSettings();
    QCOMPARE(appSettings().LangOffered, 1);
    QCOMPARE(appSettings().CodecOffered, 0);
}

void SettingsTest::repairsFontSize_data()
{
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("read");
    QTest::newRow("9 is too small") << 9 << 18;
    QTest::newRow("10 stays") << 10 << 10;
    QTest::newRow("0") << 0 << 18;
    QTest::newRow("negative") << -20 << 18;
    QTest::newRow("very large stays") << 100000 << 100000;
}

void SettingsTest::repairsFontSize()
{
    QFETCH(int, stored);
    writeFile("[main]\nFontSize = " + QByteArray::number(stored) + '\n');
    readSettings();
    QTEST(appSettings().FontSize, "read");
}

void SettingsTest::keepsOddFontNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("comma and quotes") << u"Mono, \"Bold\"; 'x'"_s;
    QTest::newRow("backslash and equals") << u"a\\b=c\\n"_s;
    QTest::newRow("Japanese") << u"ＭＳ ゴシック"_s;
    QTest::newRow("brackets") << u"[main]"_s;
    QTest::newRow("empty") << QString();
}

void SettingsTest::keepsOddFontNames()
{
    QFETCH(QString, name);
    appSettings().FontName = name;
    writeSettings();
    appSettings() = {};
    readSettings();
    QCOMPARE(appSettings().FontName, name);
}

void SettingsTest::writesKeysInOrder()
{
    writeSettings();
    const QStringList main{ u"Lang"_s, u"ShowKAI"_s, u"ShowTAB"_s, u"ShowZEN"_s, u"ShowEOF"_s, u"FontSize"_s,
        u"FontName"_s, u"AutoIndent"_s, u"WrapMode"_s, u"WrapLen"_s, u"TabLen"_s, u"RestoreScroll"_s,
        u"RowNo"_s, u"ActiveHLine"_s, u"DefCodec"_s, u"DefCRLF"_s, u"BackColor"_s, u"ForeColor"_s,
        u"RowNoColor"_s, u"LangOffered"_s, u"CodecOffered"_s };
    QCOMPARE(keysOf(u"main"_s), main);
    QStringList recent{ u"RecentViewCnt"_s };
    for (int i = 0; i < 20; ++i) {
        for (const auto *key : { "Path%1", "Name%1", "CurX%1", "CurY%1", "ScrX%1", "ScrY%1" })
            recent << QString::fromLatin1(key).arg(i);
    }
    QCOMPARE(keysOf(u"recent"_s), recent);
}

void SettingsTest::writesFontSizeUnrepaired()
{
    appSettings().FontSize = 9;
    writeSettings();
    QVERIFY(linesOfFile().contains(u"FontSize = 9"_s));
}

/// One after the other is turned, in the order of the file.
void SettingsTest::switchesAreKept()
{
    QStringList keys;
    for (const MoreSwitch &each : moreSwitches()) {
        keys << QString::fromLatin1(each.key);
        moreSettings() = {};
        const int turned = 1 - moreSettings().*each.setting;
        moreSettings().*each.setting = turned;
        writeSettings();
        moreSettings() = {};
        readSettings();
        QVERIFY2(moreSettings().*each.setting == turned, each.key);
        for (const MoreSwitch &other : moreSwitches())
            QVERIFY2(other.setting == each.setting
                    || moreSettings().*other.setting == MoreSettings().*other.setting,
                other.key);
    }
    QCOMPARE(keysOf(u"more"_s), keys + QStringList({ u"WindowWidth"_s, u"WindowHeight"_s }));
}

void SettingsTest::everySwitchSaysWhatItDoes()
{
    QStringList letters;
    for (const MoreSwitch &each : moreSwitches()) {
        const QString label = QString::fromLatin1(each.label);
        QVERIFY2(label.contains(u'&'), each.key);
        letters << label.section(u'&', 1).first(1).toLower();
        QVERIFY2(QString::fromLatin1(each.sentence).endsWith(u'.'), each.key);
    }
    QCOMPARE(letters.removeDuplicates(), 0);
}

void SettingsTest::keepsValuesOutOfRange()
{
    const QByteArrayList odd{ "TabLen = 0", "WrapLen = -1", "FontSize = 100000", "BackColor = 400",
        "Lang = 99", "RowNo = 2147483647", "WrapMode = -2147483648", "RecentViewCnt = 99" };
    writeFile("[main]\n" + odd.first(7).join('\n') + "\n[recent]\n" + odd.last() + '\n');
    readSettings();
    QCOMPARE(recentFiles().RecentViewCnt, 99);
    writeSettings();
    for (const QByteArray &line : odd)
        QVERIFY2(linesOfFile().contains(QString::fromLatin1(line)), line.constData());
}

void SettingsTest::keepsEntriesThatAreNoNumbers()
{
    writeFile("[main]\nLang = 99999999999\nTabLen = four\nWrapLen =\n[recent]\nScrY3 = 1e9\n");
    readSettings();
    QCOMPARE(appSettings().Lang, 1);
    QCOMPARE(appSettings().TabLen, 4);
    QCOMPARE(appSettings().WrapLen, 30);
    QCOMPARE(recentFiles().entries[3].scrollY, 0);
    writeSettings();
    for (const QString &line :
        { u"Lang = 99999999999"_s, u"TabLen = four"_s, u"WrapLen ="_s, u"ScrY3 = 1e9"_s })
        QVERIFY2(linesOfFile().contains(line), qPrintable(line));

    appSettings().TabLen = 8;
    writeSettings();
    QVERIFY(linesOfFile().contains(u"TabLen = 8"_s));
    QVERIFY(linesOfFile().contains(u"Lang = 99999999999"_s));
}

void SettingsTest::keepsAllRecentRows()
{
    QByteArray content = "[recent]\nRecentViewCnt = 3\n";
    for (int i = 0; i < 20; ++i) {
        const QByteArray n = QByteArray::number(i);
        content += "Path" + n + " = /folder " + n + "/\nName" + n + " = file=" + n + ".txt\nCurX" + n + " = 1"
            + n + "\nCurY" + n + " = 2" + n + "\nScrX" + n + " = 3" + n + "\nScrY" + n + " = 4" + n + '\n';
    }
    writeFile(content);
    for (int round = 0; round < 2; ++round) {
        readSettings();
        QCOMPARE(recentFiles().RecentViewCnt, 3);
        for (int i = 0; i < 20; ++i) {
            const RecentEntry &entry = recentFiles().entries[size_t(i)];
            const QString n = QString::number(i);
            QCOMPARE(entry.path, u"/folder "_s + n + u'/');
            QCOMPARE(entry.name, u"file="_s + n + u".txt"_s);
            QCOMPARE(entry.cursorRow, (u"1"_s + n).toLongLong());
            QCOMPARE(entry.cursorColumn, (u"2"_s + n).toLongLong());
            QCOMPARE(entry.scrollX, (u"3"_s + n).toLongLong());
            QCOMPARE(entry.scrollY, (u"4"_s + n).toLongLong());
        }
        writeSettings();
    }
}

void SettingsTest::cursorRowIsUnderCurX()
{
    recentFiles().entries[4] = { u"/p/"_s, u"n"_s, 11, 22, 33, 44 };
    writeSettings();
    for (const auto *line :
        { "Path4 = /p/", "Name4 = n", "CurX4 = 11", "CurY4 = 22", "ScrX4 = 33", "ScrY4 = 44" })
        QVERIFY2(linesOfFile().contains(QLatin1StringView(line)), line);
}

void SettingsTest::keepsPositionsBeyond32Bits()
{
    recentFiles().entries[0] = { u"/p/"_s, u"n"_s, 1LL << 40, 1LL << 41, 1LL << 42, 1LL << 43 };
    writeSettings();
    recentFiles() = {};
    readSettings();
    QCOMPARE(recentFiles().entries[0].cursorRow, 1LL << 40);
    QCOMPARE(recentFiles().entries[0].cursorColumn, 1LL << 41);
    QCOMPARE(recentFiles().entries[0].scrollX, 1LL << 42);
    QCOMPARE(recentFiles().entries[0].scrollY, 1LL << 43);
}

void SettingsTest::defaultsWithoutGroupRecent()
{
    writeFile("[main]\nLang = 0\n");
    recentFiles().entries[0] = { u"/p/"_s, u"n"_s, 1, 1, 1, 1 };
    readSettings();
    QCOMPARE(recentFiles().RecentViewCnt, 10);
    for (const RecentEntry &entry : recentFiles().entries)
        QVERIFY(!entry.isUsed());
}

void SettingsTest::forgetsWhatWasReadBefore()
{
    appSettings().TabLen = 7;
    writeFile("[main]\nTabLen = abc\nWrapLen = 12 columns\n");
    readSettings();
    QCOMPARE(appSettings().TabLen, 4);
    QCOMPARE(appSettings().WrapLen, 30);
}

void SettingsTest::unwritableFileIsSilent()
{
    QVERIFY(QDir().mkpath(settingsFile()));
    writeSettings();
    readSettings();
    QCOMPARE(appSettings().Lang, 1);
    QVERIFY(QDir(settingsFile()).exists());
    QVERIFY(QDir().rmdir(settingsFile()));
}

void SettingsTest::takesOverWhatOthersChanged_data()
{
    QTest::addColumn<QByteArray>("theirs");
    QTest::addColumn<int>("mine");
    QTest::addColumn<bool>("isTakenOver");
    QTest::addColumn<int>("result");
    QTest::newRow("nobody") << QByteArray("TabLen = 4\n") << 4 << false << 4;
    QTest::newRow("they") << QByteArray("TabLen = 7\n") << 4 << true << 7;
    QTest::newRow("we") << QByteArray("TabLen = 4\n") << 8 << false << 8;
    QTest::newRow("both") << QByteArray("TabLen = 7\n") << 8 << false << 8;
    QTest::newRow("both, the same") << QByteArray("TabLen = 8\n") << 8 << false << 8;
    QTest::newRow("to no number") << QByteArray("TabLen = seven\n") << 4 << false << 4;
    QTest::newRow("they took it out") << QByteArray() << 4 << false << 4;
}

/// What is in the file afterwards is in the record.
void SettingsTest::takesOverWhatOthersChanged()
{
    QFETCH(QByteArray, theirs);
    QFETCH(int, mine);
    writeFile("[main]\nTabLen = 4\nFontName = ours\n[recent]\nRecentViewCnt = 3\n");
    readSettings();
    appSettings().TabLen = mine;
    writeFile("[main]\nFontName = ours\n" + theirs + "[recent]\nRecentViewCnt = 3\n");
    QTEST(writeSettings(), "isTakenOver");
    QTEST(appSettings().TabLen, "result");
    QCOMPARE(appSettings().FontName, u"ours"_s);

    const AppSettings written = appSettings();
    QVERIFY(!writeSettings());
    readSettings();
    QTEST(appSettings().TabLen, "result");
    QCOMPARE(appSettings().FontName, written.FontName);
    QCOMPARE(recentFiles().RecentViewCnt, 3);
}

void SettingsTest::keepsWhatTheFileLost()
{
    writeFile("[main]\nTabLen = 7\n[recent]\nRecentViewCnt = 3\nPath0 = /p/\nName0 = n\n");
    readSettings();
    QVERIFY(QFile::remove(settingsFile()));
    QVERIFY(!writeSettings());
    for (const auto *line : { "TabLen = 7", "RecentViewCnt = 3", "Path0 = /p/", "Name0 = n" })
        QVERIFY2(linesOfFile().contains(QLatin1StringView(line)), line);
}

void SettingsTest::mergesRecentFiles_data()
{
    QTest::addColumn<QString>("mine");
    QTest::addColumn<QString>("theirs");
    QTest::addColumn<QString>("result");
    QTest::newRow("they closed a file") << u"a b"_s << u"d a b"_s << u"d a b"_s;
    QTest::newRow("both closed files") << u"c a b"_s << u"e d a b"_s << u"c e d a b"_s;
    QTest::newRow("they cleared the list") << u"a b"_s << u""_s << u""_s;
    QTest::newRow("they cleared the list, we closed a file") << u"c a b"_s << u""_s << u"c"_s;
    QTest::newRow("we cleared the list") << u""_s << u"a b"_s << u""_s;
    QTest::newRow("we cleared the list, they closed a file") << u""_s << u"d a b"_s << u"d"_s;
}

void SettingsTest::mergesRecentFiles()
{
    QFETCH(QString, mine);
    QFETCH(QString, theirs);
    setRecent(u"a b"_s);
    writeSettings();
    setRecent(theirs);
    writeSettings();
    const QByteArray theirFile = contentsOfFile();
    setRecent(u"a b"_s);
    writeSettings();

    setRecent(mine);
    writeFile(theirFile);
    writeSettings();
    QTEST(drawnRecent(), "result");
    readSettings();
    QTEST(drawnRecent(), "result");
    QCOMPARE(recentFiles().entries[0].isUsed() ? recentFiles().entries[0].cursorRow : 10, 10);
}

/// Gaps in the table, and the numbers of rows that were cleared.
void SettingsTest::unchangedRecentFilesStayAsTheyAre()
{
    recentFiles().entries[0] = { QString(), QString(), 1, 2, 3, 4 };
    recentFiles().entries[2] = { u"/p/"_s, u"n"_s, 5, 6, 7, 8 };
    const auto entries = recentFiles().entries;
    for (int round = 0; round < 2; ++round) {
        writeSettings();
        QVERIFY(recentFiles().entries == entries);
        readSettings();
        QVERIFY(recentFiles().entries == entries);
    }
}

void SettingsTest::failedWriteLosesNothing()
{
    writeFile("[main]\nTabLen = 4\nWrapLen = 40\n");
    readSettings();
    appSettings().TabLen = 8;
    QVERIFY(QFile::remove(settingsFile()) && QDir().mkpath(settingsFile()));
    writeSettings();
    QVERIFY(QDir().rmdir(settingsFile()));
    writeFile("[main]\nTabLen = 4\nWrapLen = 50\n");
    writeSettings();
    QCOMPARE(appSettings().TabLen, 8);
    QCOMPARE(appSettings().WrapLen, 50);
    QVERIFY(linesOfFile().contains(u"TabLen = 8"_s));
    QVERIFY(linesOfFile().contains(u"WrapLen = 50"_s));
}

void SettingsTest::smallFontSizeStaysAsItWasSet()
{
    readSettings();
    appSettings().FontSize = 8;
    for (int round = 0; round < 2; ++round) {
        QVERIFY(!writeSettings());
        QCOMPARE(appSettings().FontSize, 8);
        QVERIFY(linesOfFile().contains(u"FontSize = 8"_s));
    }
    writeFile("[main]\nFontSize = 5\n");
    writeSettings();
    QCOMPARE(appSettings().FontSize, 18);
}

/// Each closes a file of its own and changes nothing else, without any order.
void SettingsTest::processesAtOnce()
{
    constexpr int count = 6;
    writeSettings();
    std::vector<std::unique_ptr<QProcess>> processes;
    for (int i = 0; i < count; ++i) {
        auto process = std::make_unique<QProcess>();
        process->start(QCoreApplication::applicationFilePath(),
            { u"settings_test"_s, u"close"_s, QString(QChar(u'a' + i)) });
        QVERIFY(process->waitForReadyRead());
        processes.push_back(std::move(process));
    }
    for (const auto &process : processes)
        process->closeWriteChannel();
    for (const auto &process : processes) {
        QVERIFY(process->waitForFinished());
        QCOMPARE(process->exitCode(), 0);
    }
    readSettings();
    QString drawn = drawnRecent().remove(u' ');
    std::sort(drawn.begin(), drawn.end());
    QCOMPARE(drawn, u"abcdef"_s);
}

/// The role of another process: reads the settings, waits for its input to end, and closes a file.
static int closeFile(const QString &name)
{
    readSettings();
    std::puts("ready");
    std::fflush(stdout);
    while (std::getchar() != EOF) { }
    auto &entries = recentFiles().entries;
    std::rotate(entries.begin(), entries.end() - 1, entries.end());
    entries.front() = { u"/"_s, name, 10, 0, 0, 0 };
    writeSettings();
    return 0;
}

namespace {

int runSettingsTest(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc == 3 && QByteArrayView(argv[1]) == "close")
        return closeFile(QString::fromLatin1(argv[2]));
    SettingsTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runSettingsTest)

#include "settings_test.moc"
