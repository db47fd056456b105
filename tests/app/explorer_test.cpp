#include "platform/qcop.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QDBusConnection>
#include <QProcess>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

/// Stands on the message bus where the file explorer would, and keeps what it is told.
class FileExplorer : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "QPE.Application")
public:
    FileExplorer()
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        bus.registerObject(u"/QPE/Application/corvex"_s, this, QDBusConnection::ExportAllSlots);
        bus.registerService(u"QPE.Application.corvex"_s);
    }
    ~FileExplorer() override
    {
        QDBusConnection::sessionBus().unregisterService(u"QPE.Application.corvex"_s);
        QDBusConnection::sessionBus().unregisterObject(u"/QPE/Application/corvex"_s);
    }
    QStringList told;

signals:
    void refreshed(const QString &file);

public slots:
    void refreshListItem(const QString &path, const QString &name)
    {
        told << path + u'|' + name;
        emit refreshed(told.constLast());
    }
};

/// This program as the file explorer, in a process of its own: prints what it is told.
class ExplorerProcess : public QProcess {
public:
    ExplorerProcess()
    {
        start(QCoreApplication::applicationFilePath(), { u"explorer_test"_s, u"explorer"_s });
    }
    ~ExplorerProcess() override
    {
        kill();
        waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(ExplorerProcess)

    bool isListening()
    {
        waitForReadyRead();
        return readAllStandardOutput() == "listening\n";
    }
    /// All so far.
    QByteArray told() { return m_told += readAllStandardOutput(); }

private:
    QByteArray m_told;
};

namespace {

int runExplorer()
{
    const auto print = [](const QString &text) {
        std::printf("%s\n", qPrintable(text));
        std::fflush(stdout);
    };
    FileExplorer explorer;
    QObject::connect(&explorer, &FileExplorer::refreshed, print);
    print(u"listening"_s);
    return QApplication::exec();
}

} // namespace

/// What the file explorer is told after a save.
class ExplorerTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void savingTellsTheFileExplorer();
    void failedSavingTellsNobody();
    void explorerThatHangsIsNoHarm();
    void explorerThatDiedIsNoHarm();
};

void ExplorerTest::init()
{
    resetSettings();
}

void ExplorerTest::savingTellsTheFileExplorer()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    QVERIFY(window.slotCmdFileSave(window.currentEditor()));
    FileExplorer explorer;
    QVERIFY(window.slotCmdFileSave(window.currentEditor()));
    QTRY_COMPARE(explorer.told, QStringList{ files.folder() + u"|a.txt"_s });
}

void ExplorerTest::failedSavingTellsNobody()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s, u"b.txt"_s }));
    FileExplorer explorer;
    breakSaving(window.editorAt(0));
    MessageBoxes boxes;
    QVERIFY(!window.slotCmdFileSave(window.editorAt(0)));
    QVERIFY(window.slotCmdFileSave(window.editorAt(1)));
    QTRY_COMPARE(explorer.told, QStringList{ files.folder() + u"|b.txt"_s });
}

/// It has its name on the bus but takes no message from it.
void ExplorerTest::explorerThatHangsIsNoHarm()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    ExplorerProcess explorer;
    QVERIFY(explorer.isListening());
    QCOMPARE(::kill(pid_t(explorer.processId()), SIGSTOP), 0);
    for (int i = 0; i < 50; ++i)
        QVERIFY(window.slotCmdFileSave(window.currentEditor()));
    QCOMPARE(::kill(pid_t(explorer.processId()), SIGCONT), 0);
    QTRY_COMPARE(explorer.told(), (files.folder() + u"|a.txt\n"_s).toUtf8().repeated(50));
}

void ExplorerTest::explorerThatDiedIsNoHarm()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(openModified(window, files, { u"a.txt"_s }));
    ExplorerProcess explorer;
    QVERIFY(explorer.isListening());
    QVERIFY(window.slotCmdFileSave(window.currentEditor()));
    explorer.kill();
    QVERIFY(window.slotCmdFileSave(window.currentEditor()));
    QVERIFY(explorer.waitForFinished());
    QTRY_VERIFY(!QCopChannel::isRegistered(u"QPE/Application/corvex"_s));
    QVERIFY(window.slotCmdFileSave(window.currentEditor()));
}

namespace {

int runExplorerTest(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (argc > 1 && QByteArrayView(argv[1]) == "explorer")
        return runExplorer();
    ExplorerTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runExplorerTest)

#include "explorer_test.moc"
