#include "tests/editor/showntabbar.h"
#include "tests/messageboxes.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QHelpEvent>
#include <QRandomGenerator>
#include <QSet>
#include <QSignalSpy>

#include <algorithm>
#include <functional>

Q_DECLARE_METATYPE(std::function<void(QTabBar &)>)

class CtlTabBarTest : public QObject, private ShownTabBar {
    Q_OBJECT

private slots:
    void init() { QVERIFY(show()); }
    void cleanup() { remove(); }

    void looksLikeTabsBelow();
    void firstTabIsCurrentAndSilent();
    void choosingTellsTheEditor();
    void choosingTheSameTabTellsAgain();
    void unknownEditorsAndIdsChangeNothing();
    void removalChoosesTheNeighbour_data();
    void removalChoosesTheNeighbour();
    void removalOfTheOnlyTab();
    void removalOfManyIsSilent();
    void idsStayAndRise();
    void idsAreReusedWhenTheyRunOut();
    void moreThanAThousandTabs();
    void shortCaptionsAreWhole();
    void longCaptionsAreCutBehindTheLimit_data();
    void longCaptionsAreCutBehindTheLimit();
    void captionThatIsWideWithItsLastCharacterIsWhole();
    void charactersAreNotCut_data();
    void charactersAreNotCut();
    void markupAndAmpersandsAreShownAsTheyAre_data();
    void markupAndAmpersandsAreShownAsTheyAre();
    void captionIsReplaced();
    void toolTipIsTheFullName_data();
    void toolTipIsTheFullName();
    void looksAsTheToolkitsOwn_data();
    void looksAsTheToolkitsOwn();
    void randomTabs_data();
    void randomTabs();

private:
    QString shownCaption(int index) const;
    void fillLike(QTabBar &own);
};

/// A label as the screen shows it: "&&" is one "&", and no single one is left.
QString CtlTabBarTest::shownCaption(int index) const
{
    QString label = m_bar->tabText(index);
    label.replace(QStringLiteral("&&"), QStringLiteral("\x01"));
    Q_ASSERT(!label.contains(u'&'));
    return label.replace(u'\x01', u'&');
}

void CtlTabBarTest::looksLikeTabsBelow()
{
    QCOMPARE(m_bar->shape(), QTabBar::TriangularSouth);
    QCOMPARE(m_bar->elideMode(), Qt::ElideNone);
    QVERIFY(m_bar->isMovable());
    QVERIFY(!m_bar->accessibleName().isEmpty());
}

void CtlTabBarTest::firstTabIsCurrentAndSilent()
{
    QSignalSpy spy(m_bar, &ctlTabBar::currentChanged);
    QCOMPARE(m_bar->currentTab(), -1);
    ctlEditer *first = addTab();
    addTab();
    QCOMPARE(m_bar->currentTab(), m_bar->idOf(first));
    QVERIFY(m_bar->isTabEnabled(0));
    QCOMPARE(spy.count(), 0);
}

void CtlTabBarTest::choosingTellsTheEditor()
{
    const Editors editors{ addTab(), addTab(), addTab() };
    QSignalSpy spy(m_bar, &ctlTabBar::currentChanged);
    m_bar->setCurrentTab(editors[2]);
    m_bar->setCurrentTab(m_bar->idOf(editors[1]));
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy[0][0].value<ctlEditer *>(), editors[2]);
    QCOMPARE(spy[1][0].value<ctlEditer *>(), editors[1]);
    QCOMPARE(m_bar->editorOf(m_bar->currentTab()), editors[1]);
}

void CtlTabBarTest::choosingTheSameTabTellsAgain()
{
    ctlEditer *editor = addTab();
    QSignalSpy spy(m_bar, &ctlTabBar::currentChanged);
    m_bar->setCurrentTab(editor);
    m_bar->setCurrentTab(editor);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy[1][0].value<ctlEditer *>(), editor);
}

void CtlTabBarTest::unknownEditorsAndIdsChangeNothing()
{
    ctlEditer *known = addTab(QStringLiteral("known"));
    ctlEditer unknown(m_window.get());
    QSignalSpy spy(m_bar, &ctlTabBar::currentChanged);
    m_bar->setTabCaption(&unknown, QStringLiteral("other"));
    m_bar->setCurrentTab(&unknown);
    m_bar->setCurrentTab(77);
    m_bar->slotTabSelected(77);
    m_bar->slotTabSelected(-1);
    m_bar->removeTab(&unknown);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(m_bar->editors(), Editors{ known });
    QCOMPARE(m_bar->idOf(&unknown), -1);
    QCOMPARE(m_bar->editorOf(77), nullptr);
    QCOMPARE(m_bar->editorOf(-1), nullptr);
    QCOMPARE(shownCaption(0), QStringLiteral("known"));
}

void CtlTabBarTest::removalChoosesTheNeighbour_data()
{
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("removed");
    QTest::addColumn<int>("chosen");
    QTest::newRow("[a] b c: a goes, b is chosen") << 0 << 0 << 1;
    QTest::newRow("a [b] c: b goes, c is chosen") << 1 << 1 << 2;
    QTest::newRow("a b [c]: c goes, b is chosen") << 2 << 2 << 1;
    QTest::newRow("[a] b c: b goes, c is chosen") << 0 << 1 << 2;
    QTest::newRow("a b [c]: a goes, b is chosen") << 2 << 0 << 1;
    QTest::newRow("a b [c]: b goes, c is chosen again") << 2 << 1 << 2;
    QTest::newRow("[a] b c: c goes, b is chosen") << 0 << 2 << 1;
}

void CtlTabBarTest::removalChoosesTheNeighbour()
{
    QFETCH(int, current);
    QFETCH(int, removed);
    QFETCH(int, chosen);
    Editors editors{ addTab(), addTab(), addTab() };
    m_bar->setCurrentTab(editors[current]);
    QSignalSpy spy(m_bar, &ctlTabBar::currentChanged);
    m_bar->removeTab(editors[removed]);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy[0][0].value<ctlEditer *>(), editors[chosen]);
    QCOMPARE(m_bar->editorOf(m_bar->currentTab()), editors[chosen]);
    editors.removeAt(removed);
    QCOMPARE(m_bar->editors(), editors);
}

void CtlTabBarTest::removalOfTheOnlyTab()
{
    ctlEditer *editor = addTab();
    QSignalSpy spy(m_bar, &ctlTabBar::currentChanged);
    m_bar->removeTab(editor);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(m_bar->currentTab(), -1);
    QCOMPARE(m_bar->count(), 0);
}

void CtlTabBarTest::removalOfManyIsSilent()
{
    Editors editors;
    for (int i = 0; i < 20; ++i)
        editors << addTab(QString::number(i));
    m_bar->setCurrentTab(editors[7]);
    QSignalSpy spy(m_bar, &ctlTabBar::currentChanged);
    const QRect first = m_bar->tabRect(0);
    m_bar->removeTabs({ editors[0], editors[6], editors[8], editors[19] });
    for (const int gone : { 19, 8, 6, 0 })
        editors.removeAt(gone);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(m_bar->editors(), editors);
    QCOMPARE(m_bar->editorOf(m_bar->currentTab()), editors[5]);
    QCOMPARE(shownCaption(5), QStringLiteral("7"));
    QVERIFY(m_bar->isVisible());
    QCOMPARE(m_bar->tabRect(0).topLeft(), first.topLeft());
    QCOMPARE(m_bar->tabAt(m_bar->tabRect(15).center()), 15);
}

void CtlTabBarTest::idsStayAndRise()
{
    const Editors editors{ addTab(), addTab(), addTab() };
    QCOMPARE(m_bar->idOf(editors[0]), 0);
    QCOMPARE(m_bar->idOf(editors[1]), 1);
    QCOMPARE(m_bar->idOf(editors[2]), 2);
    m_bar->removeTab(editors[0]);
    QCOMPARE(m_bar->idOf(editors[1]), 1);
    QCOMPARE(m_bar->editorOf(0), nullptr);
    QCOMPARE(m_bar->idOf(addTab()), 3);
    QCOMPARE(m_bar->editorOf(2), editors[2]);
}

void CtlTabBarTest::idsAreReusedWhenTheyRunOut()
{
    ctlEditer first(m_window.get());
    ctlEditer other(m_window.get());
    ctlEditer *last = &first;
    m_bar->addTab(last, QString());
    for (int i = 1; i < 1000; ++i) {
        ctlEditer *next = last == &first ? &other : &first;
        QCOMPARE(m_bar->addTab(next, QString()), i);
        m_bar->removeTab(last);
        last = next;
    }
    QCOMPARE(m_bar->idOf(last), 999);
    QCOMPARE(m_bar->idOf(addTab()), 0);
    QCOMPARE(m_bar->idOf(addTab()), 1);
}

void CtlTabBarTest::moreThanAThousandTabs()
{
    ctlEditer editor(m_window.get());
    QSet<int> ids;
    for (int i = 0; i < 1002; ++i)
        ids.insert(m_bar->addTab(&editor, QString()));
    QCOMPARE(ids.size(), 1002);
    QVERIFY(ids.contains(999) && ids.contains(1000) && ids.contains(1001));
}

void CtlTabBarTest::shortCaptionsAreWhole()
{
    addTab(QStringLiteral("text.txt"));
    addTab(QString());
    QCOMPARE(shownCaption(0), QStringLiteral("text.txt"));
    QCOMPARE(shownCaption(1), QString());
}

void CtlTabBarTest::longCaptionsAreCutBehindTheLimit_data()
{
    QTest::addColumn<QString>("caption");
    QTest::newRow("narrow") << QString(300, u'i');
    QTest::newRow("wide") << QString(100, u'W');
    QTest::newRow("Japanese") << QStringLiteral("長い名前の文書").repeated(20);
    QTest::newRow("mixed") << QStringLiteral("文書 report & 日記 (2) ").repeated(10);
}

void CtlTabBarTest::longCaptionsAreCutBehindTheLimit()
{
    QFETCH(QString, caption);
    addTab(caption);
    const QString shown = shownCaption(0);
    QVERIFY(shown.endsWith(QStringLiteral("...")));
    const QString kept = shown.chopped(3);
    QVERIFY(caption.startsWith(kept));
    const QFontMetrics metrics(m_bar->font());
    QVERIFY(metrics.horizontalAdvance(kept) > 160);
    QVERIFY(metrics.horizontalAdvance(kept.chopped(1)) <= 160);
}

void CtlTabBarTest::captionThatIsWideWithItsLastCharacterIsWhole()
{
    const QFontMetrics metrics(m_bar->font());
    QString caption;
    while (metrics.horizontalAdvance(caption) <= 160)
        caption += u'n';
    QCOMPARE(m_bar->shortened(caption), caption);
    QCOMPARE(m_bar->shortened(caption + u'n'), caption + QStringLiteral("..."));
}

void CtlTabBarTest::charactersAreNotCut_data()
{
    QTest::addColumn<QString>("character");
    QTest::newRow("surrogate pair") << QStringLiteral("𠮟");
    QTest::newRow("combining mark") << QStringLiteral("か\u3099");
    QTest::newRow("two combining marks") << QStringLiteral("e\u0302\u0301");
    QTest::newRow("family") << QStringLiteral("👨‍👩‍👧");
    QTest::newRow("flag") << QStringLiteral("🇯🇵");
}

/// What is before moves the limit to every place of a character.
void CtlTabBarTest::charactersAreNotCut()
{
    QFETCH(QString, character);
    for (int before = 0; before < 12; ++before) {
        const QString start(before, u'i');
        const QString caption = start + character.repeated(80);
        const QString kept = m_bar->shortened(caption).chopped(3);
        QVERIFY(kept.size() < caption.size());
        QVERIFY(caption.startsWith(kept));
        QCOMPARE((kept.size() - before) % character.size(), 0);
        QVERIFY(QFontMetrics(m_bar->font()).horizontalAdvance(kept) > 160);
    }
}

void CtlTabBarTest::markupAndAmpersandsAreShownAsTheyAre_data()
{
    QTest::addColumn<QString>("caption");
    QTest::newRow("R&D.txt") << QStringLiteral("R&D.txt");
    QTest::newRow("&&.txt") << QStringLiteral("&&.txt");
    QTest::newRow("ends in &") << QStringLiteral("a&");
    QTest::newRow("<b>bold</b>") << QStringLiteral("<b>bold</b>");
    QTest::newRow("%1") << QStringLiteral("%1");
}

void CtlTabBarTest::markupAndAmpersandsAreShownAsTheyAre()
{
    QFETCH(QString, caption);
    addTab(caption);
    QCOMPARE(shownCaption(0), caption);
}

void CtlTabBarTest::captionIsReplaced()
{
    addTab(QStringLiteral("one"));
    ctlEditer *editor = addTab(QStringLiteral("two"));
    m_bar->setTabCaption(editor, QStringLiteral("* two"));
    QCOMPARE(shownCaption(0), QStringLiteral("one"));
    QCOMPARE(shownCaption(1), QStringLiteral("* two"));
}

void CtlTabBarTest::toolTipIsTheFullName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    QTest::newRow("plain") << QStringLiteral("notes.txt") << QStringLiteral("/no/such/folder/notes.txt");
    QTest::newRow("R&D") << QStringLiteral("R&D.txt") << QStringLiteral("/no/such/folder/R&D.txt");
    QTest::newRow("mark-up") << QStringLiteral(
        "<b>x") << QStringLiteral("<div style=\"white-space:pre\">/no/such/folder/&lt;b&gt;x</div>");
}

void CtlTabBarTest::toolTipIsTheFullName()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    addTab();
    ctlEditer *editor = addTab(name);
    {
        // A file that is not there still names its editor.
        const MessageBoxes boxes;
        editor->loadFile(QStringLiteral("/no/such/folder/"), name, 0);
        QCOMPARE(boxes.count(), 1);
    }
    const QPoint place = middleOf(1);
    QHelpEvent event(QEvent::ToolTip, place, m_bar->mapToGlobal(place));
    QApplication::sendEvent(m_bar, &event);
    QCOMPARE(QToolTip::text(), shown);
}

/// With tabs that have no room.
void CtlTabBarTest::fillLike(QTabBar &own)
{
    own.setShape(m_bar->shape());
    own.setElideMode(m_bar->elideMode());
    own.setExpanding(false);
    own.setUsesScrollButtons(true);
    own.setMovable(true);
    own.setFocusPolicy(Qt::NoFocus);
    own.resize(m_bar->size());
    for (int i = 0; i < 40; ++i) {
        const QStringList captions{ QStringLiteral("%1.txt"), QStringLiteral("文書 %1.txt"),
            QStringLiteral("R&D %1"), QStringLiteral("a name that is far too long for a tab %1") };
        addTab(captions[i % captions.size()].arg(i));
        own.addTab(m_bar->tabText(i));
    }
}

void CtlTabBarTest::looksAsTheToolkitsOwn_data()
{
    QTest::addColumn<std::function<void(QTabBar &)>>("change");
    const auto add = [](const char *name, const std::function<void(QTabBar &)> &change) {
        QTest::newRow(name) << change;
    };
    add("the first one is current", [](QTabBar &) {});
    add("one in the middle is current", [](QTabBar &bar) { bar.setCurrentIndex(20); });
    add("the last one is current", [](QTabBar &bar) { bar.setCurrentIndex(39); });
    add("scrolled to and fro", [](QTabBar &bar) {
        for (const int index : { 30, 5, 12 })
            bar.setCurrentIndex(index);
    });
    add("another label", [](QTabBar &bar) { bar.setTabText(2, QStringLiteral("* 2.txt")); });
    add("another font", [](QTabBar &bar) {
        QFont font = bar.font();
        font.setPointSize(font.pointSize() * 2);
        bar.setFont(font);
    });
    add("a style sheet with a larger current tab", [](QTabBar &bar) {
        bar.setStyleSheet(QStringLiteral("QTabBar::tab:selected { font-weight: bold; padding: 9px; }"));
        bar.setCurrentIndex(3);
    });
    add("moved", [](QTabBar &bar) { bar.moveTab(0, 4); });
    add("from right to left", [](QTabBar &bar) { bar.setLayoutDirection(Qt::RightToLeft); });
    add("wider than all tabs", [](QTabBar &bar) { bar.resize(20000, 30); });
}

/// To the pixel, though it does not measure every label again whenever one tab changes.
void CtlTabBarTest::looksAsTheToolkitsOwn()
{
    QFETCH(const std::function<void(QTabBar &)>, change);
    QTabBar own(m_window.get());
    fillLike(own);
    own.show();
    change(*m_bar);
    change(own);
    for (int index = 0; index < own.count(); ++index)
        QCOMPARE(m_bar->tabRect(index), own.tabRect(index));
    QCOMPARE(m_bar->sizeHint(), own.sizeHint());
    QCOMPARE(m_bar->minimumSizeHint(), own.minimumSizeHint());
    QCOMPARE(m_bar->grab().toImage(), own.grab().toImage());
}

void CtlTabBarTest::randomTabs_data()
{
    addSeeds(5);
}

/// Against a plain list of editors and the ids they were given.
void CtlTabBarTest::randomTabs()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    Editors editors;
    QHash<ctlEditer *, int> ids;
    ctlEditer *current = nullptr;
    for (int step = 0; step < 150; ++step) {
        const qsizetype at = editors.isEmpty() ? 0 : random.bounded(editors.size());
        if (editors.isEmpty() || random.bounded(3) == 0) {
            ctlEditer *editor = addTab(QString::number(step));
            QVERIFY(!ids.values().contains(m_bar->idOf(editor)));
            ids[editor] = m_bar->idOf(editor);
            editors.append(editor);
            current = current ? current : editor;
        } else if (random.bounded(3) == 0) {
            ctlEditer *removed = editors[at];
            current = at + 1 < editors.size() ? editors[at + 1] : at > 0 ? editors[at - 1] : nullptr;
            m_bar->removeTab(removed);
            editors.removeAt(at);
            ids.remove(removed);
            delete removed;
        } else {
            current = editors[at];
            m_bar->setCurrentTab(current);
        }
        QCOMPARE(m_bar->editors(), editors);
        QList<int> ascending = ids.values();
        std::sort(ascending.begin(), ascending.end());
        QCOMPARE(m_bar->ids(), ascending);
        QCOMPARE(m_bar->editorOf(m_bar->currentTab()), current);
        for (ctlEditer *editor : editors) {
            QCOMPARE(m_bar->idOf(editor), ids[editor]);
            QCOMPARE(m_bar->editorOf(ids[editor]), editor);
        }
    }
}

REGISTER_TEST(runWindowTest<CtlTabBarTest>)
#include "ctltabbar_test.moc"
