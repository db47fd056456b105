#include "files/endorder.h"

#include "document/textdocument.h"
#include "tests/document/documentfolder.h"
#include "tests/testprogram.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QByteArray oldContent = "the old content\n";
const qint64 blockCount = 8; ///< of the texts here, at least

/// Several blocks of every kind of work.
QByteArray longContent()
{
    return QByteArray("a line of text\n").repeated(200000);
}

/// The system's calls, of which the one of that number to read or to write gives the order.
FileCalls orderingCalls(int number)
{
    FileCalls calls = FileCalls::system();
    const auto ordering = [number, count = std::make_shared<int>(0)](auto call) {
        return [call, number, count](auto... arguments) {
            if (++*count == number)
                EndOrder::give();
            return call(arguments...);
        };
    };
    calls.pread = ordering(calls.pread);
    calls.pwrite = ordering(calls.pwrite);
    return calls;
}

} // namespace

/// The order to end, in the middle of reading and writing a file.
class EndOrderTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void nobodyObeysUnlessItIsGiven();
    void saveIsGivenUp_data();
    void saveIsGivenUp();
    void saveAsUtf16IsGivenUp();
    void saveThatIsWrittenIsNot();
    void readingIsLeft();
    void decodingIsLeft();
    void decodingOfUtf16IsLeft();

private:
    /// What has been obeyed, and the files that were there then.
    QList<QStringList> m_obeyed;
    std::unique_ptr<DocumentFolder> m_folder;
};

void EndOrderTest::init()
{
    m_folder = std::make_unique<DocumentFolder>();
    m_obeyed.clear();
    EndOrder::setObedience([this] { m_obeyed << m_folder->names(); });
}

void EndOrderTest::cleanup()
{
    EndOrder::withdraw();
    EndOrder::setObedience({});
}

void EndOrderTest::nobodyObeysUnlessItIsGiven()
{
    EndOrder::obeyIfGiven();
    QVERIFY(!EndOrder::isGiven());
    QVERIFY(m_obeyed.isEmpty());
    EndOrder::give();
    EndOrder::obeyIfGiven();
    QCOMPARE(m_obeyed.size(), 1);
    EndOrder::withdraw();
    EndOrder::obeyIfGiven();
    QCOMPARE(m_obeyed.size(), 1);
    EndOrder::setObedience({});
    EndOrder::give();
    EndOrder::obeyIfGiven();
}

void EndOrderTest::saveIsGivenUp_data()
{
    QTest::addColumn<ReturnCode>("lineEnd");
    QTest::addColumn<int>("call");
    for (const int call : { 1, 2, 5 }) {
        QTest::addRow("LF, call %d", call) << ReturnCode::Lf << call;
        QTest::addRow("CR+LF, call %d", call) << ReturnCode::CrLf << call;
    }
}

/// The old file whole, nothing beside it, and the document as it was.
void EndOrderTest::saveIsGivenUp()
{
    QFETCH(ReturnCode, lineEnd);
    QFETCH(int, call);
    QVERIFY(m_folder->write(fileName, oldContent));
    const FileCalls calls = orderingCalls(call);
    TextDocument document({}, calls);
    document.replace(Offset(0), 0, QString::fromLatin1(longContent()));
    const SaveResult result = document.save(m_folder->path(), fileName, CharCode::Utf8, lineEnd);
    QCOMPARE(int(result.outcome), int(SaveResult::Outcome::NotWritten));
    QCOMPARE(m_folder->read(fileName), oldContent);
    QCOMPARE(m_obeyed, QList<QStringList>{ { fileName } });
    QVERIFY(document.isEdited());
    QVERIFY(document.history().canUndo());
    QCOMPARE(document.name(), QString());
}

void EndOrderTest::saveAsUtf16IsGivenUp()
{
    constexpr Utf16Form form{ false, true };
    QVERIFY(m_folder->write(fileName,
        QByteArray("\xff\xfe"
                   "a\0\n\0",
            6)));
    const FileCalls calls = orderingCalls(5); // two of them read the file
    TextDocument document({}, calls);
    TextStore text;
    QVERIFY(!document.readUtf16(m_folder->path(), fileName, form, {}, text));
    document.setText(std::move(text));
    document.keepUtf16();
    document.replace(Offset(0), 0, QString::fromLatin1(longContent()));
    const SaveResult result = document.save(m_folder->path(), fileName);
    QVERIFY(EndOrder::isGiven());
    QCOMPARE(int(result.outcome), int(SaveResult::Outcome::NotWritten));
    QCOMPARE(m_folder->read(fileName),
        QByteArray("\xff\xfe"
                   "a\0\n\0",
            6));
    QVERIFY(document.isEdited());
}

/// Its last block was written when the order came: there is nothing left to wait for.
void EndOrderTest::saveThatIsWrittenIsNot()
{
    const FileCalls calls = orderingCalls(2); // the first remembers the folder
    TextDocument document({}, calls);
    document.replace(Offset(0), 0, u"short"_s);
    const SaveResult result = document.save(m_folder->path(), fileName, CharCode::Utf8);
    QCOMPARE(int(result.outcome), int(SaveResult::Outcome::Written));
    QCOMPARE(m_folder->read(fileName), QByteArray("short"));
    QVERIFY(m_obeyed.isEmpty());
}

void EndOrderTest::readingIsLeft()
{
    QVERIFY(m_folder->write(fileName, longContent()));
    const FileCalls calls = orderingCalls(1);
    TextDocument document({}, calls);
    document.replace(Offset(0), 0, u"before"_s);
    QString textThen;
    EndOrder::setObedience([&] {
        if (textThen.isEmpty())
            textThen = document.store().text();
    });
    document.load(m_folder->path(), fileName, CharCode::Utf8, {});
    QCOMPARE(textThen, u"before"_s);
}

/// The text before is there until all has been decoded.
void EndOrderTest::decodingIsLeft()
{
    QVERIFY(m_folder->write(fileName, longContent()));
    const FileCalls calls = orderingCalls(1);
    TextDocument document({}, calls);
    int texts = 0;
    connect(
        &document, &TextDocument::aboutToReplace, this, [this, &texts] { texts += int(m_obeyed.size()); });
    document.load(m_folder->path(), fileName, CharCode::Utf8, {});
    QCOMPARE(texts, 1);
}

void EndOrderTest::decodingOfUtf16IsLeft()
{
    QVERIFY(m_folder->write(fileName, longContent()));
    const FileCalls calls = orderingCalls(1);
    TextDocument document({}, calls);
    qsizetype obeyedBefore = 0;
    connect(&document, &TextDocument::aboutToReplace, this, [&] { obeyedBefore = m_obeyed.size(); });
    TextStore text;
    QVERIFY(!document.readUtf16(m_folder->path(), fileName, { false, false }, {}, text));
    QVERIFY(obeyedBefore >= 1);
}

REGISTER_TEST(runPlainTest<EndOrderTest>)
#include "endorder_test.moc"
