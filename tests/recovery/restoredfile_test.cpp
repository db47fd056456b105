#include "files/oldcopy.h"
#include "recovery/basereading.h"
#include "tests/recovery/journalbytes.h"
#include "tests/testprogram.h"

#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// What comes back of a text whose file is as it was, has changed, is half written or has the text already.
class RestoredFileTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<RecoveryFolder>(); }

    void largeBase_data();
    void largeBase();
    void largeBaseIsKnownByItsFile_data();
    void largeBaseIsKnownByItsFile();
    void baseIsInTheCopyOfAnInterruptedSave_data();
    void baseIsInTheCopyOfAnInterruptedSave();
    void savedTextIsKnown_data();
    void savedTextIsKnown();

private:
    using Outcome = Restored::Outcome;

    std::unique_ptr<RecoveryFolder> m_folder;
};

void RestoredFileTest::largeBase_data()
{
    QTest::addColumn<int>("lines"); // of 100 bytes
    QTest::addColumn<int>("change");
    QTest::addColumn<int>("outcome");
    QTest::newRow("100 MB, unchanged") << 1000000 << 0 << int(Outcome::Edited);
    QTest::newRow("touched") << 100000 << 1 << int(Outcome::Edited);
    QTest::newRow("touched, with a journal that was made anew") << 100000 << 5 << int(Outcome::Edited);
    QTest::newRow("grown") << 100000 << 2 << int(Outcome::New);
    QTest::newRow("another") << 100000 << 3 << int(Outcome::Parts);
    QTest::newRow("gone") << 100000 << 4 << int(Outcome::Parts);
}

/// Of a file this long the journal keeps no copy.
void RestoredFileTest::largeBase()
{
    QFETCH(int, lines);
    QFETCH(int, change);
    QFETCH(int, outcome);
    const QByteArray line = QByteArray(99, 'a') + '\n';
    const QByteArray content = line.repeated(lines);
    const QString name = m_folder->documents().path() + u"file"_s;
    QVERIFY(m_folder->documents().write(u"file"_s, content));
    qint64 length = 0;
    {
        Run run(*m_folder);
        QVERIFY(!run.document.load(m_folder->documents().path(), u"file"_s, {}, {}));
        run.document.replace(Offset(5000000), 3, u"edited");
        run.document.replace(Offset(5), 0, u"also edited");
        QVERIFY(run.pause());
        if (change == 5) {
            const QString journals = QFile::decodeName(m_folder->journals());
            QVERIFY(QFile::remove(journals + m_folder->files().filter(u".journal"_s).at(0)));
            run.document.replace({}, 0, u"x");
            run.document.replace({}, 1, u"");
            QVERIFY(run.pause());
        }
        length = run.document.store().length();
    }
    QVERIFY(JournalBytes::only(*m_folder).size() < 65536);
    constexpr timespec longAgo[] = { { 1000, 0 }, { 1000, 0 } };
    if (change == 1 || change == 5)
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(name).constData(), longAgo, 0), 0);
    else if (change == 2)
        QVERIFY(m_folder->documents().write(u"file"_s, content + "more\n"));
    else if (change == 3)
        QVERIFY(m_folder->documents().write(u"file"_s, "b" + content));
    else if (change == 4)
        QVERIFY(QFile::remove(name));
    TextDocument document;
    QCOMPARE(int(restore(m_folder->leftBehind().at(0).journal, document).outcome), outcome);
    const TextStore &store = document.store();
    if (outcome == int(Outcome::Parts)) {
        QVERIFY(store.text().startsWith(u"\n[...]\n"));
        QVERIFY(store.text().contains(u"also edited"));
        QVERIFY(store.text().contains(u"aedited"_s) || store.text().contains(u"\nedited"_s));
        return;
    }
    QCOMPARE(store.length(), length);
    QCOMPARE(store.text({}, 20), u"aaaaaalso editedaaaa"_s);
    QCOMPARE(store.text(Offset(5000000), 20), u"aaaaaaaaaa\neditedaaa"_s);
}

void RestoredFileTest::largeBaseIsKnownByItsFile_data()
{
    QTest::addColumn<bool>("isChanged");
    QTest::addColumn<bool>("hasItsTimes");
    QTest::addColumn<int>("outcome");
    QTest::newRow("as it was") << false << true << int(Outcome::Edited);
    QTest::newRow("touched") << false << false << int(Outcome::Edited);
    QTest::newRow("another of its length") << true << false << int(Outcome::Parts);
    QTest::newRow("another of its length and times") << true << true << int(Outcome::Parts);
}

/// Also where the program was killed before it had read through the text.
void RestoredFileTest::largeBaseIsKnownByItsFile()
{
    QFETCH(bool, isChanged);
    QFETCH(bool, hasItsTimes);
    QFETCH(int, outcome);
    QByteArray content = QByteArray("0123456\n").repeated((BaseReading::mostKept >> 3) + 1);
    const QByteArray name = QFile::encodeName(m_folder->documents().path()) + "file";
    QVERIFY(m_folder->documents().write(u"file"_s, content));
    struct stat info = {};
    QCOMPARE(::stat(name.constData(), &info), 0);
    {
        Run run(*m_folder);
        QVERIFY(!run.document.load(m_folder->documents().path(), u"file"_s, {}, {}));
        run.document.replace(Offset(8), 0, u"edited ");
        QVERIFY(run.pause());
    }
    QByteArray bytes = JournalBytes::only(*m_folder);
    bytes.chop(JournalRecord::headSize + contentOf(BaseSeen()).size());
    QVERIFY(QFile::resize(QFile::decodeName(m_folder->leftBehind().at(0).journal), bytes.size()));
    if (isChanged)
        content.replace("6\n", "x\n");
    QVERIFY(m_folder->documents().write(u"file"_s, content));
    const timespec times[] = { info.st_mtim,
        { info.st_mtim.tv_sec - (hasItsTimes ? 0 : 9), info.st_mtim.tv_nsec } };
    QCOMPARE(::utimensat(AT_FDCWD, name.constData(), times, 0), 0);
    TextDocument document;
    QCOMPARE(int(restore(m_folder->leftBehind().at(0).journal, document).outcome), outcome);
    QVERIFY(document.store().text({}, qMin<qint64>(100, document.store().length())).contains(u"edited "));
}

void RestoredFileTest::baseIsInTheCopyOfAnInterruptedSave_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("isUtf16");
    QTest::addColumn<bool>("isByLink");
    QTest::addColumn<bool>("isAllRead"); // before the program was killed
    const QByteArray line = "0123456\n";
    QTest::newRow("read through") << line << false << false << true;
    QTest::newRow("not read through") << line << false << false << false;
    QTest::newRow("opened by a link") << line << false << true << true;
    QTest::newRow("read as UTF-16") << QByteArray("0\n").replace("0\n", QByteArray("0\0\n\0", 4)) << true
                                    << false << true;
}

/// A file too long for its journal to hold, which a save had begun to write over in place.
void RestoredFileTest::baseIsInTheCopyOfAnInterruptedSave()
{
    QFETCH(QByteArray, line);
    QFETCH(bool, isUtf16);
    QFETCH(bool, isByLink);
    QFETCH(bool, isAllRead);
    const QByteArray mark = isUtf16 ? QByteArray("\xFF\xFE") : QByteArray();
    const QByteArray content =
        mark + line.repeated(BaseReading::mostKept / (line.size() / (isUtf16 ? 2 : 1)) + 1);
    const DocumentFolder &documents = m_folder->documents();
    QVERIFY(documents.write(u"file"_s, content));
    const QString name = isByLink ? u"link"_s : u"file"_s;
    if (isByLink)
        QVERIFY(QFile::link(documents.path() + u"file"_s, documents.path() + name));
    QString edited;
    {
        Run run(*m_folder);
        if (isUtf16) {
            TextStore text;
            QVERIFY(!run.document.readUtf16(documents.path(), name, *utf16FormOf(content), {}, text));
            run.document.setText(std::move(text));
        } else {
            QVERIFY(!run.document.load(documents.path(), name, {}, {}));
        }
        run.document.replace(Offset(8), 0, u"edited ");
        edited = run.text();
        QVERIFY(run.pause());
    }
    if (!isAllRead) {
        QByteArray bytes = JournalBytes::only(*m_folder);
        bytes.chop(JournalRecord::headSize + contentOf(BaseSeen()).size());
        QVERIFY(QFile::resize(QFile::decodeName(m_folder->leftBehind().at(0).journal), bytes.size()));
    }
    OldCopy copy(FileCalls::system());
    QVERIFY(copy.make(QFile::encodeName(documents.path()) + "file"));
    const QByteArray left = copy.leave();
    QVERIFY(documents.write(u"file"_s, "edited " + content.first(content.size() / 2)));

    TextDocument document;
    QCOMPARE(restore(m_folder->leftBehind().at(0).journal, document).outcome, Outcome::New);
    QVERIFY(document.store().text() == edited);
    QVERIFY(document.file().path().isEmpty());
    QVERIFY(QFile::exists(QFile::decodeName(left)));
    removeLostCopy(left);
}

void RestoredFileTest::savedTextIsKnown_data()
{
    QTest::addColumn<int>("lines"); // of 100 bytes
    QTest::addColumn<bool>("isCopied"); // the old text, for a save in place
    QTest::addColumn<QByteArray>("before"); // in the file now, in another place
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<Outcome>("outcome");
    const QByteArray none;
    constexpr int few = 100, many = 100'000;
    QTest::newRow("short") << few << false << none << none << Outcome::Saved;
    QTest::newRow("long") << many << false << none << none << Outcome::Saved;
    QTest::newRow("long, its copy not removed") << many << true << none << none << Outcome::Saved;
    QTest::newRow("short, another near the edit")
        << few << false << QByteArray("edited") << QByteArray("Edited") << Outcome::New;
    QTest::newRow("long, another near the edit")
        << many << false << QByteArray("edited") << QByteArray("Edited") << Outcome::Parts;
    QTest::newRow("long, its copy not removed, another near the edit")
        << many << true << QByteArray("edited") << QByteArray("Edited") << Outcome::New;
    QTest::newRow("short, longer") << few << false << QByteArray("edited") << QByteArray("edited more")
                                   << Outcome::New;
    QTest::newRow("short, other line ends")
        << few << false << QByteArray("\n") << QByteArray("\r\n") << Outcome::New;
}

/// The program was killed when all was written and nobody knew yet: nothing is missing, and nothing edited.
void RestoredFileTest::savedTextIsKnown()
{
    QFETCH(int, lines);
    QFETCH(bool, isCopied);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(Outcome, outcome);
    const QByteArray content = (QByteArray(99, 'a') + '\n').repeated(lines);
    const DocumentFolder &documents = m_folder->documents();
    QVERIFY(documents.write(u"file"_s, content));
    QString edited;
    {
        Run run(*m_folder);
        QVERIFY(!run.document.load(documents.path(), u"file"_s, {}, {}));
        run.document.replace(Offset(5000), 3, u"edited");
        edited = run.text();
        QVERIFY(run.pause());
    }
    QByteArray copyName;
    if (isCopied) {
        OldCopy copy(FileCalls::system());
        QVERIFY(copy.make(QFile::encodeName(documents.path()) + "file"));
        copyName = copy.leave();
    }
    QVERIFY(documents.write(u"file"_s, edited.toLatin1().replace(before, after)));

    Run next(*m_folder);
    const Restored restored = next.journals.restore(m_folder->leftBehind().at(0), next.document);
    QCOMPARE(restored.outcome, outcome);
    const bool isSaved = outcome == Outcome::Saved;
    QCOMPARE(next.document.isEdited(), !isSaved);
    QCOMPARE(next.document.file().path().isEmpty(), !isSaved);
    QVERIFY(outcome == Outcome::Parts ? next.text().contains(u"edited"_s) : next.text() == edited);
    QVERIFY(next.pause());
    QCOMPARE(m_folder->files().size(), isSaved ? 0 : 1);
    if (isCopied)
        removeLostCopy(copyName);
}

REGISTER_TEST(runCoreTest<RestoredFileTest>)
#include "restoredfile_test.moc"
