#include "document/unwritabletext.h"

#include "document/textdocument.h"
#include "tests/document/documentfolder.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QRandomGenerator>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

constexpr FileCodes shiftJis{ CharCode::ShiftJis, ReturnCode::Lf };

bool isPairAt(const QString &text, qsizetype at)
{
    return text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
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

/// Whether a character behind others is written as "?".
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
    return bytes == "a?" && character != u"?"_s;
}

/// The same from the whole text, one character after the other.
QStringList recount(const TextDocument &document)
{
    QStringList list;
    static QHash<std::pair<const TextCodec *, QString>, bool> known; // encoding one takes its time
    const QString text = document.store().text();
    for (qsizetype at = 0; at < text.size();) {
        const QString character = text.mid(at, isPairAt(text, at) ? 2 : 1);
        auto lost = known.find({ document.writingCode().codec, character });
        if (lost == known.end())
            lost = known.insert({ document.writingCode().codec, character }, isLost(document, character));
        if (*lost && (at > 0 || character != QString(QChar::ByteOrderMark)))
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
    QTest::addColumn<quint32>("seed");
    const quint32 first = seedOr(1);
    for (const CharCode code : { CharCode::ShiftJis, CharCode::Euc, CharCode::Jis }) {
        for (quint32 seed = first; seed < first + 5; ++seed)
            QTest::addRow("%s, seed %u", infoOf(code).name.data(), seed) << code << seed;
    }
}

void UnwritableTextTest::randomEdits()
{
    QFETCH(CharCode, code);
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const auto below = [&](qint64 end) { return qint64(random.bounded(int(end))); };
    // Halves of pairs come together and are parted, as undecodable bytes of UTF-16 may.
    const QStringList alphabet{ u"a"_s, u"\n"_s, u"é"_s, u"–"_s, u"漢"_s, u"ｱ"_s, u"\U0001F600"_s,
        QString(QChar(0xD83D)), QString(QChar(0xDE00)), QString(QChar(0xDC81)), QString(QChar(0xFEFF)),
        u"€"_s };
    TextDocument document({ code, ReturnCode::Lf });
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
