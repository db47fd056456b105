#include "app/qpeapplicationesc.h"
#include "tests/app/stripinwindow.h"
#include "tests/app/testwindow.h"

#include "platform/qcop.h"
#include "search/frmsearchdialog.h"
#include "tests/testprogram.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusUnixFileDescriptor>
#include <QDialog>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

QPEApplication *application()
{
    return static_cast<QPEApplication *>(qApp);
}

void replaceAll(frmMain &window)
{
    window.slotCmdViewReplace();
    auto *panel = window.findChild<frmSearchDialog *>();
    panel->findText = u"x"_s;
    panel->replaceText = u"yy"_s;
    window.slotEtcReplaceAll();
}

/// Acts from the event loop in the first dialog or modal panel that appears, and answers all: a message box
/// by the button of that text, else its last one; other dialogs are cancelled.
class InDialog : public QObject {
public:
    explicit InDialog(std::function<void()> action, const QString &answer = {})
        : m_action(std::move(action))
        , m_answer(answer)
    {
        qApp->installEventFilter(this);
    }
    QStringList titles;
    QByteArray firstForm; ///< name of its class

    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *widget = qobject_cast<QWidget *>(object);
        if (event->type() == QEvent::Show && widget && widget->isWindow() && widget->isModal())
            QTimer::singleShot(0, widget, [this, widget] { actIn(*widget); });
        return false;
    }

private:
    void actIn(QWidget &widget)
    {
        titles << widget.windowTitle();
        if (firstForm.isEmpty())
            firstForm = widget.metaObject()->className();
        std::exchange(m_action, [] {})();
        if (auto *box = qobject_cast<QMessageBox *>(&widget))
            buttonOf(*box)->click();
        else if (auto *dialog = qobject_cast<QDialog *>(&widget))
            dialog->reject();
    }
    QAbstractButton *buttonOf(const QMessageBox &box) const
    {
        for (QAbstractButton *button : box.buttons()) {
            if (button->text() == m_answer)
                return button;
        }
        return box.buttons().constLast();
    }

    std::function<void()> m_action;
    QString m_answer;
};

/// Hands a file over, on a connection of its own as another process would.
class OtherProgram {
public:
    ~OtherProgram() { QDBusConnection::disconnectFromBus(u"other"_s); }

    /// Comes back when the message has arrived.
    void give(const QString &fileName)
    {
        m_answer = m_bus.asyncCall(callOf(u"setDocument"_s, { fileName }));
        ping();
    }
    /// As a command line does; does not wait.
    void giveFromShell(const QStringList &fileNames)
    {
        QList<QVariantMap> documents;
        for (const QString &name : fileNames)
            documents << QVariantMap{ { u"name"_s, name } };
        m_answer = m_bus.asyncCall(callOf(u"openFromShell"_s,
            { QVariant::fromValue(documents), QVariant::fromValue(QList<QDBusUnixFileDescriptor>()) }));
    }
    void ping()
    {
        const QDBusPendingCall arrival = m_bus.asyncCall(callOf(u"ping"_s, {}));
        QVERIFY(waitUntil([&] { return arrival.isFinished(); }));
        QVERIFY(!arrival.isError());
    }
    bool isAnswered() const { return m_answer && m_answer->isFinished(); }
    bool isRefused() const { return m_answer->isError(); }

private:
    static QDBusMessage callOf(const QString &method, const QVariantList &arguments)
    {
        QDBusMessage call = QDBusMessage::createMethodCall(
            u"QPE.Application.marlopad"_s, u"/QPE/Application/marlopad"_s, u"QPE.Application"_s, method);
        call.setArguments(arguments);
        return call;
    }

    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"other"_s);
    std::optional<QDBusPendingCall> m_answer;
};

} // namespace

/// Files to open that come while something of the program's own waits for its user.
class RequestsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void fileWaits_data();
    void fileWaits();
    void fileDuringTheQuitQuestion_data();
    void fileDuringTheQuitQuestion();
    void messageDuringTheQuitQuestion();
    void fileDuringAnotherQuestion();
    void fileThatWaitsIsTheOnlyDocument();
    void manyOfASecondStartHaveASign();

private:
    /// Opens a.txt with "old" and an "x" typed in front, without any other document.
    bool openModifiedFile();
    bool isClosed() const { return !m_window->isVisible(); }

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<frmMain> m_window;
};

void RequestsTest::init()
{
    resetSettings();
    m_files = std::make_unique<TestFiles>();
    m_window = std::make_unique<frmMain>();
    application()->showMainWidget(m_window.get());
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QVERIFY(openModifiedFile());
}

void RequestsTest::cleanup()
{
    m_window.reset();
}

bool RequestsTest::openModifiedFile()
{
    application()->request(m_files->write(u"a.txt"_s, "old"));
    const bool isThere = waitUntil([this] { return m_window->tabBar()->count() == 1; });
    QTest::keyClicks(m_window->currentEditor(), u"x"_s);
    return isThere && m_window->currentEditor()->text() == u"xold";
}

void RequestsTest::fileWaits_data()
{
    QTest::addColumn<std::function<void(frmMain &)>>("act");
    QTest::addColumn<QByteArray>("form");
    const auto row = [](const char *name, const char *form, const std::function<void(frmMain &)> &act) {
        QTest::newRow(name) << act << QByteArray(form);
    };
    row("open dialog", "frmFileDialog", &frmMain::slotCmdFileOpen);
    row("save dialog", "frmFileDialog", [](frmMain &window) { window.slotCmdFileSaveAs(); });
    row("options dialog", "frmOption", &frmMain::slotCmdEditOption);
    row("line jump", "frmJumpTo", &frmMain::slotCmdViewGyoJump);
    row("properties", "QMessageBox", &frmMain::slotCmdFileProp);
    row("question", "QMessageBox", &frmMain::slotCmdFileCloseTab);
    row("replace all", "frmReplaceProgress", replaceAll);
}

void RequestsTest::fileWaits()
{
    QFETCH(std::function<void(frmMain &)>, act);
    const QString name = m_files->write(u"b.txt"_s, "requested");
    int countInDialog = 0;
    InDialog dialog([&] {
        application()->request(name);
        settle();
        countInDialog = m_window->tabBar()->count();
    });
    QTimer::singleShot(0, m_window.get(), [&] { act(*m_window); });
    QTRY_COMPARE(m_window->tabBar()->count(), 2);
    QTEST(dialog.firstForm, "form");
    QCOMPARE(countInDialog, 1);
    settle();
    QCOMPARE(m_window->tabBar()->count(), 2);
    QCOMPARE(m_window->currentEditor()->text(), u"requested"_s);
    QCOMPARE(m_window->tabBar()->tabText(0), u"* a.txt"_s);
}

void RequestsTest::fileDuringTheQuitQuestion_data()
{
    QTest::addColumn<std::function<void(frmMain &)>>("act");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("stays");
    const auto rows = [](const char *name, const std::function<void(frmMain &)> &act) {
        QTest::addRow("%s, Cancel", name) << act << u"Cancel"_s << true;
        QTest::addRow("%s, No", name) << act << u"No"_s << false;
        QTest::addRow("%s, Yes", name) << act << u"Yes"_s << false;
    };
    rows("Quit", &frmMain::slotCmdFileQuitNoSave);
    rows("the window's close button", [](frmMain &window) { window.close(); });
    QTest::newRow("Quit with Save, no name") << std::function<void(frmMain &)>([](frmMain &window) {
        window.slotCmdFileNew();
        QTest::keyClicks(window.currentEditor(), u"x"_s);
        window.slotCmdFileQuitSave();
    }) << QString() << true;
}

/// Its giver hears nothing before it is known who will open it.
void RequestsTest::fileDuringTheQuitQuestion()
{
    QFETCH(std::function<void(frmMain &)>, act);
    QFETCH(QString, answer);
    QFETCH(bool, stays);
    OtherProgram other;
    bool isAnsweredEarly = false;
    InDialog question(
        [&] {
            other.give(m_files->write(u"b.txt"_s, "given"));
            isAnsweredEarly = other.isAnswered();
        },
        answer);
    act(*m_window);
    QTRY_VERIFY(other.isAnswered());
    QVERIFY(!isAnsweredEarly);
    QCOMPARE(question.titles.size(), 1);
    QCOMPARE(other.isRefused(), !stays);
    QCOMPARE(isClosed(), !stays);
    if (stays)
        QTRY_COMPARE(m_window->currentEditor()->text(), u"given"_s);
    settle();
    QCOMPARE(m_window->tabBar()->count() == 0, !stays);
}

/// Nobody waits for an answer: it can only be opened.
void RequestsTest::messageDuringTheQuitQuestion()
{
    const QString name = m_files->write(u"b.txt"_s, "given");
    OtherProgram other;
    InDialog question(
        [&] {
            QCopEnvelope(u"QPE/Application/marlopad"_s, u"setDocument(QString)"_s) << name;
            other.ping();
        },
        u"Cancel"_s);
    m_window->slotCmdFileQuitNoSave();
    QTRY_COMPARE(m_window->tabBar()->count(), 2);
    QCOMPARE(m_window->currentEditor()->text(), u"given"_s);
}

/// Closing a document does not end the program.
void RequestsTest::fileDuringAnotherQuestion()
{
    OtherProgram other;
    InDialog question([&] { other.give(m_files->write(u"b.txt"_s, "given")); }, u"Cancel"_s);
    m_window->slotCmdFileCloseTab();
    QVERIFY(other.isAnswered());
    QVERIFY(!other.isRefused());
    QTRY_COMPARE(m_window->currentEditor()->text(), u"given"_s);
}

namespace {

int runRequestsTest(int argc, char **argv)
{
    QPEApplicationEsc application(argc, argv);
    if (application.handOver())
        return 1;
    RequestsTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

/// However long a window that was shown has to wait for the file.
void RequestsTest::fileThatWaitsIsTheOnlyDocument()
{
    constexpr int longerThanTheFirstDocumentTakes = 500; // ms
    m_window->currentEditor()->setEdited(false);
    m_window->slotCmdFileCloseTab();
    application()->holdRequests(true);
    application()->request(m_files->write(u"b.txt"_s, "requested"));
    m_window->hide();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(longerThanTheFirstDocumentTakes);
    QTRY_VERIFY(!timer.isActive());
    QCOMPARE(m_window->tabBar()->count(), 0);
    application()->holdRequests(false);
    QTRY_COMPARE(m_window->tabBar()->count(), 1);
    timer.start(longerThanTheFirstDocumentTakes);
    QTRY_VERIFY(!timer.isActive());
    QCOMPARE(m_window->tabBar()->count(), 1);
    QCOMPARE(m_window->currentEditor()->text(), u"requested"_s);
}

/// It tells of a key that has to wait, and its "Stop" leaves those that are not open yet.
void RequestsTest::manyOfASecondStartHaveASign()
{
    constexpr int many = 100; // too many for one turn
    const StripInWindow strip(*m_window);
    const QSignalSpy delivered(application(), &QPEApplication::requestDelivered);
    QStringList names;
    for (int number = 1; number <= many; ++number)
        names << m_files->write(u"%1.txt"_s.arg(number), "text\n");
    OtherProgram other;
    other.giveFromShell(names);
    while (delivered.isEmpty())
        QCoreApplication::processEvents();
    QCOMPARE(delivered.first().first().toInt(), many - 1);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_X);
    QVERIFY(strip.text().startsWith(u"Not while files are being opened"_s));
    QVERIFY(strip.click(u"Stop"_s));
    QTRY_VERIFY(other.isAnswered());
    QVERIFY(!other.isRefused());
    settle();
    QVERIFY(delivered.size() < many);
    QCOMPARE(m_window->tabBar()->count(), 1 + delivered.size());
    QCOMPARE(m_window->currentEditor()->text(), u"text\n"_s);
    QVERIFY(!strip.isShown());
}

REGISTER_TEST(runRequestsTest)

#include "requests_test.moc"
