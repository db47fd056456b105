#include "app/interruptedsaves.h"

#include "files/stagedfolders.h"
#include "tests/app/documentparts.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// What the user is told of copies that interrupted saves have left, without a main window.
class InterruptedSavesTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_parts = std::make_unique<DocumentParts>(); }
    void cleanup() { m_parts.reset(); }

    void saysNothingWithoutAny();
    void tellsOfTheNewestFirst();
    void putOffIsToldAtTheNextStart();
    void opensTheFileAndItsOldText();
    void opensTheOldTextAlone_data();
    void opensTheOldTextAlone();
    void deletesTheCopy();
    void removesWhatIsLeftBesideAFile();
    void removesWhatIsLeftWhereNothingIsOpened();

private:
    QByteArray leave(const QByteArray &digits, const QByteArray &of) const;
    const Notice *notice() const { return m_parts->documents.notices().heaviest(nullptr); }
    void act(int offer) { std::function(notice()->offers.at(size_t(offer)).act)(); }

    std::unique_ptr<DocumentParts> m_parts;
    SteppedRunner m_runner;
};

/// The name of a copy that a save has left, of a file of this name.
QByteArray InterruptedSavesTest::leave(const QByteArray &digits, const QByteArray &of) const
{
    makePrivateFolder(FileCalls::system(), stateFolder());
    const QByteArray name = stateFolder() + ".marlopad-copy-" + digits;
    for (const auto &[file, bytes] : { std::pair(name, "old text"_ba), std::pair(name + ".of", of + '\0') }) {
        QFile written(QFile::decodeName(file));
        if (!written.open(QIODevice::WriteOnly) || written.write(bytes) != bytes.size())
            return {};
    }
    return name;
}

void InterruptedSavesTest::saysNothingWithoutAny()
{
    InterruptedSaves saves(m_parts->documents, m_parts->loader, m_runner);
    saves.tell();
    QVERIFY(!notice());
}

void InterruptedSavesTest::tellsOfTheNewestFirst()
{
    leave("0123456789abc", "/gone/new.txt");
    const QByteArray old = leave("0123456789abd", "/gone/old.txt");
    const timespec times[2] = { { 1000, 0 }, { 1000, 0 } };
    QCOMPARE(::utimensat(AT_FDCWD, old.constData(), times, 0), 0);
    InterruptedSaves saves(m_parts->documents, m_parts->loader, m_runner);
    saves.tell();
    QCOMPARE(notice()->text(), u"Saving new.txt was interrupted. Its old text is kept."_s);
    m_parts->documents.notices().dismiss(NoticeKind::InterruptedSave, nullptr);
    QCOMPARE(notice()->text(), u"Saving old.txt was interrupted. Its old text is kept."_s);
}

void InterruptedSavesTest::putOffIsToldAtTheNextStart()
{
    leave("0123456789abc", "/gone/a.txt");
    for (int start = 0; start < 2; ++start) {
        InterruptedSaves saves(m_parts->documents, m_parts->loader, m_runner);
        saves.tell();
        QVERIFY(notice());
        QCOMPARE(notice()->offers.at(2).text(), u"Later"_s);
        act(2);
        QVERIFY(!notice());
    }
}

void InterruptedSavesTest::opensTheFileAndItsOldText()
{
    const QString file = m_parts->files.write(u"a.txt"_s, "half");
    const QByteArray copy = leave("0123456789abc", file.toUtf8());
    InterruptedSaves saves(m_parts->documents, m_parts->loader, m_runner);
    saves.tell();
    QCOMPARE(notice()->offers.front().text(), u"Open both"_s);
    act(0);
    QCOMPARE(m_parts->tabTexts(), QStringList({ u"a.txt"_s, u"* a.txt before"_s }));
    QCOMPARE(m_parts->documents.editors().first()->text(), u"half"_s);
    QCOMPARE(m_parts->text(), u"old text"_s);
    QVERIFY(QFile::exists(QFile::decodeName(copy)));
    QVERIFY(notice()); // until the user is done with it
}

void InterruptedSavesTest::opensTheOldTextAlone_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("offer");
    QTest::addColumn<QString>("tab");
    QTest::newRow("the file is gone") << "/gone/a.txt"_ba << u"Open both"_s << u"* a.txt before"_s;
    QTest::newRow("the file is not known") << QByteArray() << u"Open it"_s << u"* Old text"_s;
}

void InterruptedSavesTest::opensTheOldTextAlone()
{
    QFETCH(QByteArray, file);
    leave("0123456789abc", file);
    InterruptedSaves saves(m_parts->documents, m_parts->loader, m_runner);
    saves.tell();
    QTEST(notice()->offers.front().text(), "offer");
    act(0);
    QFETCH(QString, tab);
    QCOMPARE(m_parts->tabTexts(), QStringList{ tab });
    QCOMPARE(m_parts->text(), u"old text"_s);
}

void InterruptedSavesTest::deletesTheCopy()
{
    const QByteArray copy = leave("0123456789abc", "/gone/a.txt");
    InterruptedSaves saves(m_parts->documents, m_parts->loader, m_runner);
    saves.tell();
    act(1);
    QVERIFY(!notice());
    QVERIFY(!QFile::exists(QFile::decodeName(copy)));
    QVERIFY(!QFile::exists(QFile::decodeName(copy + ".of")));
}

void InterruptedSavesTest::removesWhatIsLeftBesideAFile()
{
    const InterruptedSaves saves(m_parts->documents, m_parts->loader, m_runner);
    const QString stray = m_parts->files.write(u".a.txt.marlopad-0123456789abc"_s, "half");
    m_parts->open(m_parts->files.write(u"a.txt"_s, "text"));
    QVERIFY(QFile::exists(stray)); // what was read is shown first
    QTRY_VERIFY(!QFile::exists(stray));
}

void InterruptedSavesTest::removesWhatIsLeftWhereNothingIsOpened()
{
    const QString stray = m_parts->files.write(u".a.txt.marlopad-0123456789abc"_s, "half");
    noteStagedFolder(QFile::encodeName(m_parts->files.folder()));
    InterruptedSaves saves(m_parts->documents, m_parts->loader, m_runner);
    saves.tell();
    QVERIFY(QFile::exists(stray)); // behind the window
    m_runner.runAll();
    QVERIFY(!QFile::exists(stray));
}

REGISTER_TEST(runWindowTest<InterruptedSavesTest>)
#include "interruptedsaves_test.moc"
