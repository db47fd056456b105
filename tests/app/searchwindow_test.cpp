#include "app/documentarea.h"
#include "editor/noticestrip.h"
#include "search/frmsearchdialog.h"
#include "tests/app/atprogress.h"
#include "tests/app/testwindow.h"
#include "tests/search/searchforms.h"
#include "tests/testprogram.h"

#include <QClipboard>
#include <QLineEdit>
#include <QProcess>
#include <QRegularExpression>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

void xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start(u"xdotool"_s, arguments);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
}

void xdotool(const QString &command, const QWidget &window)
{
    xdotool({ command, QString::number(window.winId()) });
}

/// Asks the window manager to close the window, as a click on its frame's button does.
void closeByFrame(const QWidget &window)
{
    QCOMPARE(QProcess::execute(u"wmctrl"_s, { u"-i"_s, u"-c"_s, QString::number(window.winId()) }), 0);
}

/// A number that the window system tells of a window.
int told(const QWidget &window, const QString &name)
{
    QProcess process;
    process.start(u"xwininfo"_s, { u"-id"_s, QString::number(window.winId()) });
    process.waitForFinished();
    const QString output = QString::fromUtf8(process.readAllStandardOutput());
    return QRegularExpression(name + u":\\s+(-?\\d+)"_s).match(output).captured(1).toInt();
}

/// Whether the window manager has put a frame around the window.
bool hasFrame(const QWidget &window)
{
    return told(window, u"Relative upper-left Y"_s) != told(window, u"Absolute upper-left Y"_s);
}

QPoint contentOnScreen(const QWidget &window)
{
    return { told(window, u"Absolute upper-left X"_s), told(window, u"Absolute upper-left Y"_s) };
}

QPoint frameOnScreen(const QWidget &window)
{
    return contentOnScreen(window)
        - QPoint(told(window, u"Relative upper-left X"_s), told(window, u"Relative upper-left Y"_s));
}

} // namespace

/// The search panel and the progress panel as windows of a window manager.
class SearchWindowTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void panelIsPlacedAndStaysWhereItIsPut();
    void noticeIsNotCovered_data();
    void noticeIsNotCovered();
    void panelThatIsShownAgainCoversNoNotice();
    void hitsAreNotCovered();
    void middleClickTakesTheFirstLine();
    void windowManagersCloseHidesThePanel();
    void progressIsPlaced();
    void minimisedRunGoesOn();
    void closedProgressStopsTheRun();
    void secondStartWaitsForTheRun();

private:
    ctlEditer &editor() { return *m_window->currentEditor(); }
    frmSearchDialog &panel() { return *m_window->findChild<frmSearchDialog *>(); }
    void show(int mode);
    /// Waits until the window manager has put the panel there and the panel has been told.
    void waitForPlace(const QPoint &frame);
    void replaceAll();

    std::unique_ptr<TestWindow> m_window;
    TestFiles m_files;
};

void SearchWindowTest::initTestCase()
{
    QVERIFY(!static_cast<QPEApplication *>(qApp)->handOver());
    QApplication::setQuitOnLastWindowClosed(false);
}

void SearchWindowTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    resetSettings();
    QFile::remove(historyFileName());
    m_window = std::make_unique<TestWindow>();
    static_cast<QPEApplication *>(qApp)->showMainWidget(m_window.get());
    QVERIFY(m_window->open());
    editor().setText(QString(u"x\n"_s).repeated(300));
}

void SearchWindowTest::cleanup()
{
    m_window.reset();
}

void SearchWindowTest::show(int mode)
{
    mode == 0 ? m_window->slotCmdViewSearch() : m_window->slotCmdViewReplace();
    QVERIFY(QTest::qWaitForWindowExposed(&panel()));
    QVERIFY(QTest::qWaitForWindowActive(&panel()));
}

void SearchWindowTest::waitForPlace(const QPoint &frame)
{
    QTRY_COMPARE(frameOnScreen(panel()), frame);
    QTRY_COMPARE(panel().geometry().topLeft(), contentOnScreen(panel()));
}

void SearchWindowTest::replaceAll()
{
    m_window->slotCmdViewReplace();
    findField(panel())->setEditText(u"x"_s);
    replaceField(panel())->setEditText(u"y"_s);
    panel().slotBtnAll();
}

void SearchWindowTest::panelIsPlacedAndStaysWhereItIsPut()
{
    show(0);
    waitForPlace({ 20, 40 });
    QTRY_COMPARE(panel().frameGeometry().topLeft(), QPoint(20, 40));
    QTest::keyClick(findField(panel()), Qt::Key_Escape);
    // Without its frame the hidden window is where the frame was.
    QTRY_VERIFY(!hasFrame(panel()));
    QTRY_COMPARE(panel().windowHandle()->position(), QPoint(20, 40));
    for (const int mode : { 1, 0, 1 }) {
        show(mode);
        waitForPlace({ 20, 40 });
    }
    const QPoint before = panel().geometry().topLeft();
    xdotool({ u"windowmove"_s, QString::number(panel().winId()), u"300"_s, u"200"_s });
    QTRY_VERIFY(panel().geometry().topLeft() != before);
    waitForPlace(frameOnScreen(panel()));
    const QPoint moved = frameOnScreen(panel());
    QTest::keyClick(findField(panel()), Qt::Key_Escape);
    show(0);
    QTRY_COMPARE(frameOnScreen(panel()), moved);
}

void SearchWindowTest::noticeIsNotCovered_data()
{
    QTest::addColumn<bool>("comesLater");
    QTest::newRow("it is there") << false;
    QTest::newRow("it comes") << true;
}

void SearchWindowTest::noticeIsNotCovered()
{
    QFETCH(bool, comesLater);
    auto *const area = m_window->findChild<DocumentArea *>();
    auto *const strip = m_window->findChild<NoticeStrip *>();
    const auto tell = [area] {
        area->notices().put({ NoticeKind::Following, nullptr, [] { return u"Something."_s; }, {} });
    };
    if (!comesLater) {
        tell();
        QTRY_VERIFY(strip->isVisible());
    }
    show(0);
    if (comesLater) {
        waitForPlace({ 20, 40 });
        tell();
    }
    QTRY_VERIFY(strip->isVisible());
    const QRect line(strip->mapToGlobal(QPoint()), strip->size());
    QVERIFY(line.intersects(QRect(QPoint(20, 40), panel().frameGeometry().size())));
    waitForPlace({ 20, line.bottom() + 1 });
    QVERIFY(!panel().frameGeometry().intersects(line));
    show(1);
    waitForPlace({ 20, line.bottom() + 1 });
}

void SearchWindowTest::panelThatIsShownAgainCoversNoNotice()
{
    show(0);
    waitForPlace({ 20, 40 });
    QTest::keyClick(findField(panel()), Qt::Key_Escape);
    auto *const area = m_window->findChild<DocumentArea *>();
    auto *const strip = m_window->findChild<NoticeStrip *>();
    area->notices().put({ NoticeKind::Following, nullptr, [] { return u"Something."_s; }, {} });
    QTRY_VERIFY(strip->isVisible());
    show(0);
    waitForPlace({ 20, strip->mapToGlobal(QPoint(0, strip->height())).y() });
}

void SearchWindowTest::hitsAreNotCovered()
{
    editor().setText(QString(u"hit\n"_s).repeated(8));
    editor().setCursorPosition(0, 0);
    show(0);
    findField(panel())->setEditText(u"hit"_s);
    const QWidget &view = *editor().viewport();
    for (int i = 0; i < 8; ++i) {
        QTest::keyClick(findField(panel()), Qt::Key_Return);
        QCOMPARE(editor().cursorPosition(), (RowCol{ RowIndex(i), 3 }));
        const QRect row(view.mapToGlobal(editor().cursorRect().topLeft()), editor().cursorRect().size());
        QTRY_VERIFY(!panel().frameGeometry().intersects(row.adjusted(-30, 0, 0, 0)));
    }
}

void SearchWindowTest::middleClickTakesTheFirstLine()
{
    show(1);
    for (QComboBox *combo : { findField(panel()), replaceField(panel()) }) {
        QGuiApplication::clipboard()->setText(u"one, \"two\"\nthree"_s, QClipboard::Selection);
        combo->setEditText({});
        QTest::mouseClick(combo->lineEdit(), Qt::MiddleButton, {}, { 20, 8 });
        QCOMPARE(combo->currentText(), u"one, \"two\""_s);
    }
}

void SearchWindowTest::windowManagersCloseHidesThePanel()
{
    show(0);
    findField(panel())->setEditText(u"typed"_s);
    closeByFrame(panel());
    QTRY_VERIFY(!panel().isVisible());
    QVERIFY(m_window->isVisible());
    QCOMPARE(m_window->tabBar()->count(), 1);
    show(0);
    QCOMPARE(findField(panel())->currentText(), QString());
}

void SearchWindowTest::progressIsPlaced()
{
    QPoint place;
    const AtProgress look([&](frmReplaceProgress &progress) {
        QVERIFY(QTest::qWaitForWindowActive(&progress));
        QTRY_COMPARE(progress.frameGeometry().topLeft(), QPoint(30, 60));
        place = progress.frameGeometry().topLeft();
    });
    const MessageBoxes boxes;
    replaceAll();
    QCOMPARE(place, QPoint(30, 60));
}

void SearchWindowTest::minimisedRunGoesOn()
{
    bool wasMinimised = false;
    const AtProgress minimise([&](frmReplaceProgress &progress) {
        QVERIFY(QTest::qWaitForWindowActive(&progress));
        // Asked again: the window manager may be about to show the panel.
        QTRY_VERIFY((xdotool(u"windowminimize"_s, *m_window), m_window->isMinimized()));
        wasMinimised = true;
    });
    MessageBoxes boxes;
    replaceAll();
    QVERIFY(wasMinimised);
    QCOMPARE(editor().text(), QString(u"y\n"_s).repeated(300));
    QCOMPARE(boxes.texts(), QStringList{ u"Replace All|300 items was Replaced."_s });
}

void SearchWindowTest::closedProgressStopsTheRun()
{
    const AtProgress closeIt([](frmReplaceProgress &progress) {
        QVERIFY(QTest::qWaitForWindowActive(&progress));
        closeByFrame(progress);
        QTRY_VERIFY(!progress.isVisible());
    });
    MessageBoxes boxes;
    replaceAll();
    const qsizetype done = editor().text().count(u'y');
    QVERIFY(done >= 1 && done < 300);
    QCOMPARE(boxes.texts(), QStringList{ u"Replace All|%1 items was Replaced."_s.arg(done) });
    QVERIFY(m_window->isVisible());
}

void SearchWindowTest::secondStartWaitsForTheRun()
{
    const QString file = m_files.write(u"a.txt"_s, "requested");
    int exitCode = -1;
    const AtProgress startAnother([&](frmReplaceProgress &) {
        QProcess second;
        second.start(QStringLiteral(MARLOPAD_PROGRAM), { file });
        QTRY_COMPARE_WITH_TIMEOUT(second.state(), QProcess::NotRunning, 30000);
        exitCode = second.exitCode();
    });
    MessageBoxes boxes;
    replaceAll();
    QCOMPARE(exitCode, 0);
    QCOMPARE(boxes.texts(), QStringList{ u"Replace All|300 items was Replaced."_s });
    QCOMPARE(m_window->editorAt(0)->text(), QString(u"y\n"_s).repeated(300));
    QTRY_COMPARE(editor().text(), u"requested"_s);
}

REGISTER_TEST(runFormTest<SearchWindowTest>)
#include "searchwindow_test.moc"
