#include "document/utf16text.h"
#include "settings/sessionfiles.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QToolButton>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// What was open is open again at the next start, where that is wanted.
class LastSessionTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_window.reset(); }

    void isOffAtFirst();
    void comesBackAsItWas();
    void comesBackAfterAQuit();
    void cancelledEndsDoNotCount();
    void isWrittenWheneverItChanges();
    void whatCannotBeReadIsPassedOver();
    void neverSavedOnesAreLeftOut();
    void largeFilesComeBackBehindTheWindow();
    void chosenCodesComeBack_data();
    void chosenCodesComeBack();
    void utf16ComesBackAsText_data();
    void utf16ComesBackAsText();
    void filesThatHaveChangedAreDetected();
    void withAFileOfTheCommandLine();
    void switchedOnWhileItRuns();

private:
    /// Starts anew, as the program does.
    void start()
    {
        m_window.reset();
        readSettings();
        m_window = std::make_unique<TestWindow>(WindowJobs{ nullptr, 100000 });
        m_window->showMaximized();
    }
    bool shows(const QStringList &names) const
    {
        return QTest::qWaitFor([&] { return m_window->tabTexts() == names; });
    }
    QString currentName() const { return m_window->currentEditor()->name(); }
    /// Presses what the strip offers.
    bool accept(const QString &offer) const
    {
        for (QToolButton *const button : m_window->findChildren<QToolButton *>()) {
            if (button->isVisible() && button->text() == offer) {
                button->click();
                return true;
            }
        }
        return false;
    }
    const TextDocument &currentDocument() const
    {
        return std::as_const(*m_window->currentEditor()).document();
    }
    void open(const QString &name, const QByteArray &text = "one\ntwo\nthree\n") const
    {
        m_window->setDocument(m_files.write(name, text));
    }

    TestFiles m_files;
    std::unique_ptr<TestWindow> m_window;
};

void LastSessionTest::init()
{
    resetSettings();
    writeSessionFiles({});
    moreSettings().OpenSession = 1;
    writeSettings();
    start();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_window->slotEtcFirstNewDoc();
    m_window->slotCmdFileCloseTab(); // the document of the window's start
}

void LastSessionTest::isOffAtFirst()
{
    QCOMPARE(MoreSettings().OpenSession, 0);
    moreSettings().OpenSession = 0;
    open(u"a.txt"_s);
    QVERIFY(m_window->close());
    start();
    QVERIFY(shows({ u"(new document)"_s }));
    QVERIFY(readSessionFiles().files.isEmpty());
}

void LastSessionTest::comesBackAsItWas()
{
    open(u"a.txt"_s);
    m_window->currentEditor()->setCursorPosition({ RowIndex(1), 2 });
    open(u"b.txt"_s);
    open(u"c.txt"_s, QByteArray(500, '\n'));
    m_window->currentEditor()->setCursorPosition({ RowIndex(400), 0 });
    const RowIndex top = m_window->currentEditor()->topRow();
    m_window->tabBar()->moveTab(2, 0);
    m_window->tabBar()->setCurrentTab(m_window->editorAt(1));
    QVERIFY(m_window->close());
    start();
    QVERIFY(shows({ u"c.txt"_s, u"a.txt"_s, u"b.txt"_s }));
    QCOMPARE(currentName(), u"a.txt"_s);
    QCOMPARE(m_window->currentEditor()->cursorPosition(), (RowCol{ RowIndex(1), 2 }));
    QCOMPARE(m_window->editorAt(0)->cursorPosition(), (RowCol{ RowIndex(400), 0 }));
    QCOMPARE(m_window->editorAt(0)->topRow(), top);
    QCOMPARE(m_window->editorAt(2)->cursorPosition(), (RowCol{ RowIndex(0), 0 }));
}

void LastSessionTest::comesBackAfterAQuit()
{
    open(u"a.txt"_s);
    QTest::keyClicks(m_window->currentEditor(), u"x"_s);
    m_window->slotCmdFileQuitSave();
    QVERIFY(!m_window->isVisible());
    start();
    QVERIFY(shows({ u"a.txt"_s }));
    QCOMPARE(m_files.read(u"a.txt"_s), "xone\ntwo\nthree\n"_ba);
}

void LastSessionTest::cancelledEndsDoNotCount()
{
    open(u"a.txt"_s);
    QTest::keyClicks(m_window->currentEditor(), u"x"_s);
    open(u"b.txt"_s);
    const MessageBoxes boxes({ u"Cancel"_s, u"No"_s });
    QVERIFY(!m_window->close()); // b.txt is closed by then
    QCOMPARE(m_window->tabTexts(), QStringList{ u"* a.txt"_s });
    QVERIFY(m_window->close());
    start();
    QVERIFY(shows({ u"a.txt"_s }));
}

/// A program that is killed writes nothing at its end.
void LastSessionTest::isWrittenWheneverItChanges()
{
    open(u"a.txt"_s);
    open(u"b.txt"_s);
    QTRY_COMPARE(readSessionFiles().files.size(), 2);
    m_window->slotCmdFileCloseTab();
    QTRY_COMPARE(readSessionFiles().files.size(), 1);
}

void LastSessionTest::whatCannotBeReadIsPassedOver()
{
    m_window->close();
    m_files.write(u"a.txt"_s, "a\n");
    m_files.write(u"b.txt"_s, "b\n");
    QDir().mkdir(m_files.folder() + u"folder"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(m_files.folder() + u"pipe"_s).constData(), 0600), 0);
    SessionFiles session;
    for (const QString &name :
        { u"gone"_s, u"folder"_s, u"a.txt"_s, u"pipe"_s, QString(1 << 16, u'n'), u"a.txt"_s, u"b.txt"_s })
        session.files << SessionFile{ { m_files.folder(), name, 1LL << 60, -5, -1, 1LL << 62 } };
    session.files << SessionFile{ { u"/dev/"_s, u"zero"_s } };
    session.current = 2;
    writeSessionFiles(session);
    const MessageBoxes boxes;
    start();
    QVERIFY(shows({ u"a.txt"_s, u"b.txt"_s }));
    QTRY_COMPARE(currentName(), u"a.txt"_s);
    QCOMPARE(boxes.count(), 0);
}

void LastSessionTest::neverSavedOnesAreLeftOut()
{
    m_window->slotCmdFileNew();
    open(u"a.txt"_s);
    QVERIFY(m_window->close());
    start();
    QVERIFY(shows({ u"a.txt"_s }));
}

void LastSessionTest::largeFilesComeBackBehindTheWindow()
{
    open(u"a.txt"_s, QByteArray("line\n").repeated(100000));
    QTRY_VERIFY(!m_window->currentEditor()->document().isHeld());
    m_window->currentEditor()->setCursorPosition({ RowIndex(70000), 3 });
    recentFiles() = {};
    QVERIFY(m_window->close());
    recentFiles() = {};
    writeSettings();
    start();
    QVERIFY(shows({ u"a.txt"_s }));
    QTRY_COMPARE(m_window->currentEditor()->cursorPosition(), (RowCol{ RowIndex(70000), 3 }));
}

void LastSessionTest::chosenCodesComeBack_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("short") << "\xa4\xa2\n"_ba;
    QTest::newRow("read behind the window") << "\xa4\xa2\n"_ba.repeated(50000);
}

/// Detected, it would be another one.
void LastSessionTest::chosenCodesComeBack()
{
    QFETCH(QByteArray, text);
    m_window->openDocument(m_files.write(u"a.txt"_s, text), int(CharCode::ShiftJis));
    open(u"b.txt"_s);
    QTRY_VERIFY(!std::as_const(*m_window->editorAt(0)).document().isHeld());
    QVERIFY(m_window->close());
    start();
    QVERIFY(shows({ u"a.txt"_s, u"b.txt"_s }));
    const TextDocument &document = std::as_const(*m_window->editorAt(0)).document();
    QTRY_VERIFY(!document.isHeld());
    QCOMPARE(document.charCode(), CharCode::ShiftJis);
    QCOMPARE(document.findings().givenCode, CharCode::ShiftJis);
    QVERIFY(!std::as_const(*m_window->editorAt(1)).document().findings().givenCode);
}

void LastSessionTest::utf16ComesBackAsText_data()
{
    QTest::addColumn<QString>("offer");
    QTest::addColumn<int>("times");
    QTest::addColumn<bool>("isKept");
    QTest::newRow("as text") << u"Read it as text"_s << 1 << false;
    QTest::newRow("kept") << u"Keep UTF-16"_s << 1 << true;
    QTest::newRow("as text, behind the window") << u"Read it as text"_s << 20000 << false;
    QTest::newRow("kept, behind the window") << u"Keep UTF-16"_s << 20000 << true;
}

void LastSessionTest::utf16ComesBackAsText()
{
    QFETCH(QString, offer);
    QFETCH(int, times);
    QFETCH(bool, isKept);
    open(u"a.txt"_s, "\xff\xfe"_ba + QByteArray("a\0b\0\n\0", 6).repeated(times));
    QTRY_VERIFY(!currentDocument().isHeld());
    QVERIFY(accept(offer));
    QTRY_VERIFY(!currentDocument().isHeld() && currentDocument().isUtf16());
    QTRY_COMPARE(keepsUtf16(currentDocument()), isKept);
    QVERIFY(m_window->close());
    start();
    QVERIFY(shows({ u"a.txt"_s }));
    QTRY_VERIFY(!currentDocument().isHeld() && currentDocument().isUtf16());
    QTRY_COMPARE(keepsUtf16(currentDocument()), isKept);
    QCOMPARE(currentDocument().store().length(), 3 * times);
    QVERIFY(!currentDocument().isEdited());
}

/// What they were has been saved in another code since, or another program has written them.
void LastSessionTest::filesThatHaveChangedAreDetected()
{
    m_window->openDocument(m_files.write(u"a.txt"_s, "\xa4\xa2\n"), int(CharCode::ShiftJis));
    ctlEditer *const editor = m_window->currentEditor();
    QVERIFY(m_window->slotCmdFileSave(editor, m_files.folder(), u"a.txt"_s, int(CharCode::Utf8), 0));
    open(u"b.txt"_s,
        QByteArray("\xff\xfe"
                   "a\0\n\0",
            6));
    QVERIFY(accept(u"Read it as text"_s));
    QVERIFY(currentDocument().isUtf16());
    QVERIFY(m_window->close());
    m_files.write(u"b.txt"_s, "\xe3\x81\x82\n");
    start();
    QVERIFY(shows({ u"a.txt"_s, u"b.txt"_s }));
    for (const int tab : { 0, 1 }) {
        QCOMPARE(std::as_const(*m_window->editorAt(tab)).document().charCode(), CharCode::Utf8);
        QVERIFY(!std::as_const(*m_window->editorAt(tab)).document().isUtf16());
    }
}

void LastSessionTest::withAFileOfTheCommandLine()
{
    open(u"a.txt"_s);
    open(u"b.txt"_s);
    QVERIFY(m_window->close());
    start();
    QVERIFY(shows({ u"a.txt"_s, u"b.txt"_s }));
    m_window->setDocument(m_files.folder() + u"a.txt"_s);
    QCOMPARE(m_window->tabTexts(), QStringList({ u"a.txt"_s, u"b.txt"_s }));
    QCOMPARE(currentName(), u"a.txt"_s);
}

void LastSessionTest::switchedOnWhileItRuns()
{
    moreSettings().OpenSession = 0;
    writeSettings();
    start();
    QVERIFY(shows({ u"(new document)"_s }));
    open(u"a.txt"_s);
    moreSettings().OpenSession = 1;
    m_window->applySettings();
    QTRY_COMPARE(readSessionFiles().files.size(), 1);
}

REGISTER_TEST(runWindowTest<LastSessionTest>)
#include "lastsession_test.moc"
