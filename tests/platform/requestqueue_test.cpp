#include "platform/qpeapplication.h"
#include "platform/toolkitstart.h"
#include "tests/testprogram.h"

#include <QDeadlineTimer>
#include <QDialog>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

/// Notes what it is asked to open, and what else the test notes in between.
class Window : public QWidget {
    Q_OBJECT
public:
    QStringList log;
    std::function<void()> onDocument = [] {};

public slots:
    void setDocument(const QString &fileName)
    {
        log << fileName;
        onDocument();
    }
    void openRequested(const FileRequest &request)
    {
        log << u"%1 %2"_s.arg(request.fileName).arg(request.place->line);
    }
};

// Everything that is already under way has been done after it.
void settle()
{
    for (int i = 0; i < 10; ++i)
        QCoreApplication::processEvents();
}

QPEApplication *application()
{
    return static_cast<QPEApplication *>(qApp);
}

} // namespace

/// Requests to open a file, and what they wait for.
class RequestQueueTest : public QObject {
    Q_OBJECT

private slots:
    void request_beforeTheWindow_waits();
    void request_waitsForTheWindowOnTheScreen();
    void requests_keepTheirOrder();
    void requests_thatTakeLong_letOthersHaveTheirTurn();
    void request_thatSaysMore_hasAnotherSlot();
    void request_isDeliveredFromTheEventLoop();
    void request_waitsForModalDialog_data();
    void request_waitsForModalDialog();
    void request_waitsUntilTheDialogsCallerIsDone();
    void request_waitsForMenu();
    void request_waitsWhileHeld();
    void request_waitsForTheDialogOfAnother();
    void request_withoutWindowAnyMore_isNoHarm();
    void requests_waitForOthersThatStandBefore();
    void requests_thatAreDropped_areNotDelivered();
    void requests_areCountedWhileTheyAreDelivered();
    void showMainWidget_maximises();
};

void RequestQueueTest::request_beforeTheWindow_waits()
{
    Window window;
    application()->request(u"/a"_s);
    settle();
    QVERIFY(window.log.isEmpty());
    application()->showMainWidget(&window, true);
    QTRY_COMPARE(window.log, QStringList{ u"/a"_s });
}

void RequestQueueTest::request_waitsForTheWindowOnTheScreen()
{
    Window window;
    window.setAttribute(Qt::WA_DontShowOnScreen);
    application()->request(u"/a"_s);
    application()->showMainWidget(&window, true);
    settle();
    QVERIFY(window.log.isEmpty());
    window.hide();
    window.setAttribute(Qt::WA_DontShowOnScreen, false);
    window.show();
    QTRY_COMPARE(window.log, QStringList{ u"/a"_s });
}

void RequestQueueTest::requests_keepTheirOrder()
{
    Window window;
    application()->showMainWidget(&window, true);
    QStringList names;
    for (int i = 0; i < 100; ++i) {
        names << QStringLiteral("/%1").arg(i);
        application()->request(names.last());
    }
    application()->request(u"/0"_s);
    QTRY_COMPARE(window.log, names + QStringList{ u"/0"_s });
}

/// What else is to be done waits for some of them at most.
void RequestQueueTest::requests_thatTakeLong_letOthersHaveTheirTurn()
{
    Window window;
    application()->showMainWidget(&window, true);
    QTRY_VERIFY(window.windowHandle()->isExposed());
    constexpr int count = 20;
    int turns = 0;
    QTimer others;
    others.callOnTimeout([&turns] { ++turns; });
    QList<int> seen;
    window.onDocument = [&] {
        seen << turns;
        const QDeadlineTimer end(10); // of work, longer than a turn of the queue
        while (!end.hasExpired()) { }
    };
    for (int i = 0; i < count; ++i)
        application()->request(QString::number(i));
    others.start(0);
    QTRY_COMPARE(window.log.size(), count);
    for (int i = 1; i < count; ++i)
        QVERIFY(seen.at(i) > seen.at(i - 1));
}

void RequestQueueTest::request_thatSaysMore_hasAnotherSlot()
{
    Window window;
    application()->showMainWidget(&window, true);
    application()->request(u"/a"_s);
    application()->request({ u"/b"_s, FileRequest::From::Shell, LineColumn{ 7, 1 } });
    application()->request(u"/c"_s);
    QTRY_COMPARE(window.log, (QStringList{ u"/a"_s, u"/b 7"_s, u"/c"_s }));
}

void RequestQueueTest::request_isDeliveredFromTheEventLoop()
{
    Window window;
    application()->showMainWidget(&window, true);
    application()->request(u"/a"_s);
    QVERIFY(window.log.isEmpty());
    QTRY_COMPARE(window.log.size(), 1);
}

void RequestQueueTest::request_waitsForModalDialog_data()
{
    QTest::addColumn<bool>("ofApplication");
    QTest::newRow("modal for the window") << false;
    QTest::newRow("modal for the application") << true;
}

void RequestQueueTest::request_waitsForModalDialog()
{
    QFETCH(bool, ofApplication);
    Window window;
    application()->showMainWidget(&window, true);
    QDialog dialog(&window);
    dialog.setWindowModality(ofApplication ? Qt::ApplicationModal : Qt::WindowModal);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    application()->request(u"/a"_s);
    settle();
    QVERIFY(window.log.isEmpty());
    dialog.hide();
    QVERIFY(window.log.isEmpty());
    QTRY_COMPARE(window.log, QStringList{ u"/a"_s });
}

void RequestQueueTest::request_waitsUntilTheDialogsCallerIsDone()
{
    Window window;
    application()->showMainWidget(&window, true);
    QTimer::singleShot(0, &window, [&window] {
        QDialog dialog(&window);
        QTimer::singleShot(0, &dialog, [&dialog, &window] {
            application()->request(u"/a"_s);
            QTimer::singleShot(0, &dialog, [&dialog, &window] {
                window.log << u"closing"_s;
                dialog.accept();
                QTimer::singleShot(0, &window, [] {});
            });
        });
        dialog.exec();
        window.log << u"closed"_s;
    });
    QTRY_COMPARE(window.log.size(), 3);
    QCOMPARE(window.log, (QStringList{ u"closing"_s, u"closed"_s, u"/a"_s }));
}

void RequestQueueTest::request_waitsForMenu()
{
    Window window;
    application()->showMainWidget(&window, true);
    QMenu menu(&window);
    menu.addAction(u"a"_s);
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    menu.popup(QPoint(0, 0));
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    application()->request(u"/a"_s);
    settle();
    QVERIFY(window.log.isEmpty());
    menu.close();
    QTRY_COMPARE(window.log, QStringList{ u"/a"_s });
}

void RequestQueueTest::request_waitsWhileHeld()
{
    Window window;
    application()->showMainWidget(&window, true);
    application()->holdRequests(true);
    application()->request(u"/a"_s);
    settle();
    QVERIFY(window.log.isEmpty());
    application()->holdRequests(false);
    QVERIFY(window.log.isEmpty());
    QTRY_COMPARE(window.log, QStringList{ u"/a"_s });
}

void RequestQueueTest::request_waitsForTheDialogOfAnother()
{
    Window window;
    application()->showMainWidget(&window, true);
    window.onDocument = [&window] {
        QDialog dialog(&window);
        QTimer::singleShot(0, &dialog, [&dialog] {
            QCoreApplication::processEvents();
            dialog.accept();
        });
        dialog.exec();
        window.log << u"done"_s;
    };
    application()->request(u"/a"_s);
    application()->request(u"/b"_s);
    QTRY_COMPARE(window.log, (QStringList{ u"/a"_s, u"done"_s, u"/b"_s, u"done"_s }));
}

void RequestQueueTest::request_withoutWindowAnyMore_isNoHarm()
{
    {
        Window window;
        application()->showMainWidget(&window, true);
        application()->request(u"/a"_s);
    }
    settle();
    Window window;
    application()->showMainWidget(&window, true);
    QTRY_COMPARE(window.log, QStringList{ u"/a"_s });
}

void RequestQueueTest::showMainWidget_maximises()
{
    Window window;
    application()->showMainWidget(&window);
    QVERIFY(window.isVisible());
    QVERIFY(window.isMaximized());
}

/// Nothing is in the way of commands meanwhile.
void RequestQueueTest::requests_waitForOthersThatStandBefore()
{
    Window window;
    application()->showMainWidget(&window, true);
    application()->postponeRequests(true);
    QVERIFY(QPEApplication::hasRequests());
    application()->request(u"/a"_s);
    settle();
    QVERIFY(window.log.isEmpty());
    QVERIFY(!QPEApplication::isBusy());
    application()->postponeRequests(false);
    QTRY_COMPARE(window.log, QStringList{ u"/a"_s });
}

void RequestQueueTest::requests_thatAreDropped_areNotDelivered()
{
    Window window;
    application()->showMainWidget(&window, true);
    QTRY_VERIFY(window.windowHandle()->isExposed());
    window.onDocument = [] { application()->dropRequests(); };
    for (const QString &name : { u"/a"_s, u"/b"_s, u"/c"_s })
        application()->request(name);
    QTRY_COMPARE(window.log, QStringList{ u"/a"_s });
    QVERIFY(!QPEApplication::hasRequests());
    settle();
    QCOMPARE(window.log, QStringList{ u"/a"_s });
    application()->request(u"/d"_s);
    QTRY_COMPARE(window.log, QStringList({ u"/a"_s, u"/d"_s }));
}

void RequestQueueTest::requests_areCountedWhileTheyAreDelivered()
{
    Window window;
    application()->showMainWidget(&window, true);
    QTRY_VERIFY(window.windowHandle()->isExposed());
    QList<qsizetype> waiting;
    connect(application(), &QPEApplication::requestDelivered, &window,
        [&waiting](qsizetype count) { waiting << count; });
    for (const QString &name : { u"/a"_s, u"/b"_s, u"/c"_s })
        application()->request(name);
    QTRY_COMPARE(waiting, QList<qsizetype>({ 2, 1, 0 }));
}

namespace {

int runRequestQueueTest(int argc, char **argv)
{
    prepareScale();
    QPEApplication app(argc, argv);
    RequestQueueTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runRequestQueueTest)

#include "requestqueue_test.moc"
