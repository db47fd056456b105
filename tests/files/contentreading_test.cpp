#include "files/contentreading.h"

#include "tests/files/savedfile.h"
#include "tests/testprogram.h"

/// Reading through a file.
class ContentReadingTest : public QObject, SavedFile {
    Q_OBJECT

private slots:
    void init();
    void findsWhatIsInIt();
    void readsInSteps();
    void findsNothingInWhatIsNoFile();
    void contentIsThatOfOneMoment_data();
    void contentIsThatOfOneMoment();
    void failsInTheMiddle();

private:
    static constexpr qint64 severalSteps = qint64{ 9 } << 20;

    static bool readOut(ContentReading &reading)
    {
        while (reading.step()) { }
        return reading.seen().has_value();
    }

    QByteArray m_name;
};

void ContentReadingTest::init()
{
    prepareFolder();
    m_name = m_folder + "large";
    writeFile(m_name, QByteArray(severalSteps, 'x'));
}

void ContentReadingTest::findsWhatIsInIt()
{
    ContentReading reading(m_name, FileCalls::system());
    QVERIFY(readOut(reading));
    ContentHash hash;
    hash.add(QByteArray(severalSteps, 'x'));
    QCOMPARE(reading.seen()->hash, hash.value());
    QVERIFY(reading.seen()->stamp == stampOf(m_name, FileCalls::system()));
}

void ContentReadingTest::readsInSteps()
{
    ContentReading reading(m_name, FileCalls::system());
    QVERIFY(reading.step());
    QVERIFY(!reading.seen());
    QVERIFY(reading.step());
    QVERIFY(!reading.step());
    QVERIFY(reading.seen());
    ::truncate(m_name.constData(), 0);
    ContentReading empty(m_name, FileCalls::system());
    QVERIFY(!empty.step());
    QCOMPARE(empty.seen()->hash, ContentHash().value());
}

void ContentReadingTest::findsNothingInWhatIsNoFile()
{
    for (const QByteArray &name : { m_folder, m_folder + "missing" }) {
        ContentReading reading(name, FileCalls::system());
        QVERIFY(!readOut(reading));
    }
}

void ContentReadingTest::contentIsThatOfOneMoment_data()
{
    QTest::addColumn<int>("steps");
    QTest::newRow("before the second step") << 1;
    QTest::newRow("before the last step") << 2;
}

void ContentReadingTest::contentIsThatOfOneMoment()
{
    QFETCH(int, steps);
    ContentReading reading(m_name, FileCalls::system());
    while (steps-- > 0)
        QVERIFY(reading.step());
    writeFile(m_name, QByteArray(severalSteps, 'x') + "more");
    QVERIFY(!readOut(reading));
}

void ContentReadingTest::failsInTheMiddle()
{
    FileCalls calls = FileCalls::system();
    calls.pread = [](int fd, void *to, size_t size, off_t offset) -> ssize_t {
        if (offset < severalSteps / 2)
            return ::pread(fd, to, size, offset);
        errno = EIO;
        return -1;
    };
    ContentReading reading(m_name, calls);
    QVERIFY(reading.step());
    QVERIFY(!readOut(reading));
}

REGISTER_TEST(runPlainTest<ContentReadingTest>)
#include "contentreading_test.moc"
