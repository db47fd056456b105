#include "files/contenthash.h"

#include "tests/testprogram.h"

#include <QByteArray>
#include <QTest>

#include <set>

namespace {

QByteArray someBytes(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    char *const begin = bytes.data();
    for (qsizetype i = 0; i < size; ++i)
        begin[i] = char(i * i / 7);
    return bytes;
}

ContentHash contentHashOf(QByteArrayView bytes)
{
    ContentHash hash;
    hash.add(bytes);
    return hash;
}

} // namespace

class ContentHashTest : public QObject {
    Q_OBJECT

private slots:
    void doesNotMindThePieces();
    void everyByteAndTheLengthCount();
    void endIsThatOfTheLastBytes_data();
    void endIsThatOfTheLastBytes();
    void isTheSameInEveryProcess();
};

void ContentHashTest::doesNotMindThePieces()
{
    const QByteArray bytes = someBytes(20000);
    for (const qsizetype before : { qsizetype{ 0 }, qsizetype{ ContentHash::segment } - 5000 }) {
        const ContentHash start = contentHashOf(QByteArray(before, 's'));
        ContentHash whole = start;
        whole.add(bytes);
        for (const qsizetype part : { 1, 7, 31, 32, 33, 4096, 9000 }) {
            ContentHash hash = start;
            for (qsizetype at = 0; at < bytes.size(); at += part)
                hash.add(QByteArrayView(bytes).sliced(at, qMin(part, bytes.size() - at)));
            QCOMPARE(hash.value(), whole.value());
            QCOMPARE(hash.endValue(), whole.endValue());
            QCOMPARE(hash.size(), before + bytes.size());
        }
    }
}

void ContentHashTest::everyByteAndTheLengthCount()
{
    constexpr qsizetype size = 100;
    std::set<quint64> values;
    for (qsizetype length = 0; length <= size; ++length)
        values.insert(contentHashOf(QByteArray(length, '\0')).value());
    for (qsizetype at = 0; at < size; ++at) {
        QByteArray bytes(size, '\0');
        bytes[at] = '\1';
        values.insert(contentHashOf(bytes).value());
    }
    QCOMPARE(values.size(), size_t{ 2 * size + 1 });
}

void ContentHashTest::endIsThatOfTheLastBytes_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("start");
    constexpr qint64 segment = ContentHash::segment;
    QTest::newRow("nothing") << qint64{ 0 } << qint64{ 0 };
    QTest::newRow("one, not full") << segment - 1 << qint64{ 0 };
    QTest::newRow("one") << segment << qint64{ 0 };
    QTest::newRow("two, not full") << 2 * segment - 1 << qint64{ 0 };
    QTest::newRow("two") << 2 * segment << segment;
    QTest::newRow("two and some") << 2 * segment + 33 << segment;
    QTest::newRow("three") << 3 * segment << 2 * segment;
}

void ContentHashTest::endIsThatOfTheLastBytes()
{
    QFETCH(qint64, size);
    QFETCH(qint64, start);
    const QByteArray bytes = someBytes(size);
    const ContentHash whole = contentHashOf(bytes);
    QCOMPARE(whole.endStart(), start);
    QCOMPARE(whole.endValue(), contentHashOf(QByteArrayView(bytes).sliced(start)).value());
    QCOMPARE(whole.endValue() == whole.value(), start == 0);
}

/// Journals have it.
void ContentHashTest::isTheSameInEveryProcess()
{
    QCOMPARE(contentHashOf({}).value(), quint64{ 11490760306429815065U });
    QCOMPARE(contentHashOf("Marlo!Pad, and more than one block of it\n").value(),
        quint64{ 12845686121598065077U });
}

REGISTER_TEST(runPlainTest<ContentHashTest>)
#include "contenthash_test.moc"
