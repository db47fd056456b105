#include "document/lineends.h"

#include "document/textdocument.h"
#include "tests/document/documentfolder.h"
#include "tests/document/rewrittenbytes.h"
#include "tests/testprogram.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// What a save changes although nobody has edited it.
class LineEndsTest : public QObject {
    Q_OBJECT

private slots:
    void countsWhatASaveChanges_data();
    void countsWhatASaveChanges();
    void countsAcrossBlocks();
    void filesAreKeptOnWish();
};

void LineEndsTest::countsWhatASaveChanges_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QList<qint64>>("counts"); // NUL, LF, CR
    using Counts = QList<qint64>;
    QTest::newRow("empty") << QByteArray() << Counts{ 0, 0, 0 };
    QTest::newRow("CR+LF") << QByteArray("a\r\nb\r\n") << Counts{ 0, 0, 0 };
    QTest::newRow("LF") << QByteArray("a\nb\n") << Counts{ 0, 0, 0 };
    QTest::newRow("CR") << QByteArray("a\rb\r") << Counts{ 0, 0, 0 };
    QTest::newRow("LF in CR+LF") << QByteArray("a\r\nb\nc\n\n") << Counts{ 0, 3, 0 };
    QTest::newRow("CR in CR+LF") << QByteArray("a\r\nb\rc\r\r\n") << Counts{ 0, 0, 2 };
    QTest::newRow("CR in LF") << QByteArray("a\nb\rc\r\n") << Counts{ 0, 0, 0 };
    QTest::newRow("others in CR") << QByteArray("a\rb\nc\r\n") << Counts{ 0, 2, 0 };
    QTest::newRow("NUL") << QByteArray("\x82\xA0\n\0\0", 5) << Counts{ 2, 0, 0 };
}

/// By the rules, and by a save of what was read.
void LineEndsTest::countsWhatASaveChanges()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QList<qint64>, counts);
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, bytes));
    TextDocument document;
    QVERIFY(!document.load(folder.path(), fileName, CharCode::ShiftJis, {}));
    const RewrittenBytes found = document.findings().rewritten;
    QCOMPARE(QList<qint64>({ found.nul, found.lf, found.cr }), counts);
    document.save(folder.path(), fileName);
    QCOMPARE(folder.read(fileName) == bytes, counts == QList<qint64>({ 0, 0, 0 }));
}

void LineEndsTest::countsAcrossBlocks()
{
    for (const qsizetype edge : { 192, 16384 }) {
        for (qsizetype before = edge - 3; before < edge + 3; ++before) {
            const QByteArray bytes = QByteArray(before, 'a') + "\r\n" + QByteArray(600, '\n')
                + QByteArray(700, '\0') + QByteArray(800, '\r');
            const RewrittenBytes found = countRewritten(bytes, ReturnCode::CrLf);
            QCOMPARE(found.lf, 600);
            QCOMPARE(found.nul, 700);
            QCOMPARE(found.cr, 800);
        }
    }
}

void LineEndsTest::filesAreKeptOnWish()
{
    const DocumentFolder folder;
    const QByteArray bytes = "a\r\nb\n";
    QVERIFY(folder.write(fileName, bytes));
    TextDocument document;
    QVERIFY(!document.load(folder.path(), fileName, {}, {}));
    document.file().keep();
    document.save(folder.path(), u"other.txt"_s);
    QVERIFY(!document.load(folder.path(), fileName, {}, {}));
    document.file().keep();
    const SaveResult first = document.save(folder.path(), fileName);
    QVERIFY(first.wasToBeKept);
    QFile copy(first.keptCopy);
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QCOMPARE(copy.readAll(), bytes);
    const SaveResult second = document.save(folder.path(), fileName);
    QVERIFY(!second.wasToBeKept);
    QCOMPARE(second.keptCopy, QString());
}

REGISTER_TEST(runCoreTest<LineEndsTest>)
#include "lineends_test.moc"
