#include "tests/app/programwindow.h"
#include "tests/app/unsavedtexts.h"
#include "tests/testprogram.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>

#include <csignal>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

const QByteArray oldContent = "the old content e\n";

/// What takes its time.
QByteArray largeContent(int lines)
{
    return QByteArray("a line of a large file\n").repeated(lines);
}

/// Without a pause, so that a short moment is not missed; gives up when it has passed all the same.
void waitFor(const std::function<bool()> &isSo)
{
    for (const QDeadlineTimer end(5000); !isSo() && !end.hasExpired();) { }
}

} // namespace

/// The program told to end by a signal, whatever is open in it or under way: it asks nobody, keeps the text,
/// and leaves files as they were.
class SuddenEndTest : public QObject, private ProgramWindow {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void endsWhateverIsOpen_data();
    void endsWhateverIsOpen();
    void endsDuringADrag();
    void endsDuringReplaceAll();
    void endsDuringALoad();
    void endsDuringASave();
    void endsWhileManyAreOpened();
    void unreadableFileIsNoReasonToStay();
    void outlivesFailedWrites();

private:
    bool startWithEdit(const QByteArray &content = oldContent);
    void sendSignal(int number = SIGTERM) { ::kill(pid_t(program().processId()), number); }
    bool hasEndedByItself()
    {
        return waitUntil([this] { return hasEnded(); }) && program().exitStatus() == QProcess::NormalExit
            && program().exitCode() == 0;
    }
    QStringList names() const
    {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    static QByteArray settings()
    {
        QFile file(settingsFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    bool isReading(const QString &fileName);
};

void SuddenEndTest::init()
{
    QVERIFY(reset());
}

void SuddenEndTest::cleanup()
{
    QCOMPARE(end(), QByteArray());
}

/// With an "x" in front of a.txt.
bool SuddenEndTest::startWithEdit(const QByteArray &content)
{
    if (!start({ write(u"a.txt"_s, content) }))
        return false;
    press({ u"x"_s });
    return true;
}

bool SuddenEndTest::isReading(const QString &fileName)
{
    const QDir open(u"/proc/%1/fd"_s.arg(program().processId()));
    for (const QFileInfo &file : open.entryInfoList(QDir::Files | QDir::System)) {
        if (file.symLinkTarget() == fileName)
            return true;
    }
    return false;
}

void SuddenEndTest::endsWhateverIsOpen_data()
{
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("title"); // of the window that they open
    QTest::addColumn<int>("signal");
    const auto row = [](const char *name, const QStringList &keys, const QString &title,
                         int signal = SIGTERM) { QTest::newRow(name) << keys << title << signal; };
    row("nothing", {}, {});
    row("nothing, SIGHUP", {}, {}, SIGHUP);
    row("nothing, SIGINT", {}, {}, SIGINT);
    row("question whether to save", { u"Escape"_s }, u"Confirm File Save"_s);
    row("question whether to end", { u"ctrl+q"_s }, u"Confirm File Save"_s);
    row("menu", { u"alt+f"_s }, {});
    row("file dialog", { u"ctrl+o"_s }, u"Open"_s);
    row("file dialog that saves", { u"alt+f"_s, u"a"_s }, u"Save as"_s);
    row("search panel", { u"ctrl+n"_s }, u"Search"_s);
}

void SuddenEndTest::endsWhateverIsOpen()
{
    QFETCH(QStringList, keys);
    QFETCH(QString, title);
    QFETCH(int, signal);
    QVERIFY(startWithEdit());
    if (!keys.isEmpty())
        press(keys);
    if (!title.isEmpty())
        QTRY_COMPARE(activeTitle(), title);
    sendSignal(signal);
    sendSignal(signal);
    QVERIFY(hasEndedByItself());
    QCOMPARE(read(u"a.txt"_s), oldContent);
    QCOMPARE(names(), QStringList{ u"a.txt"_s });
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList{ u'x' + QString::fromLatin1(oldContent) });
    QVERIFY(settings().contains("Name0 = a.txt\n"));
}

void SuddenEndTest::endsDuringADrag()
{
    QVERIFY(startWithEdit());
    press({ u"ctrl+a"_s });
    xdotool({ u"mousemove"_s, u"--window"_s, window(), u"60"_s, u"60"_s });
    xdotool({ u"mousedown"_s, u"1"_s });
    xdotool({ u"mousemove_relative"_s, u"--sync"_s, u"60"_s, u"60"_s });
    xdotool({ u"mousemove_relative"_s, u"--sync"_s, u"60"_s, u"60"_s });
    sendSignal();
    QVERIFY(hasEndedByItself());
    xdotool({ u"mouseup"_s, u"1"_s });
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList{ u'x' + QString::fromLatin1(oldContent) });
}

void SuddenEndTest::endsDuringReplaceAll()
{
    const QByteArray content = QByteArray("e\n").repeated(500'000);
    QVERIFY(startWithEdit(content));
    press({ u"ctrl+m"_s });
    QTRY_COMPARE(activeTitle(), u"Replace"_s);
    xdotool({ u"type"_s, u"e"_s });
    press({ u"Tab"_s, u"y"_s, u"Tab"_s, u"Tab"_s, u"Tab"_s, u"space"_s });
    QTRY_COMPARE(activeTitle(), u"Replace All"_s);
    sendSignal();
    QVERIFY(hasEndedByItself());
    QCOMPARE(read(u"a.txt"_s), content);
    const QStringList left = UnsavedTexts::leftBehind();
    QCOMPARE(left.size(), 1);
    const QString text = QString(left.first()).replace(u'y', u'e');
    QVERIFY(text == u'x' + QString::fromLatin1(content));
}

void SuddenEndTest::endsDuringALoad()
{
    QVERIFY(startWithEdit());
    const QString large = write(u"large.txt"_s, largeContent(4'000'000));
    QProcess second;
    second.start(QStringLiteral(MARLOPAD_PROGRAM), { large });
    waitFor([&] { return isReading(large); });
    sendSignal();
    QVERIFY(hasEndedByItself());
    second.waitForFinished();
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList{ u'x' + QString::fromLatin1(oldContent) });
    QVERIFY(settings().contains("Name0 = a.txt\n"));
}

void SuddenEndTest::endsDuringASave()
{
    const QByteArray content = largeContent(350'000); // opened at once
    QVERIFY(startWithEdit(content));
    press({ u"ctrl+s"_s });
    waitFor([this] { return names().size() == 2; });
    sendSignal();
    QVERIFY(hasEndedByItself());
    QCOMPARE(names(), QStringList{ u"a.txt"_s });
    // In the rare case that all of it was written by then.
    QVERIFY(read(u"a.txt"_s) == content || read(u"a.txt"_s) == 'x' + content);
    QVERIFY(read(u"a.txt"_s) != content || UnsavedTexts::leftBehind().value(0).startsWith(u'x'));
}

/// A second start has handed them over.
void SuddenEndTest::endsWhileManyAreOpened()
{
    constexpr int many = 500;
    QVERIFY(startWithEdit());
    QStringList files;
    while (files.size() < many)
        files << write(u"%1.txt"_s.arg(files.size()), oldContent);
    QProcess second;
    second.start(QStringLiteral(MARLOPAD_PROGRAM), files);
    QVERIFY(second.waitForFinished());
    QCOMPARE(second.exitCode(), 0);
    sendSignal();
    QVERIFY(hasEndedByItself());
    QCOMPARE(names().size(), many + 1);
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList{ u'x' + QString::fromLatin1(oldContent) });
    QVERIFY(settings().contains("Name0 = a.txt\n"));
}

void SuddenEndTest::unreadableFileIsNoReasonToStay()
{
    program().start(QStringLiteral(MARLOPAD_PROGRAM), { u"/dev/null"_s });
    QTRY_COMPARE(activeTitle(), u"File Load Error!"_s);
    sendSignal();
    QVERIFY(hasEndedByItself());
}

/// Where files may not be so large, and where nobody reads standard error any more, the system sends a
/// signal.
void SuddenEndTest::outlivesFailedWrites()
{
    QVERIFY(startWithEdit());
    sendSignal(SIGXFSZ);
    sendSignal(SIGPIPE);
    press({ u"y"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), "xy" + oldContent);
}

REGISTER_TEST(runCoreTest<SuddenEndTest>)
#include "suddenend_test.moc"
