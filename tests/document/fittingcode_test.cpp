#include "document/fittingcode.h"

#include "document/detection.h"
#include "document/textdocument.h"
#include "tests/document/documentfolder.h"
#include "tests/testprogram.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Which code fits better than the one that a file was read with.
class FittingCodeTest : public QObject {
    Q_OBJECT

private slots:
    void ofADetectedOne_data();
    void ofADetectedOne();
    void ofAWantedOne_data();
    void ofAWantedOne();
    void longTextsAreDecodedWhole_data();
    void longTextsAreDecodedWhole();
    void everyUndecodableByteIsCounted_data();
    void everyUndecodableByteIsCounted();
};

namespace {

constexpr std::optional<CharCode> none;

std::optional<CharCode> fittingFor(const QByteArray &bytes, std::optional<CharCode> wanted = {})
{
    const DocumentFolder folder;
    if (!folder.write(u"a.txt"_s, bytes))
        qFatal("cannot write");
    TextDocument document;
    if (document.load(folder.path(), u"a.txt"_s, wanted, {}))
        qFatal("cannot read");
    return document.findings().fittingCode;
}

} // namespace

void FittingCodeTest::ofADetectedOne_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<CharCode>("detected");
    QTest::addColumn<std::optional<CharCode>>("fitting");
    const auto row = [](const char *name, const QByteArray &bytes, CharCode detected,
                         std::optional<CharCode> fitting) {
        QTest::newRow(name) << bytes << detected << fitting;
    };
    using enum CharCode;
    row("ASCII", "abc", Ascii, none);
    row("a log in ASCII", "\x1B[31mred\x1B[0m\n", Euc, none);
    row("UTF-8", "\xC3\xA9\n", Utf8, none);
    row("UTF-8, cut", "\xC3\xA9\xC3\xA9\n\xE3\x81", Utf8, none);
    row("UTF-8, broken", "\xE3\x81\x82\xE3\x81\x82 \xE3\x81\n", ShiftJis, none);
    row("UTF-8 of four bytes", "a \xF0\x9F\x98\x80\n", ShiftJis, Utf8);
    row("a log in UTF-8", "\x1B[31m\xC3\xA9\x1B[0m\n", Euc, Utf8);
    row("a log in UTF-8, reset", "\x1B(B\x1B[m\xE6\xBC\xA2\n", Jis, Utf8);
    row("Shift-JIS", "\x8A\xBF\x8E\x9A\n", ShiftJis, none);
    row("Shift-JIS with 9F alone", "\x9F\x40\x9F\x41\n", Euc, ShiftJis);
    row("EUC", "\xB4\xC1\xBB\xFA\n", Euc, none);
    row("EUC of three bytes", "\x8F\xB0\xA1\xB4\xC1\n", ShiftJis, Euc);
    row("JIS", "\x1B$B4A\x1B(B\n", Jis, none);
    row("a broken byte", "\xC3\xA9 \xFF\n", Euc, none);
    row("binary", QByteArray("\0\xC3\xA9", 3), Binary, none);
}

void FittingCodeTest::ofADetectedOne()
{
    QFETCH(QByteArray, bytes);
    QTEST(detectCharCode(bytes, CharCode::ShiftJis), "detected");
    QTEST(fittingFor(bytes), "fitting");
}

void FittingCodeTest::ofAWantedOne_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<CharCode>("wanted");
    QTest::addColumn<std::optional<CharCode>>("fitting");
    const auto row = [](const char *name, const QByteArray &bytes, CharCode wanted,
                         std::optional<CharCode> fitting) {
        QTest::newRow(name) << bytes << wanted << fitting;
    };
    using enum CharCode;
    row("what fits", "\x8A\xBF\x8E\x9A\n", ShiftJis, none);
    row("what fits too", "\xC3\xA9\n", Euc, none);
    row("Shift-JIS as EUC", "\x8A\xBF\x8E\x9A\n", Euc, ShiftJis);
    row("Shift-JIS as UTF-8", "\x8A\xBF\x8E\x9A\n", Utf8, ShiftJis);
    row("EUC as UTF-8", "\xB4\xC1\xBB\xFA\n", Utf8, Euc);
    row("UTF-8 as JIS", "\xC3\xA9\n", Jis, Utf8);
    row("UTF-8 of four bytes as EUC", "\xF0\x9F\x98\x80\n", Euc, Utf8);
}

void FittingCodeTest::ofAWantedOne()
{
    QFETCH(QByteArray, bytes);
    QFETCH(CharCode, wanted);
    QTEST(fittingFor(bytes, wanted), "fitting");
}

void FittingCodeTest::longTextsAreDecodedWhole_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("long lines") << QByteArray("\xE6\xBC\xA2").repeated(70000) + '\n';
    QTest::newRow("short lines") << QByteArray("\xE6\xBC\xA2\n");
}

/// What fits but for its last byte does not fit.
void FittingCodeTest::longTextsAreDecodedWhole()
{
    QFETCH(QByteArray, line);
    const QByteArray text = "\xF0\x9F\x98\x80" + line.repeated(1 + 300000 / line.size());
    QCOMPARE(fittingFor(text), std::optional(CharCode::Utf8));
    QCOMPARE(fittingFor(text + '\xFF'), none);
}

void FittingCodeTest::everyUndecodableByteIsCounted_data()
{
    QTest::addColumn<CharCode>("code");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("count");
    const QByteArray pairs = QByteArray("\xF0\x9F\x98\x80").repeated(50000);
    QTest::newRow("UTF-8") << CharCode::Utf8 << QByteArray("a\xFF\xE3\x81 \xF0\x9F\x98\x80") << qint64(3);
    QTest::newRow("many pairs") << CharCode::Utf8 << pairs + '\x80' + pairs << qint64(1);
    QTest::newRow("Shift-JIS") << CharCode::ShiftJis << QByteArray("\x8A\xBF\xFF\x80 A\xFE") << qint64(3);
    QTest::newRow("JIS") << CharCode::Jis << QByteArray("\x1B$B4A\x29\x21\x1B(B\xFF") << qint64(3);
    QTest::newRow("nothing") << CharCode::Euc << QByteArray() << qint64(0);
}

void FittingCodeTest::everyUndecodableByteIsCounted()
{
    QFETCH(CharCode, code);
    QFETCH(QByteArray, bytes);
    qint64 count = -1;
    infoOf(code).codec().decode(bytes, LayoutRule(), &count);
    QTEST(count, "count");
}

REGISTER_TEST(runPlainTest<FittingCodeTest>)
#include "fittingcode_test.moc"
