#include "app/guidebrowser.h"

#include "app/keystext.h"
#include "app/translation.h"
#include "platform/fingerscrolling.h"
#include "settings/moresettings.h"
#include "settings/settings.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QAbstractTextDocumentLayout>
#include <QDirIterator>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTextBlock>
#include <QTextTable>

using namespace Qt::StringLiterals;

namespace {

QString pageOf(const QString &name)
{
    QFile file(QStringLiteral(BUILT_QPE_DIR "/../doc/marlopad/") + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The cells of a row, as it is shown.
QStringList shownRow(const QTextTable &table, int row)
{
    QStringList cells;
    for (int column = 0; column < table.columns(); ++column)
        cells << table.cellAt(row, column).firstCursorPosition().block().text();
    return cells;
}

constexpr int widthOfWindow = 640; ///< device pixels: of what the pictures show
constexpr int widthOfWidestSign = 100;

/// Of the pictures of windows, once the whole is laid out.
QSet<qreal> widthsOfPictures(const QTextDocument &shown)
{
    (void)shown.size();
    QSet<qreal> widths;
    for (QTextBlock block = shown.begin(); block.isValid(); block = block.next()) {
        if (block.text() == QChar::ObjectReplacementCharacter && !QTextCursor(block).currentTable())
            widths << block.layout()->lineAt(0).naturalTextWidth();
    }
    return widths;
}

} // namespace

/// The guide as the window shows it, and as it lies in its files.
class GuideBrowserTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("QPEDIR", BUILT_QPE_DIR); }
    void init() { resetSettings(); }

    void keysStandInTheGuide_data();
    void keysStandInTheGuide();
    void saysInWhichLanguageItIs_data();
    void saysInWhichLanguageItIs();
    void keysThatAreOffAreNotShown();
    void keysAreScrolledTo_data();
    void keysAreScrolledTo();
    void keysAreShownWithoutAGuide();
    void japaneseHasNoGaps();
    void emphasisIsShownAsSuch();
    void linksLeadToPages_data();
    void linksLeadToPages();
    void linksOutOfTheGuideAreNotFollowed();
    void whatIsNoPageIsNoLink();
    void fingerScrolls();
    void fingerFollowsALink();
    void picturesFit_data();
    void picturesFit();
    void picturesStayInTheirColumn_data();
    void picturesStayInTheirColumn();
    void whatCannotBeNarrowerScrolls();
    void placeStaysWhereWidthChanges_data();
    void placeStaysWhereWidthChanges();
    void keysLeadToItsEnds();
    void pageIsLaidOutOnce();
    void backLeadsToThePlace();

private:
    /// With the guide, on the screen.
    static void showSmall(GuideBrowser &browser);

    static QTextTable *keysIn(const GuideBrowser &browser)
    {
        for (QTextFrame *const frame : browser.document()->rootFrame()->childFrames()) {
            auto *const table = qobject_cast<QTextTable *>(frame);
            if (table && shownRow(*table, 0).contains(u"What it does"_s))
                return table;
        }
        return nullptr;
    }
};

void GuideBrowserTest::keysStandInTheGuide_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("file");
    QTest::newRow("English") << int(English) << u"guide.en.md"_s;
    QTest::newRow("Japanese") << int(Japanese) << u"guide.ja.md"_s;
}

/// As a first start has them: what the window shows is made from the same table.
void GuideBrowserTest::keysStandInTheGuide()
{
    QFETCH(int, language);
    QFETCH(QString, file);
    const auto translation = Translation::load(language);
    if (translation)
        translation->install();
    const QString page = pageOf(file);
    const QString written = page.section(u"<!-- keys -->\n"_s, 1).section(u"<!-- end of keys -->"_s, 0, 0);
    QCOMPARE(written, keysTable());
}

void GuideBrowserTest::saysInWhichLanguageItIs_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<bool>("says");
    QTest::newRow("English") << int(English) << false;
    QTest::newRow("Japanese") << int(Japanese) << false;
    QTest::newRow("French") << int(French) << true;
}

/// Where it is not the present one, above the keys, which are in that.
void GuideBrowserTest::saysInWhichLanguageItIs()
{
    QFETCH(int, language);
    QFETCH(bool, says);
    appSettings().Lang = language;
    const auto translation = Translation::load(language);
    if (translation)
        translation->install();
    GuideBrowser browser;
    browser.showGuide();
    const QString note = QCoreApplication::translate("GuideBrowser", "The guide is in English.");
    QVERIFY(language == English || note != u"The guide is in English.");
    const qsizetype at = browser.toPlainText().indexOf(note);
    QCOMPARE(at >= 0, says);
    const QString head = keysTable().section(u" | "_s, 0, 0).mid(2);
    QVERIFY(!says || browser.toPlainText().indexOf(head, at) < at + note.size() + 3);
}

void GuideBrowserTest::keysThatAreOffAreNotShown()
{
    GuideBrowser all;
    all.showGuide();
    QVERIFY(keysIn(all));
    moreSettings().KnownKeys = 0;
    GuideBrowser few;
    few.showGuide();
    QVERIFY(keysIn(few));
    QVERIFY(keysIn(few)->rows() < keysIn(all)->rows());
}

void GuideBrowserTest::keysAreScrolledTo_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("room") << QSize(400, 300);
    QTest::newRow("a handheld upright") << QSize(230, 250);
    QTest::newRow("little room") << QSize(180, 200);
}

/// With the whole of their title above them.
void GuideBrowserTest::keysAreScrolledTo()
{
    QFETCH(QSize, size);
    GuideBrowser browser;
    browser.resize(size);
    browser.showGuide();
    browser.show();
    browser.showKeys();
    QVERIFY(browser.verticalScrollBar()->value() > 0);
    const int top = browser.cursorRect(keysIn(browser)->firstCursorPosition()).top();
    QVERIFY2(top > 0 && top < browser.viewport()->height(), qPrintable(QString::number(top)));
    const QRect title = browser.cursorRect(QTextCursor(browser.document()->find(u"Keys"_s).block()));
    QCOMPARE(QTextCursor(browser.document()->find(u"Keys"_s).block()).block().text(), u"Keys"_s);
    QVERIFY2(title.top() >= 0 && title.bottom() < top, qPrintable(QString::number(title.top())));
    QVERIFY(title.top() < title.height());
}

void GuideBrowserTest::keysAreShownWithoutAGuide()
{
    qputenv("QPEDIR", "/nowhere/share/marlopad");
    GuideBrowser browser;
    browser.showGuide();
    qputenv("QPEDIR", BUILT_QPE_DIR);
    QVERIFY(keysIn(browser));
    QVERIFY(keysIn(browser)->rows() > 10);
}

void GuideBrowserTest::japaneseHasNoGaps()
{
    appSettings().Lang = Japanese;
    GuideBrowser browser;
    browser.showGuide();
    static const QRegularExpression gap(
        u"[\\x{3040}-\\x{30FF}、。] +[\\x{3040}-\\x{30FF}\\x{4E00}-\\x{9FFF}]"_s);
    QCOMPARE(gap.match(browser.toPlainText()).captured(), QString());
    QVERIFY(browser.toPlainText().count(u'\n') > 100);
}

/// With no asterisk left over; "*" for an edited document stands between quotes or as code.
void GuideBrowserTest::emphasisIsShownAsSuch()
{
    const QDir docs(QPEApplication::qpeDir() + u"/../doc/marlopad"_s);
    QDirIterator pages(docs.path(), { u"*.md"_s }, QDir::Files, QDirIterator::Subdirectories);
    int seen = 0;
    while (pages.hasNext()) {
        GuideBrowser browser;
        browser.setSource(QUrl::fromLocalFile(pages.next()));
        static const QRegularExpression leftOver(
            u"\\*\\w|\\w\\*"_s, QRegularExpression::UseUnicodePropertiesOption);
        QCOMPARE(leftOver.match(browser.toPlainText()).captured(), QString());
        ++seen;
    }
    QVERIFY(seen > 20);
}

void GuideBrowserTest::linksLeadToPages_data()
{
    keysStandInTheGuide_data();
}

/// As a click on each would.
void GuideBrowserTest::linksLeadToPages()
{
    QTest::failOnWarning(QRegularExpression(u"No document for"_s));
    QFETCH(int, language);
    QFETCH(QString, file);
    appSettings().Lang = language;
    GuideBrowser browser;
    browser.showGuide();
    const QUrl guide = browser.source();
    QCOMPARE(guide.fileName(), file);
    static const QRegularExpression link(u"[^!]\\[[^\\]]*\\]\\(([^)]+)\\)"_s);
    int count = 0;
    for (auto match = link.globalMatch(pageOf(file)); match.hasNext(); ++count) {
        browser.setSource(guide.resolved(QUrl(match.next().captured(1))));
        QVERIFY(!browser.toPlainText().isEmpty());
        browser.setSource(guide);
    }
    QVERIFY(count > 0);
}

void GuideBrowserTest::linksOutOfTheGuideAreNotFollowed()
{
    QTest::failOnWarning(QRegularExpression(u"No document for"_s));
    GuideBrowser browser;
    browser.showGuide();
    const QUrl guide = browser.source();
    for (const QString &target : { u"no-such-page.md"_s, u"tasks/find.py"_s }) {
        browser.setSource(QUrl(target));
        QCOMPARE(browser.source(), guide);
    }
}

/// Whatever looks like a link leads somewhere, and what it said is still there.
void GuideBrowserTest::whatIsNoPageIsNoLink()
{
    const QDir docs(QPEApplication::qpeDir() + u"/../doc/marlopad"_s);
    QDirIterator pages(docs.path(), { u"*.md"_s }, QDir::Files, QDirIterator::Subdirectories);
    int links = 0;
    int scripts = 0;
    while (pages.hasNext()) {
        GuideBrowser browser;
        browser.setSource(QUrl::fromLocalFile(pages.next()));
        scripts += browser.toPlainText().contains(u".py"_s) ? 1 : 0;
        for (QTextBlock block = browser.document()->begin(); block.isValid(); block = block.next()) {
            for (auto part = block.begin(); !part.atEnd(); ++part) {
                const QString link = part.fragment().charFormat().anchorHref();
                if (link.isEmpty())
                    continue;
                ++links;
                const QString page = browser.source().resolved(QUrl(link)).toLocalFile();
                QVERIFY2(page.endsWith(u".md"_s) && QFile::exists(page), qPrintable(link));
            }
        }
    }
    QVERIFY(links > 20);
    QVERIFY(scripts >= 20);
}

void GuideBrowserTest::showSmall(GuideBrowser &browser)
{
    browser.resize(400, 300);
    browser.showGuide();
    browser.show();
    QVERIFY(QTest::qWaitForWindowExposed(&browser));
}

void GuideBrowserTest::fingerScrolls()
{
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    const FingerScrolling fingers(qApp);
    GuideBrowser browser;
    showSmall(browser);
    QWidget *const page = browser.viewport();
    QTest::touchEvent(page, screen.get()).press(0, QPoint(200, 250), page);
    for (int y = 240; y >= 50; y -= 10)
        QTest::touchEvent(page, screen.get()).move(0, QPoint(200, y), page);
    QTest::touchEvent(page, screen.get()).release(0, QPoint(200, 50), page);
    QTRY_VERIFY(browser.verticalScrollBar()->value() > 100);
    QVERIFY(!browser.textCursor().hasSelection());
}

void GuideBrowserTest::fingerFollowsALink()
{
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    const FingerScrolling fingers(qApp);
    GuideBrowser browser;
    showSmall(browser);
    QTextCursor link = browser.document()->find(u"its settings, favourites"_s);
    QVERIFY(!link.isNull());
    const QPoint at = browser.cursorRect(link).center() - QPoint(10, 0);
    QVERIFY(!browser.anchorAt(at).isEmpty());
    QTest::touchEvent(browser.viewport(), screen.get()).press(0, at, browser.viewport());
    QTest::touchEvent(browser.viewport(), screen.get()).release(0, at, browser.viewport());
    QTRY_COMPARE(browser.source().fileName(), u"handheld.en.md"_s);
}

void GuideBrowserTest::picturesFit_data()
{
    QTest::addColumn<int>("loadedAt");
    QTest::addColumn<int>("width");
    QTest::newRow("too little room") << 230 << 230;
    QTest::newRow("room") << 900 << 900;
    QTest::newRow("a little narrower") << 240 << 230;
    QTest::newRow("room that goes") << 900 << 230;
    QTest::newRow("room that comes") << 230 << 900;
}

/// And are as wide as they are by themselves where they can.
void GuideBrowserTest::picturesFit()
{
    QFETCH(int, loadedAt);
    QFETCH(int, width);
    GuideBrowser browser;
    browser.resize(loadedAt, 300);
    browser.showGuide();
    browser.show();
    browser.resize(width, 300);
    const QSet<qreal> widths = widthsOfPictures(*browser.document());
    QCOMPARE(browser.horizontalScrollBar()->maximum(), 0);
    const qreal room = browser.viewport()->width() - 2 * browser.document()->documentMargin();
    QCOMPARE(widths, QSet{ qMin(room, widthOfWindow / browser.devicePixelRatioF()) });
}

void GuideBrowserTest::picturesStayInTheirColumn_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("areWhole");
    for (const Language language : { English, Japanese }) {
        const auto row = [language](const char *room, int width, bool areWhole) {
            QTest::addRow("%s in language %d", room, int(language)) << int(language) << width << areWhole;
        };
        row("a handheld upright", 230, false);
        row("room", 480, true);
    }
}

void GuideBrowserTest::picturesStayInTheirColumn()
{
    QFETCH(int, language);
    QFETCH(int, width);
    QFETCH(bool, areWhole);
    appSettings().Lang = language;
    GuideBrowser browser;
    browser.resize(width, 300);
    browser.showGuide();
    browser.show();
    const auto placeOf = [layout = browser.document()->documentLayout()](const QTextTableCell &cell) {
        return layout->blockBoundingRect(cell.firstCursorPosition().block());
    };
    qreal widest = 0;
    for (QTextFrame *const frame : browser.document()->rootFrame()->childFrames()) {
        const auto *const table = qobject_cast<QTextTable *>(frame);
        for (int row = 1; table && row < table->rows(); ++row) {
            const QTextTableCell cell = table->cellAt(row, 0);
            const QTextBlock block = cell.firstCursorPosition().block();
            if (block.text() != QChar::ObjectReplacementCharacter)
                continue;
            const qreal end = placeOf(cell).left() + block.layout()->lineAt(0).naturalTextWidth();
            QVERIFY2(end < placeOf(table->cellAt(row, 1)).left() - table->format().cellSpacing(),
                qPrintable(QString::number(end)));
            widest = qMax(widest, block.layout()->lineAt(0).naturalTextWidth());
        }
    }
    const qreal whole = widthOfWidestSign / browser.devicePixelRatioF();
    QCOMPARE(widest >= whole, areWhole);
    QVERIFY(widest <= whole && widest > whole / 2);
}

/// As the tables.
void GuideBrowserTest::whatCannotBeNarrowerScrolls()
{
    GuideBrowser browser;
    showSmall(browser);
    QTRY_VERIFY(!browser.horizontalScrollBar()->isVisible());
    browser.resize(80, 300);
    QTRY_VERIFY(browser.horizontalScrollBar()->isVisible());
    browser.resize(400, 300);
    QTRY_VERIFY(!browser.horizontalScrollBar()->isVisible());
}

void GuideBrowserTest::placeStaysWhereWidthChanges_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::newRow("a little narrower") << 240 << 230;
    QTest::newRow("narrower") << 900 << 230;
    QTest::newRow("wider") << 230 << 900;
}

/// The title of the keys, at which the guide is opened.
void GuideBrowserTest::placeStaysWhereWidthChanges()
{
    QFETCH(int, from);
    QFETCH(int, to);
    GuideBrowser browser;
    browser.resize(from, 300);
    browser.showGuide();
    browser.show();
    browser.showKeys();
    const QTextCursor title(browser.document()->find(u"Keys"_s).block());
    const int top = browser.cursorRect(title).top();
    browser.resize(to, 300);
    QCOMPARE(browser.cursorRect(title).top(), top);
}

void GuideBrowserTest::keysLeadToItsEnds()
{
    GuideBrowser browser;
    showSmall(browser);
    const QScrollBar &bar = *browser.verticalScrollBar();
    for (const auto modifiers : { Qt::NoModifier, Qt::ControlModifier }) {
        QTest::keyClick(&browser, Qt::Key_End, modifiers);
        QCOMPARE(bar.value(), bar.maximum());
        QTest::keyClick(&browser, Qt::Key_Home, modifiers);
        QCOMPARE(bar.value(), 0);
    }
}

/// Rather than once for each row of its tables.
void GuideBrowserTest::pageIsLaidOutOnce()
{
    GuideBrowser browser;
    showSmall(browser);
    const QSignalSpy laidOut(
        browser.document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged);
    browser.setSource(browser.source().resolved(QUrl(u"robustness.md"_s)));
    QCOMPARE(browser.source().fileName(), u"robustness.md"_s);
    QVERIFY(browser.verticalScrollBar()->maximum() > 1000);
    QVERIFY2(laidOut.size() < 10, qPrintable(QString::number(laidOut.size())));
    browser.backward();
    QVERIFY2(laidOut.size() < 20, qPrintable(QString::number(laidOut.size())));
}

void GuideBrowserTest::backLeadsToThePlace()
{
    GuideBrowser browser;
    showSmall(browser);
    const QScrollBar &bar = *browser.verticalScrollBar();
    QTest::keyClick(&browser, Qt::Key_End);
    const int before = bar.value();
    QVERIFY(before > 1000);
    browser.setSource(browser.source().resolved(QUrl(u"robustness.md"_s)));
    QCOMPARE(bar.value(), 0);
    browser.backward();
    QCOMPARE(bar.value(), before);
}

REGISTER_TEST(runWindowTest<GuideBrowserTest>)
#include "guidebrowser_test.moc"
