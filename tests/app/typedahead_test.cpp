#include "app/qpeapplicationesc.h"
#include "platform/toolkitstart.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QAction>
#include <QProcess>
#include <QSignalSpy>
#include <QStackedWidget>

using namespace Qt::StringLiterals;

namespace {

using Way = std::function<void(TestWindow &, const TestFiles &)>;

/// Returns when the window system has the keys; the program has not seen them then.
void callXdotool(const QStringList &arguments)
{
    QCOMPARE(QProcess::execute(u"xdotool"_s, arguments), 0);
}

} // namespace

/// Keys that are pressed while a document is being read.
class TypedAheadTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void keysGoNowhere_data();
    void keysGoNowhere();
    void heldKeyGoesNowhere();
    void keysWhileItIsDrawnGoNowhere();
    void commandsActOnceItIsShown();

private:
    /// Acts once, as soon as the editor's text has changed or another editor was put in its place.
    void whileLoading(const std::function<void()> &action);
    /// Types y and waits until it is there.
    void typesAgain(const QString &expected);

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<TestWindow> m_window;
};

void TypedAheadTest::init()
{
    resetSettings();
    m_files = std::make_unique<TestFiles>();
    m_files->write(u"a.txt"_s, "text");
    m_window = std::make_unique<TestWindow>();
    static_cast<QPEApplication *>(qApp)->showMainWidget(m_window.get());
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_window->slotEtcFirstNewDoc();
    QTRY_COMPARE(QApplication::focusWidget(), m_window->currentEditor());
    callXdotool({ u"key"_s, u"z"_s });
    QTRY_COMPARE(m_window->currentEditor()->text(), u"z"_s);
    m_window->slotCmdEditUndo();
}

void TypedAheadTest::cleanup()
{
    callXdotool({ u"keyup"_s, u"x"_s });
    m_window.reset();
    m_files.reset();
}

void TypedAheadTest::whileLoading(const std::function<void()> &action)
{
    const auto pending = std::make_shared<bool>(true);
    const auto once = [pending, action] {
        if (std::exchange(*pending, false))
            action();
    };
    connect(m_window->currentEditor(), &ctlEditer::textChanged, this, once);
    connect(m_window->findChild<QStackedWidget *>(), &QStackedWidget::currentChanged, this, once);
}

void TypedAheadTest::typesAgain(const QString &expected)
{
    settle();
    callXdotool({ u"key"_s, u"y"_s });
    QTRY_COMPARE(m_window->currentEditor()->text(), expected);
}

void TypedAheadTest::keysGoNowhere_data()
{
    QTest::addColumn<Way>("load");
    const Way asRequested = [](TestWindow &, const TestFiles &files) {
        static_cast<QPEApplication *>(qApp)->request(files.folder() + u"a.txt"_s);
    };
    QTest::newRow("open") << Way([](TestWindow &window, const TestFiles &files) {
        window.choices << FileChoice{ files.folder(), u"a.txt"_s };
        window.item(FileCommand::Open)->trigger();
    });
    QTest::newRow("open in a tab of its own") << Way([](TestWindow &window, const TestFiles &files) {
        window.currentEditor()->insert(u"z"_s);
        window.choices << FileChoice{ files.folder(), u"a.txt"_s };
        window.item(FileCommand::Open)->trigger();
    });
    QTest::newRow("recent") << Way([](TestWindow &window, const TestFiles &files) {
        recentFiles().entries[0] = { files.folder(), u"a.txt"_s };
        window.slotCmdMnuRecent(0);
    });
    QTest::newRow("message from a second start") << asRequested;
}

void TypedAheadTest::keysGoNowhere()
{
    QFETCH(Way, load);
    bool isTyped = false;
    whileLoading([&isTyped] {
        callXdotool({ u"key"_s, u"x"_s, u"Return"_s, u"alt+f"_s, u"Escape"_s, u"ctrl+n"_s });
        isTyped = true;
    });
    load(*m_window, *m_files);
    QTRY_VERIFY(isTyped);
    typesAgain(u"ytext"_s);
    QCOMPARE(QApplication::activeWindow(), m_window.get());
    QVERIFY(!QApplication::activePopupWidget());

    MessageBoxes boxes({ u"Yes"_s });
    isTyped = false;
    whileLoading([&isTyped] {
        callXdotool({ u"key"_s, u"x"_s });
        isTyped = true;
    });
    m_window->slotCmdFileReload();
    QVERIFY(isTyped);
    QTRY_COMPARE(QApplication::activeWindow(), m_window.get());
    typesAgain(u"ytext"_s);
}

void TypedAheadTest::heldKeyGoesNowhere()
{
    callXdotool({ u"keydown"_s, u"x"_s });
    QTRY_VERIFY(m_window->currentEditor()->text().size() >= 3);
    m_window->setDocument(m_files->folder() + u"a.txt"_s);
    settle();
    QSignalSpy changed(m_window->currentEditor(), &ctlEditer::textChanged);
    // The window system goes on repeating it all the time that these take.
    for (int i = 0; i < 50; ++i) {
        QCOMPARE(QProcess::execute(u"xdotool"_s, { u"getmouselocation"_s }), 0);
        settle();
    }
    QCOMPARE(changed.count(), 0);
    callXdotool({ u"keyup"_s, u"x"_s, u"key"_s, u"x"_s });
    QTRY_COMPARE(m_window->currentEditor()->text(), u"xtext"_s);
}

/// The first thing that is drawn of a document may take long.
void TypedAheadTest::keysWhileItIsDrawnGoNowhere()
{
    class AtFirstPaint : public QObject {
    public:
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::Paint && !std::exchange(isPainted, true))
                callXdotool({ u"key"_s, u"x"_s });
            return false;
        }
        bool isPainted = false;
    };
    AtFirstPaint painting;
    m_window->currentEditor()->insert(u"z"_s);
    m_window->setDocument(m_files->folder() + u"a.txt"_s);
    m_window->currentEditor()->viewport()->installEventFilter(&painting);
    QTRY_VERIFY(painting.isPainted);
    typesAgain(u"ytext"_s);
}

/// The first key that is pressed then acts, be it one of the window's.
void TypedAheadTest::commandsActOnceItIsShown()
{
    m_window->setDocument(m_files->folder() + u"a.txt"_s);
    QCOMPARE(m_window->tabBar()->currentIndex(), 1);
    QTRY_VERIFY(takesKeys());
    callXdotool({ u"key"_s, u"ctrl+Tab"_s });
    QTRY_COMPARE(m_window->tabBar()->currentIndex(), 0);
    callXdotool({ u"key"_s, u"ctrl+Tab"_s });
    QTRY_COMPARE(m_window->tabBar()->currentIndex(), 1);
}

namespace {

int runTypedAheadTest(int argc, char **argv)
{
    prepareEventLoop();
    int noFiles = 1; // what it is given are functions of the test
    QPEApplicationEsc application(noFiles, argv);
    TypedAheadTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runTypedAheadTest)

#include "typedahead_test.moc"
