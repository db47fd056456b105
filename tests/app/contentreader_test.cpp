#include "app/contentreader.h"

#include "app/documentfile.h"
#include "tests/app/testwindow.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

/// Reading through a file that others write meanwhile.
class ContentReaderTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void fileThatIsWrittenMeanwhileIsReadOnceMore();
    void tellsOnceHoweverOftenItIsAsked();
    void tellsNothingOfWhatIsClosedMeanwhile();
    void tellsNothingOfAnotherFile();
    void tellsNothingOfWhatCannotBeReadToItsEnd();

private:
    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<ctlEditer> m_editor;
};

void ContentReaderTest::init()
{
    m_files = std::make_unique<TestFiles>();
    m_files->write(u"a"_s, "text");
    m_editor = std::make_unique<ctlEditer>(nullptr);
    QVERIFY(m_editor->loadFile(m_files->folder(), u"a"_s, 0));
}

/// It is written while it is read for the first time.
void ContentReaderTest::fileThatIsWrittenMeanwhileIsReadOnceMore()
{
    const QByteArray name = fullName(*m_editor).toUtf8();
    int reads = 0;
    FileCalls calls = FileCalls::system();
    calls.pread = [&](int file, void *bytes, size_t count, off_t offset) {
        const timespec times[] = { { 1000, 0 }, { 1000, 0 } };
        if (++reads == 1)
            ::utimensat(AT_FDCWD, name.constData(), times, 0);
        return ::pread(file, bytes, count, offset);
    };
    SteppedRunner jobs;
    ContentReader reader(jobs, calls);
    QList<SeenContent> seen;
    connect(&reader, &ContentReader::seen, this,
        [&](const ctlEditer *, const SeenContent &content) { seen << content; });
    reader.read(m_editor.get());
    reader.read(m_editor.get()); // as the system tells of the writing
    QCOMPARE(jobs.runAll(), 2);
    QCOMPARE(seen.size(), 1);
    QCOMPARE(seen.first().stamp.modified, qint64{ 1000 } * 1'000'000'000);
    QCOMPARE(seen.first().hash, std::as_const(*m_editor).document().file().version().content().value());
}

void ContentReaderTest::tellsOnceHoweverOftenItIsAsked()
{
    m_files->write(u"b"_s, "other");
    ctlEditer other(nullptr);
    QVERIFY(other.loadFile(m_files->folder(), u"b"_s, 0));
    SteppedRunner jobs;
    ContentReader reader(jobs);
    QList<const ctlEditer *> seen;
    connect(&reader, &ContentReader::seen, this, [&](const ctlEditer *editor) { seen << editor; });
    for (ctlEditer *const editor : { m_editor.get(), m_editor.get(), m_editor.get(), &other })
        reader.read(editor);
    jobs.runAll();
    QCOMPARE(seen, QList<const ctlEditer *>({ m_editor.get(), &other }));
}

void ContentReaderTest::tellsNothingOfWhatIsClosedMeanwhile()
{
    SteppedRunner jobs;
    ContentReader reader(jobs);
    connect(&reader, &ContentReader::seen, this, [] { QFAIL("told of a document that is closed"); });
    reader.read(m_editor.get());
    m_editor.reset();
    QCOMPARE(jobs.runAll(), 1);
}

void ContentReaderTest::tellsNothingOfAnotherFile()
{
    SteppedRunner jobs;
    ContentReader reader(jobs);
    connect(&reader, &ContentReader::seen, this, [] { QFAIL("told of another file"); });
    reader.read(m_editor.get());
    m_files->write(u"b"_s, "other");
    QVERIFY(m_editor->loadFile(m_files->folder(), u"b"_s, 0));
    jobs.runAll();
}

/// It is longer than what is read at once.
void ContentReaderTest::tellsNothingOfWhatCannotBeReadToItsEnd()
{
    m_files->write(u"a"_s, QByteArray("text\n").repeated(2'000'000));
    bool isBroken = true;
    FileCalls calls = FileCalls::system();
    calls.pread = [&](int file, void *bytes, size_t count, off_t offset) {
        if (!isBroken || offset == 0)
            return ::pread(file, bytes, count, offset);
        errno = EIO;
        return ssize_t{ -1 };
    };
    SteppedRunner jobs;
    ContentReader reader(jobs, calls);
    int seen = 0;
    connect(&reader, &ContentReader::seen, this, [&] { ++seen; });
    reader.read(m_editor.get());
    jobs.runAll();
    QCOMPARE(seen, 0);
    isBroken = false;
    reader.read(m_editor.get());
    jobs.runAll();
    QCOMPARE(seen, 1);
}

REGISTER_TEST(runWindowTest<ContentReaderTest>)
#include "contentreader_test.moc"
