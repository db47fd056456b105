#include "recovery/bytefields.h"
#include "tests/testprogram.h"

#include <limits>

using namespace Qt::StringLiterals;

/// Numbers and texts, one behind the other.
class ByteFieldsTest : public QObject {
    Q_OBJECT

private slots:
    void readsWhatWasWritten();
    void isLittleEndian();
    void cutAnywhereIsNotWhole();
    void aCountBeyondTheEndReadsNothing();
};

namespace {

const QString anyUnits = u"a\0\xd800\xdcff\xffff"_s;

QByteArray fieldsOfEachKind()
{
    FieldWriter fields;
    fields.number8(255);
    fields.number32(0xfedcba98);
    fields.number64(std::numeric_limits<qint64>::min());
    fields.bytes("b\0c"_ba);
    fields.text(anyUnits);
    fields.bytes({});
    fields.text({});
    return fields.result();
}

/// Whether all of them were there.
bool readEachKind(QByteArrayView bytes)
{
    FieldReader fields(bytes);
    fields.number8();
    fields.number32();
    fields.number64();
    fields.bytes();
    fields.text();
    fields.bytes();
    fields.text();
    return fields.isWhole();
}

} // namespace

void ByteFieldsTest::readsWhatWasWritten()
{
    const QByteArray bytes = fieldsOfEachKind();
    FieldReader fields(bytes);
    QCOMPARE(fields.number8(), quint8(255));
    QCOMPARE(fields.number32(), 0xfedcba98U);
    QCOMPARE(fields.number64(), std::numeric_limits<qint64>::min());
    QCOMPARE(fields.bytes().toByteArray(), "b\0c"_ba);
    QCOMPARE(fields.text(), anyUnits);
    QVERIFY(!fields.atEnd());
    QVERIFY(fields.bytes().isEmpty());
    QVERIFY(fields.text().isEmpty());
    QVERIFY(fields.atEnd() && fields.isWhole());
}

void ByteFieldsTest::isLittleEndian()
{
    FieldWriter fields;
    fields.number32(0x01020304);
    fields.text(u"\u0102");
    QCOMPARE(fields.result(), QByteArray::fromHex("04030201 01000000 0201"));
    QCOMPARE(fields.size(), 10);
    fields.clear();
    QVERIFY(fields.result().isEmpty());
}

void ByteFieldsTest::cutAnywhereIsNotWhole()
{
    const QByteArray bytes = fieldsOfEachKind();
    QVERIFY(readEachKind(bytes));
    for (qsizetype size = 0; size < bytes.size(); ++size)
        QVERIFY2(!readEachKind(QByteArrayView(bytes).first(size)), qPrintable(QString::number(size)));
}

void ByteFieldsTest::aCountBeyondTheEndReadsNothing()
{
    FieldWriter fields;
    fields.number32(std::numeric_limits<quint32>::max());
    fields.number64(0);
    FieldReader bytes(fields.result());
    QVERIFY(bytes.bytes().isEmpty());
    QVERIFY(!bytes.isWhole() && bytes.atEnd());
    FieldReader text(fields.result());
    QVERIFY(text.text().isEmpty());
    QVERIFY(!text.isWhole());
}

REGISTER_TEST(runPlainTest<ByteFieldsTest>)
#include "bytefields_test.moc"
