#include "document/knownfile.h"

#include "tests/document/documentfolder.h"
#include "tests/testprogram.h"

#include <QTest>

/// What a document knows of its file, and what of it a save has to keep.
class KnownFileTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void isNewUntilItIsWritten();
    void hasNoNameUntilItIsSaved();
    void isKeptWhereItCouldNotBeRead();
    void isKeptOnceWhereItsUserWantsIt();
    void anotherFileIsNotKept();
    void hasTheNameItWasWrittenUnder();
    void knowsWhatOthersDo();

private:
    FileVersion onDisk() const;
    bool isToBeKept(const QString &name) { return m_file->beginWriting(path(), name).keepsOldContent; }
    QString path() const { return m_folder->path(); }

    std::unique_ptr<DocumentFolder> m_folder;
    std::unique_ptr<KnownFile> m_file;
    const QString m_other = QStringLiteral("b.txt");
};

void KnownFileTest::init()
{
    m_folder = std::make_unique<DocumentFolder>();
    QVERIFY(m_folder->write(fileName, "a") && m_folder->write(m_other, "b"));
    m_file = std::make_unique<KnownFile>();
}

FileVersion KnownFileTest::onDisk() const
{
    ContentHash content;
    content.add(m_folder->read(fileName));
    return { stampOf(QFile::encodeName(path() + fileName), FileCalls::system()), content };
}

void KnownFileTest::isNewUntilItIsWritten()
{
    m_file->setName(path(), fileName);
    QVERIFY(m_file->isNew());
    const SaveTarget target = m_file->beginWriting(path(), fileName);
    QVERIFY(m_file->isNew());
    m_file->endWriting(target, onDisk());
    QVERIFY(!m_file->isNew());
}

void KnownFileTest::hasNoNameUntilItIsSaved()
{
    QCOMPARE(m_file->path() + m_file->name(), QString());
    QVERIFY(!m_file->isNew());
    m_file->setName({}, fileName);
    QVERIFY(!m_file->isNew());
    QCOMPARE(m_file->change(), FileChange::None);
}

void KnownFileTest::isKeptWhereItCouldNotBeRead()
{
    m_file->beginReading(path(), fileName);
    QVERIFY(!m_file->isNew());
    QVERIFY(isToBeKept(fileName));
    QVERIFY(!m_file->beginWriting(path(), fileName).wasToBeKept);
    m_file->endReading(onDisk());
    QVERIFY(!isToBeKept(fileName));
}

void KnownFileTest::isKeptOnceWhereItsUserWantsIt()
{
    m_file->beginReading(path(), fileName);
    m_file->endReading(onDisk());
    m_file->keep();
    QVERIFY(isToBeKept(fileName)); // and nothing was written
    const SaveTarget target = m_file->beginWriting(path(), fileName);
    QVERIFY(target.wasToBeKept && target.keepsOldContent);
    m_file->endWriting(target, onDisk());
    QVERIFY(!isToBeKept(fileName));
}

/// What is to be kept is the content of one file, and waits until that is written.
void KnownFileTest::anotherFileIsNotKept()
{
    m_file->setName(path(), fileName);
    m_file->keep();
    QVERIFY(!isToBeKept(m_other));
    m_file->beginReading(path(), fileName);
    QVERIFY(!isToBeKept(m_other));
    QVERIFY(isToBeKept(fileName));
    m_file->setName(path(), fileName);
    QVERIFY(!isToBeKept(fileName));
}

void KnownFileTest::hasTheNameItWasWrittenUnder()
{
    m_file->setName(path(), fileName);
    const SaveTarget target = m_file->beginWriting(path(), m_other);
    QCOMPARE(m_file->name(), fileName);
    m_file->endWriting(target, {});
    QCOMPARE(m_file->path() + m_file->name(), path() + m_other);
}

void KnownFileTest::knowsWhatOthersDo()
{
    m_file->beginReading(path(), fileName);
    m_file->endReading(onDisk());
    QCOMPARE(m_file->change(), FileChange::None);
    QVERIFY(m_folder->write(fileName, "changed"));
    QCOMPARE(m_file->change(), FileChange::Changed);
    m_file->acknowledge();
    QCOMPARE(m_file->change(), FileChange::None);
    QCOMPARE(m_file->beginWriting(path(), fileName).before.overtaken, Overtaken::ByProgram);
    m_file->beginReading(path(), m_other);
    QCOMPARE(m_file->version().stamp(), FileStamp());
}

REGISTER_TEST(runPlainTest<KnownFileTest>)
#include "knownfile_test.moc"
