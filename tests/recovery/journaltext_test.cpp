#include "document/utf16text.h"
#include "recovery/journaltext.h"
#include "tests/document/documentfolder.h"
#include "tests/recovery/snapshottext.h"
#include "tests/testprogram.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// A document and what is known of it, as its journal follows it.
class Followed : public QObject {
public:
    Followed()
        : document({ CharCode::Utf8, ReturnCode::Lf })
    {
        connect(
            &document, &TextDocument::changed, this, [this](const TextChange &change) { text.note(change); });
    }
    bool load(const QByteArray &bytes)
    {
        return m_folder.write(fileName, bytes)
            && !document.load(m_folder.path(), fileName, CharCode::Utf8, { CharCode::Utf8, ReturnCode::Lf });
    }
    bool loadUtf16(const QByteArray &bytes)
    {
        TextStore read;
        if (!m_folder.write(fileName, bytes)
            || document.readUtf16(m_folder.path(), fileName, { false, true }, {}, read))
            return false;
        document.setText(std::move(read));
        return true;
    }
    std::shared_ptr<const JournalWrite> next() { return text.next(document, {}); }
    QString path() const { return m_folder.path(); }

    TextDocument document;
    JournalText text;

private:
    const DocumentFolder m_folder;
};

/// "offset -removed +inserted".
QString drawn(const TextChange &change)
{
    return u"%1 -%2 +%3"_s.arg(change.offset.value()).arg(change.removed).arg(change.inserted);
}

} // namespace

/// What a document's journal is given to write.
class JournalTextTest : public QObject {
    Q_OBJECT

private slots:
    void textOfTheFileIsTheBase();
    void nextWriteHasWhatChangedSince();
    void neverSavedTextBeginsWithNothing();
    void neverSavedTextHasTheNameOfNow();
    void textWithoutHistoryBeginsWithNothing();
    void returnedToBaseNothingWasWritten();
    void droppedHoldsNoText();
    void savedUtf16IsUtf8_data();
    void savedUtf16IsUtf8();
};

void JournalTextTest::textOfTheFileIsTheBase()
{
    Followed followed;
    QVERIFY(followed.load("one\r\ntwo\r\n"));
    followed.text.begin(followed.document, WholeIn::FileRead);
    followed.document.replace(Offset(4), 3, u"2");
    followed.document.replace(Offset(0), 0, u"zero\n");
    const auto write = followed.next();
    QVERIFY(write->base.isFromFile);
    QCOMPARE(write->base.path, followed.path());
    QCOMPARE(write->base.name, fileName);
    QCOMPARE(write->base.length, 8);
    QCOMPARE(write->base.charCode, CharCode::Utf8);
    QCOMPARE(write->base.returnCode, ReturnCode::CrLf);
    QVERIFY(!write->base.utf16);
    QCOMPARE(textOf(*write->baseText), u"one\ntwo\n"_s);
    QCOMPARE(write->committed, write->baseText);
    QCOMPARE(textOf(*write->text), u"zero\none\n2\n"_s);
    QCOMPARE(drawn(write->change), u"0 -7 +10"_s);
    QCOMPARE(drawn(write->changeOfBase), u"0 -7 +10"_s);
}

void JournalTextTest::nextWriteHasWhatChangedSince()
{
    Followed followed;
    QVERIFY(followed.load("text\n"));
    followed.text.begin(followed.document, WholeIn::FileRead);
    followed.document.replace(Offset(0), 0, u"a");
    const auto first = followed.next();
    followed.document.replace(Offset(5), 0, u"b");
    const auto second = followed.next();
    QCOMPARE(textOf(*first->text), u"atext\n"_s);
    QCOMPARE(second->committed, first->text);
    QCOMPARE(textOf(*second->text), u"atextb\n"_s);
    QCOMPARE(drawn(second->change), u"5 -0 +1"_s);
    QCOMPARE(drawn(second->changeOfBase), u"0 -4 +6"_s);
    const auto third = followed.next();
    QCOMPARE(drawn(third->change), u"0 -0 +0"_s);
    QCOMPARE(third->committed, second->text);
}

void JournalTextTest::neverSavedTextBeginsWithNothing()
{
    Followed followed;
    followed.document.replace(Offset(0), 0, u"typed before");
    followed.text.begin(followed.document, WholeIn::NoFile);
    followed.document.replace(Offset(5), 0, u"!");
    const auto write = followed.next();
    QVERIFY(!write->base.isFromFile);
    QCOMPARE(write->base.length, 0);
    QCOMPARE(textOf(*write->baseText), QString());
    QCOMPARE(write->committed, write->baseText);
    QCOMPARE(textOf(*write->text), u"typed! before"_s);
    QCOMPARE(drawn(write->change), u"0 -0 +13"_s);
    QCOMPARE(drawn(write->changeOfBase), u"0 -0 +13"_s);
}

void JournalTextTest::neverSavedTextHasTheNameOfNow()
{
    Followed followed;
    QVERIFY(followed.load("text\n"));
    followed.text.begin(followed.document, WholeIn::NoFile);
    QCOMPARE(followed.next()->base.name, fileName);
    followed.document.detachFromFile(u"b.txt"_s);
    const auto write = followed.next();
    QCOMPARE(write->base.path, QString());
    QCOMPARE(write->base.name, u"b.txt"_s);
}

/// The text that it began with is nowhere any more.
void JournalTextTest::textWithoutHistoryBeginsWithNothing()
{
    Followed followed;
    QVERIFY(followed.load("text\n"));
    followed.text.begin(followed.document, WholeIn::FileRead);
    followed.document.history().setEnabled(false);
    followed.document.replace(Offset(0), 0, u"a");
    const auto write = followed.next();
    QVERIFY(!write->base.isFromFile);
    QCOMPARE(textOf(*write->baseText), QString());
    QCOMPARE(drawn(write->change), u"0 -0 +6"_s);
    QCOMPARE(textOf(*write->text), u"atext\n"_s);
}

void JournalTextTest::returnedToBaseNothingWasWritten()
{
    Followed followed;
    QVERIFY(followed.load("text\n"));
    followed.text.begin(followed.document, WholeIn::FileRead);
    followed.document.replace(Offset(0), 0, u"a");
    followed.next();
    followed.document.replace(Offset(1), 0, u"b");
    followed.text.returnToBase();
    followed.document.replace(Offset(2), 0, u"c");
    const auto write = followed.next();
    QCOMPARE(write->committed, write->baseText);
    QCOMPARE(textOf(*write->committed), u"text\n"_s);
    QCOMPARE(drawn(write->change), u"0 -0 +3"_s);
    QCOMPARE(textOf(*write->text), u"abctext\n"_s);
}

void JournalTextTest::droppedHoldsNoText()
{
    Followed followed;
    QVERIFY(followed.text.isDropped());
    followed.text.begin(followed.document, WholeIn::NoFile);
    QVERIFY(!followed.text.isDropped());
    followed.document.replace(Offset(0), 0, u"a");
    const std::weak_ptr<const TextSnapshot> held = followed.next()->text;
    QVERIFY(!held.expired());
    followed.text.drop();
    QVERIFY(held.expired());
    QVERIFY(followed.text.isDropped());
}

void JournalTextTest::savedUtf16IsUtf8_data()
{
    QTest::addColumn<WholeIn>("where");
    QTest::addColumn<bool>("isKept");
    QTest::addColumn<bool>("isUtf16");
    QTest::addColumn<CharCode>("code");
    QTest::newRow("read") << WholeIn::FileRead << false << true << CharCode::Unicode;
    QTest::newRow("read, and to be kept") << WholeIn::FileRead << true << true << CharCode::Unicode;
    QTest::newRow("written as UTF-8") << WholeIn::FileWritten << false << false << CharCode::Utf8;
    QTest::newRow("written as UTF-16") << WholeIn::FileWritten << true << true << CharCode::Utf8;
}

void JournalTextTest::savedUtf16IsUtf8()
{
    QFETCH(WholeIn, where);
    QFETCH(bool, isKept);
    Followed followed;
    QVERIFY(followed.loadUtf16(QByteArray("\xFF\xFE\xE9\0\n\0", 6)));
    if (isKept)
        followed.document.keepUtf16();
    followed.text.begin(followed.document, where);
    followed.document.replace(Offset(0), 0, u"a");
    const auto write = followed.next();
    QTEST(write->base.utf16.has_value(), "isUtf16");
    QTEST(write->base.charCode, "code");
    QCOMPARE(textOf(*write->baseText), u"\u00e9\n"_s);
}

REGISTER_TEST(runCoreTest<JournalTextTest>)
#include "journaltext_test.moc"
