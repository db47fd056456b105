#include "app/writingnotice.h"

#include "app/charactershown.h"
#include "tests/app/stripinwindow.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"
#include "tests/textfit.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

/// The notice of characters that the document's code lacks, as its user meets it.
class WritingNoticeTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void saysNothingOfWhatCanBeWritten();
    void comesWithTheFirstCharacter();
    void listsTheFirstFew();
    void goesWithTheLastCharacter();
    void goesToEachInTurn();
    void savesAsUtf8();
    void staysWhenTheDialogIsCancelled();
    void saysWhatASaveHasSubstituted();
    void looksAtALongTextWhenItIsShown();
    void looksAtALongTextThatWasSaved();
    void staysAwayUntilItIsNews();
    void belongsToItsDocument();
    void worksByKeys();
    void doesNothingWhileADialogIsOpen();
    void composedTextIsCommittedFirst();
    void followsTheLanguage();
    void isReachableOnASmallScreen_data();
    void isReachableOnASmallScreen();
    void showsCharacters_data();
    void showsCharacters();

private:
    ctlEditer &editor() const { return *m_window->currentEditor(); }
    /// What edits have brought about is told by then, since that was to come earlier.
    static void letAFramePass()
    {
        QTimer later;
        QSignalSpy passed(&later, &QTimer::timeout);
        later.start(WritingNotice::longestWait);
        QVERIFY(passed.wait());
    }
    void press(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), modifiers);
    }

    TestFiles m_files;
    std::unique_ptr<TestWindow> m_window;
    std::optional<StripInWindow> m_strip;
};

void WritingNoticeTest::init()
{
    resetSettings();
    qputenv("QPEDIR", BUILT_QPE_DIR);
    m_window = std::make_unique<TestWindow>();
    m_strip.emplace(*m_window);
    QVERIFY(m_window->open());
    QTRY_VERIFY(takesKeys()); // which the test before may have put off
    QCOMPARE(editor().charCodeName(), u"Shift-JIS"_s);
}

void WritingNoticeTest::cleanup()
{
    for (ctlEditer *editor : m_window->tabBar()->editors())
        editor->setEdited(false);
    m_window.reset();
}

void WritingNoticeTest::saysNothingOfWhatCanBeWritten()
{
    const int top = editor().mapTo(m_window.get(), QPoint()).y();
    editor().insert(u"漢字かなｶﾅ ABC ¥"_s);
    m_window->setDocument(m_files.write(u"utf8.txt"_s, "\xC3\xA9 \xE2\x82\xAC\n"));
    QTRY_VERIFY(takesKeys());
    editor().insert(u"\U0001F600"_s);
    letAFramePass();
    QVERIFY(!m_strip->isShown());
    QCOMPARE(editor().mapTo(m_window.get(), QPoint()).y(), top);
}

void WritingNoticeTest::comesWithTheFirstCharacter()
{
    QTest::keyClicks(&editor(), u"caf"_s);
    const QRect before = editor().geometry();
    editor().insert(u"é"_s);
    QTRY_COMPARE(m_strip->text(), u"Characters that Shift-JIS lacks: 1 (é)"_s);
    QCOMPARE(m_strip->offers(), QStringList({ u"Go to it"_s, u"Save as UTF-8…"_s }));
    // One line above the text, which has given it the room and keeps the keys.
    const NoticeStrip &strip = m_strip->widget();
    const int bottom = strip.mapTo(m_window.get(), QPoint(0, strip.height())).y();
    QCOMPARE(editor().mapTo(m_window.get(), QPoint()).y(), bottom);
    QCOMPARE(editor().height(), before.height() - strip.height());
    QVERIFY(strip.height() < 2 * strip.fontMetrics().height() + 4);
    QVERIFY(editor().hasFocus());
}

void WritingNoticeTest::listsTheFirstFew()
{
    editor().insert(u"café – €é"_s);
    QTRY_COMPARE(m_strip->text(), u"Characters that Shift-JIS lacks: 4 (é – €)"_s);
    editor().insert(u"\U0001F600àâç"_s);
    QTRY_COMPARE(m_strip->text(), u"Characters that Shift-JIS lacks: 8 (é – € \U0001F600 à …)"_s);
}

void WritingNoticeTest::goesWithTheLastCharacter()
{
    editor().insert(u"é"_s);
    QTRY_VERIFY(m_strip->isShown());
    press(Qt::Key_Backspace);
    QTRY_VERIFY(!m_strip->isShown());
    m_window->slotCmdEditUndo();
    QTRY_VERIFY(m_strip->isShown());
    m_window->slotCmdEditUndo();
    QTRY_VERIFY(!m_strip->isShown());
}

void WritingNoticeTest::goesToEachInTurn()
{
    editor().insert(u"é a \U0001F600 b"_s);
    QTRY_VERIFY(m_strip->isShown());
    for (const QString &next : { u"é"_s, u"\U0001F600"_s, u"é"_s }) {
        QVERIFY(m_strip->click(u"Go to it"_s));
        QCOMPARE(editor().markedText(), next);
        QVERIFY(editor().hasFocus());
    }
}

void WritingNoticeTest::savesAsUtf8()
{
    editor().insert(u"café"_s);
    QTRY_VERIFY(m_strip->isShown());
    m_window->choices = { { m_files.folder(), u"saved.txt"_s, CharCode::Utf8, ReturnCode::Lf } };
    QVERIFY(m_strip->click(u"Save as UTF-8…"_s));
    QCOMPARE(m_window->requests.size(), 1);
    QCOMPARE(m_window->requests[0].mode, frmFileDialog::SaveAs);
    QCOMPARE(m_window->requests[0].charCode, std::optional(CharCode::Utf8));
    QCOMPARE(m_files.read(u"saved.txt"_s), QByteArray("caf\xC3\xA9"));
    QTRY_VERIFY(!m_strip->isShown());
}

void WritingNoticeTest::staysWhenTheDialogIsCancelled()
{
    editor().insert(u"café"_s);
    QTRY_VERIFY(m_strip->isShown());
    QVERIFY(m_strip->click(u"Save as UTF-8…"_s));
    QCOMPARE(m_window->requests.size(), 1);
    QVERIFY(m_strip->isShown());
    QCOMPARE(editor().charCodeName(), u"Shift-JIS"_s);
    QVERIFY(editor().edited());
}

void WritingNoticeTest::saysWhatASaveHasSubstituted()
{
    WritingNotice *const notice = m_window->findChild<WritingNotice *>();
    const QSignalSpy substituted(notice, &WritingNotice::substituted);
    const QSignalSpy settled(notice, &WritingNotice::settled);
    editor().insert(u"café – €"_s);
    QVERIFY(editor().saveFile(m_files.folder(), u"a.txt"_s));
    QCOMPARE(m_files.read(u"a.txt"_s), QByteArray("caf? ? ?"));
    QCOMPARE(m_strip->text(), u"Characters saved as \"?\": 3 (é – €)"_s);
    QVERIFY(!editor().edited());
    QCOMPARE(substituted.count(), 1);
    QCOMPARE(settled.count(), 0);
    editor().insert(u"!"_s);
    QTRY_COMPARE(m_strip->text(), u"Characters that Shift-JIS lacks: 3 (é – €)"_s);
    QVERIFY(m_strip->click(u"×"_s));
    QCOMPARE(settled.count(), 1);
    QVERIFY(!m_strip->isShown());
}

void WritingNoticeTest::looksAtALongTextWhenItIsShown()
{
    const QString text = QString(3 * UnwritableText::sliceUnits, u'a') + u'é';
    ctlEditer &hidden = editor();
    m_window->slotCmdFileNew();
    QVERIFY(&editor() != &hidden);
    hidden.setText(text);
    editor().setText(text);
    QTRY_VERIFY(m_strip->isShown());
    m_window->tabBar()->setCurrentTab(&hidden);
    QVERIFY(!m_strip->isShown());
    QTRY_COMPARE(m_strip->text(), u"Characters that Shift-JIS lacks: 1 (é)"_s);
}

void WritingNoticeTest::looksAtALongTextThatWasSaved()
{
    ctlEditer &hidden = editor();
    WritingNotice *const notice = m_window->findChild<WritingNotice *>();
    const QSignalSpy substituted(notice, &WritingNotice::substituted);
    const QSignalSpy settled(notice, &WritingNotice::settled);
    m_window->slotCmdFileNew();
    hidden.setText(QString(3 * UnwritableText::sliceUnits, u'a'));
    QVERIFY(hidden.saveFile(m_files.folder(), u"a.txt"_s));
    QCOMPARE(substituted.count(), 1);
    QTRY_COMPARE(settled.count(), 1);
    QVERIFY(!m_strip->isShown());
}

void WritingNoticeTest::staysAwayUntilItIsNews()
{
    editor().insert(u"é"_s);
    QTRY_VERIFY(m_strip->isShown());
    QVERIFY(m_strip->click(u"×"_s));
    editor().insert(u"–"_s);
    letAFramePass();
    QVERIFY(!m_strip->isShown());
    QVERIFY(editor().saveFile(m_files.folder(), u"a.txt"_s));
    QVERIFY(m_strip->isShown());
    QVERIFY(m_strip->click(u"×"_s));
    editor().clear();
    editor().insert(u"a"_s);
    letAFramePass();
    editor().insert(u"é"_s);
    QTRY_VERIFY(m_strip->isShown());
}

void WritingNoticeTest::belongsToItsDocument()
{
    editor().insert(u"é"_s);
    QTRY_VERIFY(m_strip->isShown());
    m_window->slotCmdFileNew();
    QVERIFY(!m_strip->isShown());
    m_window->slotCmdViewWinPrev();
    QVERIFY(m_strip->isShown());
    editor().setEdited(false);
    m_window->slotCmdFileCloseTab();
    QVERIFY(!m_strip->isShown());
}

void WritingNoticeTest::worksByKeys()
{
    editor().insert(u"aé"_s);
    QTRY_VERIFY(m_strip->isShown());
    press(Qt::Key_F6);
    QVERIFY(m_strip->widget().hasKeys());
    press(Qt::Key_F6);
    QVERIFY(editor().hasFocus());
    press(Qt::Key_F6);
    press(Qt::Key_Escape);
    QVERIFY(editor().hasFocus());
    QCOMPARE(m_window->tabBar()->count(), 1);
    QVERIFY(m_strip->isShown());
    press(Qt::Key_F6);
    press(Qt::Key_Return);
    QCOMPARE(editor().markedText(), u"é"_s);
    QVERIFY(editor().hasFocus());
    press(Qt::Key_F6);
    press(Qt::Key_Tab);
    press(Qt::Key_Right);
    press(Qt::Key_Space);
    QVERIFY(!m_strip->isShown());
    QVERIFY(editor().hasFocus());
    press(Qt::Key_F6);
    QVERIFY(editor().hasFocus());
}

void WritingNoticeTest::doesNothingWhileADialogIsOpen()
{
    editor().insert(u"é"_s);
    QTRY_VERIFY(m_strip->isShown());
    QDialog dialog(m_window.get());
    dialog.open();
    for (const QString &offer : { u"Save as UTF-8…"_s, u"×"_s })
        m_strip->button(offer)->click(); // as assistive technology does
    QVERIFY(m_window->requests.isEmpty());
    QVERIFY(m_strip->isShown());
}

void WritingNoticeTest::composedTextIsCommittedFirst()
{
    editor().insert(u"é"_s);
    QTRY_VERIFY(m_strip->isShown());
    QInputMethodEvent composing(u"かな"_s, {});
    QCoreApplication::sendEvent(&editor(), &composing);
    m_window->choices = { { m_files.folder(), u"a.txt"_s, CharCode::Utf8, ReturnCode::Lf } };
    QVERIFY(m_strip->click(u"Save as UTF-8…"_s));
    QCOMPARE(m_files.read(u"a.txt"_s), QByteArray("éかな"));
}

void WritingNoticeTest::followsTheLanguage()
{
    editor().insert(u"é–"_s);
    QTRY_VERIFY(m_strip->isShown());
    m_window->slotCmdViewLangJa();
    QTRY_COMPARE(m_strip->text(), u"Shift-JIS にない文字: 2 (é –)"_s);
    QCOMPARE(m_strip->offers(), QStringList({ u"そこへ移動"_s, u"UTF-8 で保存…"_s }));
    m_window->slotCmdViewLangFr();
    QTRY_COMPARE(m_strip->text(), u"Caractères absents de Shift-JIS\u00A0: 2 (é –)"_s);
    QCOMPARE(m_strip->offers(), QStringList({ u"Y aller"_s, u"Enregistrer en UTF-8…"_s }));
    m_window->slotCmdViewLangEn();
}

void WritingNoticeTest::isReachableOnASmallScreen_data()
{
    QTest::addColumn<int>("language");
    QTest::newRow("English") << 0;
    QTest::newRow("Japanese") << 1;
    QTest::newRow("French") << 2;
}

void WritingNoticeTest::isReachableOnASmallScreen()
{
    QFETCH(int, language);
    const QList<void (frmMain::*)()> commands{ &frmMain::slotCmdViewLangEn, &frmMain::slotCmdViewLangJa,
        &frmMain::slotCmdViewLangFr };
    m_window->showNormal();
    m_window->resize(240, 320);
    QTRY_COMPARE(m_window->width(), 240);
    editor().insert(u"éàâç–€ÈÀ"_s);
    QTRY_VERIFY(m_strip->isShown());
    (m_window.get()->*commands.at(language))();
    QTRY_COMPARE(TextFit(m_strip->widget()).faults().join(u"; "), QString());
    QVERIFY(!m_strip->widget().findChild<QLabel *>()->text().isEmpty());
    // Each offer is a button, or in the menu of one.
    qsizetype reachable = 0;
    for (const QString &offer : m_strip->offers())
        reachable += offer == u"…" ? m_strip->button(offer)->menu()->actions().size() : 1;
    QCOMPARE(reachable, 2);
    m_window->slotCmdViewLangEn();
}

void WritingNoticeTest::showsCharacters_data()
{
    QTest::addColumn<char32_t>("character");
    QTest::addColumn<QString>("text");
    QTest::newRow("letter") << U'é' << u"é"_s;
    QTest::newRow("beyond U+FFFF") << U'\U0001F600' << u"\U0001F600"_s;
    QTest::newRow("byte") << char32_t(0xDC81) << u"0x81"_s;
    QTest::newRow("half a pair") << char32_t(0xD83D) << u"U+D83D"_s;
    QTest::newRow("no-break space") << char32_t(0xA0) << u"U+00A0"_s;
    QTest::newRow("accent by itself") << char32_t(0x301) << u"U+0301"_s;
    QTest::newRow("change of direction") << char32_t(0x202E) << u"U+202E"_s;
}

void WritingNoticeTest::showsCharacters()
{
    QFETCH(char32_t, character);
    QTEST(shownCharacter(character), "text");
}

REGISTER_TEST(runFormTest<WritingNoticeTest>)
#include "writingnotice_test.moc"
