#include "app/commandline.h"

#include "files/filename.h"
#include "tests/testprogram.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

QByteArray drawn(const FileRequest &request)
{
    QByteArray text = FileName::toBytes(request.fileName);
    const QByteArray here = FileName::toBytes(FileName::absolute(".")) + '/';
    if (text.startsWith(here))
        text = text.sliced(here.size());
    if (request.isRecent)
        text = "(recent)";
    else if (request.fileName.isEmpty())
        text = "(new)";
    if (request.place)
        text +=
            " @" + QByteArray::number(request.place->line) + ',' + QByteArray::number(request.place->column);
    if (request.charCode)
        text += " in " + QByteArray(infoOf(*request.charCode).name.data());
    return text;
}

/// What a line asks for, or what is wrong with it.
QByteArray drawn(const CommandLine &line)
{
    switch (line.action()) {
    case CommandLine::Action::ShowHelp:
        return "help";
    case CommandLine::Action::ShowVersion:
        return "version";
    case CommandLine::Action::Refuse:
        return line.error().toUtf8();
    case CommandLine::Action::Open:
        break;
    }
    QByteArrayList parts;
    for (const FileRequest &request : line.requests())
        parts << (parts.size() == line.inputAt() ? drawn(request).replace("new", "input") : drawn(request));
    if (line.waits())
        parts << "waits";
    return parts.join("; ");
}

} // namespace

/// The words of a command line.
class CommandLineTest : public QObject {
    Q_OBJECT

private slots:
    void asks_data();
    void asks();
    void namesOfAnyBytes();
    void wordsOfTheToolkit_data();
    void wordsOfTheToolkit();
    void everyFileIsWantedFromTheShell();
    void recentFilesAreNotAwaited();
    void helpFitsATerminal();
};

void CommandLineTest::asks_data()
{
    QTest::addColumn<QByteArray>("asked");
    // The words with blanks between; files that are there are "a:1", "a:1:2", "a:3:" and "file:///there".
    const auto row = [](const char *line, const char *asked) { QTest::newRow(line) << QByteArray(asked); };
    row("", "");
    row("a", "a");
    row("a b a", "a; b; a");
    row("/x/../a", "/a");
    row("+7 a", "a @7,1");
    row("+7:3 a", "a @7,3");
    row("+7 a b", "a @7,1; b");
    row("+7 -", "(input) @7,1");
    row("+7 +8 a", "a @8,1");
    row("+7 a:1", "a:1 @7,1");
    row("+7 b:2", "b:2 @7,1");
    row("+7 -- b:2", "b:2 @7,1");
    row("b:2", "b @2,1");
    row("b:2:3", "b @2,3");
    row("b:x:3", "b:x @3,1");
    row("b:2:x", "b:2:x");
    row("a:1", "a:1");
    row("a:1:2", "a:1:2");
    row("a:1:3", "a:1 @3,1");
    row("a:1:2:3", "a:1:2 @3,1");
    row("a:1:2:3:4", "a:1:2 @3,4");
    row("b:0", "b:0");
    row("b:2:0", "b:2:0");
    row("b:", "b:");
    row("b::", "b::");
    row("b:2:", "b @2,1");
    row("b:2:3:", "b @2,3");
    row("b:2::", "b:2::");
    row("b:2:3::", "b:2:3::");
    row("b:x:", "b:x:");
    row("b:x:3:", "b:x @3,1");
    row(":2:", ":2:");
    row("a:1:2:", "a:1 @2,1");
    row("a:1:2:7:", "a:1:2 @7,1");
    row("a:3:", "a:3:");
    row("a:3:4:", "a @3,4");
    row("b:-2", "b:-2");
    row("b:99999999999999999999", "b:99999999999999999999");
    row(":2", ":2");
    row(":2:3", ":2 @3,1");
    row("/x:1/y:2", "/x:1/y @2,1");
    row("file:///x/a%20b", "/x/a b");
    row("file:///x/b:2", "/x/b @2,1");
    row("+7 file:///x/a", "/x/a @7,1");
    row("-- file:///x/%83", "/x/\x83");
    row("file:2", "file @2,1");
    row("file:///there", "file:/there");
    row("+", "+");
    row("+x", "+x");
    row("-- --help -x +7 b:2 -", "--help; -x; +7; b:2; -");
    row("-", "(input)");
    row("a -", "a; (input)");
    row("--charset=UTF-8 a b", "a in UTF8; b in UTF8");
    row("a --charset=shift_jis", "a in Shift-JIS");
    row("--charset=SJIS a", "a in Shift-JIS");
    row("--charset=EUC-JP -", "(input) in EUC");
    row("--charset=ISO-2022-JP a", "a in JIS");
    row("--charset=utf8", "");
    row("--new-document", "(new)");
    row("a --new-document --new-document", "a; (new); (new)");
    row("--new-document -", "(new); (input)");
    row("--recent-files", "(recent)");
    row("--", "");
    row("--wait a", "a; waits");
    row("a --wait -", "a; (input); waits");
    row("--help", "help");
    row("a --help", "help");
    row("--help --nonsense", "help");
    row("--version", "version");
    row("--version --help", "version");
    row("--nonsense --help", "there is no option '--nonsense'");
    row("-x", "there is no option '-x'");
    row("--wait=1 a", "there is no option '--wait=1'");
    row("--charset", "'--charset' needs a name, as in '--charset=UTF-8'");
    row("--charset UTF-8 a", "'--charset' needs a name, as in '--charset=UTF-8'");
    row("--charset= a", "there is no character code ''");
    row("--charset=EBCDIC a", "there is no character code 'EBCDIC'");
    row("--wait", "'--wait' needs a file");
    row("--wait --recent-files", "'--wait' needs a file");
    row("+7", "'+7' needs a file behind it");
    row("+7 --", "'+7' needs a file behind it");
    row("+0 a", "there is no line '0'");
    row("+7: a", "there is no line '7:'");
    row("+7x a", "there is no line '7x'");
    row("+99999999999999999999 a", "there is no line '99999999999999999999'");
    row("- -", "'-' can be named only once");
}

void CommandLineTest::asks()
{
    QFETCH(QByteArray, asked);
    const QByteArray words = QTest::currentDataTag();
    const CommandLine line(words.isEmpty() ? QByteArrayList() : words.split(' '), [](const QByteArray &name) {
        return QByteArrayList{ "a:1", "a:1:2", "a:3:", "file:///there" }.contains(name);
    });
    QCOMPARE(drawn(line), asked);
}

void CommandLineTest::namesOfAnyBytes()
{
    const CommandLine line({ "/\203e:12", "/\343\201\202 x", "" }, [](const QByteArray &) { return false; });
    QCOMPARE(drawn(line), QByteArray("a file has a name"));
    QCOMPARE(drawn(line.requests()[0]), QByteArray("/\203e @12,1"));
    QCOMPARE(drawn(line.requests()[1]), QByteArray("/\343\201\202 x"));
}

void CommandLineTest::wordsOfTheToolkit_data()
{
    QTest::addColumn<QByteArray>("forToolkit");
    QTest::addColumn<QByteArray>("asked");
    const auto row = [](const char *line, const char *forToolkit, const char *asked) {
        QTest::newRow(line) << QByteArray(forToolkit) << QByteArray(asked);
    };
    row("-platform offscreen a", "-platform offscreen", "a");
    row("--platform offscreen a", "--platform offscreen", "a");
    row("-style=Fusion a", "-style=Fusion", "a");
    row("a -reverse b", "-reverse", "a; b");
    row("-session +7 a", "-session +7", "a");
    row("-platform", "-platform", "");
    row("-- -platform offscreen", "", "-platform; offscreen");
}

void CommandLineTest::wordsOfTheToolkit()
{
    QFETCH(QByteArray, forToolkit);
    QFETCH(QByteArray, asked);
    const CommandLine line(
        QByteArray(QTest::currentDataTag()).split(' '), [](const QByteArray &) { return false; });
    QCOMPARE(line.toolkitWords().join(' '), forToolkit);
    QCOMPARE(drawn(line), asked);
}

void CommandLineTest::everyFileIsWantedFromTheShell()
{
    const CommandLine line({ "a", "b:1", "+2", "c", "-" }, [](const QByteArray &) { return false; });
    QCOMPARE(line.requests().size(), 4);
    for (const FileRequest &request : line.requests())
        QCOMPARE(request.from, FileRequest::From::Shell);
}

void CommandLineTest::recentFilesAreNotAwaited()
{
    const CommandLine line(
        { "--wait", "--recent-files", "a", "-", "--new-document" }, [](const QByteArray &) { return false; });
    QCOMPARE(line.requests().size(), 4);
    QCOMPARE(line.awaited(), 3);
}

void CommandLineTest::helpFitsATerminal()
{
    constexpr qsizetype columns = 80;
    const QStringList lines = CommandLine::helpText().split(u'\n');
    QCOMPARE(lines.last(), QString());
    for (const QString &line : lines)
        QVERIFY2(line.size() <= columns, qPrintable(line));
}

REGISTER_TEST(runCoreTest<CommandLineTest>)
#include "commandline_test.moc"
