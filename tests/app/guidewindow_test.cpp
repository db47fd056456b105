#include "app/frmguide.h"
#include "app/guidebrowser.h"
#include "app/largestdialog.h"
#include "app/qpeapplicationesc.h"
#include "app/translation.h"
#include "platform/toolkitstart.h"
#include "settings/settings.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QDirIterator>
#include <QScrollBar>
#include <QTextBlock>

using namespace Qt::StringLiterals;

/// The guide in a window of a window manager, in the fonts and at the scale that the program has there.
class GuideWindowTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("QPEDIR", BUILT_QPE_DIR); }
    void init() { resetSettings(); }

    void pagesAreAsWideAsTheWindow_data();
    void pagesAreAsWideAsTheWindow();
    void opensAtTheKeys();
    void keysPressedWhileAPageComesGoNowhere();
    void fingerScrollsIt();

private:
    /// As F1 opens it; once the window manager has given it its place.
    static GuideBrowser *show(frmGuide &guide)
    {
        guide.enlarge();
        guide.show();
        return QTest::qWaitForWindowActive(&guide) ? guide.findChild<GuideBrowser *>() : nullptr;
    }

    /// But for lines of Japanese, which may end within the margin.
    static void verifyFits(const GuideBrowser &browser)
    {
        const QByteArray page = browser.source().fileName().toUtf8();
        const QTextDocument &shown = *browser.document();
        QTRY_VERIFY2(!browser.horizontalScrollBar()->isVisible(), page.constData());
        QVERIFY2(
            shown.size().width() <= browser.viewport()->width() + shown.documentMargin(), page.constData());
    }
};

void GuideWindowTest::pagesAreAsWideAsTheWindow_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("pages");
    QTest::newRow("English") << int(English) << u"*.en.md"_s;
    QTest::newRow("Japanese") << int(Japanese) << u"*.ja.md"_s;
}

/// And as narrow, after it was made narrower.
void GuideWindowTest::pagesAreAsWideAsTheWindow()
{
    QFETCH(int, language);
    QFETCH(QString, pages);
    appSettings().Lang = language;
    frmGuide guide(nullptr);
    GuideBrowser *const browser = show(guide);
    QVERIFY(browser);
    const QSize size = guide.size();
    QDirIterator files(QStringLiteral(BUILT_QPE_DIR "/../doc/marlopad"), { pages }, QDir::Files,
        QDirIterator::Subdirectories);
    int seen = 0;
    for (; files.hasNext() && !QTest::currentTestFailed(); ++seen) {
        browser->setSource(QUrl::fromLocalFile(QFileInfo(files.next()).canonicalFilePath()));
        verifyFits(*browser);
        guide.resize(size - QSize(10, 0));
        verifyFits(*browser);
        guide.resize(size);
    }
    QVERIFY(seen > 10);
}

void GuideWindowTest::opensAtTheKeys()
{
    frmGuide guide(nullptr);
    GuideBrowser *const browser = show(guide);
    QVERIFY(browser);
    const QRect title = browser->cursorRect(QTextCursor(browser->document()->find(u"Keys"_s).block()));
    QVERIFY2(title.top() >= 0 && title.top() < title.height(), qPrintable(QString::number(title.top())));
}

/// They were meant for the page before.
void GuideWindowTest::keysPressedWhileAPageComesGoNowhere()
{
    frmGuide guide(nullptr);
    GuideBrowser *const browser = show(guide);
    QVERIFY(browser);
    const auto pressEscape = [&guide] { QTest::keyClick(guide.windowHandle(), Qt::Key_Escape); };
    browser->setSource(browser->source().resolved(QUrl(u"robustness.md"_s)));
    pressEscape();
    QVERIFY(guide.isVisible());
    QTRY_VERIFY((pressEscape(), !guide.isVisible()));
}

/// As it does everything in the program.
void GuideWindowTest::fingerScrollsIt()
{
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    frmGuide guide(nullptr);
    GuideBrowser *const browser = show(guide);
    QVERIFY(browser);
    QWidget *const page = browser->viewport();
    const int before = browser->verticalScrollBar()->value();
    QTest::touchEvent(page, screen.get()).press(0, page->rect().center(), page);
    for (int y = page->rect().center().y(); y > 0; y -= 10)
        QTest::touchEvent(page, screen.get()).move(0, QPoint(page->rect().center().x(), y), page);
    QTest::touchEvent(page, screen.get()).release(0, QPoint(page->rect().center().x(), 0), page);
    QTRY_VERIFY(browser->verticalScrollBar()->value() > before + page->height() / 4);
    QVERIFY(!browser->textCursor().hasSelection());
}

/// As the program starts.
static int runGuideWindowTest(int argc, char **argv)
{
    prepareScale(largestDialog());
    const QPEApplicationEsc application(argc, argv);
    return runPlainTest<GuideWindowTest>(argc, argv);
}

REGISTER_TEST(runGuideWindowTest)
#include "guidewindow_test.moc"
