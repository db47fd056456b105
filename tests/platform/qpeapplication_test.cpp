#include "platform/qpeapplication.h"

#include "files/endorder.h"
#include "files/filename.h"
#include "platform/endquestion.h"
#include "platform/launcherchannel.h"
#include "platform/toolkitstart.h"
#include "tests/platform/programrole.h"
#include "tests/testprogram.h"

#include <QAbstractEventDispatcher>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDir>
#include <QFile>
#include <QFontInfo>
#include <QMenu>
#include <QMessageBox>
#include <QScreen>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Prints what it is asked to open, one line on standard output each.
class PrintingWindow : public QWidget {
    Q_OBJECT
public slots:
    void setDocument(const QString &fileName) { print("document", escaped(fileName)); }
    /// With what came beside the name.
    void openRequested(const FileRequest &request)
    {
        const LineColumn place = request.place.value_or(LineColumn{ 0, 0 });
        const int code = request.charCode ? int(*request.charCode) : 0;
        std::array<char, 16> content{};
        if (request.input && ::pread(request.input->number(), content.data(), content.size() - 1, 0) < 0)
            print("unreadable");
        const bool isHere = request.from != FileRequest::From::Elsewhere;
        print(request.isRecent ? "recent" : isHere ? "document" : "elsewhere", escaped(request.fileName));
        if (request.place || request.charCode || request.input)
            print("with",
                QByteArray::number(place.line) + ' ' + QByteArray::number(place.column) + ' '
                    + QByteArray::number(code) + ' ' + content.data());
        if (request.waiting && ::write(request.waiting->number(), ".", 1) < 0)
            print("nobody waits");
    }

public:
    static void print(const char *what, const QByteArray &text = {})
    {
        std::printf("%s%s%s\n", what, text.isEmpty() ? "" : " ", text.constData());
        std::fflush(stdout);
    }

private:
    static QByteArray escaped(const QString &text)
    {
        QByteArray out;
        for (const QChar c : text)
            out += c.unicode() < 0x80 ? QByteArray(1, c.toLatin1())
                                      : "\\u" + QByteArray::number(c.unicode(), 16);
        return out;
    }
};

} // namespace

class QPEApplicationTest : public QObject {
    Q_OBJECT
private slots:
    void scale_data();
    void scale();
    void qpeDir_data();
    void qpeDir();
    void eventsAreTheToolkitsOwn();

    void signal_endsAtOnce_data();
    void signal_endsAtOnce();
    void signal_endsWhatNeverReturns();
};

void QPEApplicationTest::scale_data()
{
    QTest::addColumn<QStringList>("variables");
    QTest::addColumn<QByteArray>("result"); // device pixel ratio, logical dpi, pixels of an 18 point font
    QTest::newRow("no screen") << QStringList() << QByteArray("1.00 72 18");
    QTest::newRow("1.25") << QStringList{ u"QT_SCALE_FACTOR=1.25"_s } << QByteArray("1.25 72 18");
    QTest::newRow("1.33") << QStringList{ u"QT_SCALE_FACTOR=1.33"_s } << QByteArray("1.33 72 18");
    QTest::newRow("1.5") << QStringList{ u"QT_SCALE_FACTOR=1.5"_s } << QByteArray("1.50 72 18");
    QTest::newRow("2") << QStringList{ u"QT_SCALE_FACTOR=2"_s } << QByteArray("2.00 72 18");
    QTest::newRow("scale of the screen")
        << QStringList{ u"QT_SCREEN_SCALE_FACTORS=2"_s } << QByteArray("2.00 72 18");
    QTest::newRow("no scaling") << QStringList{ u"QT_ENABLE_HIGHDPI_SCALING=0"_s }
                                << QByteArray("1.00 72 18");
    QTest::newRow("the user's own font density")
        << QStringList{ u"QT_FONT_DPI=96"_s } << QByteArray("1.00 96 24");
}

void QPEApplicationTest::scale()
{
    QFETCH(QStringList, variables);
    QFETCH(QByteArray, result);
    Role role({ u"scale"_s });
    for (const QString &variable : variables)
        role.setVariable(variable.section(u'=', 0, 0), variable.section(u'=', 1));
    QCOMPARE(role.output(), result);
}

void QPEApplicationTest::qpeDir_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QStringList>("folders"); // below a folder that has the program in bin/
    QTest::addColumn<QString>("result");
    QTest::newRow("given") << u"/opt/data"_s << QStringList{ u"share/marlopad"_s } << u"/opt/data"_s;
    QTest::newRow("given with slash") << u"/opt/data/"_s << QStringList() << u"/opt/data"_s;
    QTest::newRow("installed") << QString() << QStringList{ u"share/marlopad"_s } << u"./share/marlopad"_s;
    QTest::newRow("built") << QString() << QStringList{ u"bin/share/marlopad"_s }
                           << u"./bin/share/marlopad"_s;
    QTest::newRow("both") << QString() << QStringList{ u"share/marlopad"_s, u"bin/share/marlopad"_s }
                          << u"./share/marlopad"_s;
    QTest::newRow("none") << QString() << QStringList() << u"./share/marlopad"_s;
}

void QPEApplicationTest::qpeDir()
{
    QFETCH(QString, variable);
    QFETCH(QStringList, folders);
    QFETCH(QString, result);
    const QTemporaryDir root;
    for (const QString &folder : folders + QStringList{ u"bin"_s })
        QVERIFY(QDir(root.path()).mkpath(folder));
    const QString program = root.filePath(u"bin/marlopad"_s);
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
    Role role({ u"qpedir"_s });
    role.setProgram(program);
    role.setVariable(u"QPEDIR"_s, variable);
    QCOMPARE(QString::fromUtf8(role.output()).replace(root.path(), u"."_s), result);
}

// What is laid out for the window's size must find the size it gets, not the one it had before it was shown.
// What the user decided in the dialog comes first.
void QPEApplicationTest::eventsAreTheToolkitsOwn()
{
    QVERIFY(!QAbstractEventDispatcher::instance()->inherits("QEventDispatcherGlib"));
}

void QPEApplicationTest::signal_endsAtOnce_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<QString>("state");
    const auto row = [](const char *name, int signal, const QString &state) {
        QTest::newRow(name) << signal << state;
    };
    row("SIGTERM", SIGTERM, u"idle"_s);
    row("SIGHUP", SIGHUP, u"idle"_s);
    row("SIGINT", SIGINT, u"idle"_s);
    row("a message box is open", SIGTERM, u"box"_s);
    row("a menu is open", SIGTERM, u"menu"_s);
    row("long work asks now and then", SIGTERM, u"work"_s);
}

/// What is to be kept is written, once however often it is told, and nobody is asked.
void QPEApplicationTest::signal_endsAtOnce()
{
    QFETCH(int, signal);
    QFETCH(QString, state);
    Role role({ u"end"_s, state });
    QVERIFY(role.startsAndPrints("ready"));
    ::kill(pid_t(role.processId()), signal);
    ::kill(pid_t(role.processId()), SIGHUP);
    QVERIFY(role.prints("kept"));
    QVERIFY(role.state() == QProcess::NotRunning || role.waitForFinished());
    QCOMPARE(role.exitStatus(), QProcess::NormalExit);
    QCOMPARE(role.exitCode(), 0);
    QVERIFY(!role.prints("goes on"));
}

void QPEApplicationTest::signal_endsWhatNeverReturns()
{
    Role role({ u"end"_s, u"stuck"_s });
    QVERIFY(role.startsAndPrints("ready"));
    ::kill(pid_t(role.processId()), SIGTERM);
    ::kill(pid_t(role.processId()), SIGTERM);
    QVERIFY(role.waitForFinished());
    QCOMPARE(role.exitStatus(), QProcess::NormalExit);
    QCOMPARE(role.exitCode(), EXIT_FAILURE);
}

static int printScale(QPEApplication &app)
{
    QFont font = app.font();
    font.setPointSize(18);
    const QScreen *screen = QPEApplication::primaryScreen();
    std::printf("%.2f %.0f %d\n", screen->devicePixelRatio(), screen->logicalDotsPerInch(),
        QFontInfo(font).pixelSize());
    return 0;
}

static int runProgram(QPEApplication &app, bool minimized, const FileRequests &requests)
{
    if (app.handOver(requests)) {
        PrintingWindow::print("handed over");
        return 0;
    }
    PrintingWindow window;
    QObject::connect(&app, &QPEApplication::requestDelivered,
        [](qsizetype waiting) { PrintingWindow::print("waiting", QByteArray::number(waiting)); });
    app.showMainWidget(&window, true);
    if (minimized) {
        window.showMinimized();
        QObject::connect(
            window.windowHandle(), &QWindow::windowStateChanged, &window, [](Qt::WindowState state) {
                if (state != Qt::WindowMinimized)
                    PrintingWindow::print("shown");
            });
    }
    QTimer::singleShot(0, &window, [] { PrintingWindow::print("ready"); });
    return QPEApplication::exec();
}

/// Keeps the event loop waiting for ever; asks whether the end was ordered, or does not.
[[noreturn]] static void work(bool asks)
{
    for (;;) {
        if (asks)
            EndOrder::obeyIfGiven();
        else
            ::pause();
    }
}

/// Has the channel and hears every call, but answers none.
static int runMute()
{
    class Mute : public QDBusVirtualObject {
    public:
        QString introspect(const QString &) const override { return {}; }
        bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
        {
            if (message.member() == u"raise")
                PrintingWindow::print(++m_asked == 1 ? "asked" : "asked twice");
            return true;
        }

    private:
        int m_asked = 0;
    };
    Mute mute;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerVirtualObject(u"/QPE/Application/marlopad"_s, &mute)
        || !bus.registerService(u"QPE.Application.marlopad"_s))
        return 1;
    PrintingWindow::print("ready");
    return QCoreApplication::exec();
}

namespace {

/// Told to end by a signal, it stays as long as the system takes to free very much memory.
class FullApplication : public QPEApplication {
public:
    using QPEApplication::QPEApplication;

protected:
    void leave() override
    {
        std::signal(SIGALRM, SIG_IGN); // which would end it
        PrintingWindow::print("leaves");
        for (;;)
            ::pause();
    }
};

} // namespace

/// In a state that a signal to end is to find it in.
static int runUntilEnded(QPEApplication &app, QByteArrayView state)
{
    PrintingWindow window;
    QObject::connect(&app, &QPEApplication::endingAtOnce, [] { PrintingWindow::print("kept"); });
    app.showMainWidget(&window, true);
    QMenu menu;
    menu.addAction(u"a"_s);
    QTimer::singleShot(0, &window, [&] {
        const auto tell = [] { PrintingWindow::print("ready"); };
        if (state == "work" || state == "stuck") {
            tell();
            work(state == "work");
        }
        QTimer::singleShot(0, &window, tell);
        if (state == "menu")
            menu.popup({});
        if (state == "box")
            QMessageBox::information(&window, u"Title"_s, u"text"_s);
        PrintingWindow::print(state == "box" ? "goes on" : "waits");
    });
    return QPEApplication::exec();
}

/// Asks from the start whether to end, until its input says "stay" or "end".
static int runQuestion(QPEApplication &app, const FileRequests &requests)
{
    auto question = std::make_unique<EndQuestion>();
    // Each other start asks for the window, and once more for its file, which waits.
    QObject::connect(
        app.findChild<LauncherChannel *>(), &LauncherChannel::raiseRequested, &app, [asked = 0]() mutable {
            if (++asked == 4)
                PrintingWindow::print("asked twice");
        });
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &app, [&] {
        std::array<char, 16> answer{};
        input.setEnabled(false);
        if (::read(STDIN_FILENO, answer.data(), answer.size()) > 0 && answer.front() == 'e')
            app.topLevelWidgets().first()->close();
        question.reset();
    });
    return runProgram(app, true, requests);
}

/// Hands over all that can come beside a name.
static int runRich(QPEApplication &app)
{
    std::array<int, 2> ends{};
    std::array<int, 2> input{};
    if (::pipe(ends.data()) != 0)
        return 1;
    QTemporaryFile file;
    if (!file.open() || file.write("input") != 5 || !file.flush())
        return 1;
    const SharedFd waiting = std::make_shared<OpenFd>(ends[1]);
    using From = FileRequest::From;
    const FileRequests requests{
        { u"/a"_s, From::Shell, LineColumn{ 7, 3 }, CharCode::Utf8, false, {}, waiting },
        { {}, From::Shell, LineColumn{ 1, 1 }, {}, false, std::make_shared<OpenFd>(::dup(file.handle())), {} }
    };
    if (!app.handOver(requests))
        return 1;
    PrintingWindow::print("handed over");
    if (::read(ends[0], input.data(), 1) == 1)
        PrintingWindow::print("told");
    return 0;
}

/// Files as a command line names them.
static FileRequests requestsFor(int argc, char **argv)
{
    FileRequests requests;
    for (int i = 1; i < argc; ++i)
        requests << FileRequest{ FileName::absolute(argv[i]), FileRequest::From::Shell };
    return requests;
}

// "scale", "qpedir", "run [minimized] [FILE…]", "rich", "ask [FILE…]", "end STATE", "mute" and "full" are the
// roles of other processes.
namespace {

int runQPEApplicationTest(int argc, char **argv)
{
    const QByteArray role = argc > 1 ? argv[1] : "";
    const bool isRole = role == "scale" || role == "qpedir" || role == "run" || role == "rich"
        || role == "ask" || role == "end" || role == "mute" || role == "full";
    const bool minimized = isRole && argc > 2 && QByteArrayView(argv[2]) == "minimized";
    if (isRole) {
        const int taken = minimized ? 2 : 1;
        std::copy(argv + 1 + taken, argv + argc + 1, argv + 1);
        argc -= taken;
    }
    prepareScale();
    prepareEventLoop();
    int none = 1;
    if (role == "full") {
        FullApplication app(argc, argv);
        return runProgram(app, false, {});
    }
    QPEApplication app(isRole ? argc : none, argv);
    if (role == "scale")
        return printScale(app);
    if (role == "qpedir")
        return std::puts(QFile::encodeName(QPEApplication::qpeDir()).constData()) < 0;
    if (role == "run")
        return runProgram(app, minimized, requestsFor(argc, argv));
    if (role == "rich")
        return runRich(app);
    if (role == "ask")
        return runQuestion(app, requestsFor(argc, argv));
    if (role == "mute")
        return runMute();
    if (role == "end")
        return runUntilEnded(app, argv[1]);
    QPEApplicationTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runQPEApplicationTest)

#include "qpeapplication_test.moc"
