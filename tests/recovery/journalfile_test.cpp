#include "recovery/journalfile.h"
#include "recovery/journalfolder.h"
#include "recovery/journalreader.h"
#include "tests/recovery/recoveryfolder.h"
#include "tests/testprogram.h"

#include <QFileInfo>

#include <sys/file.h>

using namespace Qt::StringLiterals;

namespace {

/// A journal's file in a folder that its own making makes.
struct MadeFile {
    MadeFile()
        : isMade(file.create(folder.journals()))
    {
    }
    bool publish() { return file.sync() && file.publish(name); }

    RecoveryFolder folder;
    JournalFile file{ FileCalls::system() };
    const bool isMade;
    const QByteArray name = folder.journals() + newJournalName();
};

/// What a reader finds in a file, as "type: content".
QStringList recordsIn(const QByteArray &name)
{
    QFile file(QFile::decodeName(name));
    QStringList found;
    if (!file.open(QIODevice::ReadOnly))
        return found;
    JournalReader reader(file.handle(), FileCalls::system());
    for (auto record = reader.next(); record; record = reader.next())
        found << u"%1: %2"_s.arg(int(record->type)).arg(QString::fromLatin1(record->content.left(20)));
    return found;
}

} // namespace

/// The file of a journal, written and read again.
class JournalFileTest : public QObject {
    Q_OBJECT

private slots:
    void hasAJournalsNameWhenItIsOne();
    void goesAwayUnpublished();
    void isLockedWhileItIsOpen();
    void oneThatIsTakenIsMadeAgain();
    void failingSyncIsTold();
    void nobodyElseMayRead();
    void readsWhatWasWritten();
    void readsAgainFromTheStart();
    void aChangedByteEndsIt();
};

void JournalFileTest::hasAJournalsNameWhenItIsOne()
{
    MadeFile made;
    QVERIFY(made.isMade);
    QCOMPARE(made.folder.files().size(), 1);
    QVERIFY(isUnfinishedName(made.folder.files()[0].toLatin1()));
    QVERIFY(!made.file.isPublished());
    QVERIFY(made.publish());
    QVERIFY(made.file.isPublished());
    QCOMPARE(
        made.folder.files(), QStringList(QFile::decodeName(made.name.sliced(made.folder.journals().size()))));
}

void JournalFileTest::goesAwayUnpublished()
{
    const RecoveryFolder folder;
    {
        JournalFile file(FileCalls::system());
        QVERIFY(file.create(folder.journals()));
        QCOMPARE(folder.files().size(), 1);
    }
    QCOMPARE(folder.files(), QStringList());
}

void JournalFileTest::isLockedWhileItIsOpen()
{
    const RecoveryFolder folder;
    const QByteArray name = folder.journals() + newJournalName();
    const auto isFree = [&name] {
        QFile file(QFile::decodeName(name));
        return file.open(QIODevice::ReadOnly) && flock(file.handle(), LOCK_EX | LOCK_NB) == 0;
    };
    {
        JournalFile file(FileCalls::system());
        QVERIFY(file.create(folder.journals()) && file.sync() && file.publish(name));
        QVERIFY(!isFree());
    }
    QVERIFY(isFree());
}

/// Who tidies up may come before the lock.
void JournalFileTest::oneThatIsTakenIsMadeAgain()
{
    const RecoveryFolder folder;
    QByteArray taken;
    FileCalls calls = FileCalls::system();
    calls.open = [&taken](const char *name, int flags, mode_t mode) {
        const int file = ::open(name, flags, mode);
        if ((flags & O_CREAT) && taken.isEmpty()) {
            taken = name;
            ::unlink(name);
        }
        return file;
    };
    JournalFile file(calls);
    QVERIFY(file.create(folder.journals()));
    QCOMPARE(folder.files().size(), 1);
}

void JournalFileTest::failingSyncIsTold()
{
    const RecoveryFolder folder;
    bool fails = false;
    FileCalls calls = FileCalls::system();
    calls.fsync = [&fails](int) {
        errno = EIO;
        return fails ? -1 : 0;
    };
    JournalFile file(calls);
    QVERIFY(file.create(folder.journals()));
    fails = true;
    QVERIFY(!file.sync());
    QCOMPARE(file.error(), EIO);
    fails = false;
    QVERIFY(file.sync());
    fails = true;
    QVERIFY(!file.publish(folder.journals() + newJournalName()));
    QVERIFY(file.isPublished());
}

void JournalFileTest::nobodyElseMayRead()
{
    MadeFile made;
    QVERIFY(made.isMade && made.publish());
    struct stat info = {};
    QCOMPARE(stat(made.name.constData(), &info), 0);
    QCOMPARE(int(info.st_mode & 0777), 0600);
    QCOMPARE(stat(made.folder.journals().constData(), &info), 0);
    QCOMPARE(int(info.st_mode & 0777), 0700);
}

void JournalFileTest::readsWhatWasWritten()
{
    MadeFile made;
    QVERIFY(made.isMade);
    const QByteArray large(1 << 20, 'x');
    QVERIFY(made.file.append(RecordType::Base, "base"));
    QVERIFY(made.file.append(RecordType::Edit, large));
    QVERIFY(made.file.append(RecordType::Commit, {}));
    QVERIFY(made.publish());
    QCOMPARE(made.file.size(), QFileInfo(QFile::decodeName(made.name)).size());
    QCOMPARE(recordsIn(made.name), (QStringList{ u"1: base"_s, u"4: "_s + u"x"_s.repeated(20), u"5: "_s }));
}

void JournalFileTest::readsAgainFromTheStart()
{
    MadeFile made;
    QVERIFY(made.isMade && made.file.append(RecordType::Base, "base") && made.publish());
    QFile file(QFile::decodeName(made.name));
    QVERIFY(file.open(QIODevice::ReadOnly));
    JournalReader reader(file.handle(), FileCalls::system());
    QVERIFY(reader.next() && !reader.next() && !reader.hasFailed());
    reader.rewind();
    const auto first = reader.next();
    QVERIFY(first);
    QCOMPARE(first->content, QByteArray("base"));
}

/// Of a record that is not whole, and of those behind it, nothing is read.
void JournalFileTest::aChangedByteEndsIt()
{
    MadeFile made;
    QVERIFY(made.isMade && made.file.append(RecordType::Base, "base"));
    QVERIFY(made.file.append(RecordType::Edit, "edit") && made.file.append(RecordType::Commit, "end"));
    QVERIFY(made.publish());
    QFile file(QFile::decodeName(made.name));
    QVERIFY(file.open(QIODevice::ReadWrite));
    const qint64 at = file.readAll().indexOf("edit");
    QVERIFY(file.seek(at) && file.write("E") == 1 && file.flush());
    QCOMPARE(recordsIn(made.name), QStringList(u"1: base"_s));
}

REGISTER_TEST(runCoreTest<JournalFileTest>)
#include "journalfile_test.moc"
