#include "document/filereading.h"

#include "codec/codecs.h"
#include "document/fittingcode.h"
#include "document/textdocument.h"
#include "document/utf16text.h"
#include "tests/codec/storedbytes.h"
#include "tests/document/documentfolder.h"
#include "tests/document/mixedbytes.h"
#include "tests/document/rewrittenbytes.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/textalphabet.h"
#include "tests/text/tinynodes.h"
#include "text/textlayout.h"

#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr FileCodes codesOfSilent{ CharCode::ShiftJis, ReturnCode::CrLf };

/// Cut in this way, if it may be.
ByteBlocks wholeOf(const QByteArray &bytes)
{
    return [bytes](CharCode, const auto &take) {
        if (!bytes.isEmpty())
            take(bytes);
    };
}

/// In another order than the usual one, or by threads.
void backwards(int count, const std::function<void(int)> &part)
{
    while (count > 0)
        part(--count);
}

void inThreads(int count, const std::function<void(int)> &part)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i)
        threads.emplace_back(part, i);
    for (std::thread &thread : threads)
        thread.join();
}

/// A text as its parts come.
class Taker {
public:
    explicit Taker(const LayoutRule &rule)
        : store(rule, nodesOf(6))
    {
    }

    std::optional<ReadFailure> take(FileReading &reading, const Spread &spread)
    {
        FileReading::Step step;
        do {
            step = makeStep(reading, spread);
            if (step == FileReading::Step::Failed)
                return reading.failure();
        } while (step == FileReading::Step::More);
        return std::nullopt;
    }

    FileReading::Step makeStep(FileReading &reading, const Spread &spread)
    {
        const FileReading::Step step = reading.step(spread);
        if (auto part = reading.takePart())
            take(*part, reading);
        return step;
    }

    TextStore store;
    int starts = 1;

private:
    void take(FileReading::Part &part, FileReading &reading)
    {
        if (part.startsOver) {
            ++starts;
            store = TextStore(store.layoutRule(), store.layout().sizes());
        }
        store.append(std::move(part.text));
        if (!part.isMeasured || part.startsOver)
            reading.setLayout(LayoutCopy(store));
    }
};

FileReading::Sizes randomSizes(QRandomGenerator &random)
{
    return { 1 + random.bounded(30), 1 + random.bounded(40), 1 + random.bounded(12), random.bounded(200) };
}

} // namespace

/// A file that is read in steps gives what it gives at once, whatever its bytes and however they are cut.
class FileReadingTest : public QObject {
    Q_OBJECT

private slots:
    void isAsAtOnce_data() { addSeeds(300); }
    void isAsAtOnce();
    void isAsAtOnceWhileItIsWritten_data() { addSeeds(300); }
    void isAsAtOnceWhileItIsWritten();
    void waitsForMuchBehindWhatCannotBeCut();
    void isAsAtOnceInUtf16_data() { addSeeds(200); }
    void isAsAtOnceInUtf16();
    void startsOverWhereTheCodeIsAnother_data();
    void startsOverWhereTheCodeIsAnother();
    void unknownWidthsAreMeasuredAtTheEnd();
    void everyReadMayFail();
    void memoryMayNotSuffice_data();
    void memoryMayNotSuffice();
    void everyReadMayBeShort();
    void takesWhatAFileHasGot();
    void whatAFileHasGotTakesNoMoreSteps();
    void longFileIsNeverHeldWhole_data();
    void longFileIsNeverHeldWhole();
    void otherCodesAreTriedInBlocks_data();
    void otherCodesAreTriedInBlocks();
    void endInJisIsKept_data();
    void endInJisIsKept();

private:
    DocumentFolder m_folder;
};

void FileReadingTest::isAsAtOnce()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const QByteArray bytes = random.bounded(4) > 0 ? mixedBytes(random) : nastyHighBytes(random);
    QVERIFY(m_folder.write(fileName, bytes));
    const auto requested = random.bounded(3) > 0 ? std::nullopt : std::optional(CharCode(random.bounded(7)));
    const CharCode code = requested.value_or(detectCharCode(bytes, codesOfSilent.charCode));
    const ReturnCode returnCode =
        code == CharCode::Binary ? ReturnCode::None : detectReturnCode(bytes, codesOfSilent.returnCode);
    QByteArray normalized = bytes;
    normalizeLineEnds(normalized, returnCode);
    const AdvanceTable widths(hurtingWidth);
    const LayoutRule rule{ &widths, 8 * subpixelsPerPixel, random.bounded(3) * 5 * subpixelsPerPixel };
    const TextCodec &codec = codecToRead(code, normalized);
    qint64 undecodable = 0;
    const TextStore expected = codec.decode(normalized, rule, &undecodable);

    Taker taker(rule);
    FileReading reading({ m_folder.path() + fileName, requested, codesOfSilent }, LayoutCopy(taker.store),
        FileCalls::system(), randomSizes(random));
    const std::array<Spread, 3> spreads{ makeOneByOne, backwards, inThreads };
    QCOMPARE(taker.take(reading, spreads[size_t(random.bounded(3))]), std::nullopt);
    taker.store.checkInvariants();
    QCOMPARE(taker.store.text(), expected.text());
    QCOMPARE(storedBytes(codec, taker.store), normalized);
    QCOMPARE(taker.store.rowCount(), expected.rowCount());
    for (RowIndex row; row <= expected.lastRow(); ++row)
        QCOMPARE(taker.store.row(row).start, expected.row(row).start);
    const ReadResult &result = reading.result();
    QCOMPARE(result.codec, &codec);
    QCOMPARE(result.codes.charCode, code);
    QCOMPARE(result.codes.returnCode, returnCode);
    QCOMPARE(result.findings.undecodableBytes, undecodable);
    const RewrittenBytes rewritten = countRewritten(bytes, returnCode);
    QCOMPARE(result.findings.rewritten.nul, rewritten.nul);
    QCOMPARE(result.findings.rewritten.lf, rewritten.lf);
    QCOMPARE(result.findings.rewritten.cr, rewritten.cr);
    QCOMPARE(
        result.findings.fittingCode, otherFittingCode(wholeOf(normalized), code, !requested, undecodable));
    ContentHash content;
    content.add(bytes);
    QCOMPARE(result.version.content().value(), content.value());
    QCOMPARE(result.version.stamp().size, bytes.size());
    QVERIFY(result.version.stamp()
        == stampOf(QFile::encodeName(m_folder.path() + fileName), FileCalls::system()));
}

namespace {

/// Puts bytes behind the end of a file.
bool append(const QString &name, QByteArrayView bytes)
{
    QFile file(name);
    return file.open(QIODevice::Append) && file.write(bytes.data(), bytes.size()) == bytes.size();
}

/// Units in little endian: characters of all lengths in UTF-8, line ends, halves of pairs.
QByteArray unitsOfMany(QRandomGenerator &random)
{
    static const QStringList parts{ u"a"_s, u"\n"_s, u"\r\n"_s, u"\r"_s, u"é"_s, u"漢字"_s, u"😀"_s,
        QString(QChar(0xD83D)), QString(QChar(0xDE00)), QString(QChar(0)), u"\uFEFF"_s };
    QByteArray bytes;
    for (int left = random.bounded(60); left > 0; --left) {
        for (const QChar unit : parts.at(random.bounded(int(parts.size())))) {
            bytes += char(unit.cell());
            bytes += char(unit.row());
        }
    }
    return random.bounded(4) == 0 ? bytes + "x" : bytes;
}

} // namespace

/// In portions of any length, which are decoded as they come or later.
void FileReadingTest::isAsAtOnceWhileItIsWritten()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const QString name = m_folder.path() + fileName;
    const QByteArray bytes = random.bounded(4) > 0 ? mixedBytes(random) : nastyHighBytes(random);
    const auto requested = random.bounded(3) > 0 ? std::nullopt : std::optional(CharCode(random.bounded(7)));
    QVERIFY(m_folder.write(fileName, {}));
    Taker taker{ LayoutRule() };
    FileReading reading({ name, requested, codesOfSilent, {}, true }, LayoutCopy(taker.store),
        FileCalls::system(), randomSizes(random));
    for (qsizetype come = 0; come < bytes.size();) {
        const qsizetype portion = qMin<qsizetype>(bytes.size() - come, 1 + random.bounded(20));
        QVERIFY(append(name, QByteArrayView(bytes).sliced(come, portion)));
        come += portion;
        while (reading.hasMore(come) && random.bounded(5) > 0)
            QCOMPARE(taker.makeStep(reading, backwards), FileReading::Step::More);
    }
    reading.endGrowth();
    QCOMPARE(taker.take(reading, backwards), std::nullopt);

    Taker atOnce{ LayoutRule() };
    FileReading whole({ name, requested, codesOfSilent }, LayoutCopy(atOnce.store));
    QCOMPARE(atOnce.take(whole, makeOneByOne), std::nullopt);
    taker.store.checkInvariants();
    QCOMPARE(taker.store.text(), atOnce.store.text());
    QCOMPARE(reading.result().codec, whole.result().codec);
    QCOMPARE(
        storedBytes(*whole.result().codec, taker.store), storedBytes(*whole.result().codec, atOnce.store));
    QCOMPARE(reading.result().codes.charCode, whole.result().codes.charCode);
    QCOMPARE(reading.result().codes.returnCode, whole.result().codes.returnCode);
    QCOMPARE(reading.result().findings.undecodableBytes, whole.result().findings.undecodableBytes);
    QCOMPARE(reading.result().findings.fittingCode, whole.result().findings.fittingCode);
    QCOMPARE(reading.result().version.content().value(), whole.result().version.content().value());
}

/// Each look at what waits costs as much as there is of that.
void FileReadingTest::waitsForMuchBehindWhatCannotBeCut()
{
    const QString name = m_folder.path() + fileName;
    constexpr int returns = 20'000; // which may end lines, or only be half of what does
    const QByteArray bytes(returns, '\r');
    QVERIFY(m_folder.write(fileName, {}));
    Taker taker{ LayoutRule() };
    FileReading reading({ name, {}, codesOfSilent, {}, true }, LayoutCopy(taker.store));
    int steps = 0;
    for (int come = 1; come <= 100; ++come) {
        QVERIFY(append(name, bytes));
        for (; reading.hasMore(bytes.size() * come); ++steps)
            QCOMPARE(taker.makeStep(reading, makeOneByOne), FileReading::Step::More);
    }
    QVERIFY2(steps < 50, qPrintable(QString::number(steps)));
    QVERIFY(append(name, "x"));
    reading.endGrowth();
    QCOMPARE(taker.take(reading, makeOneByOne), std::nullopt);
    QCOMPARE(taker.store.length(), returns * 100 + 1);
    QCOMPARE(reading.result().codes.returnCode, ReturnCode::Cr);
}

void FileReadingTest::isAsAtOnceInUtf16()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const Utf16Form form{ random.bounded(4) == 0, random.bounded(2) == 0 };
    const QByteArray bytes = (form.hasMark ? "\xFF\xFE"_ba : QByteArray()) + unitsOfMany(random);
    QVERIFY(m_folder.write(fileName, bytes));
    QByteArray utf8 = utf8FromUtf16(bytes, form);
    const ReturnCode returnCode = detectReturnCode(utf8, codesOfSilent.returnCode);
    const RewrittenBytes rewritten = countRewritten(utf8, returnCode);
    normalizeLineEnds(utf8, returnCode);
    qint64 undecodable = 0;
    const TextStore expected = utf8Codec().decode(utf8, LayoutRule(), &undecodable);

    Taker taker{ LayoutRule() };
    FileReading reading({ m_folder.path() + fileName, {}, codesOfSilent, form }, LayoutCopy(taker.store),
        FileCalls::system(), randomSizes(random));
    QCOMPARE(taker.take(reading, backwards), std::nullopt);
    taker.store.checkInvariants();
    QCOMPARE(taker.store.text(), expected.text());
    QCOMPARE(taker.starts, 1);
    QCOMPARE(reading.bytesDone(), bytes.size());
    const ReadResult &result = reading.result();
    QVERIFY(result.isUtf16);
    QCOMPARE(result.codec, &utf8Codec());
    QCOMPARE(result.codes.charCode, CharCode::Unicode);
    QCOMPARE(result.codes.returnCode, returnCode);
    QCOMPARE(result.findings.utf16, std::optional(form));
    QCOMPARE(result.findings.fittingCode, std::nullopt);
    QCOMPARE(result.findings.undecodableBytes, undecodable);
    QCOMPARE(result.findings.rewritten.nul, rewritten.nul);
    QCOMPARE(result.findings.rewritten.lf, rewritten.lf);
    QCOMPARE(result.findings.rewritten.cr, rewritten.cr);
    ContentHash content;
    content.add(bytes);
    QCOMPARE(result.version.content().value(), content.value());
    QCOMPARE(result.version.stamp().size, bytes.size());
}

void FileReadingTest::startsOverWhereTheCodeIsAnother_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<CharCode>("code");
    QTest::addColumn<int>("starts");
    const QByteArray ascii("ascii ascii ascii ascii\n");
    const QByteArray kana = "かなかなかなかな\n"_ba;
    QTest::newRow("UTF-8") << kana + ascii << CharCode::Utf8 << 1;
    QTest::newRow("ASCII, then UTF-8") << ascii + kana << CharCode::Utf8 << 1;
    QTest::newRow("ASCII, then Shift-JIS") << ascii + "\x82\xA0" << CharCode::ShiftJis << 1;
    QTest::newRow("ASCII, then EUC") << ascii + "\xA4\xA2" << CharCode::Euc << 1;
    QTest::newRow("ASCII, then JIS") << ascii + "\x1B$B$\"\x1B(B" << CharCode::Jis << 2;
    QTest::newRow("ASCII, then NUL") << ascii + QByteArray(1, '\0') << CharCode::Binary << 2;
    QTest::newRow("UTF-8, then Shift-JIS") << kana + ascii + "\x82\xA0" << CharCode::ShiftJis << 2;
    QTest::newRow("EUC, then Shift-JIS, then JIS")
        << ascii + "\xA4\xA2" + ascii + "\x82\xA0" + ascii + "\x1B$B$\"\x1B(B" << CharCode::Jis << 3;
}

void FileReadingTest::startsOverWhereTheCodeIsAnother()
{
    QFETCH(QByteArray, bytes);
    QFETCH(CharCode, code);
    QVERIFY(m_folder.write(fileName, bytes));
    Taker taker{ LayoutRule() };
    FileReading reading({ m_folder.path() + fileName, {}, codesOfSilent }, LayoutCopy(taker.store),
        FileCalls::system(), { 16, 16, 4 });
    QCOMPARE(taker.take(reading, makeOneByOne), std::nullopt);
    QCOMPARE(reading.result().codes.charCode, code);
    QTEST(taker.starts, "starts");
    QVERIFY(storedBytes(*reading.result().codec, taker.store) == bytes.replace('\0', '\xFF'));
}

/// A table of the font that has seen nothing is asked in the end, and by nobody before.
void FileReadingTest::unknownWidthsAreMeasuredAtTheEnd()
{
    QVERIFY(m_folder.write(fileName, "あいう\nか"_ba));
    QSet<char32_t> asked;
    const AdvanceTable widths([&asked](char32_t c) { return asked << c, c < 0x100 ? 64 : 128; });
    TextStore store({ &widths });
    FileReading reading({ m_folder.path() + fileName, {}, codesOfSilent }, LayoutCopy(store));
    QCOMPARE(reading.step(), FileReading::Step::Done);
    auto part = reading.takePart();
    QVERIFY(part && !part->isMeasured);
    QVERIFY(!asked.contains(U'あ'));
    store.append(std::move(part->text));
    QCOMPARE(store.widestRow(), 3 * 128);
    QVERIFY(asked.contains(U'か'));
    FileReading again({ m_folder.path() + fileName, {}, codesOfSilent }, LayoutCopy(store));
    QCOMPARE(again.step(), FileReading::Step::Done);
    QVERIFY(again.takePart()->isMeasured);
}

void FileReadingTest::memoryMayNotSuffice_data()
{
    QTest::addColumn<int>("step");
    for (const int step : { 1, 2, 5 })
        QTest::addRow("step %d", step) << step;
}

/// In some thread, in the middle of a step.
void FileReadingTest::memoryMayNotSuffice()
{
    QFETCH(int, step);
    QVERIFY(m_folder.write(fileName, QByteArray("a line\n").repeated(1000)));
    Taker taker{ LayoutRule() };
    FileReading reading({ m_folder.path() + fileName, {}, codesOfSilent }, LayoutCopy(taker.store),
        FileCalls::system(), { 100, 100, 20 });
    const Spread failing = [&step](int count, const std::function<void(int)> &part) {
        const bool isLast = --step == 0;
        makeOneByOne(isLast ? count - 1 : count, part);
        if (isLast)
            throw std::bad_alloc();
    };
    QCOMPARE(taker.take(reading, failing), std::optional(ReadFailure::TooLarge));
    QVERIFY(!reading.takePart());
}

void FileReadingTest::everyReadMayFail()
{
    QVERIFY(m_folder.write(fileName, QByteArray(100, 'a') + '\n'));
    int reads = 0;
    int failing = 0;
    FileCalls calls = FileCalls::system();
    calls.pread = [&](int fd, void *to, size_t size, off_t offset) -> ssize_t {
        if (++reads != failing)
            return FileCalls::system().pread(fd, to, size, offset);
        errno = EIO;
        return -1;
    };
    const auto failure = [&] {
        reads = 0;
        Taker taker{ LayoutRule() };
        FileReading reading(
            { m_folder.path() + fileName, {}, codesOfSilent }, LayoutCopy(taker.store), calls, { 16, 16, 4 });
        return taker.take(reading, makeOneByOne);
    };
    QCOMPARE(failure(), std::nullopt);
    const int most = reads;
    QVERIFY(most > 5);
    for (failing = 1; failing <= most; ++failing)
        QCOMPARE(failure(), std::optional(ReadFailure::BrokenOff));
}

void FileReadingTest::everyReadMayBeShort()
{
    const QByteArray bytes = "かなかなかなかな\r\nかなかなかなかな\r\n"_ba;
    QVERIFY(m_folder.write(fileName, bytes));
    FileCalls calls = FileCalls::system();
    calls.pread = [](int fd, void *to, size_t size, off_t offset) {
        return FileCalls::system().pread(fd, to, qMin<size_t>(size, 5), offset);
    };
    Taker taker{ LayoutRule() };
    FileReading reading(
        { m_folder.path() + fileName, {}, codesOfSilent }, LayoutCopy(taker.store), calls, { 16, 16, 4 });
    QCOMPARE(taker.take(reading, makeOneByOne), std::nullopt);
    QCOMPARE(taker.store.text(), QString::fromUtf8(bytes).remove(u'\r'));
}

/// It is read as far as it goes, and its version says how far that was.
void FileReadingTest::takesWhatAFileHasGot()
{
    QVERIFY(m_folder.write(fileName, "one two three four\n"));
    FileCalls calls = FileCalls::system();
    QByteArray content = "one two three four\n";
    int left = 20;
    calls.pread = [&](int fd, void *to, size_t size, off_t offset) {
        content += left-- > 0 ? QByteArray("more and more\n") : QByteArray();
        if (!m_folder.write(fileName, content))
            return ssize_t{ -1 };
        return FileCalls::system().pread(fd, to, size, offset);
    };
    Taker taker{ LayoutRule() };
    FileReading reading(
        { m_folder.path() + fileName, {}, codesOfSilent }, LayoutCopy(taker.store), calls, { 16, 16, 4 });
    QCOMPARE(taker.take(reading, makeOneByOne), std::nullopt);
    QCOMPARE(taker.store.text().toUtf8(), content);
    QCOMPARE(reading.result().version.stamp().size, content.size());
}

/// Since it was opened.
void FileReadingTest::whatAFileHasGotTakesNoMoreSteps()
{
    const QByteArray start = "the start\n", added = QByteArray("added\n").repeated(4000);
    QVERIFY(m_folder.write(fileName, start));
    FileCalls calls = FileCalls::system();
    calls.pread = [&](int fd, void *to, size_t size, off_t offset) {
        if (offset == 0 && !m_folder.write(fileName, start + added))
            return ssize_t{ -1 };
        return FileCalls::system().pread(fd, to, size, offset);
    };
    TextStore text;
    FileReading reading(
        { m_folder.path() + fileName, {}, codesOfSilent }, LayoutCopy(text), calls, { 256, 1024, 512 });
    int steps = 0;
    auto step = FileReading::Step::More;
    for (; step == FileReading::Step::More; ++steps) {
        step = reading.step();
        if (auto part = reading.takePart())
            text.append(std::move(part->text));
    }
    QCOMPARE(step, FileReading::Step::Done);
    QCOMPARE(text.text().toUtf8(), start + added);
    QVERIFY2(steps < 40, qPrintable(QString::number(steps)));
}

void FileReadingTest::longFileIsNeverHeldWhole_data()
{
    QTest::addColumn<CharCode>("code");
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<QByteArray>("line");
    const QByteArray line = QByteArray("a ").repeated(49) + " \n";
    QTest::newRow("Shift-JIS") << CharCode::ShiftJis << QByteArray() << line;
    QTest::newRow("JIS") << CharCode::Jis << QByteArray() << line;
    QTest::newRow("Shift-JIS, kanji alone") << CharCode::ShiftJis << QByteArray() << "\x8E\x9A"_ba;
    QTest::newRow("EUC, kanji alone") << CharCode::Euc << QByteArray() << "\xBB\xFA"_ba;
    QTest::newRow("JIS, kanji alone") << CharCode::Jis << "\x1B$B"_ba
                                      << "0!"_ba;
    QTest::newRow("UTF-16") << CharCode::Unicode << "\xFF\xFE"_ba
                            << "a\0"_ba;
    QTest::newRow("UTF-16, big endian") << CharCode::Unicode << "\xFE\xFF"_ba
                                        << "\0a"_ba;
    QTest::newRow("UTF-16, pairs") << CharCode::Unicode << "\xFF\xFE"_ba
                                   << "\x3D\xD8\x01\xDE"_ba;
    QTest::newRow("UTF-16, zeros") << CharCode::Unicode << "\xFF\xFE"_ba
                                   << "\0"_ba;
    QTest::newRow("Unicode without a mark") << CharCode::Unicode << QByteArray() << "\xE9 "_ba;
    QTest::newRow("Unicode, mark of UTF-8") << CharCode::Unicode << "\xEF\xBB\xBF"_ba
                                            << "é"_ba;
}

/// The first part comes soon, and no block is longer than it has to be.
void FileReadingTest::longFileIsNeverHeldWhole()
{
    QFETCH(CharCode, code);
    QFETCH(QByteArray, start);
    QFETCH(QByteArray, line);
    QVERIFY(m_folder.write(fileName, (start + line.repeated(40'000 / line.size())).first(40'000)));
    Taker taker{ LayoutRule() };
    FileReading reading({ m_folder.path() + fileName, code, codesOfSilent }, LayoutCopy(taker.store),
        FileCalls::system(), { 256, 1024, 512 });
    int steps = 1;
    QCOMPARE(reading.step(), FileReading::Step::More);
    const qint64 length = reading.takePart()->text.length();
    QVERIFY(length > 100 && length <= 256);
    QVERIFY(reading.bytesDone() > 250 && reading.bytesDone() <= 256);
    QCOMPARE(reading.bytesInAll(), 40000);
    for (; reading.step() == FileReading::Step::More; ++steps) {
        const qint64 more = reading.takePart()->text.length();
        QVERIFY(more > 400 && more <= 1024);
    }
    QCOMPARE(steps, 39);
    QCOMPARE(reading.bytesDone(), 40000);
}

void FileReadingTest::otherCodesAreTriedInBlocks_data()
{
    QTest::addColumn<std::optional<CharCode>>("given");
    QTest::addColumn<QByteArray>("pair");
    QTest::addColumn<std::optional<CharCode>>("fitting");
    using Code = std::optional<CharCode>;
    QTest::newRow("none is better than Shift-JIS") << Code() << "\x8E\x9A"_ba << Code();
    QTest::newRow("none is better than EUC") << Code() << "\xBB\xFA"_ba << Code();
    QTest::newRow("Shift-JIS for UTF-8") << Code(CharCode::Utf8) << "\x8E\x9A"_ba << Code(CharCode::ShiftJis);
    QTest::newRow("EUC for UTF-8") << Code(CharCode::Utf8) << "\xBB\xFA"_ba << Code(CharCode::Euc);
    QTest::newRow("EUC for Shift-JIS") << Code(CharCode::ShiftJis) << "\xFD\xBA"_ba << Code(CharCode::Euc);
    QTest::newRow("Shift-JIS for EUC") << Code(CharCode::Euc) << "\x8E\x9A"_ba << Code(CharCode::ShiftJis);
}

/// Also where no byte is ASCII.
void FileReadingTest::otherCodesAreTriedInBlocks()
{
    QFETCH(std::optional<CharCode>, given);
    QFETCH(QByteArray, pair);
    QVERIFY(m_folder.write(fileName, pair.repeated(400'000)));
    size_t most = 0;
    FileCalls calls = FileCalls::system();
    calls.pread = [&most](int fd, void *to, size_t size, off_t offset) {
        most = qMax(most, size);
        return FileCalls::system().pread(fd, to, size, offset);
    };
    Taker taker{ LayoutRule() };
    FileReading reading({ m_folder.path() + fileName, given, codesOfSilent }, LayoutCopy(taker.store), calls,
        { 1024, 4096, 1024 });
    QCOMPARE(taker.take(reading, makeOneByOne), std::nullopt);
    QTEST(reading.result().findings.fittingCode, "fitting");
    QVERIFY2(most < 100'000, qPrintable(QString::number(most)));
}

void FileReadingTest::endInJisIsKept_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("in kanji, behind a line") << "\x1B$B$\"\n"_ba;
    QTest::newRow("in kanji, in a line") << "\x1B$B$\"\n$\"$$"_ba;
    QTest::newRow("with a designation") << "\x1B$B$\"\n\x1B(B"_ba;
    QTest::newRow("with two designations") << "\x1B$B$\"\n\x1B(B\x1B(B"_ba;
    QTest::newRow("amid a character") << "\x1B$B$\"\n$"_ba;
    QTest::newRow("amid a designation") << "\x1B$B$\"\n\x1B("_ba;
}

/// What a save writes behind the text is what was there, also where all of the last part is that.
void FileReadingTest::endInJisIsKept()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(m_folder.write(fileName, bytes));
    for (const bool isGrowing : { false, true }) {
        Taker taker{ LayoutRule() };
        FileReading reading({ m_folder.path() + fileName, CharCode::Jis, codesOfSilent, {}, isGrowing },
            LayoutCopy(taker.store), FileCalls::system(), { 4, 4, 4 });
        while (isGrowing && reading.hasMore(bytes.size()))
            QCOMPARE(taker.makeStep(reading, makeOneByOne), FileReading::Step::More);
        reading.endGrowth();
        QCOMPARE(taker.take(reading, makeOneByOne), std::nullopt);
        QCOMPARE(storedBytes(*reading.result().codec, taker.store), bytes);
    }
}

REGISTER_TEST(runPlainTest<FileReadingTest>)
#include "filereading_test.moc"
