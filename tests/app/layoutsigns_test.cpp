#include "app/layoutsigns.h"

#include "tests/app/stayingapplication.h"
#include "tests/app/stripinwindow.h"
#include "tests/jobs/scarcememory.h"
#include "tests/widget/heldlayout.h"
#include "widget/viewlayout.h"

#include <QPointer>
#include <QScrollBar>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

enum class StopLayoutBy { Button, Escape };

} // namespace

/// What the strip tells of the new layout of a long text.
class LayoutSignsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("QPEDIR", BUILT_QPE_DIR); }
    void init();
    void cleanup();

    void tellsHowFarItIs();
    void tellsTheTurnsOfALayout();
    void tooLittleMemoryIsTold();
    void isInEveryLanguage();
    void isOnlyAboutItsDocument();
    void stopped_data();
    void stopped();
    void stoppedWrapIsBegunByOptions_data();
    void stoppedWrapIsBegunByOptions();
    void goesWithItsDocument();
    void goesWithItsText();

private:
    ctlEditer &editor() const { return *m_window->currentEditor(); }
    QString stripText() const { return StripInWindow(*m_window).text(); }
    void changeTextSize(int points);
    void wrapByOptions();
    void makeTurnsOf(ViewLayout &layout);
    bool hasSideBar() const { return editor().horizontalScrollBar()->isVisible(); }

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<TestWindow> m_window;
    std::optional<HeldLayout> m_held;
    qreal m_rowHeight = 0; ///< of before
};

void LayoutSignsTest::init()
{
    resetSettings();
    m_files = std::make_unique<TestFiles>();
    m_window = std::make_unique<TestWindow>();
    theApplication().showMainWidget(m_window.get());
    QVERIFY(m_window->open());
    const QByteArray line = "a line of a large text\n";
    m_window->setDocument(
        m_files->write(u"a.txt"_s, line.repeated(int(ViewLayout::longText / line.size()) + 1)));
    m_rowHeight = editor().rowHeight();
    m_held.emplace();
    changeTextSize(5);
    QVERIFY(stripText().isEmpty());
    QTRY_COMPARE(stripText(), u"Laying out…"_s);
}

void LayoutSignsTest::cleanup()
{
    m_held.reset();
    m_window.reset();
    m_files.reset();
}

void LayoutSignsTest::changeTextSize(int points)
{
    appSettings().FontSize += points;
    m_window->applySettings();
    editor().numLines(); // asked about, it begins
}

void LayoutSignsTest::wrapByOptions()
{
    m_window->options = [] {
        appSettings().WrapMode = 1;
        return true;
    };
    m_window->slotCmdEditOption();
}

/// Some, of a text that takes more.
void LayoutSignsTest::makeTurnsOf(ViewLayout &layout)
{
    const QObject until;
    connect(&layout, &ViewLayout::progressed, &until, [this](int percent) {
        if (percent > 0 && !m_held)
            m_held.emplace();
    });
    m_held.reset();
    QTRY_VERIFY(m_held);
}

void LayoutSignsTest::tellsHowFarItIs()
{
    emit editor().viewLayout().progressed(40);
    QCOMPARE(stripText(), u"Laying out: 25%"_s);
    const qreal height = editor().rowHeight();
    QVERIFY(height > m_rowHeight);
    m_held.reset();
    QTRY_VERIFY(stripText().isEmpty());
    QCOMPARE(editor().rowHeight(), height);
}

/// One that takes many turns, which other programs make no fewer.
void LayoutSignsTest::tellsTheTurnsOfALayout()
{
    constexpr qint64 units = 8 * ViewLayout::longText;
    const QByteArray line = "a line of a larger text\n";
    m_window->setDocument(m_files->write(u"b.txt"_s, line.repeated(int(units / line.size()))));
    QTRY_VERIFY(editor().store().length() > 0 && !editor().document().isHeld());
    changeTextSize(2);
    QTRY_COMPARE(stripText(), u"Laying out…"_s);
    QList<int> percents;
    QStringList expected, told;
    connect(&editor().viewLayout(), &ViewLayout::progressed, this, [&](int percent) {
        percents << percent;
        expected << u"Laying out: %1%"_s.arg(percent / 25 * 25);
        told << stripText();
    });
    m_held.reset();
    QTRY_VERIFY(stripText().isEmpty());
    QVERIFY(!told.isEmpty());
    QCOMPARE(told, expected);
    QVERIFY(std::ranges::is_sorted(percents) && percents.last() > 0 && percents.last() <= 100);
}

void LayoutSignsTest::tooLittleMemoryIsTold()
{
    const MessageBoxes boxes;
    {
        const ScarceMemory scarce(2);
        m_held.reset();
        QTRY_VERIFY(scarce.wasMet());
    }
    QTRY_COMPARE(boxes.texts(), QStringList{ u"Error|There is not enough memory for this!"_s });
    QVERIFY(stripText().isEmpty());
    QCOMPARE(editor().rowHeight(), m_rowHeight);
    editor().store().checkInvariants();
    changeTextSize(1);
    QTRY_VERIFY(editor().rowHeight() > m_rowHeight);
}

void LayoutSignsTest::isInEveryLanguage()
{
    m_window->slotCmdViewLangJa();
    QTRY_COMPARE(stripText(), u"レイアウト中…"_s);
    m_window->slotCmdViewLangFr();
    QTRY_COMPARE(stripText(), u"Mise en page…"_s);
    m_window->slotCmdViewLangEn();
    QTRY_COMPARE(stripText(), u"Laying out…"_s);
}

void LayoutSignsTest::isOnlyAboutItsDocument()
{
    m_window->slotCmdFileNew();
    QTRY_VERIFY(stripText().isEmpty());
    m_window->slotCmdViewWinPrev();
    QTRY_COMPARE(stripText(), u"Laying out…"_s);
}

void LayoutSignsTest::stopped_data()
{
    QTest::addColumn<StopLayoutBy>("by");
    QTest::newRow("button") << StopLayoutBy::Button;
    QTest::newRow("F6, Escape") << StopLayoutBy::Escape;
}

/// Going to another tab and back wants no other layout, another text size does.
void LayoutSignsTest::stopped()
{
    QFETCH(StopLayoutBy, by);
    if (by == StopLayoutBy::Button) {
        QVERIFY(StripInWindow(*m_window).click(u"Stop"_s));
    } else {
        QTest::keyClick(&editor(), Qt::Key_F6);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    }
    QTRY_VERIFY(stripText().isEmpty());
    m_held.reset();
    m_window->slotCmdFileNew();
    m_window->slotCmdViewWinPrev();
    settle();
    QCOMPARE(editor().rowHeight(), m_rowHeight);
    QTest::keyClicks(&editor(), u"x"_s);
    QVERIFY(editor().text().startsWith(u"xa line"_s));
    editor().store().checkInvariants();
    changeTextSize(1);
    QTRY_VERIFY(editor().rowHeight() > m_rowHeight);
}

void LayoutSignsTest::stoppedWrapIsBegunByOptions_data()
{
    QTest::addColumn<bool>("isAmidItsTurns");
    QTest::newRow("at its start") << false;
    QTest::newRow("amid its turns") << true;
}

/// The rows of before are there with the bar that goes to their ends; Options has what was chosen.
void LayoutSignsTest::stoppedWrapIsBegunByOptions()
{
    QFETCH(bool, isAmidItsTurns);
    constexpr qint64 units = 8 * ViewLayout::longText;
    const QByteArray line = QByteArray("a line that is wider than a window, ").repeated(20) + '\n';
    m_window->setDocument(m_files->write(u"b.txt"_s, line.repeated(int(units / line.size()))));
    QTRY_VERIFY(editor().store().length() > 0 && !editor().document().isHeld());
    QTRY_VERIFY(hasSideBar());
    wrapByOptions();
    QTRY_COMPARE(stripText(), u"Laying out…"_s);
    if (isAmidItsTurns)
        makeTurnsOf(editor().viewLayout());
    QVERIFY(!hasSideBar());
    QVERIFY(StripInWindow(*m_window).click(u"Stop"_s));
    QTRY_VERIFY(stripText().isEmpty());
    QVERIFY(hasSideBar());
    QVERIFY(editor().horizontalScrollBar()->maximum() > editor().viewport()->width());
    wrapByOptions();
    QTRY_COMPARE(stripText(), u"Laying out…"_s);
    QVERIFY(!hasSideBar());
    m_held.reset();
    QTRY_VERIFY(stripText().isEmpty());
    QVERIFY(!hasSideBar());
    QVERIFY(editor().store().layoutRule().limit > 0);
}

void LayoutSignsTest::goesWithItsDocument()
{
    const QPointer<ctlEditer> closed = &editor();
    m_window->slotCmdFileCloseTab();
    QTRY_VERIFY(!closed);
    QVERIFY(stripText().isEmpty());
}

void LayoutSignsTest::goesWithItsText()
{
    m_files->write(u"a.txt"_s, "small");
    const MessageBoxes boxes({ u"Yes"_s });
    m_window->slotCmdFileReload();
    m_held.reset();
    QTRY_VERIFY(stripText().isEmpty());
    QCOMPARE(editor().text(), u"small"_s);
    QVERIFY(editor().rowHeight() > m_rowHeight);
}

REGISTER_TEST(runStayingTest<LayoutSignsTest>)
#include "layoutsigns_test.moc"
