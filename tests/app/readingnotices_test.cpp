#include "app/documentarea.h"
#include "document/utf16text.h"
#include "tests/app/stripinwindow.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray smile = "a \xF0\x9F\x98\x80 \xC3\xA9\n"; // UTF-8, which is detected as Shift-JIS
const QString smileText = u"a \U0001F600 é\n"_s;
const QByteArray utf16("\xFF\xFE"
                       "a\0\x22\x6F\r\0\n\0b\0",
    12);
const QByteArray halfPair("\xFF\xFE"
                          "a\0\n\0\x3D\xD8",
    8);
const QByteArray kanji = "\x8A\xBF\x8E\x9A\n"; // Shift-JIS

} // namespace

/// The notice that a file was read in the wrong code, as its user meets it.
class ReadingNoticesTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void saysNothingOfWhatFits_data();
    void saysNothingOfWhatFits();
    void offersTheCodeThatFits();
    void countsWhatDoesNotFit();
    void offersEveryCode();
    void offersBothOrdersOfUtf16_data();
    void offersBothOrdersOfUtf16();
    void tellsOfJapaneseUtf16WithoutAMark();
    void tellsOfBinary();
    void asksBeforeEditsAreLost();
    void staysAwayWhenDismissed();
    void offersTheCodeOfTheDialog();
    void offersNoCodeThatItIsReadWith();
    void readsUtf16AsText();
    void keepsUtf16();
    void utf16AsksBeforeEditsAreLost();
    void utf16ComesBeforeWhatItsBytesLack();
    void halfAPairIsOneCharacter();
    void utf16GoesWithAnotherCode();
    void utf16IsNotOfferedOfBytesThatWereSaved();
    void saysWhatASaveWillChange_data();
    void saysWhatASaveWillChange();
    void whatIsLostComesBeforeWhatLooksOdd();
    void keepsACopyOfTheFile();
    void changesGoUnsaidOnceSaved();
    void codesGoUnsaidOnceSavedInAnother_data();
    void codesGoUnsaidOnceSavedInAnother();
    void namesTheCodeThatItWasReadAs();
    void lineEndsGoUnsaidOnceOthersAreChosen();
    void followsTheLanguage();

private:
    /// In a folder that there is not.
    void failToSaveAs(CharCode charCode, ReturnCode returnCode)
    {
        m_window->choices = { { m_files->folder() + u"none/"_s, u"a.txt"_s, charCode, returnCode } };
        MessageBoxes boxes;
        m_window->slotCmdFileSaveAs();
        QCOMPARE(boxes.count(), 1);
    }

    ctlEditer &editor() const { return *m_window->currentEditor(); }
    const NoticeQueue &notices() const { return m_window->findChild<DocumentArea *>()->notices(); }
    QString open(const QByteArray &content)
    {
        const QString name = m_files->write(u"a.txt"_s, content);
        m_window->setDocument(name);
        return name;
    }
    void choose(const QString &code)
    {
        for (QAction *const action : m_strip->button(u"Reopen as"_s)->menu()->actions()) {
            if (action->text() == code)
                return action->trigger(); // which may take the actions away
        }
    }

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<TestWindow> m_window;
    std::optional<StripInWindow> m_strip;
};

void ReadingNoticesTest::init()
{
    resetSettings();
    qputenv("QPEDIR", BUILT_QPE_DIR);
    m_files = std::make_unique<TestFiles>();
    m_window = std::make_unique<TestWindow>();
    m_strip.emplace(*m_window);
    QVERIFY(m_window->open());
}

void ReadingNoticesTest::cleanup()
{
    for (ctlEditer *editor : m_window->tabBar()->editors())
        editor->setEdited(false);
    m_window.reset();
}

void ReadingNoticesTest::saysNothingOfWhatFits_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("ASCII") << QByteArray("abc\n");
    QTest::newRow("UTF-8") << QByteArray("\xC3\xA9\n");
    QTest::newRow("Shift-JIS") << kanji;
    QTest::newRow("EUC") << QByteArray("\xB4\xC1\xBB\xFA\n");
    QTest::newRow("JIS") << QByteArray("\x1B$B4A\x1B(B\n");
}

void ReadingNoticesTest::saysNothingOfWhatFits()
{
    QFETCH(QByteArray, content);
    open(content);
    QVERIFY(!m_strip->isShown());
}

void ReadingNoticesTest::offersTheCodeThatFits()
{
    open(smile);
    QCOMPARE(editor().charCodeName(), u"Shift-JIS"_s); // as it is detected
    QCOMPARE(m_strip->text(), u"Read as Shift-JIS, but UTF-8 reads it without a fault"_s);
    QCOMPARE(m_strip->offers(), QStringList({ u"Reopen as UTF-8"_s, u"Reopen as"_s }));
    QVERIFY(m_strip->click(u"Reopen as UTF-8"_s));
    QCOMPARE(editor().text(), smileText);
    QCOMPARE(m_window->windowTitle(), u"Marlo!Pad QT  [UTF8][LF]"_s);
    QVERIFY(!editor().edited());
    QVERIFY(!m_strip->isShown());
    QVERIFY(editor().hasFocus());
}

void ReadingNoticesTest::countsWhatDoesNotFit()
{
    open("\xC3\xA9 \xFF\xFF\n");
    QCOMPARE(m_strip->text(), u"Bytes that are not EUC: 2"_s);
    QCOMPARE(m_strip->offers(), QStringList{ u"Reopen as"_s });
}

void ReadingNoticesTest::offersEveryCode()
{
    open(smile);
    QStringList codes;
    for (const QAction *const action : m_strip->button(u"Reopen as"_s)->menu()->actions())
        codes << action->text();
    const QStringList all{ u"Shift-JIS"_s, u"EUC"_s, u"JIS"_s, u"UTF-8"_s, u"UTF-16LE"_s, u"UTF-16BE"_s };
    QCOMPARE(codes, all);
    choose(u"JIS"_s);
    QCOMPARE(editor().charCodeName(), u"JIS"_s);
    QCOMPARE(m_strip->text(), u"Read as JIS, but UTF-8 reads it without a fault"_s);
    choose(u"UTF-8"_s);
    QCOMPARE(editor().text(), smileText);
    QVERIFY(!m_strip->isShown());
}

void ReadingNoticesTest::offersBothOrdersOfUtf16_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("text");
    const QString text = u"吾輩は猫である。"_s;
    QByteArray little;
    QByteArray big;
    for (const QChar c : text) {
        little += QByteArray{ 1, char(c.cell()) } + char(c.row());
        big += QByteArray{ 1, char(c.row()) } + char(c.cell());
    }
    QTest::newRow("little endian") << little << u"UTF-16LE"_s << text;
    QTest::newRow("little endian, mark") << "\xFF\xFE" + little << u"UTF-16LE"_s << text;
    QTest::newRow("big endian") << big << u"UTF-16BE"_s << text;
    QTest::newRow("big endian, mark") << "\xFE\xFF" + big << u"UTF-16BE"_s << text;
    QString turned;
    for (const QChar c : text)
        turned += QChar(c.row(), c.cell());
    QTest::newRow("the wrong order") << big << u"UTF-16LE"_s << turned;
}

/// Saved with its mark, if it has one.
void ReadingNoticesTest::offersBothOrdersOfUtf16()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, code);
    open(content);
    choose(code);
    QTEST(editor().text(), "text");
    QCOMPARE(m_strip->text(), u"UTF-16 text, to be saved as UTF-8"_s);
    QCOMPARE(m_strip->offers(), QStringList({ u"Keep UTF-16"_s, u"Reopen as"_s }));
    QVERIFY(m_strip->click(u"Keep UTF-16"_s));
    m_window->slotCmdFileSave();
    QCOMPARE(m_files->read(u"a.txt"_s), content);
}

void ReadingNoticesTest::tellsOfJapaneseUtf16WithoutAMark()
{
    const QString text = u"吾輩は猫である。名前はまだ無い。"_s;
    open(
        QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2)); // in this machine's order
    QCOMPARE(m_strip->text(), u"UTF-16 text, read byte by byte"_s);
    QVERIFY(m_strip->click(u"Read it as text"_s));
    QCOMPARE(editor().text(), text);
}

void ReadingNoticesTest::tellsOfBinary()
{
    open(QByteArray("text\0\x82\xA0\n", 8));
    QCOMPARE(editor().charCodeName(), u"Binary"_s);
    QCOMPARE(m_strip->text(), u"Taken for binary, which cannot be saved"_s);
    QCOMPARE(m_strip->offers(), QStringList{ u"Reopen as"_s });
    choose(u"Shift-JIS"_s);
    QCOMPARE(editor().charCodeName(), u"Shift-JIS"_s);
    QCOMPARE(editor().text().last(2), u"あ\n"_s);
}

void ReadingNoticesTest::asksBeforeEditsAreLost()
{
    open(smile);
    editor().insert(u"x"_s);
    const QString edited = editor().text();
    {
        MessageBoxes boxes({ u"No"_s });
        QVERIFY(m_strip->click(u"Reopen as UTF-8"_s));
        QCOMPARE(boxes.texts(), QStringList{ u"Confirm Reload|Cancel edit and reload\n'a.txt'?"_s });
    }
    QCOMPARE(editor().text(), edited);
    QVERIFY(m_strip->isShown());
    MessageBoxes boxes({ u"Yes"_s });
    QVERIFY(m_strip->click(u"Reopen as UTF-8"_s));
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(editor().text(), smileText);
}

void ReadingNoticesTest::staysAwayWhenDismissed()
{
    open(smile);
    QVERIFY(m_strip->click(u"×"_s));
    QVERIFY(!m_strip->isShown());
    editor().insert(u"x"_s);
    QVERIFY(editor().saveFile(editor().path(), editor().name()));
    QVERIFY(!m_strip->isShown());
}

void ReadingNoticesTest::offersTheCodeOfTheDialog()
{
    const QString name = open(smile);
    m_window->slotCmdFileNew();
    m_window->choices = { { m_files->folder(), u"a.txt"_s, CharCode::Utf8, {} } };
    MessageBoxes boxes;
    m_window->slotCmdFileOpen();
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(m_window->tabTexts().size(), 3);
    QCOMPARE(editor().path() + editor().name(), name);
    QCOMPARE(editor().charCodeName(), u"Shift-JIS"_s);
    QCOMPARE(m_strip->text(), u"Open already, read as Shift-JIS"_s);
    QCOMPARE(m_strip->offers(), QStringList{ u"Reopen as UTF-8"_s });
    QVERIFY(m_strip->click(u"Reopen as UTF-8"_s));
    QCOMPARE(editor().text(), smileText);
    QVERIFY(!m_strip->isShown());
}

void ReadingNoticesTest::offersNoCodeThatItIsReadWith()
{
    open("abc");
    m_window->openDocument(m_files->folder() + u"a.txt"_s, int(CharCode::ShiftJis));
    QVERIFY(!m_strip->isShown());
    m_window->openDocument(m_files->folder() + u"a.txt"_s, 0);
    QVERIFY(!m_strip->isShown());
    m_window->openDocument(m_files->folder() + u"a.txt"_s, int(CharCode::Euc));
    QVERIFY(m_strip->isShown());
}

void ReadingNoticesTest::readsUtf16AsText()
{
    open(utf16);
    QVERIFY(editor().text() != u"a漢\nb"_s); // by the rules that go by bytes
    QCOMPARE(m_strip->text(), u"UTF-16 text, read byte by byte; saving will change it"_s);
    QCOMPARE(m_strip->offers(), QStringList({ u"Read it as text"_s, u"Keep UTF-16"_s, u"Reopen as"_s }));
    QVERIFY(m_strip->click(u"Read it as text"_s));
    QCOMPARE(editor().text(), u"a漢\nb"_s);
    QCOMPARE(m_window->windowTitle(), u"Marlo!Pad QT  [Unicode][CR+LF]"_s);
    QCOMPARE(m_strip->text(), u"UTF-16 text, to be saved as UTF-8"_s);
    QCOMPARE(m_strip->offers(), QStringList({ u"Keep UTF-16"_s, u"Reopen as"_s }));
    m_window->slotCmdFileSave();
    QCOMPARE(m_files->read(u"a.txt"_s), QByteArray("a\xE6\xBC\xA2\r\nb"));
    QVERIFY(!m_strip->isShown()); // it is UTF-8 now
}

void ReadingNoticesTest::keepsUtf16()
{
    for (const bool byTwoSteps : { false, true }) {
        open(utf16);
        if (byTwoSteps)
            QVERIFY(m_strip->click(u"Read it as text"_s));
        QVERIFY(m_strip->click(u"Keep UTF-16"_s));
        QCOMPARE(editor().text(), u"a漢\nb"_s);
        QVERIFY(!m_strip->isShown());
        m_window->slotCmdFileSave();
        QCOMPARE(m_files->read(u"a.txt"_s), utf16);
        m_window->slotCmdFileCloseTab();
    }
}

void ReadingNoticesTest::utf16AsksBeforeEditsAreLost()
{
    open(utf16);
    editor().insert(u"x"_s);
    const QString edited = editor().text();
    for (const QString &offer : { u"Read it as text"_s, u"Keep UTF-16"_s }) {
        MessageBoxes boxes({ u"No"_s });
        QVERIFY(m_strip->click(offer));
        QCOMPARE(boxes.titles(), QStringList{ u"Confirm Reload"_s });
        QCOMPARE(editor().text(), edited);
        QVERIFY(m_strip->isShown());
    }
}

/// Behind it is what a save would make of the half pair.
void ReadingNoticesTest::utf16ComesBeforeWhatItsBytesLack()
{
    for (const QString &offer : { u"Read it as text"_s, u"Keep UTF-16"_s }) {
        open(halfPair);
        QTRY_VERIFY(notices().has(NoticeKind::CannotWrite, &editor()));
        QCOMPARE(m_strip->text(), u"UTF-16 text, read byte by byte; saving will change it"_s);
        QVERIFY(m_strip->click(offer));
        if (!::keepsUtf16(std::as_const(editor()).document()))
            QVERIFY(m_strip->click(u"Keep UTF-16"_s));
        QTRY_VERIFY(!m_strip->isShown());
        m_window->slotCmdFileSave();
        QCOMPARE(m_files->read(u"a.txt"_s), halfPair);
        m_window->slotCmdFileCloseTab();
    }
    open(halfPair);
    QVERIFY(m_strip->click(u"×"_s));
    QTRY_VERIFY(m_strip->text().startsWith(u"Characters that Unicode lacks: "_s));
}

/// Though its bytes were read as three.
void ReadingNoticesTest::halfAPairIsOneCharacter()
{
    open(halfPair);
    QVERIFY(m_strip->click(u"×"_s));
    QTRY_COMPARE(m_strip->text(), u"Characters that Unicode lacks: 1 (U+D83D)"_s);
    QVERIFY(m_strip->click(u"Go to it"_s));
    QCOMPARE(editor().markedText(), u"\xDCED\xDCA0\xDCBD"_s);
    m_window->slotCmdFileSave();
    QCOMPARE(m_strip->text(), u"Characters saved as \"\uFFFD\": 1 (U+D83D)"_s);
    QCOMPARE(m_files->read(u"a.txt"_s), QByteArray("\xEF\xBD\xA1\xEF\xBC\x8A\xEF\xBF\xBD")); // 61 FF, 0A FF
}

/// The save that it told of was another one.
void ReadingNoticesTest::utf16GoesWithAnotherCode()
{
    const QByteArray accent("\xFF\xFE"
                            "a\0\xE9\0",
        6);
    open(accent);
    QVERIFY(m_strip->click(u"Read it as text"_s));
    m_window->choices = { { m_files->folder(), u"b.txt"_s, CharCode::ShiftJis, {} } };
    m_window->slotCmdFileSaveAs();
    QCOMPARE(m_files->read(u"b.txt"_s), QByteArray("a?"));
    QCOMPARE(m_strip->text(), u"Characters saved as \"?\": 1 (é)"_s);
    QVERIFY(m_strip->click(u"×"_s));
    QVERIFY(!m_strip->isShown());
}

/// What was read byte by byte is saved as UTF-8, which read as UTF-16 would be another text.
void ReadingNoticesTest::utf16IsNotOfferedOfBytesThatWereSaved()
{
    open(utf16);
    QVERIFY(m_strip->isShown());
    editor().insert(u"x"_s);
    m_window->slotCmdFileSave();
    QVERIFY(m_files->read(u"a.txt"_s) != utf16);
    QVERIFY(!m_strip->isShown());
}

void ReadingNoticesTest::saysWhatASaveWillChange_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text"); // empty: nothing
    QTest::newRow("CR+LF") << QByteArray("a\r\nb\r\n") << QString();
    QTest::newRow("LF") << QByteArray("a\nb\r\n\r") << QString();
    QTest::newRow("mixed") << QByteArray("a\r\nb\nc\n") << u"Saving will change: LF → CR+LF (2)"_s;
    QTest::newRow("lone CR") << QByteArray("a\r\nb\rc\n")
                             << u"Saving will change: LF → CR+LF (1), CR → – (1)"_s;
    QTest::newRow("NUL") << QByteArray("\x82\xA0\n\0", 4) << u"Saving will change: 00 → FF (1)"_s;
    QTest::newRow("what cannot be saved")
        << QByteArray("a\0b\0c", 5) << u"Taken for binary, which cannot be saved"_s;
}

void ReadingNoticesTest::saysWhatASaveWillChange()
{
    QFETCH(QByteArray, content);
    open(content);
    QTEST(m_strip->text(), "text");
}

void ReadingNoticesTest::whatIsLostComesBeforeWhatLooksOdd()
{
    open("\x82\xA0\xFF\r\nb\n");
    QCOMPARE(m_strip->text(), u"Saving will change: LF → CR+LF (1)"_s);
    QVERIFY(m_strip->click(u"×"_s));
    QCOMPARE(m_strip->text(), u"Bytes that are not Shift-JIS: 1"_s);
}

void ReadingNoticesTest::keepsACopyOfTheFile()
{
    open("a\r\nb\n");
    QVERIFY(m_strip->click(u"Keep a copy"_s));
    QVERIFY(!m_strip->isShown());
    MessageBoxes boxes;
    m_window->slotCmdFileSave();
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(m_files->read(u"a.txt"_s), QByteArray("a\r\nb\r\n"));
    const QString said = u"The file as it was is kept as "_s;
    QVERIFY(m_strip->text().startsWith(said));
    QFile copy(m_strip->text().sliced(said.size()));
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QCOMPARE(copy.readAll(), QByteArray("a\r\nb\n"));
}

void ReadingNoticesTest::changesGoUnsaidOnceSaved()
{
    open("a\r\nb\n");
    QVERIFY(m_strip->isShown());
    m_window->slotCmdFileSave();
    QVERIFY(!m_strip->isShown());
}

void ReadingNoticesTest::codesGoUnsaidOnceSavedInAnother_data()
{
    QTest::addColumn<QByteArray>("content"); // which is read as Shift-JIS
    QTest::addColumn<std::optional<CharCode>>("wanted"); // for the file that is open already
    QTest::addColumn<std::optional<CharCode>>("savedAs");
    QTest::addColumn<QString>("text"); // empty: nothing
    const QString fits = u"Read as Shift-JIS, but UTF-8 reads it without a fault"_s;
    const QString bytes = u"Bytes that are not Shift-JIS: 1"_s;
    const QString open = u"Open already, read as Shift-JIS"_s;
    const QByteArray broken = "\x82\xA0\xFF\n";
    using Code = std::optional<CharCode>;
    QTest::newRow("another code fits, saved") << smile << Code() << Code() << fits;
    QTest::newRow("another code fits, saved as EUC") << smile << Code() << Code(CharCode::Euc) << QString();
    QTest::newRow("wrong bytes, saved") << broken << Code() << Code() << bytes;
    QTest::newRow("wrong bytes, saved as Shift-JIS") << broken << Code() << Code(CharCode::ShiftJis) << bytes;
    QTest::newRow("wrong bytes, saved as UTF-8") << broken << Code() << Code(CharCode::Utf8) << QString();
    QTest::newRow("open already, saved") << kanji << Code(CharCode::Euc) << Code() << open;
    QTest::newRow("open already, saved as EUC")
        << kanji << Code(CharCode::Euc) << Code(CharCode::Euc) << QString();
}

void ReadingNoticesTest::codesGoUnsaidOnceSavedInAnother()
{
    QFETCH(QByteArray, content);
    QFETCH(std::optional<CharCode>, wanted);
    QFETCH(std::optional<CharCode>, savedAs);
    const QString name = open(content);
    if (wanted)
        m_window->openDocument(name, int(*wanted));
    QVERIFY(m_strip->isShown());
    QVERIFY(editor().saveFile(editor().path(), editor().name(), savedAs, {}));
    while (m_strip->text().startsWith(u"Characters saved as"_s))
        QVERIFY(m_strip->click(u"×"_s));
    QTEST(m_strip->isShown() ? m_strip->text() : QString(), "text");
}

void ReadingNoticesTest::namesTheCodeThatItWasReadAs()
{
    open(smile);
    failToSaveAs(CharCode::Euc, {});
    QCOMPARE(editor().charCodeName(), u"EUC"_s);
    if (m_strip->text().startsWith(u"Characters that EUC lacks"_s))
        QVERIFY(m_strip->click(u"×"_s));
    QCOMPARE(m_strip->text(), u"Read as Shift-JIS, but UTF-8 reads it without a fault"_s);
}

void ReadingNoticesTest::lineEndsGoUnsaidOnceOthersAreChosen()
{
    open("a\r\nb\n");
    failToSaveAs(CharCode::Utf8, ReturnCode::CrLf);
    QCOMPARE(m_strip->text(), u"Saving will change: LF → CR+LF (1)"_s);
    failToSaveAs(CharCode::Utf8, ReturnCode::Lf);
    QVERIFY(!m_strip->isShown());
}

void ReadingNoticesTest::followsTheLanguage()
{
    open(smile);
    m_window->slotCmdViewLangJa();
    QTRY_COMPARE(m_strip->text(), u"Shift-JIS で読みましたが、UTF-8 なら正しく読めます"_s);
    QCOMPARE(m_strip->offers(), QStringList({ u"UTF-8 で開き直す"_s, u"コードを選ぶ"_s }));
    m_window->slotCmdViewLangFr();
    QTRY_COMPARE(m_strip->text(), u"Lu en Shift-JIS, mais lisible sans faute en UTF-8"_s);
    m_window->slotCmdViewLangEn();
}

REGISTER_TEST(runFormTest<ReadingNoticesTest>)
#include "readingnotices_test.moc"
