#include "search/frmsearchdialog.h"
#include "tests/app/atprogress.h"
#include "tests/app/testwindow.h"
#include "tests/search/searchforms.h"
#include "tests/testprogram.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace {

/// Counts the paints of a widget while it lives.
class PaintCount : public QObject {
public:
    explicit PaintCount(QWidget *widget)
    {
        widget->installEventFilter(this);
        m_elapsed.start();
    }
    bool eventFilter(QObject * /*object*/, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++m_count;
        return false;
    }
    qint64 count() const { return m_count; }
    /// Frames that have begun since the start, of 16 ms each.
    qint64 frames() const { return m_elapsed.elapsed() / 16 + 1; }

private:
    qint64 m_count = 0;
    QElapsedTimer m_elapsed;
};

void turnWheel(QWidget &widget)
{
    QWheelEvent event(QPointF(5, 5), widget.mapToGlobal(QPointF(5, 5)), {}, { 0, -1200 }, Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &event);
}

void dropOn(QWidget &widget)
{
    QMimeData data;
    data.setText(u"dropped"_s);
    QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

void commitTo(QWidget &widget)
{
    QInputMethodEvent event;
    event.setCommitString(u"committed"_s);
    QCoreApplication::sendEvent(&widget, &event);
}

using Intrusion = std::function<void(TestWindow &)>;
constexpr int hits = 4000;

} // namespace

/// Replace-all in the main window: what it shows, and what does not get in while it runs.
class ReplaceRunTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void countsFromTheFirstReplacement();
    void stopKeepsWhatIsDone_data();
    void stopKeepsWhatIsDone();
    void stopsBeforeAFarHit();
    void nothingGetsIn_data();
    void nothingGetsIn();
    void otherWindowsGetNothing();
    void requestsWait_data();
    void requestsWait();
    void sessionDoesNotEnd();
    void paintsOnceAFrame();
    void paintsNothingWhenSpedUp();
    void tellsOfNoHit();
    void needsADocument();
    void actsInTheDocumentShown();

private:
    ctlEditer &editor() { return *m_window->currentEditor(); }
    void replaceAll();

    std::unique_ptr<TestWindow> m_window;
    TestFiles m_files;
};

void ReplaceRunTest::initTestCase()
{
    QVERIFY(!static_cast<QPEApplication *>(qApp)->handOver());
}

void ReplaceRunTest::init()
{
    failOnWarnings();
    m_window.reset();
    resetSettings();
    QFile::remove(historyFileName());
    m_window = std::make_unique<TestWindow>();
    static_cast<QPEApplication *>(qApp)->showMainWidget(m_window.get());
    QVERIFY(m_window->open());
    m_window->slotCmdFileNew();
    editor().setText(QString(u"x\n"_s).repeated(hits));
}

void ReplaceRunTest::replaceAll()
{
    m_window->slotCmdViewReplace();
    auto *panel = m_window->findChild<frmSearchDialog *>();
    findField(*panel)->setEditText(u"x"_s);
    replaceField(*panel)->setEditText(u"y"_s);
    panel->slotBtnAll();
}

void ReplaceRunTest::countsFromTheFirstReplacement()
{
    QStringList shown;
    const AtProgress look([&](frmReplaceProgress &progress) {
        const QLabel *const label = progress.findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
        shown << label->text();
        QMetaObject::invokeMethod(
            &progress, [&shown, label] { shown << label->text(); }, Qt::QueuedConnection);
    });
    const MessageBoxes boxes;
    replaceAll();
    QCOMPARE(shown.at(0), QString()); // the first replacement is shown when events were processed
    QCOMPARE(shown.at(1), u"replaced :   1"_s);
}

void ReplaceRunTest::stopKeepsWhatIsDone_data()
{
    QTest::addColumn<QString>("way");
    for (const char16_t *way : { u"Stop", u"close", u"hide", u"Escape", u"Stop after Speed up" })
        QTest::newRow(qPrintable(QString::fromUtf16(way))) << QString::fromUtf16(way);
}

void ReplaceRunTest::stopKeepsWhatIsDone()
{
    QFETCH(QString, way);
    const AtProgress stop([&way](frmReplaceProgress &progress) {
        if (way == u"close"_s)
            progress.close();
        else if (way == u"hide"_s)
            progress.hide();
        else if (way == u"Escape"_s)
            QTest::keyClick(&progress, Qt::Key_Escape);
        else if (way != u"Stop"_s)
            buttonOf(progress, u"Speed up"_s)->click();
        buttonOf(progress, u"Stop"_s)->click();
    });
    MessageBoxes boxes;
    replaceAll();
    const qsizetype done = editor().text().count(u'y');
    QVERIFY(done >= 1 && done < hits);
    QCOMPARE(editor().text(), QString(u"y\n"_s).repeated(done) + QString(u"x\n"_s).repeated(hits - done));
    QCOMPARE(boxes.texts(), QStringList{ u"Replace All|%1 items was Replaced."_s.arg(done) });
    QVERIFY(editor().updatesEnabled());
    QVERIFY(!editor().signalsBlocked());
    QVERIFY(!m_window->findChild<frmReplaceProgress *>());
}

/// The buttons act also while the next hit is looked for.
void ReplaceRunTest::stopsBeforeAFarHit()
{
    const QString text = QString(9 << 20, u'.') + u'x';
    editor().setText(text);
    const AtProgress stop([](frmReplaceProgress &progress) { buttonOf(progress, u"Stop"_s)->click(); });
    const MessageBoxes boxes;
    replaceAll();
    QVERIFY(editor().text() == text);
    QCOMPARE(boxes.texts(), QStringList{ u"Replace All|0 items was Replaced."_s });
}

void ReplaceRunTest::nothingGetsIn_data()
{
    QTest::addColumn<Intrusion>("intrude");
    const auto row = [](const char *name, const Intrusion &intrude) { QTest::newRow(name) << intrude; };
    row("typing", [](TestWindow &window) { QTest::keyClicks(window.currentEditor(), u"a"_s); });
    row("an input method", [](TestWindow &window) { commitTo(*window.currentEditor()); });
    row("a drop", [](TestWindow &window) { dropOn(*window.currentEditor()->viewport()); });
    row("the wheel", [](TestWindow &window) { turnWheel(*window.currentEditor()->viewport()); });
    row("a click into the text", [](TestWindow &window) {
        QTest::mouseClick(window.currentEditor()->viewport(), Qt::LeftButton, {}, { 5, 5 });
    });
    row("a context menu", [](TestWindow &window) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), QPoint(5, 5));
        QCoreApplication::sendEvent(window.currentEditor()->viewport(), &event);
    });
    row("undo",
        [](TestWindow &window) { QTest::keyClick(window.currentEditor(), Qt::Key_Z, Qt::ControlModifier); });
    row("the Escape key", [](TestWindow &window) { QTest::keyClick(&window, Qt::Key_Escape); });
    row("closing the window", [](TestWindow &window) { QVERIFY(!window.close()); });
    row("a key that opens a file",
        [](TestWindow &window) { QTest::keyClick(&window, Qt::Key_O, Qt::ControlModifier); });
    row("a key that searches",
        [](TestWindow &window) { QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier); });
    row("the next tab by keys", [](TestWindow &window) {
        QTest::keyClick(window.currentEditor(), Qt::Key_Tab, Qt::ControlModifier);
    });
    row("another tab by mouse", [](TestWindow &window) {
        QTest::mouseClick(window.tabBar(), Qt::LeftButton, {}, window.tabBar()->tabRect(0).center());
    });
    row("a menu by keyboard", [](TestWindow &window) {
        QTest::keyClick(&window, Qt::Key_F, Qt::AltModifier);
        QVERIFY(!QApplication::activePopupWidget());
    });
}

void ReplaceRunTest::nothingGetsIn()
{
    QFETCH(Intrusion, intrude);
    int intrusions = 0;
    const AtProgress act([&](frmReplaceProgress &progress) {
        QVERIFY(progress.isVisible());
        intrude(*m_window);
        ++intrusions;
    });
    MessageBoxes boxes;
    const ctlEditer *const before = m_window->currentEditor();
    replaceAll();
    QCOMPARE(intrusions, 1);
    QCOMPARE(boxes.texts(), QStringList{ u"Replace All|%1 items was Replaced."_s.arg(hits) });
    QCOMPARE(m_window->currentEditor(), before);
    QCOMPARE(editor().text(), QString(u"y\n"_s).repeated(hits));
    QCOMPARE(editor().cursorOffset(), Offset(2 * hits - 1));
    QCOMPARE(m_window->tabBar()->count(), 2);
    QVERIFY(m_window->isVisible());
    QVERIFY(m_window->requests.isEmpty());
    QVERIFY(!m_window->findChild<frmSearchDialog *>()->isVisible());
}

void ReplaceRunTest::otherWindowsGetNothing()
{
    QLineEdit other;
    other.show();
    const AtProgress type([&](frmReplaceProgress &) { QTest::keyClicks(&other, u"abc"_s); });
    const MessageBoxes boxes;
    replaceAll();
    QCOMPARE(other.text(), QString());
    QTest::keyClicks(&other, u"abc"_s);
    QCOMPARE(other.text(), u"abc"_s);
}

void ReplaceRunTest::requestsWait_data()
{
    QTest::addColumn<bool>("byBus");
    QTest::newRow("from the command line of a second start") << false;
    QTest::newRow("from the message bus") << true;
}

void ReplaceRunTest::requestsWait()
{
    QFETCH(bool, byBus);
    const QString file = m_files.write(u"a.txt"_s, "requested");
    const AtProgress request([&](frmReplaceProgress &) {
        if (!byBus) {
            static_cast<QPEApplication *>(qApp)->request(file);
            return;
        }
        QDBusMessage call = QDBusMessage::createMethodCall(u"QPE.Application.marlopad"_s,
            u"/QPE/Application/marlopad"_s, u"QPE.Application"_s, u"setDocument"_s);
        call.setArguments({ file });
        const QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"other"_s);
        QCOMPARE(other.call(call, QDBus::BlockWithGui).type(), QDBusMessage::ReplyMessage);
    });
    MessageBoxes boxes;
    replaceAll();
    QCOMPARE(m_window->tabBar()->count(), 2);
    QCOMPARE(editor().text(), QString(u"y\n"_s).repeated(hits));
    QCOMPARE(boxes.texts(), QStringList{ u"Replace All|%1 items was Replaced."_s.arg(hits) });
    QTRY_COMPARE(editor().text(), u"requested"_s);
    QCOMPARE(m_window->tabBar()->count(), 3);
}

void ReplaceRunTest::sessionDoesNotEnd()
{
    bool ends = true;
    const AtProgress logout([&](frmReplaceProgress &) { ends = m_window->endSession(true); });
    const MessageBoxes boxes;
    replaceAll();
    QVERIFY(!ends);
    QCOMPARE(editor().text(), QString(u"y\n"_s).repeated(hits));
}

void ReplaceRunTest::paintsOnceAFrame()
{
    const MessageBoxes boxes;
    m_window->slotCmdViewReplace();
    QTRY_VERIFY(
        !QGuiApplication::focusObject() || m_window->findChild<frmSearchDialog *>()->isActiveWindow());
    const PaintCount paints(editor().viewport());
    qint64 painted = 0;
    qint64 frames = 0;
    connect(&editor(), &QMultiLineEdit::textChanged, this, [&] {
        painted = paints.count();
        frames = paints.frames();
    });
    replaceAll();
    QVERIFY(frames > 0);
    // One more each for hiding the search panel and for showing the progress panel.
    QVERIFY2(painted <= frames + 2, qPrintable(u"%1 paints in %2 frames"_s.arg(painted).arg(frames)));
    QVERIFY(painted < hits / 2);
}

void ReplaceRunTest::paintsNothingWhenSpedUp()
{
    std::unique_ptr<PaintCount> paints;
    const AtProgress hurry([&](frmReplaceProgress &progress) {
        buttonOf(progress, u"Speed up"_s)->click();
        paints = std::make_unique<PaintCount>(editor().viewport());
    });
    qint64 atTheEnd = -1;
    qint64 signalsSent = 0;
    connect(&editor(), &QMultiLineEdit::textChanged, this, [&] { signalsSent += paints ? 1 : 0; });
    class AtBox : public QObject {
    public:
        explicit AtBox(std::function<void()> action)
            : m_action(std::move(action))
        {
            qApp->installEventFilter(this);
        }
        bool eventFilter(QObject *object, QEvent *event) override
        {
            if (qobject_cast<QMessageBox *>(object) && event->type() == QEvent::Polish)
                m_action();
            return false;
        }

    private:
        std::function<void()> m_action;
    };
    const AtBox look([&] {
        if (atTheEnd < 0)
            atTheEnd = paints->count();
    });
    const MessageBoxes boxes;
    replaceAll();
    // The whole area when all is done, and before what was due and the frame in hand when the button was
    // pressed.
    QVERIFY2(atTheEnd >= 1 && atTheEnd <= 3, qPrintable(QString::number(atTheEnd)));
    QVERIFY(signalsSent <= 1);
    QCOMPARE(editor().text(), QString(u"y\n"_s).repeated(hits));
}

void ReplaceRunTest::tellsOfNoHit()
{
    editor().setText(u"abc"_s);
    editor().setCursorPosition(0, 2);
    editor().setEdited(false);
    MessageBoxes boxes;
    replaceAll();
    QCOMPARE(boxes.texts(), QStringList{ u"Replace All|0 items was Replaced."_s });
    QCOMPARE(boxes.shown().at(0).icon, QMessageBox::Information);
    QCOMPARE(editor().cursorOffset(), Offset(0));
    QVERIFY(!editor().edited());
}

void ReplaceRunTest::needsADocument()
{
    m_window->slotCmdViewReplace();
    auto *panel = m_window->findChild<frmSearchDialog *>();
    m_window->currentEditor()->setEdited(false);
    m_window->slotCmdFileCloseTab();
    m_window->slotCmdFileCloseTab();
    QVERIFY(!m_window->currentEditor());
    findField(*panel)->setEditText(u"x"_s);
    const MessageBoxes boxes;
    panel->slotBtnAll();
    QVERIFY(!panel->isVisible());
    QCOMPARE(boxes.count(), 0);
}

void ReplaceRunTest::actsInTheDocumentShown()
{
    const ctlEditer *const other = m_window->editorAt(0);
    m_window->editorAt(0)->setText(u"xx"_s);
    m_window->slotCmdViewReplace();
    m_window->tabBar()->setCurrentTab(m_window->editorAt(0));
    MessageBoxes boxes;
    replaceAll();
    QCOMPARE(other->text(), u"yy"_s);
    QCOMPARE(m_window->editorAt(1)->text(), QString(u"x\n"_s).repeated(hits));
}

REGISTER_TEST(runFormTest<ReplaceRunTest>)
#include "replacerun_test.moc"
