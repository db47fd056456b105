#include "app/qpeapplicationesc.h"
#include "codec/charcode.h"
#include "platform/toolkitstart.h"
#include "tests/app/testwindow.h"
#include "tests/japaneseinput.h"
#include "tests/testprogram.h"

#include <QAction>
#include <QInputMethodEvent>

using namespace Qt::StringLiterals;

namespace {

using Way = std::function<void(TestWindow &, const TestFiles &)>;

constexpr int patience = JapaneseInput::patience;

/// Keeps what an input method shows in a widget.
class Shown : public QObject {
public:
    explicit Shown(QWidget *widget) { widget->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::InputMethod)
            text = static_cast<QInputMethodEvent *>(event)->preeditString();
        return false;
    }
    QString text;
};

} // namespace

/// A Japanese input method composes in the main window, in a real window, when a command comes.
class ComposingWindowTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void composedTextIsTaken_data();
    void composedTextIsTaken();
    void escapeIsTheInputMethods();
    void keysGoNowhereWhileLoading();

private:
    bool compose();

    JapaneseInput m_input;
    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<TestWindow> m_window;
};

void ComposingWindowTest::initTestCase()
{
    QVERIFY(m_input.start());
}

void ComposingWindowTest::cleanupTestCase()
{
    m_input.stop();
}

void ComposingWindowTest::init()
{
    resetSettings();
    appSettings().DefCodec = int(CharCode::Utf8);
    m_files = std::make_unique<TestFiles>();
    m_window = std::make_unique<TestWindow>();
    static_cast<QPEApplication *>(qApp)->showMainWidget(m_window.get());
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_window->slotEtcFirstNewDoc();
    m_window->setDocument(m_files->write(u"a.txt"_s, "日本"));
    QTRY_COMPARE(QApplication::focusWidget(), m_window->currentEditor());
    QVERIFY(m_input.waitUntilOn());
}

void ComposingWindowTest::cleanup()
{
    if (ctlEditer *editor = m_window->currentEditor())
        editor->commitPreedit();
    m_window.reset();
    m_files.reset();
    QVERIFY(m_input.waitUntilOff());
}

bool ComposingWindowTest::compose()
{
    const Shown shown(m_window->currentEditor());
    JapaneseInput::press(u"k a"_s);
    return QTest::qWaitFor([&] { return shown.text == u"か"_s; }, patience);
}

void ComposingWindowTest::composedTextIsTaken_data()
{
    QTest::addColumn<Way>("command");
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("saved") << Way([](TestWindow &window, const TestFiles &) {
        QTest::mouseClick(window.toolBar()->widgetForAction(window.item(FileCommand::Save)), Qt::LeftButton);
    }) << QByteArray("か日本");
    QTest::newRow("another tab") << Way([](TestWindow &window, const TestFiles &) {
        QTest::mouseClick(window.tabBar(), Qt::LeftButton, {}, window.tabBar()->tabRect(0).center());
    }) << QByteArray("日本");
    QTest::newRow("window closed by its frame") << Way([](TestWindow &window, const TestFiles &) {
        QProcess::execute(u"wmctrl"_s, { u"-i"_s, u"-c"_s, QString::number(window.winId()) });
        QTRY_VERIFY(
            QApplication::activeModalWidget() == nullptr && window.tabTexts().value(1) == u"* a.txt"_s);
    }) << QByteArray("日本");
    QTest::newRow("file from outside") << Way([](TestWindow &window, const TestFiles &files) {
        static_cast<QPEApplication *>(qApp)->request(files.write(u"b.txt"_s, "b"));
        QTRY_COMPARE(window.tabBar()->count(), 3);
    }) << QByteArray("日本");
}

void ComposingWindowTest::composedTextIsTaken()
{
    QFETCH(Way, command);
    QVERIFY(compose());
    const ctlEditer *const editor = m_window->currentEditor();
    MessageBoxes boxes({ u"Cancel"_s });
    command(*m_window, *m_files);
    QCOMPARE(editor->text(), u"か日本"_s);
    QTEST(m_files->read(u"a.txt"_s), "file");
    QCOMPARE(editor->edited(), m_files->read(u"a.txt"_s) == "日本");
}

void ComposingWindowTest::escapeIsTheInputMethods()
{
    QVERIFY(compose());
    const Shown shown(m_window->currentEditor());
    JapaneseInput::press(u"Escape"_s);
    QTRY_COMPARE_WITH_TIMEOUT(shown.text, QString(), patience);
    JapaneseInput::press(u"k i"_s);
    QTRY_COMPARE_WITH_TIMEOUT(shown.text, u"き"_s, patience);
    QCOMPARE(m_window->tabBar()->count(), 2);
    JapaneseInput::press(u"Escape"_s);
    QTRY_COMPARE_WITH_TIMEOUT(shown.text, QString(), patience);
    JapaneseInput::press(u"Escape"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_window->tabBar()->count(), 1, patience);
}

/// It would answer when the document has been read.
void ComposingWindowTest::keysGoNowhereWhileLoading()
{
    ctlEditer *const editor = m_window->currentEditor();
    connect(
        editor, &ctlEditer::textChanged, this, [] { JapaneseInput::press(u"k a Return x"_s); },
        Qt::SingleShotConnection);
    MessageBoxes boxes({ u"Yes"_s });
    m_window->slotCmdFileReload();
    QTRY_COMPARE(QApplication::focusWidget(), editor);
    QVERIFY(m_input.waitUntilOn());
    const Shown shown(editor);
    JapaneseInput::press(u"k i"_s);
    QTRY_COMPARE_WITH_TIMEOUT(shown.text, u"き"_s, patience);
    JapaneseInput::press(u"Return"_s);
    QTRY_COMPARE_WITH_TIMEOUT(editor->text(), u"き日本"_s, patience);
}

namespace {

int runComposingWindowTest(int argc, char **argv)
{
    qputenv("QT_IM_MODULE", "fcitx");
    prepareEventLoop();
    int noFiles = 1; // what it is given are functions of the test
    QPEApplicationEsc application(noFiles, argv);
    ComposingWindowTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runComposingWindowTest)

#include "composingwindow_test.moc"
