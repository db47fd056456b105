#include "tests/app/programwindow.h"
#include "tests/testprogram.h"

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

struct Answer {
    int status = -1;
    QByteArray output;
    QByteArray errors;
};

/// Runs the program to its end, without a display but for what the variables, as in "DISPLAY=:0", name.
Answer answerTo(const QStringList &arguments, const QString &locale = u"C"_s, const QString &variable = {})
{
    QProcess program;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const QString &name : { u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s })
        variables.remove(name);
    variables.insert(u"LC_ALL"_s, locale);
    if (!variable.isEmpty())
        variables.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
    program.setProcessEnvironment(variables);
    program.start(QStringLiteral(MARLOPAD_PROGRAM), arguments);
    if (!program.waitForFinished() || program.exitStatus() != QProcess::NormalExit)
        return {};
    return { program.exitCode(), program.readAllStandardOutput(), program.readAllStandardError() };
}

QString withPlainSpaces(const QByteArray &told)
{
    return QString::fromUtf8(told).replace(QChar::Nbsp, u' ').replace(QChar(0x202F), u' ');
}

/// The process that has the window, which a waiting start is not.
pid_t instance()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
        u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetConnectionUnixProcessID"_s);
    question.setArguments({ u"QPE.Application.marlopad"_s });
    return pid_t(bus.call(question).arguments().value(0).toUInt());
}

} // namespace

/// The program as a shell starts it.
class ShellStartTest : public QObject, private ProgramWindow {
    Q_OBJECT

private slots:
    void init() { QVERIFY(reset()); }
    void cleanup();

    void tellsOnTheTerminal_data();
    void tellsOnTheTerminal();
    void wrongOptionsAreRefused_data();
    void wrongOptionsAreRefused();
    void saysThatThereIsNoDisplay_data();
    void saysThatThereIsNoDisplay();
    void saysThatThePlatformIsNotInstalled_data();
    void saysThatThePlatformIsNotInstalled();
    void handsOverWithoutADisplay();
    void saysThatTheWindowDoesNotAnswer_data();
    void saysThatTheWindowDoesNotAnswer();
    void goesToTheLine();
    void secondStartGoesToTheLine();
    void newFileIsMadeByItsFirstSave();
    void secondStartBringsItsInput();
    void commandsOfTheShellAreRead();
    void waitsForTheDocument();
    void secondStartWaitsForItsDocuments();
    void waitsWithoutStandardFiles();
    void waitingEndsWithTheProgram();

private:
    std::unique_ptr<QProcess> startSecond(const QStringList &arguments) const;
};

void ShellStartTest::cleanup()
{
    if (const pid_t process = instance(); process > 0)
        ::kill(process, SIGKILL);
    QTRY_COMPARE(instance(), 0);
    QCOMPARE(end(), QByteArray());
}

std::unique_ptr<QProcess> ShellStartTest::startSecond(const QStringList &arguments) const
{
    auto second = std::make_unique<QProcess>();
    second->setWorkingDirectory(folder());
    second->start(QStringLiteral(MARLOPAD_PROGRAM), arguments);
    return second;
}

void ShellStartTest::tellsOnTheTerminal_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QByteArray>("told");
    const auto row = [](const char *option, const char *locale, const char *told) {
        QTest::addRow("%s %s", option, locale)
            << QString::fromLatin1(option) << QString::fromLatin1(locale) << QByteArray(told);
    };
    row("--version", "C", "Marlo!Pad QT 1.76\n");
    row("--version", "ja_JP.UTF-8", "Marlo!Pad QT 1.76\n");
    row("--help", "C", "Usage: marlopad ");
    row("--help", "en_GB.UTF-8", "Usage: marlopad ");
    row("--help", "de_DE.UTF-8", "Usage: marlopad ");
    row("--help", "fr_FR.UTF-8", "Utilisation : marlopad ");
    row("--help", "ja_JP.UTF-8", "使い方: marlopad ");
}

void ShellStartTest::tellsOnTheTerminal()
{
    QFETCH(QString, option);
    QFETCH(QString, locale);
    QFETCH(QByteArray, told);
    const Answer answer = answerTo({ option }, locale);
    QCOMPARE(answer.status, 0);
    QVERIFY2(withPlainSpaces(answer.output).startsWith(QString::fromUtf8(told)), answer.output.constData());
    QCOMPARE(answer.errors, QByteArray());
}

void ShellStartTest::wrongOptionsAreRefused_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("C") << u"C"_s
                       << QByteArray("marlopad: there is no option '--nonsense' (see marlopad --help)\n");
    QTest::newRow("fr_FR.UTF-8")
        << u"fr_FR.UTF-8"_s
        << QByteArray("marlopad : l’option « --nonsense » n’existe pas (voir marlopad --help)\n");
    QTest::newRow("ja_JP.UTF-8")
        << u"ja_JP.UTF-8"_s
        << QByteArray("marlopad: オプション'--nonsense'はありません（marlopad --helpを参照）\n");
}

void ShellStartTest::wrongOptionsAreRefused()
{
    QFETCH(QString, locale);
    QFETCH(QByteArray, error);
    const Answer answer = answerTo({ u"a.txt"_s, u"--nonsense"_s }, locale);
    QCOMPARE(answer.status, 2);
    QCOMPARE(answer.output, QByteArray());
    QCOMPARE(withPlainSpaces(answer.errors), QString::fromUtf8(error));
}

void ShellStartTest::saysThatThereIsNoDisplay_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("locale");
    const auto row = [](const QStringList &options, const QString &variable, const char *locale = "C") {
        QTest::addRow("%s %s %s", qPrintable(options.join(u' ')),
            variable.isEmpty() ? "none named" : qPrintable(variable), locale)
            << options << variable << QString::fromLatin1(locale);
    };
    row({}, QString());
    row({}, QString(), "fr_FR.UTF-8");
    row({}, QString(), "ja_JP.UTF-8");
    row({ u"--wait"_s }, QString());
    row({}, u"DISPLAY=:987"_s);
    row({ u"-display"_s, u":987"_s }, QString());
    row({}, u"QT_QPA_PLATFORM=wayland"_s);
    row({ u"--platform"_s, u"wayland;xcb"_s }, u"WAYLAND_DISPLAY=/nonexistent/wayland-0"_s);
    row({}, u"QT_QPA_PLATFORM=linuxfb:fb=/nonexistent"_s);
}

void ShellStartTest::saysThatThereIsNoDisplay()
{
    QFETCH(QStringList, options);
    QFETCH(QString, variable);
    QFETCH(QString, locale);
    const QHash<QString, QString> told{
        { u"C"_s,
            u"marlopad: there is no display to show a window on (see DISPLAY and WAYLAND_DISPLAY)\n"_s },
        { u"fr_FR.UTF-8"_s,
            u"marlopad : il n’y a pas d’écran où afficher une fenêtre (voir DISPLAY et WAYLAND_DISPLAY)\n"_s },
        { u"ja_JP.UTF-8"_s,
            u"marlopad: ウィンドウを表示できるディスプレイがありません（DISPLAY、WAYLAND_DISPLAYを確認してください）\n"_s },
    };
    const Answer answer = answerTo(options + QStringList{ u"a.txt"_s }, locale, variable);
    QCOMPARE(answer.status, 1);
    QCOMPARE(answer.output, QByteArray());
    QCOMPARE(withPlainSpaces(answer.errors), told.value(locale));
}

void ShellStartTest::saysThatThePlatformIsNotInstalled_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("told");
    QTest::newRow("asked by a variable")
        << QStringList() << u"QT_QPA_PLATFORM=nosuch:a=b;other"_s << u"C"_s
        << u"marlopad: the platform 'nosuch:a=b;other' is not installed (see QT_QPA_PLATFORM)\n"_s;
    QTest::newRow("asked by a word, in French")
        << QStringList{ u"-platform"_s, u"nosuch"_s } << QString() << u"fr_FR.UTF-8"_s
        << u"marlopad : la plate-forme « nosuch » n’est pas installée (voir QT_QPA_PLATFORM)\n"_s;
    QTest::newRow("in Japanese")
        << QStringList() << u"QT_QPA_PLATFORM=nosuch"_s << u"ja_JP.UTF-8"_s
        << u"marlopad: プラットフォーム'nosuch'はインストールされていません（QT_QPA_PLATFORMを確認してください）\n"_s;
}

void ShellStartTest::saysThatThePlatformIsNotInstalled()
{
    QFETCH(QStringList, options);
    QFETCH(QString, variable);
    QFETCH(QString, locale);
    QFETCH(QString, told);
    const Answer answer = answerTo(options + QStringList{ u"a.txt"_s }, locale, variable);
    QCOMPARE(answer.status, 1);
    QCOMPARE(answer.output, QByteArray());
    QCOMPARE(withPlainSpaces(answer.errors), told);
}

/// As a shell that came in over the network starts it.
void ShellStartTest::handsOverWithoutADisplay()
{
    QVERIFY(start());
    const QString file = write(u"a.txt"_s, "ab\ncd\n");
    const Answer answer = answerTo({ file + u":2"_s });
    QCOMPARE(answer.errors, QByteArray());
    QCOMPARE(answer.status, 0);
    QTRY_COMPARE(lineEnd(), u"LF"_s);
    QVERIFY(takesKeys());
    press({ u"x"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("ab\nxcd\n"));
}

void ShellStartTest::saysThatTheWindowDoesNotAnswer_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("told");
    QTest::newRow("C")
        << u"C"_s
        << u"marlopad: the window that is open does not answer, and none can be shown here (try again, or end process %1)\n"_s;
    QTest::newRow("fr_FR.UTF-8")
        << u"fr_FR.UTF-8"_s
        << u"marlopad : la fenêtre ouverte ne répond pas, et aucune ne peut être affichée ici (réessayer, ou terminer le processus %1)\n"_s;
    QTest::newRow("ja_JP.UTF-8")
        << u"ja_JP.UTF-8"_s
        << u"marlopad: 開いているウィンドウが応答しません。ここでは別のウィンドウを表示できません（もう一度試すか、プロセス%1を終了してください）\n"_s;
}

void ShellStartTest::saysThatTheWindowDoesNotAnswer()
{
    QFETCH(QString, locale);
    QFETCH(QString, told);
    QVERIFY(start());
    const pid_t silent = instance();
    ::kill(silent, SIGSTOP);
    const Answer answer = answerTo({ u"a.txt"_s }, locale);
    QCOMPARE(answer.status, 1);
    QCOMPARE(answer.output, QByteArray());
    QCOMPARE(withPlainSpaces(answer.errors), told.arg(silent));
}

void ShellStartTest::goesToTheLine()
{
    QVERIFY(start({ u"+2:2"_s, write(u"a.txt"_s, "ab\ncd\n") }));
    press({ u"x"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("ab\ncxd\n"));
}

void ShellStartTest::secondStartGoesToTheLine()
{
    write(u"a.txt"_s, "ab\ncd\n");
    write(u"a.txt:1"_s, "other\n");
    QVERIFY(start());
    const auto second = startSecond({ u"a.txt:2"_s });
    QVERIFY(second->waitForFinished());
    QCOMPARE(second->exitCode(), 0);
    QTRY_COMPARE(lineEnd(), u"LF"_s);
    QVERIFY(takesKeys());
    press({ u"x"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("ab\nxcd\n"));
    QVERIFY(startSecond({ u"a.txt:1"_s })->waitForFinished());
    QVERIFY(takesKeys());
    press({ u"y"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt:1"_s), QByteArray("yother\n"));
}

void ShellStartTest::newFileIsMadeByItsFirstSave()
{
    QVERIFY(start({ folder() + u"/new.txt"_s, u"--charset=UTF-8"_s }));
    QCOMPARE(title(), u"Marlo!Pad QT  [UTF8][CR+LF]"_s);
    press({ u"x"_s });
    QCOMPARE(read(u"new.txt"_s), QByteArray());
    press({ u"ctrl+s"_s });
    QTRY_COMPARE(read(u"new.txt"_s), QByteArray("x"));
}

void ShellStartTest::secondStartBringsItsInput()
{
    QVERIFY(start());
    const auto second = startSecond({ u"-"_s });
    second->write("from a pipe\n");
    second->closeWriteChannel();
    QVERIFY(second->waitForFinished());
    QCOMPARE(second->exitCode(), 0);
    QTRY_COMPARE(lineEnd(), u"LF"_s);
    QVERIFY(takesKeys());
    press({ u"ctrl+s"_s });
    QTRY_COMPARE(activeTitle(), u"Save as"_s);
    xdotool({ u"key"_s, u"alt+n"_s });
    xdotool({ u"key"_s, u"Escape"_s });
    QTRY_VERIFY(isActive());
}

/// Whose names are good in the process of the start alone.
void ShellStartTest::commandsOfTheShellAreRead()
{
    QVERIFY(start());
    QProcess shell;
    shell.start(u"bash"_s,
        { u"-c"_s, u"exec \"$0\" <(printf 'one\\ntwo\\n') <(printf 'three\\n')"_s,
            QStringLiteral(MARLOPAD_PROGRAM) });
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.exitCode(), 0);
    QTRY_COMPARE(lineEnd(), u"LF"_s);
}

void ShellStartTest::waitsForTheDocument()
{
    QVERIFY(start({ u"--wait"_s, write(u"a.txt"_s, "a\n") }));
    QVERIFY(!hasEnded());
    QVERIFY(instance() != program().processId());
    press({ u"x"_s, u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("xa\n"));
    QVERIFY(!hasEnded());
    press({ u"Escape"_s });
    QTRY_VERIFY(hasEnded());
    QCOMPARE(program().exitCode(), 0);
    QVERIFY(instance() > 0);
}

void ShellStartTest::secondStartWaitsForItsDocuments()
{
    QVERIFY(start({ write(u"a.txt"_s, "a\r\n") }));
    write(u"b.txt"_s, "b\n");
    write(u"c.txt"_s, "\rc");
    const auto second = startSecond({ u"--wait"_s, u"b.txt"_s, u"c.txt"_s });
    QVERIFY(second->waitForStarted());
    QTRY_COMPARE(lineEnd(), u"CR"_s);
    QVERIFY(takesKeys());
    press({ u"Escape"_s });
    QTRY_COMPARE(lineEnd(), u"LF"_s);
    QCOMPARE(second->state(), QProcess::Running);
    press({ u"Escape"_s });
    QTRY_COMPARE(lineEnd(), u"CR+LF"_s);
    QVERIFY(second->waitForFinished());
    QCOMPARE(second->exitCode(), 0);
}

/// No file that is opened passes for a standard one.
void ShellStartTest::waitsWithoutStandardFiles()
{
    QVERIFY(start({ write(u"a.txt"_s, "a\r\n") }));
    QProcess second;
    second.start(u"/bin/sh"_s,
        { u"-c"_s, u"exec \"$@\" <&- >&- 2>&-"_s, u"sh"_s, QStringLiteral(MARLOPAD_PROGRAM), u"--wait"_s,
            write(u"b.txt"_s, "b\n") });
    QVERIFY(second.waitForStarted());
    QTRY_COMPARE(lineEnd(), u"LF"_s);
    QVERIFY(takesKeys());
    QCOMPARE(second.state(), QProcess::Running);
    press({ u"Escape"_s });
    QVERIFY(second.waitForFinished());
    QCOMPARE(second.exitCode(), 0);
}

/// A commit message that was not finished is none.
void ShellStartTest::waitingEndsWithTheProgram()
{
    QVERIFY(start({ u"--wait"_s, write(u"a.txt"_s, "a\n") }));
    ::kill(instance(), SIGKILL);
    QTRY_VERIFY(hasEnded());
    QCOMPARE(program().exitCode(), 1);
}

REGISTER_TEST(runCoreTest<ShellStartTest>)
#include "shellstart_test.moc"
