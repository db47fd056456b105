#include "document/unwritabletext.h"

#include "codec/codecs.h"
#include "document/textdocument.h"
#include "tests/document/documentfolder.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/tinynodes.h"

#include <QRandomGenerator>
#include <QSignalSpy>

#include <map>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr FileCodes shiftJis{ CharCode::ShiftJis, ReturnCode::Lf };

/// Units of the character there: of half a pair the escapes of three bytes.
int lengthAt(const QString &text, qsizetype at)
{
    const auto isIn = [&text](qsizetype i, char16_t first, char16_t last) {
        return i < text.size() && text[i] >= first && text[i] <= last;
    };
    if (isIn(at, 0xD800, 0xDBFF) && isIn(at + 1, 0xDC00, 0xDFFF))
        return 2;
    const bool isHalf =
        isIn(at, 0xDCED, 0xDCED) && isIn(at + 1, 0xDCA0, 0xDCBF) && isIn(at + 2, 0xDC80, 0xDCBF);
    return isHalf ? 3 : 1;
}

/// What is listed: each character behind its place.
QStringList listOf(const UnwritableText &text, const TextDocument &document)
{
    QStringList list;
    auto at = text.next(Offset(0));
    for (qint64 i = 0; i < text.count(); ++i) {
        list << QString::number(at->value()) + u':' + document.store().text(*at, text.lengthAt(*at));
        at = text.next(*at + 1);
    }
    return list;
}

/// Whether another one is written for a character behind others.
bool isLost(const TextDocument &document, const QString &character)
{
    TextStore store;
    store.replace(Offset(0), 0, u'a' + character);
    QByteArray bytes;
    document.writingCode().codec->encode(
        store,
        [&](QByteArrayView block) {
            bytes += block;
            return true;
        },
        document.writingCode().asRead);
    const bool isUnknown = bytes == "a?" || bytes == "a\xEF\xBF\xBD";
    return isUnknown && character != u"?"_s && character != QString(QChar::ReplacementCharacter);
}

/// The same from the whole text, one character after the other.
QStringList recount(const TextDocument &document)
{
    QStringList list;
    static std::map<std::tuple<const TextCodec *, TextCodec::AsRead, QString>, bool>
        known; // encoding is slow
    const WritingCode code = document.writingCode();
    const QString text = document.store().text();
    for (qsizetype at = 0; at < text.size();) {
        const QString character = text.mid(at, lengthAt(text, at));
        auto lost = known.find({ code.codec, code.asRead, character });
        if (lost == known.end())
            lost =
                known.insert({ { code.codec, code.asRead, character }, isLost(document, character) }).first;
        if (lost->second && (at > 0 || character != QString(QChar::ByteOrderMark)))
            list << QString::number(at) + u':' + character;
        at += character.size();
    }
    return list;
}

} // namespace

/// The characters that a code lacks, against a look at the whole text.
class UnwritableTextTest : public QObject {
    Q_OBJECT

private slots:
    void whatWasReadCanBeWritten();
    void editsAreLookedAt_data();
    void editsAreLookedAt();
    void randomEdits_data();
    void randomEdits();
    void anotherCode();
    void bytesOfAnotherCode();
    void halvesOfPairs_data();
    void halvesOfPairs();
    void markAtTheStart();
    void longTextIsLookedAtInSlices();
    void looksOnWhenItShall();
    void noMoreAreListed();
    void showsTheFirst();
};

void UnwritableTextTest::whatWasReadCanBeWritten()
{
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, "\x83\x41\x82\x20\xFF"));
    TextDocument document;
    const UnwritableText text(document);
    QCOMPARE(document.load(folder.path(), fileName, CharCode::ShiftJis, {}), std::nullopt);
    QCOMPARE(text.count(), 0);
    QVERIFY(!text.mayBeMore());
}

void UnwritableTextTest::editsAreLookedAt_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("removed");
    QTest::addColumn<QString>("inserted");
    QTest::addColumn<QStringList>("listed"); // of "ab–c" before
    using List = QStringList;
    const auto row = [](const char *name, qint64 offset, qint64 removed, const QString &inserted,
                         const List &listed) {
        QTest::newRow(name) << offset << removed << inserted << listed;
    };
    row("typed before", 0, 0, u"x"_s, { u"3:–"_s });
    row("typed behind", 4, 0, u"x"_s, { u"2:–"_s });
    row("one more before", 0, 0, u"é"_s, { u"0:é"_s, u"3:–"_s });
    row("one more behind", 3, 0, u"é"_s, { u"2:–"_s, u"3:é"_s });
    row("it goes", 2, 1, {}, {});
    row("another one", 2, 1, u"\U0001F600"_s, { u"2:\U0001F600"_s });
    row("a word over it", 1, 3, u"x\U0001F600é"_s, { u"2:\U0001F600"_s, u"4:é"_s });
    row("nothing new", 1, 1, u"漢"_s, { u"2:–"_s });
    row("yen and overline", 0, 0, u"¥‾"_s, { u"4:–"_s });
}

void UnwritableTextTest::editsAreLookedAt()
{
    QFETCH(qint64, offset);
    QFETCH(qint64, removed);
    QFETCH(QString, inserted);
    TextDocument document(shiftJis);
    const UnwritableText text(document);
    document.replace(Offset(0), 0, u"ab–c");
    QCOMPARE(listOf(text, document), QStringList{ u"2:–"_s });
    document.replace(Offset(offset), removed, inserted);
    QTEST(listOf(text, document), "listed");
    document.undo();
    QCOMPARE(listOf(text, document), QStringList{ u"2:–"_s });
    document.redo();
    QTEST(listOf(text, document), "listed");
}

void UnwritableTextTest::randomEdits_data()
{
    QTest::addColumn<CharCode>("code");
    QTest::addColumn<bool>("wasUtf16");
    QTest::addColumn<quint32>("seed");
    const quint32 first = seedOr(1);
    for (const CharCode code : { CharCode::ShiftJis, CharCode::Euc, CharCode::Jis, CharCode::Utf8 }) {
        for (const bool wasUtf16 : { false, true }) {
            for (quint32 seed = first; seed < first + 5; ++seed)
                QTest::addRow("%s%s, seed %u", infoOf(code).name.data(), wasUtf16 ? " from UTF-16" : "", seed)
                    << code << wasUtf16 << seed;
        }
    }
}

void UnwritableTextTest::randomEdits()
{
    QFETCH(CharCode, code);
    QFETCH(bool, wasUtf16);
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const auto below = [&](qint64 end) { return qint64(random.bounded(int(end))); };
    // Halves of pairs come together and are parted, as undecodable bytes of UTF-16 may.
    const QStringList alphabet{ u"a"_s, u"\n"_s, u"é"_s, u"–"_s, u"漢"_s, u"ｱ"_s, u"\U0001F600"_s,
        QString(QChar(0xD83D)), QString(QChar(0xDE00)), QString(QChar(0xDC81)), QString(QChar(0xFEFF)),
        u"€"_s, QString(QChar(0xDCED)), QString(QChar(0xDCA0)), u"\xDCED\xDCA0\xDCBD"_s };
    const FileCodes codes{ code, ReturnCode::Lf };
    TextDocument document(codes);
    document.startNew(fileName, codes, wasUtf16 ? utf16LittleEndianCodec() : infoOf(code).codec());
    document.setText(TextStore({}, nodesOf(8)));
    UnwritableText text(document);
    for (int step = 0; step < 600; ++step) {
        const qint64 length = document.store().length();
        const qint64 offset = below(length + 1);
        QString inserted;
        for (qint64 i = below(4); i > 0; --i)
            inserted += alphabet.at(below(alphabet.size()));
        switch (below(8)) {
        case 0:
            if (document.history().canUndo())
                document.undo();
            break;
        case 1:
            if (document.history().canRedo())
                document.redo();
            break;
        default:
            document.replace(Offset(offset), qMin(below(length > 100 ? 60 : 4), length - offset), inserted);
        }
        QCOMPARE(listOf(text, document), recount(document));
    }
}

void UnwritableTextTest::anotherCode()
{
    const DocumentFolder folder;
    TextDocument document({ CharCode::Utf8, ReturnCode::Lf });
    const UnwritableText text(document);
    document.replace(Offset(0), 0, u"a\U0001F600");
    QCOMPARE(text.count(), 0);
    document.save(folder.path(), fileName, CharCode::ShiftJis);
    QCOMPARE(listOf(text, document), QStringList{ u"1:\U0001F600"_s });
    document.save(folder.path(), fileName);
    QCOMPARE(text.count(), 1);
    document.save(folder.path(), fileName, CharCode::Utf8);
    QCOMPARE(text.count(), 0);
}

void UnwritableTextTest::bytesOfAnotherCode()
{
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, "a\xFF"));
    TextDocument document;
    const UnwritableText text(document);
    QCOMPARE(document.load(folder.path(), fileName, CharCode::ShiftJis, {}), std::nullopt);
    document.save(folder.path(), fileName, CharCode::Euc);
    QCOMPARE(text.first(5), QList<char32_t>{ 0xDCFF });
    document.save(folder.path(), fileName, CharCode::ShiftJis);
    QCOMPARE(text.count(), 0);
}

void UnwritableTextTest::halvesOfPairs_data()
{
    QTest::addColumn<QByteArray>("units"); // in UTF-16LE
    QTest::addColumn<CharCode>("code");
    QTest::addColumn<QList<char32_t>>("first");
    QTest::addColumn<qint64>("count");
    QTest::newRow("first half") << "\x41\x30\x3D\xD8\x42\x30"_ba << CharCode::Utf8
                                << QList<char32_t>{ 0xD83D } << qint64{ 1 };
    QTest::newRow("second half") << "\x81\xDC\x42\x30"_ba << CharCode::ShiftJis << QList<char32_t>{ 0xDC81 }
                                 << qint64{ 1 };
    QTest::newRow("at the end") << "\x41\x30\x3D\xD8"_ba << CharCode::Euc << QList<char32_t>{ 0xD83D }
                                << qint64{ 1 };
    QTest::newRow("the wrong way round")
        << "\x10\xDE\x3D\xD8"_ba << CharCode::Jis << QList<char32_t>{ 0xDE10, 0xD83D } << qint64{ 2 };
    QTest::newRow("the same twice") << "\x3D\xD8\x3D\xD8"_ba << CharCode::Utf8 << QList<char32_t>{ 0xD83D }
                                    << qint64{ 2 };
    QTest::newRow("beside a pair") << "\x3D\xD8\x3D\xD8\x10\xDE"_ba << CharCode::Utf8
                                   << QList<char32_t>{ 0xD83D } << qint64{ 1 };
    QTest::newRow("beside an odd byte")
        << "\x3D\xD8\xE9"_ba << CharCode::Utf8 << QList<char32_t>{ 0xD83D, 0xDCE9 } << qint64{ 2 };
}

/// Of a file in UTF-16 that is read by its bytes and saved in another code.
void UnwritableTextTest::halvesOfPairs()
{
    QFETCH(QByteArray, units);
    QFETCH(CharCode, code);
    QFETCH(qint64, count);
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, "\xFF\xFE" + units));
    TextDocument document;
    const UnwritableText text(document);
    QCOMPARE(document.load(folder.path(), fileName, {}, {}), std::nullopt);
    document.save(folder.path(), fileName, code);
    QTEST(text.first(5), "first");
    QCOMPARE(text.count(), count);
    QCOMPARE(listOf(text, document), recount(document));
    const QByteArray written = folder.read(fileName);
    QCOMPARE(written.count('?') + written.count("\xEF\xBF\xBD"), count);
}

void UnwritableTextTest::markAtTheStart()
{
    TextDocument document(shiftJis);
    const UnwritableText text(document);
    const QString mark(QChar::ByteOrderMark);
    document.replace(Offset(0), 0, mark);
    QCOMPARE(text.count(), 0);
    document.replace(Offset(0), 0, u"a");
    QCOMPARE(listOf(text, document), QStringList{ u"1:"_s + mark });
    document.replace(Offset(0), 1, u"");
    QCOMPARE(text.count(), 0);
}

void UnwritableTextTest::longTextIsLookedAtInSlices()
{
    TextDocument document(shiftJis);
    UnwritableText text(document);
    const QSignalSpy changed(&text, &UnwritableText::changed);
    const qint64 length = 3 * UnwritableText::sliceUnits;
    document.replace(Offset(0), 0, QString(length - 1, u'a') + u'–');
    QCOMPARE(text.count(), 0);
    QVERIFY(text.mayBeMore());
    document.replace(Offset(length), 0, u"––");
    QTRY_VERIFY(!text.mayBeMore());
    QCOMPARE(text.count(), 3);
    QVERIFY(changed.count() > 0);
    QCOMPARE(listOf(text, document), recount(document));
}

void UnwritableTextTest::looksOnWhenItShall()
{
    TextDocument document(shiftJis);
    UnwritableText text(document);
    UnwritableText other(document);
    text.setLookingOn(false);
    document.replace(Offset(0), 0, QString(3 * UnwritableText::sliceUnits, u'a') + u'–');
    QTRY_COMPARE(other.count(), 1);
    QCOMPARE(text.count(), 0);
    QVERIFY(text.mayBeMore());
    text.setLookingOn(true);
    QTRY_VERIFY(!text.mayBeMore());
    QCOMPARE(text.count(), 1);
}

void UnwritableTextTest::noMoreAreListed()
{
    TextDocument document(shiftJis);
    UnwritableText text(document, 3);
    document.replace(Offset(0), 0, u"–––");
    document.replace(Offset(3), 0, u"ab–c");
    QCOMPARE(text.count(), 3);
    QVERIFY(text.mayBeMore());
    document.replace(Offset(0), 2, u"");
    QTRY_VERIFY(!text.mayBeMore());
    QCOMPARE(listOf(text, document), recount(document));
}

void UnwritableTextTest::showsTheFirst()
{
    TextDocument document(shiftJis);
    const UnwritableText text(document);
    document.replace(Offset(0), 0, u"éaé–\U0001F600é");
    QCOMPARE(text.first(2), QList<char32_t>({ U'é', U'–' }));
    QCOMPARE(text.first(9), QList<char32_t>({ U'é', U'–', U'\U0001F600' }));
    QCOMPARE(text.next(Offset(1)), Offset(2));
    QCOMPARE(text.next(Offset(7)), Offset(0));
}

REGISTER_TEST(runCoreTest<UnwritableTextTest>)
#include "unwritabletext_test.moc"
