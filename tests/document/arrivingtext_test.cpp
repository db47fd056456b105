#include "codec/codecs.h"
#include "document/textdocument.h"
#include "tests/document/documentfolder.h"
#include "tests/testprogram.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

TextStore partOfText(const QString &text)
{
    TextStore::Builder builder{ LayoutRule() };
    builder.append(QStringView(text));
    return builder.finish();
}

constexpr FileCodes utf8Lf{ CharCode::Utf8, ReturnCode::Lf };

ReadResult resultOf(FileCodes codes)
{
    return { codes, &infoOf(codes.charCode).codec(), { 3, {}, {}, {} }, {} };
}

} // namespace

/// A document whose text comes part by part.
class ArrivingTextTest : public QObject {
    Q_OBJECT

private slots:
    void tellsOfPartsAloneUntilItIsWhole();
    void isAsAfterAReading();
    void beginsAnew();
    void canBeGivenUp();
    void failureLeavesNoHalfText();
    void failureBeforeAnythingCameLeavesTheText();
};

void ArrivingTextTest::tellsOfPartsAloneUntilItIsWhole()
{
    TextDocument document;
    const QSignalSpy grew(&document, &TextDocument::grew), replaced(&document, &TextDocument::replaced),
        changed(&document, &TextDocument::changed), about(&document, &TextDocument::aboutToReplace);
    document.beginArrival(u"/f/"_s, u"n"_s, utf8Lf, TextStore());
    QVERIFY(document.isHeld());
    document.takePart(partOfText(u"ab\n"_s));
    document.takePart(partOfText(u"c"_s));
    QCOMPARE(document.store().text(), u"ab\nc"_s);
    QCOMPARE(about.count(), 1);
    QCOMPARE(replaced.count(), 0);
    QCOMPARE(grew.count(), 2);
    QCOMPARE(grew.at(1).at(0).value<TextChange>().offset, Offset(3));
    QCOMPARE(grew.at(1).at(0).value<TextChange>().inserted, 1);
    document.endArrival(resultOf(utf8Lf));
    QCOMPARE(replaced.count(), 1);
    QCOMPARE(replaced.at(0).at(0).value<TextChange>().inserted, 4);
    QCOMPARE(changed.count(), 0);
    QVERIFY(!document.isHeld());
}

void ArrivingTextTest::isAsAfterAReading()
{
    TextDocument document;
    document.replace(Offset(), 0, u"before");
    document.beginArrival(u"/f/"_s, u"n"_s, { CharCode::Utf8, ReturnCode::Lf }, TextStore());
    QCOMPARE(document.path() + document.name(), u"/f/n"_s);
    QCOMPARE(document.findings().undecodableBytes, 0);
    document.takePart(partOfText(u"ab"_s));
    document.endArrival(resultOf({ CharCode::Euc, ReturnCode::Cr }));
    QCOMPARE(document.charCode(), CharCode::Euc);
    QCOMPARE(document.returnCode(), ReturnCode::Cr);
    QCOMPARE(&document.byteCodec(), &infoOf(CharCode::Euc).codec());
    QCOMPARE(document.findings().undecodableBytes, 3);
    QVERIFY(!document.isEdited());
    QVERIFY(!document.history().canUndo());
}

/// What was there was decoded wrongly.
void ArrivingTextTest::beginsAnew()
{
    TextDocument document;
    document.beginArrival(u"/f/"_s, u"n"_s, utf8Lf, TextStore());
    document.takePart(partOfText(u"wrong"_s));
    document.beginArrival(u"/f/"_s, u"n"_s, { CharCode::ShiftJis, ReturnCode::Lf }, TextStore());
    QCOMPARE(document.store().length(), 0);
    QCOMPARE(document.charCode(), CharCode::ShiftJis);
    document.takePart(partOfText(u"right"_s));
    document.endArrival(resultOf({ CharCode::ShiftJis, ReturnCode::Lf }));
    QCOMPARE(document.store().text(), u"right"_s);
}

void ArrivingTextTest::canBeGivenUp()
{
    TextDocument document(utf8Lf);
    document.beginArrival(u"/f/"_s, u"n"_s, { CharCode::Euc, ReturnCode::Lf }, TextStore());
    document.takePart(partOfText(u"half"_s));
    document.startNew({}, utf8Lf, utf8Codec());
    QVERIFY(!document.isHeld());
    QCOMPARE(document.store().length(), 0);
    QCOMPARE(document.path(), QString());
    QCOMPARE(document.charCode(), CharCode::Utf8);
    document.replace(Offset(), 0, u"typed");
    QVERIFY(document.isEdited());
}

void ArrivingTextTest::failureLeavesNoHalfText()
{
    TextDocument document(utf8Lf);
    document.beginArrival(u"/f/"_s, u"n"_s, { CharCode::Euc, ReturnCode::Lf }, TextStore());
    document.takePart(partOfText(u"half"_s));
    document.failArrival(u"/f/"_s, u"n"_s, utf8Lf);
    QVERIFY(!document.isHeld());
    QCOMPARE(document.store().length(), 0);
    QCOMPARE(document.path() + document.name(), u"/f/n"_s);
    QCOMPARE(document.charCode(), CharCode::Utf8);
    QVERIFY(!document.isEdited());
}

/// As after a load() that failed: a save under the name keeps a copy of what could not be read.
void ArrivingTextTest::failureBeforeAnythingCameLeavesTheText()
{
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, "old"));
    TextDocument document(utf8Lf);
    document.replace(Offset(), 0, u"text");
    document.setHeld(true);
    document.failArrival(folder.path(), fileName, utf8Lf);
    QVERIFY(!document.isHeld());
    QVERIFY(document.isEdited());
    QCOMPARE(document.store().text(), u"text"_s);
    QVERIFY(!document.save(folder.path(), fileName).keptCopy.isEmpty());
}

REGISTER_TEST(runCoreTest<ArrivingTextTest>)
#include "arrivingtext_test.moc"
