#include "document/readcode.h"

#include "codec/codecs.h"
#include "tests/testprogram.h"

#include <QTest>

namespace {

bool hasBytes(const TextStore &store)
{
    const TextSnapshot text(store);
    return hasBytes(text, { {}, text.end() });
}

} // namespace

/// In which code a text's own bytes are written as they were read.
class ReadCodeTest : public QObject {
    Q_OBJECT

private slots:
    void ownCodeGetsEverythingAsRead();
    void anotherCodeTakesOverTextWithoutBytes();
    void bytesStayThoseOfTheirCode_data();
    void bytesStayThoseOfTheirCode();
};

void ReadCodeTest::ownCodeGetsEverythingAsRead()
{
    const TextStore text = shiftJisCodec().decode("a\xFA\x4A\x81", {});
    ReadCode code(shiftJisCodec());
    QCOMPARE(&code.codec(), &shiftJisCodec());
    QCOMPARE(code.writtenAsReadIn(shiftJisCodec()), TextCodec::AsRead::Everything);
    QCOMPARE(code.writtenAsReadIn(eucCodec()), TextCodec::AsRead::Nothing);
    code.setWritten(shiftJisCodec(), hasBytes(text));
    QCOMPARE(code.writtenAsReadIn(shiftJisCodec()), TextCodec::AsRead::Everything);
}

void ReadCodeTest::anotherCodeTakesOverTextWithoutBytes()
{
    const TextStore text = shiftJisCodec().decode("a\x8A\xBF", {});
    ReadCode code(shiftJisCodec());
    code.setWritten(eucCodec(), hasBytes(text));
    QCOMPARE(&code.codec(), &eucCodec());
    QCOMPARE(code.writtenAsReadIn(eucCodec()), TextCodec::AsRead::Everything);
    QCOMPARE(code.writtenAsReadIn(shiftJisCodec()), TextCodec::AsRead::Nothing);
}

void ReadCodeTest::bytesStayThoseOfTheirCode_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("undecodable byte") << QByteArray("a\x81");
    QTest::newRow("second spelling") << QByteArray("\xFA\x4A!");
    QTest::newRow("undecodable byte far behind") << QByteArray(20000, 'a') + '\x81';
}

void ReadCodeTest::bytesStayThoseOfTheirCode()
{
    QFETCH(QByteArray, bytes);
    const TextStore text = shiftJisCodec().decode(bytes, {});
    ReadCode code(shiftJisCodec());
    code.setWritten(utf8Codec(), hasBytes(text));
    QCOMPARE(&code.codec(), &shiftJisCodec());
    QCOMPARE(code.writtenAsReadIn(utf8Codec()), TextCodec::AsRead::Nothing);
    QCOMPARE(code.writtenAsReadIn(shiftJisCodec()), TextCodec::AsRead::UndecodableBytes);
}

REGISTER_TEST(runPlainTest<ReadCodeTest>)
#include "readcode_test.moc"
