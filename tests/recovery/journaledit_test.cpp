#include "recovery/journaledit.h"
#include "tests/testprogram.h"
#include "text/textstore.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

/// Writes down what it hears.
struct NotedParts : EditReader::Parts {
    void copyCommitted(Offset offset, qint64 length) override { note(u"committed"_s, offset, length); }
    void copyBase(Offset offset, qint64 length) override { note(u"base"_s, offset, length); }
    void text(QByteArrayView latin1) override { heard << u"latin1 "_s + QString::fromLatin1(latin1); }
    void text(QStringView utf16) override { heard << u"utf16 "_s + utf16.toString(); }
    void spelling(QByteArrayView bytes) override { heard << u"spelled "_s + QString::fromLatin1(bytes); }

    QStringList heard;

private:
    void note(const QString &source, Offset offset, qint64 length)
    {
        heard << u"%1 %2 %3"_s.arg(source).arg(offset.value()).arg(length);
    }
};

/// One chunk as a text keeps it; nothing but `spelling` where the text is empty.
void append(EditWriter &edit, QStringView text, std::optional<QByteArrayView> spelling = {})
{
    TextStore store;
    store.replace({}, 0, text);
    TextChunk chunk = text.isEmpty() ? TextChunk() : store.chunkAt({});
    chunk.spelling = spelling;
    edit.append(chunk);
}

EditWriter oneOfEach()
{
    EditWriter edit;
    edit.copyCommitted(Offset(3), 4);
    append(edit, u"abc");
    append(edit, u"é", "e'");
    append(edit, u"日本");
    edit.copyBase(Offset(1LL << 40), 1LL << 41);
    append(edit, {}, "end");
    return edit;
}

} // namespace

/// What a text consists of, as a journal tells it.
class JournalEditTest : public QObject {
    Q_OBJECT

private slots:
    void readsWhatWasWritten();
    void nothingIsWrittenForNothing();
    void isFullAtItsSize();
    void cutAnywhereNoOtherPartIsTold();
    void otherBytesAreRefused();
};

void JournalEditTest::readsWhatWasWritten()
{
    NotedParts parts;
    QVERIFY(EditReader::read(oneOfEach().content(), parts));
    QCOMPARE(parts.heard,
        (QStringList{ u"committed 3 4"_s, u"latin1 abc"_s, u"spelled e'"_s, u"latin1 é"_s, u"utf16 日本"_s,
            u"base 1099511627776 2199023255552"_s, u"spelled end"_s }));
}

void JournalEditTest::nothingIsWrittenForNothing()
{
    EditWriter edit;
    edit.copyBase(Offset(5), 0);
    QVERIFY(edit.isEmpty());
    NotedParts parts;
    QVERIFY(EditReader::read(edit.content(), parts));
    QVERIFY(parts.heard.isEmpty());
}

void JournalEditTest::isFullAtItsSize()
{
    EditWriter edit;
    TextChunk chunk;
    const QByteArray text(2 * EditWriter::wantedBytes, 'x');
    chunk.latin1 = text;
    QCOMPARE(edit.append(chunk), qint64{ EditWriter::wantedBytes });
    QVERIFY(edit.isFull());
    edit.clear();
    QVERIFY(edit.isEmpty() && !edit.isFull());
}

void JournalEditTest::cutAnywhereNoOtherPartIsTold()
{
    const EditWriter edit = oneOfEach();
    NotedParts whole;
    QVERIFY(EditReader::read(edit.content(), whole));
    for (qsizetype size = 0; size < edit.content().size(); ++size) {
        NotedParts parts;
        EditReader::read(QByteArrayView(edit.content()).first(size), parts);
        QCOMPARE(parts.heard, whole.heard.first(parts.heard.size()));
        QVERIFY(parts.heard.size() < whole.heard.size());
    }
}

void JournalEditTest::otherBytesAreRefused()
{
    NotedParts parts;
    QVERIFY(!EditReader::read("\x06", parts));
    QVERIFY(!EditReader::read(QByteArray(1, '\0'), parts));
    QVERIFY(parts.heard.isEmpty());
}

REGISTER_TEST(runPlainTest<JournalEditTest>)
#include "journaledit_test.moc"
