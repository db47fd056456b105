#include "recovery/basereading.h"
#include "recovery/recoveryjournals.h"
#include "tests/app/stayingapplication.h"
#include "tests/app/unsavedlist.h"
#include "tests/app/unsavedtexts.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

/// Which texts of the window's documents stand in journals, and until when.
class KeptTextsTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void closingEndsTheJournal();
    void savingEndsTheJournal();
    void everyEditIsKept();
    void substitutedTextIsKeptUntilItIsSeen_data();
    void substitutedTextIsKeptUntilItIsSeen();
    void textOfADeletedFileIsKept();
    void textOfADeletedFileIsKeptWhileItIsOpen();
    void textOfADeletedFileIsKeptAtASuddenEnd();
    void longEditedTextIsKeptWithoutItsFile_data();
    void longEditedTextIsKeptWithoutItsFile();
    void textOfAFileThatIsNotShownIsKept_data();
    void textOfAFileThatIsNotShownIsKept();
    void textThatTheUserKeepsIsKept();
    void readAgainItIsKeptNoLonger();
    void detachedTextComesBackAsSuch();
    void textThatIsElsewhereIsNotKept();

private:
    std::unique_ptr<TestFiles> m_files;
};

void KeptTextsTest::init()
{
    resetSettings();
    UnsavedTexts::removeAll();
    m_files = std::make_unique<TestFiles>();
}

void KeptTextsTest::closingEndsTheJournal()
{
    TestWindow window;
    QVERIFY(openModified(window, *m_files, { u"a.txt"_s, u"b.txt"_s }));
    QTRY_COMPARE(UnsavedTexts::now(), QStringList(2, u"xold"_s));
    const MessageBoxes boxes({ u"No"_s, u"No"_s });
    window.slotCmdFileCloseTab();
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"xold"_s });
    window.close();
    QCOMPARE(UnsavedTexts::now(), QStringList());
}

void KeptTextsTest::savingEndsTheJournal()
{
    TestWindow window;
    QVERIFY(openModified(window, *m_files, { u"a.txt"_s }));
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"xold"_s });
    window.slotCmdFileSave();
    QTRY_COMPARE(UnsavedTexts::now(), QStringList());
    QTest::keyClicks(window.currentEditor(), u"y"_s);
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"xyold"_s });
    window.slotCmdEditUndo();
    QTRY_COMPARE(UnsavedTexts::now(), QStringList());
}

void KeptTextsTest::everyEditIsKept()
{
    TestWindow window;
    QVERIFY(openModified(window, *m_files, { u"a.txt"_s }));
    window.slotCmdFileNew();
    QTest::keyClicks(window.currentEditor(), u"new"_s);
    QTRY_COMPARE(UnsavedTexts::now(), (QStringList{ u"new"_s, u"xold"_s }));
    static_cast<QPEApplication *>(qApp)->endAtOnce();
    QCOMPARE(UnsavedTexts::now(), (QStringList{ u"new"_s, u"xold"_s }));
}

void KeptTextsTest::substitutedTextIsKeptUntilItIsSeen_data()
{
    QTest::addColumn<bool>("isDismissed");
    QTest::newRow("not seen") << false;
    QTest::newRow("dismissed") << true;
}

/// What is in the file then is not what was in the window.
void KeptTextsTest::substitutedTextIsKeptUntilItIsSeen()
{
    QFETCH(bool, isDismissed);
    const QString name = m_files->write(u"a.txt"_s, "\x93\xFA\x96\x7B\x8C\xEA\r\n");
    {
        TestWindow window;
        QVERIFY(window.open());
        window.setDocument(name);
        window.currentEditor()->insert(u"5 €, "_s);
        window.slotCmdFileSave();
        QCOMPARE(m_files->read(u"a.txt"_s), QByteArray("5 ?, \x93\xFA\x96\x7B\x8C\xEA\r\n"));
        const StripInWindow strip(window);
        QTRY_COMPARE(strip.text(), u"Characters saved as \"?\": 1 (€)"_s);
        QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"5 €, 日本語\n"_s });
        if (isDismissed) {
            QVERIFY(strip.click(u"×"_s));
            QTRY_COMPARE(UnsavedTexts::now(), QStringList());
        }
    }
    QCOMPARE(UnsavedTexts::leftBehind().isEmpty(), isDismissed);
    if (isDismissed)
        return;
    TestWindow window;
    QVERIFY(window.open());
    QTRY_COMPARE(StripInWindow(window).text(), u"1 document was not saved"_s);
    QVERIFY(restoreAll(window));
    QCOMPARE(window.currentEditor()->text(), u"5 €, 日本語\n"_s);
    QVERIFY(window.currentEditor()->path().isEmpty());
    QVERIFY(window.currentEditor()->edited());
}

void KeptTextsTest::textOfADeletedFileIsKept()
{
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(m_files->write(u"a.txt"_s, "old\r\n"));
    QVERIFY(QFile::remove(m_files->folder() + u"a.txt"_s));
    {
        const MessageBoxes boxes;
        window.slotCmdFileCloseTab();
        QCOMPARE(boxes.count(), 0);
    }
    QTRY_COMPARE(StripInWindow(window).text(), u"1 document was not saved"_s);
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList{ u"old\n"_s });
    QVERIFY(restoreAll(window));
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
    QCOMPARE(window.currentEditor()->text(), u"old\n"_s);
    QCOMPARE(window.currentEditor()->path(), QString());
    window.slotCmdViewLangFr();
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt"_s });
    window.slotCmdViewLangEn();
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"old\n"_s });
}

/// The program may be killed before its user closes the document.
void KeptTextsTest::textOfADeletedFileIsKeptWhileItIsOpen()
{
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(m_files->write(u"a.txt"_s, "old\n"));
    QVERIFY(QFile::remove(m_files->folder() + u"a.txt"_s));
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"old\n"_s });
    const StripInWindow strip(window);
    QVERIFY(strip.click(u"Keep mine"_s));
    window.slotCmdFileNew();
    window.slotCmdViewWinPrev();
    window.currentEditor()->insert(u"x"_s);
    window.currentEditor()->undo();
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"old\n"_s });
    m_files->write(u"a.txt"_s, "old\n");
    QTRY_COMPARE(UnsavedTexts::now(), QStringList());
}

void KeptTextsTest::longEditedTextIsKeptWithoutItsFile_data()
{
    using Happen = std::function<void(const QString &name)>;
    QTest::addColumn<Happen>("happen");
    QTest::newRow("deleted") << Happen([](const QString &name) { QVERIFY(QFile::remove(name)); });
    QTest::newRow("written over") << Happen([](const QString &name) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("new\n") == 4);
    });
    QTest::newRow("grown") << Happen([](const QString &name) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::Append) && file.write("new\n") == 4);
    });
}

/// Its journal had the edits alone.
void KeptTextsTest::longEditedTextIsKeptWithoutItsFile()
{
    QFETCH(std::function<void(const QString &)>, happen);
    const QByteArray text = QByteArray("0123456\n").repeated((BaseReading::mostKept >> 3) + 1);
    const QString name = m_files->write(u"a.txt"_s, text);
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(name);
    QTRY_VERIFY(!window.currentEditor()->document().isHeld());
    window.currentEditor()->insert(u"x"_s);
    const QStringList kept{ u'x' + QString::fromLatin1(text) };
    QTRY_VERIFY(UnsavedTexts::now() == kept); // a failure would write all of it
    happen(name);
    QTRY_VERIFY(UnsavedTexts::now() == kept);
}

void KeptTextsTest::textOfAFileThatIsNotShownIsKept_data()
{
    QTest::addColumn<QString>("other"); // that takes its name
    QTest::addColumn<QStringList>("kept");
    QTest::newRow("deleted") << QString() << QStringList{ u"old\n"_s };
    QTest::newRow("replaced") << u"new\n"_s << QStringList{ u"old\n"_s };
    QTest::newRow("replaced by the same") << u"old\n"_s << QStringList();
}

/// At once, and without a look of its user at the document.
void KeptTextsTest::textOfAFileThatIsNotShownIsKept()
{
    QFETCH(QString, other);
    QFETCH(QStringList, kept);
    TestWindow window;
    QVERIFY(window.open());
    QVERIFY(QDir(m_files->folder()).mkdir(u"sub"_s));
    for (const QString &name : { u"a.txt"_s, u"sub/b.txt"_s })
        window.setDocument(m_files->write(name, name == u"a.txt"_s ? "old\n" : "shown\n"));
    const QString name = m_files->folder() + u"a.txt"_s;
    QVERIFY(QFile::rename(name, m_files->folder() + u"moved"_s));
    if (!other.isEmpty())
        m_files->write(u"a.txt"_s, other.toUtf8());
    m_files->write(u"last"_s, "");
    QTRY_COMPARE(UnsavedTexts::now(), kept);
    QCOMPARE(window.currentEditor()->text(), u"shown\n"_s);
    QVERIFY(!StripInWindow(window).isShown());
    QVERIFY(QFile::remove(m_files->folder() + u"sub/b.txt"_s));
    QTRY_COMPARE(UnsavedTexts::now(), kept + QStringList{ u"shown\n"_s });
    window.slotCmdViewWinPrev();
    QCOMPARE(StripInWindow(window).isShown(), !kept.isEmpty());
}

/// Though the file has another one.
void KeptTextsTest::textThatTheUserKeepsIsKept()
{
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(m_files->write(u"a.txt"_s, "old\n"));
    m_files->write(u"a.txt"_s, "new\n");
    const StripInWindow strip(window);
    QTRY_VERIFY(strip.isShown());
    QVERIFY(strip.click(u"Keep mine"_s));
    window.slotCmdFileNew();
    window.slotCmdViewWinPrev();
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"old\n"_s });
    window.slotCmdFileSave();
    QTRY_COMPARE(UnsavedTexts::now(), QStringList());
}

void KeptTextsTest::readAgainItIsKeptNoLonger()
{
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(m_files->write(u"a.txt"_s, "old\n"));
    m_files->write(u"a.txt"_s, "new\n");
    QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"old\n"_s });
    const StripInWindow strip(window);
    QVERIFY(strip.click(u"Reload"_s));
    QTRY_COMPARE(UnsavedTexts::now(), QStringList());
}

/// Nobody has looked at the one that is not shown.
void KeptTextsTest::textOfADeletedFileIsKeptAtASuddenEnd()
{
    TestWindow window;
    QVERIFY(window.open());
    for (const QString &name : { u"a.txt"_s, u"b.txt"_s })
        window.setDocument(m_files->write(name, "old\n"));
    QVERIFY(QFile::remove(m_files->folder() + u"a.txt"_s));
    static_cast<QPEApplication *>(qApp)->endAtOnce();
    QCOMPARE(UnsavedTexts::now(), QStringList{ u"old\n"_s });
}

/// What "Show both" opens is that of no file, also after the program was killed.
void KeptTextsTest::detachedTextComesBackAsSuch()
{
    {
        TestWindow window;
        QVERIFY(window.open());
        window.setDocument(m_files->write(u"a.txt"_s, "old\n"));
        m_files->write(u"a.txt"_s, "new\n");
        const StripInWindow strip(window);
        QTRY_VERIFY(strip.isShown());
        QVERIFY(strip.click(u"Show both"_s));
        QTRY_COMPARE(UnsavedTexts::now(), (QStringList{ u"new\n"_s, u"old\n"_s }));
        QTest::keyClicks(window.currentEditor(), u"x"_s);
        QTRY_COMPARE(UnsavedTexts::now(), (QStringList{ u"old\n"_s, u"xnew\n"_s }));
        window.slotCmdViewWinPrev();
        window.slotCmdFileCloseTab();
        QTRY_COMPARE(UnsavedTexts::now(), QStringList{ u"xnew\n"_s });
    }
    TestWindow window;
    QVERIFY(window.open());
    QTRY_VERIFY(StripInWindow(window).isShown());
    QVERIFY(restoreAll(window));
    QCOMPARE(window.tabTexts(), QStringList{ u"* a.txt on disk"_s });
    QCOMPARE(window.currentEditor()->path(), QString());
    QCOMPARE(window.currentEditor()->text(), u"xnew\n"_s);
    QVERIFY(!StripInWindow(window).isShown());
}

void KeptTextsTest::textThatIsElsewhereIsNotKept()
{
    TestWindow window;
    QVERIFY(window.open());
    window.setDocument(m_files->write(u"a.txt"_s, "old"));
    window.slotCmdFileCloseTab();
    window.setDocument(m_files->write(u"empty.txt"_s, ""));
    QVERIFY(QFile::remove(m_files->folder() + u"empty.txt"_s));
    window.slotCmdFileCloseTab();
    window.setDocument(m_files->write(u"b.txt"_s, "old"));
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    QVERIFY(QFile::remove(m_files->folder() + u"b.txt"_s));
    const MessageBoxes boxes({ u"No"_s });
    window.slotCmdFileCloseTab();
    window.close();
    QCOMPARE(UnsavedTexts::now(), QStringList());
}

REGISTER_TEST(runStayingTest<KeptTextsTest>)
#include "kepttexts_test.moc"
