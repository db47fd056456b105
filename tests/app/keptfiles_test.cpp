#include "app/keptfiles.h"

#include "files/untoldcopy.h"
#include "tests/app/documentparts.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

/// What the user is told of copies that saves have kept, without a main window.
class KeptFilesTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_parts = std::make_unique<DocumentParts>(); }
    void cleanup() { m_parts.reset(); }

    void saysNothingWithoutAny();
    void tellsOfTheOnesOfTheLastRun();
    void theLastOneComesFirst();
    void opensTheCopy();
    void whatCannotBeOpenedStays();

private:
    static QByteArray keep(const QByteArray &name, const QByteArray &content)
    {
        makePrivateFolder(FileCalls::system(), stateFolder());
        QFile file(QFile::decodeName(stateFolder() + name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            return {};
        return noteUntold(stateFolder() + name) ? stateFolder() + name : QByteArray();
    }
    const Notice *notice() const { return m_parts->documents.notices().heaviest(nullptr); }
    static QString textOf(const QByteArray &copy)
    {
        return u"The file as it was is kept as %1"_s.arg(QFile::decodeName(copy));
    }

    std::unique_ptr<DocumentParts> m_parts;
};

void KeptFilesTest::saysNothingWithoutAny()
{
    KeptFiles kept(m_parts->documents, m_parts->loader);
    kept.tell();
    QVERIFY(!notice());
}

void KeptFilesTest::tellsOfTheOnesOfTheLastRun()
{
    const QByteArray copy = keep("kept-0-a.txt", "old");
    KeptFiles kept(m_parts->documents, m_parts->loader);
    kept.tell();
    QVERIFY(notice());
    QCOMPARE(notice()->text(), textOf(copy));
    QCOMPARE(untoldCopies(), QList{ copy }); // until it was read
    m_parts->documents.notices().dismiss(NoticeKind::KeptFile, nullptr);
    QVERIFY(!notice());
    QVERIFY(untoldCopies().isEmpty());
    QVERIFY(QFile::exists(QFile::decodeName(copy)));
}

void KeptFilesTest::theLastOneComesFirst()
{
    KeptFiles kept(m_parts->documents, m_parts->loader);
    ctlEditer *const editor = m_parts->documents.add();
    const QByteArray first = keep("kept-0-a.txt", "first");
    const QByteArray second = keep("kept-1-a.txt", "second");
    emit editor->fileKept(QFile::decodeName(first));
    emit editor->fileKept(QFile::decodeName(second));
    m_parts->documents.close(editor); // it is told of all the same
    QCOMPARE(notice()->text(), textOf(second));
    m_parts->documents.notices().dismiss(NoticeKind::KeptFile, nullptr);
    QCOMPARE(notice()->text(), textOf(first));
    QCOMPARE(untoldCopies(), QList{ first });
}

void KeptFilesTest::opensTheCopy()
{
    keep("kept-0-a.txt", "old");
    KeptFiles kept(m_parts->documents, m_parts->loader);
    kept.tell();
    notice()->offers.front().act();
    QCOMPARE(m_parts->text(), u"old"_s);
    QCOMPARE(m_parts->documents.current()->path(), QString());
    QCOMPARE(m_parts->documents.current()->name(), u"kept-0-a.txt"_s);
    QVERIFY(!notice());
    QVERIFY(untoldCopies().isEmpty());
}

void KeptFilesTest::whatCannotBeOpenedStays()
{
    const QByteArray copy = keep("kept-0-a.txt", "old");
    KeptFiles kept(m_parts->documents, m_parts->loader);
    kept.tell();
    QVERIFY(QFile::remove(QFile::decodeName(copy)));
    const MessageBoxes boxes;
    notice()->offers.front().act();
    QCOMPARE(boxes.count(), 1);
    QVERIFY(notice());
    QVERIFY(m_parts->documents.editors().isEmpty());
}

REGISTER_TEST(runWindowTest<KeptFilesTest>)
#include "keptfiles_test.moc"
