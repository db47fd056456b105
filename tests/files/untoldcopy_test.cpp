#include "files/untoldcopy.h"

#include "files/statefolder.h"
#include "tests/testprogram.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;

class UntoldCopyTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void isUntoldUntilItIsTold();
    void goneCopiesAreForgotten();
    void copyThatIsBeingKeptIsNotForgotten();
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

/// Its program, which notes first, has yet to give it its name.
void UntoldCopyTest::copyThatIsBeingKeptIsNotForgotten()
{
    const QByteArray before = make(".marlopad-copy-0123456789abc");
    const QByteArray copy = stateFolder() + "kept-0123456789abc-a.txt";
    QVERIFY(noteUntold(copy));
    QCOMPARE(untoldCopies(), QList<QByteArray>());
    QCOMPARE(::rename(before.constData(), copy.constData()), 0);
    QCOMPARE(untoldCopies(), QList{ copy });
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
