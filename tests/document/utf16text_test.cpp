#include "document/utf16text.h"

#include "codec/codecs.h"
#include "document/textdocument.h"
#include "tests/document/documentfolder.h"
#include "tests/testprogram.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTest>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace {

QByteArray utf16Of(const QString &text, Utf16Form form)
{
    QByteArray bytes;
    const QString whole = form.hasMark ? QChar(QChar::ByteOrderMark) + text : text;
    for (const QChar c : whole) {
        const char high = char(c.unicode() >> 8);
        const char low = char(c.unicode() & 0xFF);
        bytes += form.isBigEndian ? high : low;
        bytes += form.isBigEndian ? low : high;
    }
    return bytes;
}

bool readAsText(TextDocument &document, const DocumentFolder &folder, Utf16Form form)
{
    TextStore text;
    if (document.readUtf16(folder.path(), fileName, form, {}, text))
        return false;
    document.setText(std::move(text));
    return true;
}

void addForms()
{
    QTest::addColumn<Utf16Form>("form");
    QTest::newRow("little endian") << Utf16Form{ false, false };
    QTest::newRow("little endian, mark") << Utf16Form{ false, true };
    QTest::newRow("big endian") << Utf16Form{ true, false };
    QTest::newRow("big endian, mark") << Utf16Form{ true, true };
}

} // namespace

/// Texts in UTF-16 that are decoded before their line ends are looked at.
class Utf16TextTest : public QObject {
    Q_OBJECT

private slots:
    void isRecognised_data() { addForms(); }
    void isRecognised();
    void isRecognisedWithoutAscii_data();
    void isRecognisedWithoutAscii();
    void otherFilesAreNone_data();
    void otherFilesAreNone();
    void noSampleIsTakenForIt_data();
    void noSampleIsTakenForIt();
    void otherCodesAreNeverTakenForIt_data();
    void otherCodesAreNeverTakenForIt();
    void isReadAsText_data() { addForms(); }
    void isReadAsText();
    void isSavedAsUtf8_data() { addForms(); }
    void isSavedAsUtf8();
    void isKept_data() { addForms(); }
    void isKept();
    void everyUnitIsKept_data() { addForms(); }
    void everyUnitIsKept();
    void anotherCodeEndsKeeping();
    void editsAreWrittenToo();
};

void Utf16TextTest::isRecognised()
{
    QFETCH(Utf16Form, form);
    for (const QString &text : { u"plain text\r\n"_s, u"漢字 かな\n"_s, u"é \U0001F600\n"_s })
        QCOMPARE(utf16FormOf(utf16Of(text, form)), std::optional(form));
    const QString text = u"a line of some length, 漢字\n"_s.repeated(500);
    QCOMPARE(utf16FormOf(utf16Of(text, form)), std::optional(form));
}

void Utf16TextTest::isRecognisedWithoutAscii_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("sentence") << u"吾輩は猫である。名前はまだ無い。"_s;
    QTest::newRow("hiragana") << u"いろはにほへとちりぬるを"_s;
    QTest::newRow("katakana") << u"カタカナノミノヒョウジ"_s;
    QTest::newRow("full-width forms") << u"全角　ＡＢＣ　１２３"_s;
    QTest::newRow("rare characters") << (u"このへやのひろさは㎡ではかる"_s
        + u"ありふれたもじ"_s.repeated(10));
    QTest::newRow("Chinese") << u"天地玄黄，宇宙洪荒。日月盈昃，辰宿列张。"_s;
    QTest::newRow("a long line") << u"春は曙。やうやう白くなりゆく山際、少し明かりて、"_s.repeated(200);
}

void Utf16TextTest::isRecognisedWithoutAscii()
{
    QFETCH(QString, text);
    for (const bool isBigEndian : { false, true }) {
        const DocumentFolder folder;
        const Utf16Form form{ isBigEndian, false };
        QVERIFY(folder.write(fileName, utf16Of(text, form)));
        TextDocument document;
        QVERIFY(!document.load(folder.path(), fileName, {}, {}));
        QCOMPARE(document.findings().utf16, std::optional(form));
        QVERIFY(readAsText(document, folder, form));
        QCOMPARE(document.store().text(), text);
    }
}

void Utf16TextTest::otherFilesAreNone_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("one byte") << QByteArray("a");
    QTest::newRow("ASCII") << QByteArray("plain text\n\n");
    QTest::newRow("Shift-JIS") << QByteArray("\x8A\xBF\x8E\x9A\x82\xA0\r\n");
    QTest::newRow("EUC") << QByteArray("\xB4\xC1\xBB\xFA \n");
    QTest::newRow("UTF-8") << QByteArray("\xE6\xBC\xA2\n\xE6\xBC\xA2\n");
    QTest::newRow("zeros") << QByteArray(100, '\0');
    QTest::newRow("a program") << QByteArray("\x7F"
                                             "ELF\x02\x01\x01\0\0\0\0\0\0\0\0\0\x03\0\x3E\0\x01\0\0\0",
        24);
    QTest::newRow("numbers") << QByteArray("0,0,0,0,0,0,0,0,");
    QTest::newRow("hexadecimal numbers") << QByteArray("0A0B0C0D0E0F0G0H");
    QTest::newRow("Shift-JIS, its units Chinese")
        << QByteArray("\x82\xA0\x82\xA2\x93\xFA\x96\x7B\r\n\x90\x6C");
    QTest::newRow("Shift-JIS, numbers") << QByteArray("\x92\x6C"
                                                      "0,0,0,0,0,\r\n");
    QTest::newRow("Shift-JIS, end of file") << QByteArray("\x8A\xBF\x8E\x9A\n\x1A");
    QTest::newRow("text with a zero") << QByteArray("text with a\0zero", 16);
}

void Utf16TextTest::otherFilesAreNone()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(utf16FormOf(bytes), std::nullopt);
}

void Utf16TextTest::noSampleIsTakenForIt_data()
{
    QTest::addColumn<QString>("file");
    const QDir samples(QStringLiteral(SAMPLES_DIR));
    for (const QString &file : samples.entryList({ u"*.txt"_s }, QDir::Files)) {
        if (file != u"utf-16.txt"_s)
            QTest::newRow(qPrintable(file)) << samples.filePath(file);
    }
}

/// Nor a part of one that begins anywhere.
void Utf16TextTest::noSampleIsTakenForIt()
{
    QFETCH(QString, file);
    QFile sample(file);
    QVERIFY(sample.open(QIODevice::ReadOnly));
    const QByteArray bytes = sample.readAll();
    constexpr qsizetype partSize = 64;
    for (qsizetype at = 0; at < bytes.size(); ++at)
        QCOMPARE(utf16FormOf(bytes.sliced(at, qMin(partSize, bytes.size() - at))), std::nullopt);
}

void Utf16TextTest::otherCodesAreNeverTakenForIt_data()
{
    QTest::addColumn<CharCode>("code");
    QTest::addColumn<uint>("seed");
    const auto seed = static_cast<uint>(qEnvironmentVariableIntValue("SEED"));
    for (const CharCode code : { CharCode::ShiftJis, CharCode::Euc, CharCode::Jis, CharCode::Utf8 })
        QTest::addRow("%s, seed %u", infoOf(code).name.data(), seed) << code << seed;
}

/// Random lines of what gives them units that look like text.
void Utf16TextTest::otherCodesAreNeverTakenForIt()
{
    QFETCH(CharCode, code);
    QFETCH(uint, seed);
    const QString alphabet = u"0123 .,-:\t\nあいうるをアイウン漢字値円東京ｱｲｳ０１ＡXxAa"_s;
    QRandomGenerator random(seed);
    const DocumentFolder folder;
    for (int round = 0; round < 5000; ++round) {
        QString text;
        for (int length = random.bounded(2, 40); length > 0; --length)
            text += alphabet[random.bounded(alphabet.size())];
        QByteArray bytes;
        const auto collect = [&bytes](QByteArrayView block) {
            bytes += block;
            return true;
        };
        TextStore store;
        store.replace({}, 0, text);
        infoOf(code).codec().encode(store, collect);
        if (!utf16FormOf(bytes))
            continue;
        QVERIFY(folder.write(fileName, bytes));
        TextDocument document;
        QVERIFY(!document.load(folder.path(), fileName, code, {}));
        QVERIFY2(!document.findings().utf16, bytes.toHex(' ').constData());
    }
}

void Utf16TextTest::isReadAsText()
{
    QFETCH(Utf16Form, form);
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, utf16Of(u"a漢\r\n\U0001F600\r\n\u0D0Ab"_s, form)));
    TextDocument document;
    QVERIFY(!document.load(folder.path(), fileName, {}, {}));
    QCOMPARE(document.findings().utf16, std::optional(form));
    QVERIFY(!document.isUtf16());
    QVERIFY(readAsText(document, folder, form));
    QVERIFY(document.isUtf16());
    QCOMPARE(document.store().text(), u"a漢\n\U0001F600\n\u0D0Ab"_s);
    QCOMPARE(document.returnCode(), ReturnCode::CrLf);
    QCOMPARE(document.charCode(), CharCode::Unicode);
    QVERIFY(!document.isEdited());
}

void Utf16TextTest::isSavedAsUtf8()
{
    QFETCH(Utf16Form, form);
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, utf16Of(u"a漢\r\n\U0001F600"_s, form)));
    TextDocument document;
    QVERIFY(readAsText(document, folder, form));
    document.save(folder.path(), fileName);
    QCOMPARE(folder.read(fileName), QByteArray("a\xE6\xBC\xA2\r\n\xF0\x9F\x98\x80"));
}

void Utf16TextTest::isKept()
{
    QFETCH(Utf16Form, form);
    const DocumentFolder folder;
    for (const QString &text : { u"a漢\r\n\U0001F600\r\n"_s, u"a漢\n\U0001F600"_s, u"a漢\r\U0001F600\r"_s }) {
        const QByteArray bytes = utf16Of(text, form);
        QVERIFY(folder.write(fileName, bytes));
        TextDocument document;
        QVERIFY(readAsText(document, folder, form));
        document.keepUtf16();
        QCOMPARE(document.save(folder.path(), fileName).outcome, SaveResult::Outcome::Written);
        QCOMPARE(folder.read(fileName), bytes);
        QCOMPARE(document.charCode(), CharCode::Unicode);
    }
}

void Utf16TextTest::everyUnitIsKept()
{
    QFETCH(Utf16Form, form);
    const DocumentFolder folder;
    QString text = u"a "_s;
    for (char32_t c = 1; c <= 0xFFFF; ++c) {
        if (c != '\r') // which an LF file keeps as well, but this one's first line end is CR+LF
            text += QChar(char16_t(c)) + (c % 100 == 0 ? u"\r\n"_s : u" "_s);
    }
    text.replace(u"\n"_s, u"\r\n"_s).replace(u"\r\r"_s, u"\r"_s);
    const QByteArray bytes = utf16Of(text, form);
    QVERIFY(folder.write(fileName, bytes));
    TextDocument document;
    QVERIFY(readAsText(document, folder, form));
    document.keepUtf16();
    document.save(folder.path(), fileName);
    QVERIFY(folder.read(fileName) == bytes);
}

void Utf16TextTest::anotherCodeEndsKeeping()
{
    const Utf16Form form{ true, false };
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, utf16Of(u"é\n"_s, form)));
    TextDocument document;
    QVERIFY(readAsText(document, folder, form));
    document.keepUtf16();
    document.save(folder.path(), fileName, CharCode::Utf8);
    QVERIFY(document.writingCode().codec == &utf8Codec());
    QCOMPARE(folder.read(fileName), QByteArray("\xC3\xA9\n"));
    QVERIFY(!document.load(folder.path(), fileName, {}, {}));
    QVERIFY(!document.isUtf16());
    QCOMPARE(document.charCode(), CharCode::Utf8);
}

void Utf16TextTest::editsAreWrittenToo()
{
    const Utf16Form form{ false, true };
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, utf16Of(u"a\r\nb"_s, form)));
    TextDocument document;
    QVERIFY(readAsText(document, folder, form));
    document.keepUtf16();
    document.replace(Offset(1), 0, u"é\n\U0001F600");
    document.save(folder.path(), fileName);
    QCOMPARE(folder.read(fileName), utf16Of(u"aé\r\n\U0001F600\r\nb"_s, form));
    document.replace(Offset(0), 1, u"");
    document.save(folder.path(), fileName);
    QCOMPARE(folder.read(fileName), utf16Of(u"é\r\n\U0001F600\r\nb"_s, form));
}

REGISTER_TEST(runPlainTest<Utf16TextTest>)
#include "utf16text_test.moc"
