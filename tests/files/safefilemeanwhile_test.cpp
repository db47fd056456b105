#include "tests/files/savedfile.h"
#include "tests/testprogram.h"

#include <sys/stat.h>

/// What other programs do to a file while it is saved.
class SafeFileMeanwhileTest : public QObject, SavedFile {
    Q_OBJECT

private slots:
    void init() { prepareFolder(); }

    void othersWrite_data();
    void othersWrite();
    void removedFileKeepsItsRights();
    void othersPutAFolderThere();
    void unexpectedContentIsKept();
    void othersRenameTheFolder_data();
    void othersRenameTheFolder();

private:
    using Act = std::function<void(const QByteArray &name)>;
};

void SafeFileMeanwhileTest::othersWrite_data()
{
    QTest::addColumn<Way>("way");
    QTest::addColumn<Act>("act");
    QTest::addColumn<QByteArray>("kept");
    const auto write = [](const QByteArray &name) { writeFile(name, "of others\n"); };
    const auto replace = [](const QByteArray &name) {
        writeFile(name + "~", "of others\n");
        QCOMPARE(::rename((name + "~").constData(), name.constData()), 0);
    };
    const auto remove = [](const QByteArray &name) { QCOMPARE(::unlink(name.constData()), 0); };
    const QByteArray others = "of others\n";
    QTest::newRow("nothing") << Way::Replace << Act([](const QByteArray &) {}) << QByteArray();
    QTest::newRow("written") << Way::Replace << Act(write) << others;
    QTest::newRow("another in its place") << Way::Replace << Act(replace) << others;
    QTest::newRow("removed") << Way::Replace << Act(remove) << QByteArray();
    QTest::newRow("made") << Way::NewFile << Act(write) << others;
    QTest::newRow("written, by a link") << Way::ThroughLink << Act(write) << others;
    QTest::newRow("written, with two names") << Way::HardLink << Act(write) << others;
    QTest::newRow("another, had two names") << Way::HardLink << Act(replace) << others;
    QTest::newRow("removed, had two names") << Way::HardLink << Act(remove) << QByteArray();
}

/// The name has what was saved, wherever the file that had it has gone, and what others wrote is kept.
void SafeFileMeanwhileTest::othersWrite()
{
    QFETCH(Way, way);
    QFETCH(Act, act);
    QFETCH(QByteArray, kept);
    const QByteArray name = prepare(way);
    SafeFile file(name);
    file.keepUnlessOf(stampOf(name, FileCalls::system()));
    QVERIFY(file.open());
    QVERIFY(file.write(m_new));
    act(name);
    QVERIFY(file.commit());
    QCOMPARE(contentOf(name), m_new);
    QCOMPARE(file.keptCopy().isEmpty() ? QByteArray() : contentOf(file.keptCopy()), kept);
    QVERIFY(file.version().stamp().isSameFile(stampOf(name, FileCalls::system())));
    QCOMPARE(keptFiles().size(), kept.isEmpty() ? 0 : 1);
}

void SafeFileMeanwhileTest::removedFileKeepsItsRights()
{
    constexpr mode_t rights = 0614;
    const QByteArray name = prepare(Way::Replace);
    QCOMPARE(::chmod(name.constData(), rights), 0);
    SafeFile file(name);
    QVERIFY(file.open());
    QVERIFY(file.write(m_new));
    QCOMPARE(::unlink(name.constData()), 0);
    QVERIFY(file.commit());
    struct stat info;
    QCOMPARE(::stat(name.constData(), &info), 0);
    QCOMPARE(info.st_mode & 07777, rights);
    QCOMPARE(contentOf(name), m_new);
}

void SafeFileMeanwhileTest::othersPutAFolderThere()
{
    const QByteArray name = prepare(Way::Replace);
    SafeFile file(name);
    QVERIFY(file.open());
    QVERIFY(file.write(m_new));
    QCOMPARE(::unlink(name.constData()), 0);
    QCOMPARE(::mkdir(name.constData(), 0700), 0);
    QVERIFY(!file.commit());
    QCOMPARE(listing(), QStringList{ QStringLiteral("file.txt") });
}

/// Also where it was written before it was opened, but after it was looked at.
void SafeFileMeanwhileTest::unexpectedContentIsKept()
{
    const QByteArray name = prepare(Way::Replace);
    SafeFile file(name);
    file.keepUnlessOf(stampOf(name, FileCalls::system()));
    writeFile(name, "of others\n");
    QVERIFY(save(file, m_new));
    QCOMPARE(contentOf(name), m_new);
    QCOMPARE(contentOf(file.keptCopy()), QByteArray("of others\n"));
}

void SafeFileMeanwhileTest::othersRenameTheFolder_data()
{
    QTest::addColumn<Way>("way");
    QTest::addColumn<bool>("isCommitted");
    QTest::newRow("committed") << Way::Replace << true;
    QTest::newRow("a new file, committed") << Way::NewFile << true;
    QTest::newRow("given up") << Way::Replace << false;
}

/// Nothing is left in it.
void SafeFileMeanwhileTest::othersRenameTheFolder()
{
    QFETCH(Way, way);
    QFETCH(bool, isCommitted);
    const QByteArray name = prepare(way);
    const QStringList before = listing();
    SafeFile file(name);
    QVERIFY(file.open());
    QVERIFY(file.write(m_new));
    const QByteArray here = m_folder.chopped(1);
    const QByteArray away = here + "-away";
    QCOMPARE(::rename(here.constData(), away.constData()), 0);
    if (isCommitted)
        QVERIFY(!file.commit());
    else
        file.giveUp();
    QCOMPARE(::rename(away.constData(), here.constData()), 0);
    QCOMPARE(listing(), before);
    QCOMPARE(way == Way::Replace ? contentOf(name) : m_old, m_old);
}

REGISTER_TEST(runCoreTest<SafeFileMeanwhileTest>)
#include "safefilemeanwhile_test.moc"
