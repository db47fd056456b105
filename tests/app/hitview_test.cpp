#include "search/frmsearchdialog.h"
#include "tests/app/testwindow.h"
#include "tests/search/searchforms.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

namespace {

QString numberedLines(int count)
{
    QStringList lines;
    for (int i = 0; i < count; ++i)
        lines << u"line %1 with words"_s.arg(i);
    return lines.join(u'\n');
}

QRect onScreen(const QWidget &widget, const QRect &rect)
{
    return { widget.mapToGlobal(rect.topLeft()), rect.size() };
}

} // namespace

/// A hit is in view, and not under the panel.
class HitViewTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void isInViewBesideThePanel_data();
    void isInViewBesideThePanel();
    void everyHitOfALongDocument_data();
    void everyHitOfALongDocument();
    void everyHitOfAShortDocument_data();
    void everyHitOfAShortDocument();
    void panelStaysWhereNothingIsCovered();
    void viewStaysWhereNothingIsCovered();
    void viewStaysWhenTheHitIsBesideThePanel();
    void panelIsNotMovedWhereScrollingHelps();
    void hitAcrossRows();
    void wideHitIsInViewWhole_data();
    void wideHitIsInViewWhole();
    void hitWiderThanTheViewShowsTheCursor();
    void hiddenPanelCoversNothing();

private:
    ctlEditer &editor() { return *m_window->currentEditor(); }
    frmSearchDialog &panel() { return *m_window->findChild<frmSearchDialog *>(); }
    void resize(const QSize &size);
    /// Opens the panel to look for a text.
    void ask(const QString &text, int mode = 0);
    QRect hitOnScreen();
    /// Empty when the hit is in view and uncovered.
    QString fault();

    std::unique_ptr<TestWindow> m_window;
};

void HitViewTest::init()
{
    failOnWarnings();
    setScreenClass(false);
    QFile::remove(historyFileName());
    m_window.reset();
    resetSettings();
    m_window = std::make_unique<TestWindow>();
    QVERIFY(m_window->open());
    resize({ 640, 480 });
}

void HitViewTest::resize(const QSize &size)
{
    m_window->showNormal();
    m_window->setGeometry({ QPoint(0, 0), size });
    QTRY_COMPARE(m_window->size(), size);
}

void HitViewTest::ask(const QString &text, int mode)
{
    mode == 0 ? m_window->slotCmdViewSearch() : m_window->slotCmdViewReplace();
    findField(panel())->setEditText(text);
}

QRect HitViewTest::hitOnScreen()
{
    const QWidget &view = *editor().viewport();
    const QRectF anchor = editor().inputMethodQuery(Qt::ImAnchorRectangle).toRectF();
    return onScreen(view, editor().cursorRect() | anchor.translated(-view.pos()).toAlignedRect());
}

QString HitViewTest::fault()
{
    const QWidget &view = *editor().viewport();
    if (!onScreen(view, view.rect().adjusted(-1, 0, 1, 0)).contains(hitOnScreen()))
        return u"out of view"_s;
    if (panel().frameGeometry().intersects(hitOnScreen()))
        return u"covered"_s;
    if (!editor().screen()->availableGeometry().contains(panel().frameGeometry()))
        return u"panel out of the screen"_s;
    return {};
}

void HitViewTest::isInViewBesideThePanel_data()
{
    QTest::addColumn<QSize>("window");
    QTest::addColumn<QRect>("panelPlace"); // null size: as it is
    QTest::addColumn<int>("hitLine");
    constexpr std::pair<const char *, QSize> windows[] = { { "small class", { 240, 320 } },
        { "half VGA", { 320, 480 } }, { "VGA", { 480, 640 } }, { "low", { 640, 160 } } };
    constexpr std::pair<const char *, QRect> places[] = {
        { "as placed", { 20, 40, 0, 0 } },
        { "over the middle", { 20, 120, 0, 0 } },
        { "at the top", { 0, 0, 0, 0 } },
        { "tall", { 20, 40, 200, 240 } },
        { "at the end, tall", { 20, 100, 200, 300 } },
    };
    constexpr std::pair<const char *, int> lines[] = { { "first line", 0 }, { "near the start", 6 },
        { "in the middle", 500 }, { "near the end", 993 }, { "last line", 999 } };
    for (const auto &[windowName, window] : windows) {
        for (const auto &[placeName, place] : places) {
            for (const auto &[lineName, line] : lines)
                QTest::addRow("%s, panel %s, %s", windowName, placeName, lineName) << window << place << line;
        }
    }
}

/// From above, from below and with both directions.
void HitViewTest::isInViewBesideThePanel()
{
    QFETCH(QSize, window);
    QFETCH(QRect, panelPlace);
    QFETCH(int, hitLine);
    resize(window);
    editor().setText(numberedLines(1000));
    const QString hit = u"line %1 with"_s.arg(hitLine);
    for (const bool forward : { true, false }) {
        ask(hit);
        panel().move(panelPlace.topLeft());
        panel().resize(panelPlace.size().expandedTo(panel().sizeHint()));
        if (forward)
            editor().setCursorPosition(0, 0);
        else
            editor().setCursorPosition(editor().numLines(), 1000);
        forward ? panel().slotBtnNext() : panel().slotBtnBefo();
        QCOMPARE(editor().markedText(), hit);
        QCOMPARE(fault(), QString());
    }
}

void HitViewTest::everyHitOfALongDocument_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("search") << 0;
    QTest::newRow("replace") << 1;
}

/// One after the other, as who presses the button again and again.
void HitViewTest::everyHitOfALongDocument()
{
    QFETCH(int, mode);
    resize({ 240, 320 });
    editor().setText(numberedLines(200));
    ask(u"with"_s, mode);
    for (int i = 0; i < 200; ++i) {
        panel().slotBtnNext();
        QCOMPARE(editor().cursorPosition().row, RowIndex(i));
        QCOMPARE(fault(), QString());
    }
}

void HitViewTest::everyHitOfAShortDocument_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("search") << 0;
    QTest::newRow("replace") << 1;
}

/// It cannot be scrolled: the panel gives way, and not with every hit.
void HitViewTest::everyHitOfAShortDocument()
{
    QFETCH(int, mode);
    resize({ 480, 640 });
    editor().setText(numberedLines(15));
    ask(u"with"_s, mode);
    int moves = 0;
    for (int i = 0; i < 15; ++i) {
        const QPoint before = panel().pos();
        panel().slotBtnNext();
        QCOMPARE(fault(), QString());
        moves += before == panel().pos() ? 0 : 1;
    }
    QCOMPARE(editor().topRow(), RowIndex(0));
    QCOMPARE(moves, 1);
}

void HitViewTest::panelStaysWhereNothingIsCovered()
{
    editor().setText(numberedLines(1000));
    ask(u"line 500 "_s);
    panel().slotBtnNext();
    QCOMPARE(panel().pos(), QPoint(20, 40));
}

void HitViewTest::viewStaysWhereNothingIsCovered()
{
    editor().setText(numberedLines(1000));
    editor().setTopRow(RowIndex(100));
    editor().setCursorPosition(100 + editor().viewport()->height() / editor().cellHeight() - 2, 0);
    const RowIndex top = editor().topRow();
    ask(u"line"_s);
    panel().slotBtnNext();
    QCOMPARE(editor().topRow(), top);
}

void HitViewTest::viewStaysWhenTheHitIsBesideThePanel()
{
    editor().setText(numberedLines(1000) + u'\n' + QString(60, u'.') + u"hit\n"_s + numberedLines(1000));
    editor().setTopRow(RowIndex(1000));
    editor().setCursorPosition(1000, 0);
    ask(u"hit"_s);
    panel().move(0, 0);
    panel().resize(panel().width(), 240);
    QVERIFY(panel().frameGeometry().bottom() > onScreen(editor(), editor().rect()).top());
    panel().slotBtnNext();
    QCOMPARE(fault(), QString());
    QVERIFY(panel().frameGeometry().bottom() > hitOnScreen().top());
    QCOMPARE(editor().topRow(), RowIndex(1000));
}

void HitViewTest::panelIsNotMovedWhereScrollingHelps()
{
    editor().setText(numberedLines(1000));
    editor().setTopRow(RowIndex(500));
    editor().setCursorPosition(500, 0);
    ask(u"with"_s);
    panel().slotBtnNext();
    QCOMPARE(fault(), QString());
    QCOMPARE(panel().pos(), QPoint(20, 40));
    QVERIFY(editor().topRow() < RowIndex(500));
}

void HitViewTest::hitAcrossRows()
{
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 10;
    m_window->applySettings();
    editor().setText(QString(u"0123456789ab"_s).repeated(200));
    ask(u"9ab0"_s);
    for (int i = 0; i < 199; ++i) {
        panel().slotBtnNext();
        QCOMPARE(editor().markedText(), u"9ab0"_s);
        QCOMPARE(fault(), QString());
    }
    for (int i = 0; i < 198; ++i) {
        panel().slotBtnBefo();
        QCOMPARE(fault(), QString());
    }
}

void HitViewTest::wideHitIsInViewWhole_data()
{
    QTest::addColumn<bool>("forward");
    QTest::newRow("forward") << true;
    QTest::newRow("backward") << false;
}

void HitViewTest::wideHitIsInViewWhole()
{
    QFETCH(bool, forward);
    const auto columns =
        int(0.9 * editor().viewport()->width() / editor().fontMetrics().horizontalAdvance(u'x'));
    const QString wide(columns, u'x');
    editor().setText(QString(1000, u'.') + wide + QString(1000, u'.'));
    editor().setCursorPosition(0, forward ? 0 : 3000);
    ask(wide);
    forward ? panel().slotBtnNext() : panel().slotBtnBefo();
    QCOMPARE(editor().markedText(), wide);
    QCOMPARE(fault(), QString());
}

void HitViewTest::hitWiderThanTheViewShowsTheCursor()
{
    const QString wide(1000, u'x');
    editor().setText(QString(1000, u'.') + wide);
    ask(wide);
    panel().slotBtnNext();
    QCOMPARE(editor().markedText(), wide);
    QVERIFY(editor().viewport()->rect().contains(editor().cursorRect()));
    panel().slotBtnBefo();
    editor().setCursorPosition(0, 2000);
    panel().slotBtnBefo();
    QVERIFY(editor().viewport()->rect().contains(editor().cursorRect()));
}

void HitViewTest::hiddenPanelCoversNothing()
{
    editor().setText(numberedLines(1000));
    ask(u"with"_s);
    panel().slotBtnNext();
    panel().hide();
    panel().move(20, 40);
    editor().setTopRow(RowIndex(500));
    editor().setCursorPosition(500, 0);
    m_window->slotCmdViewSrchNext();
    QCOMPARE(editor().topRow(), RowIndex(500));
    QCOMPARE(panel().pos(), QPoint(20, 40));
}

REGISTER_TEST(runFormTest<HitViewTest>)
#include "hitview_test.moc"
