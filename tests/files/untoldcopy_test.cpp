#include "files/untoldcopy.h"

#include "files/statefolder.h"
#include "tests/testprogram.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class UntoldCopyTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void isUntoldUntilItIsTold();
    void goneCopiesAreForgotten();
    void withoutAFolderThereIsNone();
    void cannotBeNoted();

private:
    static QDir folder() { return QDir(QFile::decodeName(stateFolder())); }
    static QByteArray make(const QByteArray &name)
    {
        makePrivateFolder(FileCalls::system(), stateFolder());
        QFile file(QFile::decodeName(stateFolder() + name));
        return file.open(QIODevice::WriteOnly) ? stateFolder() + name : QByteArray();
    }
};

void UntoldCopyTest::init()
{
    folder().removeRecursively();
}

void UntoldCopyTest::isUntoldUntilItIsTold()
{
    const QByteArray copy = make("kept-0-a.txt");
    QCOMPARE(untoldCopies(), QList<QByteArray>());
    QVERIFY(noteUntold(copy));
    QCOMPARE(untoldCopies(), QList{ copy });
    noteTold(copy);
    QCOMPARE(untoldCopies(), QList<QByteArray>());
    QCOMPARE(folder().entryList(QDir::Files), QStringList{ u"kept-0-a.txt"_s });
}

void UntoldCopyTest::goneCopiesAreForgotten()
{
    const QByteArray copy = make("kept-0-a.txt");
    QVERIFY(noteUntold(copy));
    QVERIFY(QFile::remove(QFile::decodeName(copy)));
    QCOMPARE(untoldCopies(), QList<QByteArray>());
    QCOMPARE(folder().entryList(QDir::Files), QStringList());
}

void UntoldCopyTest::withoutAFolderThereIsNone()
{
    QCOMPARE(untoldCopies(), QList<QByteArray>());
}

void UntoldCopyTest::cannotBeNoted()
{
    const QByteArray copy = make("kept-0-a.txt");
    FileCalls calls = FileCalls::system();
    calls.open = [](const char *, int, mode_t) {
        errno = ENOSPC;
        return -1;
    };
    QVERIFY(!noteUntold(copy, calls));
    QCOMPARE(untoldCopies(), QList<QByteArray>());
}

REGISTER_TEST(runPlainTest<UntoldCopyTest>)
#include "untoldcopy_test.moc"
