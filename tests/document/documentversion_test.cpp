#include "document/documentversion.h"

#include "files/readfile.h"
#include "tests/document/documentfolder.h"
#include "tests/testprogram.h"

#include <QTest>

#include <unistd.h>

/// Whether another document of the program has written the file that one is about to write.
class DocumentVersionTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void ownWritesAreNoNews();
    void writesOfOthersAreNews();
    void readingMakesThemKnown();
    void anotherFileIsKnownSinceTheBeginning();
    void aFileIsKnownByAnyOfItsNames();
    void failedWriteCountsForNothing();
    void whatTheDiskDoesNotTellMayBeNews();

private:
    /// Writes a file anew, as a save does; false when that was news to the document.
    bool write(DocumentVersion &version, const QString &name, const QString &own);
    QByteArray full(const QString &name) const { return QFile::encodeName(m_folder->path() + name); }

    std::unique_ptr<DocumentFolder> m_folder;
    const QString m_a = QStringLiteral("a");
    const QString m_b = QStringLiteral("b");
};

void DocumentVersionTest::init()
{
    m_folder = std::make_unique<DocumentFolder>();
    QVERIFY(m_folder->write(m_a, "a") && m_folder->write(m_b, "b"));
}

bool DocumentVersionTest::write(DocumentVersion &version, const QString &name, const QString &own)
{
    const bool isNews =
        version.beginWriting(full(name), own.isEmpty() ? QByteArray() : full(own)).overtaken != Overtaken::No;
    const QString aside = QStringLiteral("aside");
    const bool isWritten =
        m_folder->write(aside, "new") && ::rename(full(aside).constData(), full(name).constData()) == 0;
    version.endWriting(full(name), {});
    return isWritten && !isNews;
}

void DocumentVersionTest::ownWritesAreNoNews()
{
    DocumentVersion version;
    version.setRead({});
    QVERIFY(write(version, m_a, m_a));
    QVERIFY(write(version, m_a, m_a));
    QVERIFY(write(version, m_b, m_a));
    QVERIFY(write(version, m_a, m_b));
}

void DocumentVersionTest::writesOfOthersAreNews()
{
    DocumentVersion one;
    DocumentVersion other;
    QVERIFY(write(other, m_a, m_a));
    QVERIFY(!write(one, m_a, m_a));
    QVERIFY(write(one, m_a, m_a));
    QVERIFY(!write(other, m_a, m_a));
}

void DocumentVersionTest::readingMakesThemKnown()
{
    DocumentVersion one;
    DocumentVersion other;
    QVERIFY(write(other, m_a, m_a));
    one.setRead({});
    QVERIFY(write(one, m_a, m_a));
}

/// What was written over knowingly in one's own file says nothing of other files.
void DocumentVersionTest::anotherFileIsKnownSinceTheBeginning()
{
    DocumentVersion other;
    QVERIFY(write(other, m_b, m_b));
    DocumentVersion one;
    QVERIFY(write(one, m_b, QString()));
    DocumentVersion third;
    QVERIFY(write(other, m_a, m_b));
    QVERIFY(write(third, m_b, m_b));
    QVERIFY(!write(third, m_a, m_b));
}

void DocumentVersionTest::aFileIsKnownByAnyOfItsNames()
{
    const QString link = QStringLiteral("link");
    QCOMPARE(::symlink(full(m_a).constData(), full(link).constData()), 0);
    DocumentVersion one;
    DocumentVersion other;
    QVERIFY(write(other, m_a, m_a));
    QCOMPARE(one.beginWriting(full(link), full(link)).overtaken, Overtaken::ByDocument);
}

void DocumentVersionTest::failedWriteCountsForNothing()
{
    DocumentVersion one;
    DocumentVersion other;
    QCOMPARE(other.beginWriting(full(m_a), full(m_a)).overtaken, Overtaken::No);
    QVERIFY(write(one, m_a, m_a));
}

/// A copy too many is better than a text too few.
void DocumentVersionTest::whatTheDiskDoesNotTellMayBeNews()
{
    QByteArray bytes;
    FileStamp stamp;
    QVERIFY(!readFileFrom(m_folder->path() + m_a, 0, bytes, stamp));
    ContentHash content;
    content.add(bytes);
    const FileVersion read(stamp, content);
    int calls = 0, failing = 0;
    FileCalls system = FileCalls::system();
    system.stat = [&](const char *name, struct stat *info) {
        errno = EIO;
        return ++calls == failing ? -1 : ::stat(name, info);
    };
    const auto overtaken = [&] {
        DocumentVersion version(system);
        version.setRead(read);
        calls = 0;
        return version.beginWriting(full(m_a), full(m_a)).overtaken;
    };
    QCOMPARE(overtaken(), Overtaken::No);
    QVERIFY(calls > 2);
    for (const int all = calls; ++failing <= all;)
        QCOMPARE(overtaken(), Overtaken::ByProgram);
}

REGISTER_TEST(runPlainTest<DocumentVersionTest>)
#include "documentversion_test.moc"
