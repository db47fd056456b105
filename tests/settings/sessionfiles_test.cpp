#include "settings/sessionfiles.h"

#include "tests/testprogram.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;

/// The files of the last session, and their file.
class SessionFilesTest : public QObject {
    Q_OBJECT

private slots:
    void init() { QFile::remove(file()); }

    void emptyWithoutFile();
    void comeBackAsTheyWere();
    void fewerThanBefore();
    void namesOfAnyBytes();
    void codesComeBack();
    void brokenCodes_data();
    void brokenCodes();
    void brokenFiles_data();
    void brokenFiles();
    void noMoreThanTheMost();

private:
    static QString file()
    {
        return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
            + u"/marlopad_session.conf"_s;
    }
    static void write(const QByteArray &content)
    {
        QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
        QFile written(file());
        QVERIFY(written.open(QIODevice::WriteOnly));
        QCOMPARE(written.write(content), content.size());
    }
    static QString drawn(const SessionFiles &session)
    {
        QStringList names;
        for (const SessionFile &file : session.files)
            names << file.place.path + file.place.name;
        return names.join(u' ') + u" @%1"_s.arg(session.current);
    }
};

void SessionFilesTest::emptyWithoutFile()
{
    QCOMPARE(readSessionFiles(), SessionFiles());
}

void SessionFilesTest::comeBackAsTheyWere()
{
    const SessionFiles session{ { { { u"/a/"_s, u"b.txt"_s, 1, 2, 3, 4 } },
                                    { { u"/"_s, u" c = d "_s, 1LL << 40, 5, 0, 1LL << 50 } } },
        1 };
    writeSessionFiles(session);
    QCOMPARE(readSessionFiles(), session);
}

void SessionFilesTest::fewerThanBefore()
{
    writeSessionFiles({ { { { u"/"_s, u"a"_s } }, { { u"/"_s, u"b"_s } } }, 1 });
    writeSessionFiles({ { { { u"/"_s, u"c"_s } } }, 0 });
    QCOMPARE(drawn(readSessionFiles()), u"/c @0"_s);
    writeSessionFiles({});
    QCOMPARE(drawn(readSessionFiles()), u" @-1"_s);
    QFile kept(file());
    QVERIFY(kept.open(QIODevice::ReadOnly));
    const QByteArray content = kept.readAll();
    for (const char *const name : { "= a", "= b", "= c" })
        QVERIFY2(!content.contains(name), name);
}

void SessionFilesTest::namesOfAnyBytes()
{
    const SessionFiles session{ { { { u"/"_s, u"\u65E5\n#;[x]\""_s + QChar(0xDC80) } } }, 0 };
    writeSessionFiles(session);
    QCOMPARE(readSessionFiles(), session);
}

void SessionFilesTest::codesComeBack()
{
    using Utf16 = SessionFile::Utf16;
    const SessionFiles session{ { { { u"/"_s, u"a"_s }, CharCode::Euc },
                                    { { u"/"_s, u"b"_s }, {}, Utf16::LittleEndian, true },
                                    { { u"/"_s, u"c"_s }, {}, Utf16::BigEndian } },
        0 };
    writeSessionFiles(session);
    QCOMPARE(readSessionFiles(), session);
}

void SessionFilesTest::brokenCodes_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::newRow("a number that is none") << "Code0 = EUC\n"_ba;
    QTest::newRow("negative") << "Code0 = -4\n"_ba;
    QTest::newRow("of what is no text") << "Code0 = 1\n"_ba;
    QTest::newRow("of what is only detected") << "Code0 = 6\n"_ba;
    QTest::newRow("unknown") << "Code0 = 7\n"_ba;
    QTest::newRow("huge") << "Code0 = 99999999999999999999\n"_ba;
    QTest::newRow("another order") << "Utf160 = ME\n"_ba;
    QTest::newRow("no yes or no") << "KeepUtf160 = 2\n"_ba;
}

/// The file is read as if nothing had been said.
void SessionFilesTest::brokenCodes()
{
    QFETCH(QByteArray, lines);
    write("[session]\nCount = 1\nPath0 = /\nName0 = a\n"_ba + lines);
    const SessionFiles plain{ { { { u"/"_s, u"a"_s } } }, -1 };
    QCOMPARE(readSessionFiles(), plain);
}

void SessionFilesTest::brokenFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("session");
    QTest::newRow("no key file") << "\0\xff\x80garbage\n=\n[["_ba << u" @-1"_s;
    QTest::newRow("no entries") << "[session]\nCount = 3\nCurrent = 1\n"_ba << u" @0"_s;
    QTest::newRow("negative") << "[session]\nCount = -3\n"_ba << u" @-1"_s;
    QTest::newRow("no number") << "[session]\nCount = many\nPath0 = /\nName0 = a\n"_ba << u" @-1"_s;
    QTest::newRow("a number that is none")
        << "[session]\nCount = 1\nCurrent = 0\nPath0 = /\nName0 = a\nCurX0 = x\n"_ba << u"/a @0"_s;
    QTest::newRow("relative") << "[session]\nCount = 2\nPath0 = a/\nName0 = a\nPath1 = /\nName1 = b\n"_ba
                              << u"/b @-1"_s;
    QTest::newRow("no folder") << "[session]\nCount = 1\nPath0 = /a\nName0 = a\n"_ba << u" @-1"_s;
    QTest::newRow("huge numbers")
        << "[session]\nCount = 2147483647\nCurrent = 2147483647\nPath0 = /\nName0 = a\n"_ba << u"/a @-1"_s;
    QTest::newRow("numbers beyond any")
        << "[session]\nCount = 99999999999999999999\nPath0 = /\nName0 = a\n"_ba << u" @-1"_s;
    QTest::newRow("a huge name") << "[session]\nCount = 1\nPath0 = /\nName0 = "_ba + QByteArray(1 << 20, 'a')
            + '\n' << u"/"_s + QString(1 << 20, u'a') + u" @-1"_s;
    QTest::newRow("a huge file") << "[session]\nCount = 1\nPath0 = /\nName0 = a\n"_ba
            + QByteArray(17 << 20, '\n')
                                 << u" @-1"_s;
}

void SessionFilesTest::brokenFiles()
{
    QFETCH(QByteArray, content);
    write(content);
    QTEST(drawn(readSessionFiles()), "session");
}

void SessionFilesTest::noMoreThanTheMost()
{
    SessionFiles session;
    for (int i = 0; i < SessionFiles::most + 50; ++i)
        session.files << SessionFile{ { u"/"_s, QString::number(i) } };
    writeSessionFiles(session);
    QCOMPARE(readSessionFiles().files, session.files.first(SessionFiles::most));
}

REGISTER_TEST(runPlainTest<SessionFilesTest>)
#include "sessionfiles_test.moc"
