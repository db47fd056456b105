#include "files/byteescape.h"
#include "files/utf8.h"
#include "tests/testprogram.h"

/// Characters as UTF-8, surrogates too.
class Utf8Test : public QObject {
    Q_OBJECT

private slots:
    void charactersComeBack();
    void isTheToolkitsUtf8();
    void refuses_data();
    void refuses();
    void escapesAreOfOneByteEach();
};

void Utf8Test::charactersComeBack()
{
    for (char32_t character = 0; character <= QChar::LastValidCodePoint;
         character += character < 0x10000 ? 1 : 0xfb) {
        QByteArray bytes;
        appendUtf8(bytes, character);
        const auto decoded = decodeUtf8(bytes + "x");
        if (!decoded || decoded->value != character || decoded->length != bytes.size())
            QFAIL(qPrintable(QStringLiteral("U+%1").arg(uint(character), 0, 16)));
        const QByteArrayView cut = QByteArrayView(bytes).chopped(1);
        if (!cut.isEmpty() && decodeUtf8(cut))
            QFAIL(qPrintable(QStringLiteral("U+%1 cut").arg(uint(character), 0, 16)));
    }
}

void Utf8Test::isTheToolkitsUtf8()
{
    for (const char32_t character : { U'\0', U'\x7f', U'\x80', U'\x7ff', U'\x800', U'日', U'\xffff', U'😀' }) {
        QByteArray bytes;
        appendUtf8(bytes, character);
        QCOMPARE(bytes, QString::fromUcs4(&character, 1).toUtf8());
    }
}

void Utf8Test::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("a byte behind the first") << QByteArray("\x80");
    QTest::newRow("over-long /, two bytes") << QByteArray("\xc0\xaf");
    QTest::newRow("over-long /, three bytes") << QByteArray("\xe0\x80\xaf");
    QTest::newRow("over-long U+FFFF") << QByteArray("\xf0\x8f\xbf\xbf");
    QTest::newRow("beyond U+10FFFF") << QByteArray("\xf4\x90\x80\x80");
    QTest::newRow("no lead at all") << QByteArray("\xff\xbf\xbf\xbf");
    QTest::newRow("another lead in place of a byte") << QByteArray("\xe3\xe3\x81");
}

void Utf8Test::refuses()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!decodeUtf8(bytes));
}

void Utf8Test::escapesAreOfOneByteEach()
{
    int escapes = 0;
    for (char32_t unit = 0; unit <= 0xffff; ++unit)
        escapes += isByteEscape(char16_t(unit)) ? 1 : 0;
    QCOMPARE(escapes, 128);
    for (int byte = 0x80; byte <= 0xff; ++byte) {
        QVERIFY(isByteEscape(escapeOf(uchar(byte))));
        QCOMPARE(int(escapedByte(escapeOf(uchar(byte)))), byte);
    }
}

REGISTER_TEST(runPlainTest<Utf8Test>)
#include "utf8_test.moc"
