#include "platform/requesthold.h"
#include "tests/app/backgroundscene.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

#include <QClipboard>
#include <QDir>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace {

constexpr RowCol farPlace{ RowIndex(20000), 4 }; ///< that comes with none of the first steps
constexpr RowIndex farTop(19990);

} // namespace

/// Files that are read behind the window, step by step: what is shown of them, and what becomes of them when
/// something comes between.
class BackgroundLoadingTest : public QObject, private BackgroundScene {
    Q_OBJECT

private slots:
    void init() { beginScene(); }
    void cleanup() { m_parts.reset(); }

    void firstTextComesWithTheFirstSteps();
    void lineWithoutAsciiComesWithTheFirstSteps_data();
    void lineWithoutAsciiComesWithTheFirstSteps();
    void isAsReadAtOnce_data();
    void isAsReadAtOnce();
    void codeThatIsSeenLateIsRight();
    void nothingIsSavedReloadedOrEditedMeanwhile();
    void whatHasComeIsSearchedAndCopied();
    void otherDocumentsAreEdited();
    void secondOpeningShowsIt();
    void stoppedTabGoes_data();
    void stoppedTabGoes();
    void stoppedFreshDocumentIsFreshAgain();
    void closedTabEndsTheReading();
    void placeIsGoneToWhenItHasCome();
    void placeIsLeftWhereItsUserHasMoved();
    void placeStaysRememberedWhenClosedEarly();
    void shrunkFileIsTakenAsFarAsItGoes();
    void changedFileIsToldOfWhenItIsRead();
    void unreadableFileIsTold();
    void failureWaitsForARunOfReplacements();
    void fileThatIsGoneMeanwhileIsRead();

private:
    /// Has the long log read, and closed with its cursor at the far place.
    void leaveAtFarPlace();
    /// Until the first text is there.
    bool begin(const ctlEditer &editor);
    QString told(const ctlEditer *editor);
};

void BackgroundLoadingTest::leaveAtFarPlace()
{
    write(longLog());
    ctlEditer *const editor = open();
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    editor->setCursorPosition(farPlace.row.value(), farPlace.column);
    editor->setTopRow(farTop);
    m_parts->closer.close(editor);
}

bool BackgroundLoadingTest::begin(const ctlEditer &editor)
{
    while (std::as_const(editor).document().store().length() == 0 && m_runner->step()) { }
    return editor.document().isHeld() && editor.document().store().length() > 0;
}

QString BackgroundLoadingTest::told(const ctlEditer *editor)
{
    const Notice *const notice = documents().notices().heaviest(editor);
    return notice ? notice->text() : QString();
}

void BackgroundLoadingTest::firstTextComesWithTheFirstSteps()
{
    const QByteArray text = longLog();
    write(text);
    ctlEditer *const editor = open();
    QVERIFY(editor->document().isHeld());
    QVERIFY(begin(*editor));
    QVERIFY(editor->document().store().length() < text.size() / 2);
    QVERIFY(QString::fromUtf8(text).startsWith(editor->text()));
    QCOMPARE(editor->document().charCode(), CharCode::Utf8);
    QCOMPARE(editor->document().returnCode(), ReturnCode::Lf);
    const int last = editor->verticalScrollBar()->maximum();
    QVERIFY(last > 0);
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QVERIFY(editor->verticalScrollBar()->maximum() > last);
    QCOMPARE(editor->text(), QString::fromUtf8(text));
}

void BackgroundLoadingTest::lineWithoutAsciiComesWithTheFirstSteps_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<CharCode>("code");
    constexpr int length = 400'000;
    QTest::newRow("EUC") << "\xb4\xc1\xbb\xfa"_ba.repeated(length / 2) << CharCode::Euc;
    QTest::newRow("Shift-JIS") << "\x8a\xf0\x8e\x9a"_ba.repeated(length / 2) << CharCode::ShiftJis;
    QTest::newRow("JIS") << "\x1b$B"_ba + "4A;z"_ba.repeated(length / 2) << CharCode::Jis;
    QTest::newRow("UTF-8") << "\xe6\xbc\xa2"_ba.repeated(length) << CharCode::Utf8;
}

void BackgroundLoadingTest::lineWithoutAsciiComesWithTheFirstSteps()
{
    QFETCH(QByteArray, text);
    QFETCH(CharCode, code);
    write(text);
    ctlEditer *const editor = open();
    QVERIFY(begin(*editor));
    const qint64 length = infoOf(code).codec().decode(text, LayoutRule()).length();
    QVERIFY(editor->store().length() < length / 2);
    QCOMPARE(editor->document().charCode(), code);
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QCOMPARE(editor->store().length(), length);
    QCOMPARE(editor->document().findings().undecodableBytes, 0);
}

void BackgroundLoadingTest::isAsReadAtOnce_data()
{
    QTest::addColumn<QByteArray>("content");
    const QDir samples(QStringLiteral(SAMPLES_DIR));
    for (const QString &name : samples.entryList(QDir::Files)) {
        QFile file(samples.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QTest::addRow("%s", qPrintable(name)) << file.readAll();
    }
    QTest::newRow("log") << longLog();
    QTest::newRow("CR+LF, once CR") << longLog("line\r").replace(400'000, 1, "\r");
    QTest::newRow("Shift-JIS") << longLog("\x82\xa0\x83\x5c");
    QTest::newRow("EUC") << longLog("\xa4\xa2");
    QTest::newRow("JIS") << longLog("\x1b$B$\"\x1b(B");
    QTest::newRow("UTF-8") << longLog("\xe3\x81\x82 e\xcc\x81");
    QTest::newRow("undecodable") << longLog("\xe3\x81") + "\x1b(B\xff";
    QTest::newRow("binary") << longLog().replace(1000, 1, QByteArray(1, '\0'));
    QTest::newRow("EUC, one line without ASCII") << "\xb4\xc1\xf4\xfe\x8f\xb0\xa1"_ba.repeated(90'001);
    QTest::newRow("Shift-JIS, one line without ASCII") << "\x8e\x9a\xfd\x83\xa0\xe0"_ba.repeated(90'001);
    QTest::newRow("one line") << QByteArray("word ").repeated(200'000);
    QTest::newRow("a line end late") << QByteArray(500'000, 'x') + "\r\nab\rcd\n";
}

void BackgroundLoadingTest::isAsReadAtOnce()
{
    QFETCH(QByteArray, content);
    const QString name = write(content);
    TextDocument atOnce;
    const FileCodes codes{ appSettings().defaultCharCode(), appSettings().defaultReturnCode() };
    QVERIFY(!atOnce.load(m_parts->files.folder(), u"a.txt"_s, {}, codes));
    ctlEditer *const editor = m_parts->open(name);
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    const TextDocument &document = std::as_const(*editor).document();
    QVERIFY(document.store().text() == atOnce.store().text());
    QCOMPARE(document.charCode(), atOnce.charCode());
    QCOMPARE(document.returnCode(), atOnce.returnCode());
    QCOMPARE(&document.byteCodec(), &atOnce.byteCodec());
    const ReadFindings &found = document.findings(), &expected = atOnce.findings();
    QCOMPARE(found.undecodableBytes, expected.undecodableBytes);
    QCOMPARE(found.fittingCode, expected.fittingCode);
    QCOMPARE(found.rewritten.lf, expected.rewritten.lf);
    QCOMPARE(found.rewritten.cr, expected.rewritten.cr);
    QCOMPARE(found.rewritten.nul, expected.rewritten.nul);
    QCOMPARE(found.utf16.has_value(), expected.utf16.has_value());
    QCOMPARE(document.file().version().stamp(), atOnce.file().version().stamp());
    QCOMPARE(document.file().version().content().value(), atOnce.file().version().content().value());
    QVERIFY(!document.isEdited());
    document.store().checkInvariants();
    if (document.charCode() != CharCode::Binary && !found.utf16) {
        m_parts->jobs.fewest = atOnceAlways;
        QVERIFY(m_parts->saver.saveTo(editor, { m_parts->files.folder(), u"b.txt"_s }));
        const bool isRewritten = found.rewritten.lf + found.rewritten.cr + found.rewritten.nul > 0;
        QVERIFY(isRewritten || m_parts->files.read(u"b.txt"_s) == content);
    }
}

/// What was shown by then was decoded wrongly.
void BackgroundLoadingTest::codeThatIsSeenLateIsRight()
{
    const QByteArray text = longLog("\xe3\x81\x82") + "\x82\xa0\n";
    write(text);
    ctlEditer *const editor = open();
    QVERIFY(begin(*editor));
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QCOMPARE(editor->document().charCode(), CharCode::ShiftJis);
    QVERIFY(editor->text().startsWith(u"縺"_s));
    QVERIFY(editor->text().endsWith(u"あ\n"_s));
    QCOMPARE(editor->numLines(), qint64(lineCount) + 2);
}

void BackgroundLoadingTest::nothingIsSavedReloadedOrEditedMeanwhile()
{
    const QByteArray text = longLog();
    write(text);
    ctlEditer *const editor = open();
    QVERIFY(begin(*editor));
    const QString shown = editor->text();
    const MessageBoxes boxes;
    QTest::keyClicks(editor, u"x"_s);
    QCOMPARE(told(editor).section(u':', 0, 0), u"Not while it is loading"_s);
    QVERIFY(!m_parts->saver.save(editor));
    QVERIFY(!m_parts->saver.saveAs(editor));
    m_parts->loader.askAndReload();
    m_parts->loader.reload(editor);
    m_parts->loader.reopen(editor, CharCode::Euc);
    m_parts->loader.reopenUtf16(editor, {});
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(m_parts->starts.size(), 0);
    QCOMPARE(editor->text(), shown);
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QCOMPARE(told(editor), QString());
    QCOMPARE(m_parts->files.read(u"a.txt"_s), text);
    QTest::keyClicks(editor, u"x"_s);
    QVERIFY(editor->edited());
}

void BackgroundLoadingTest::whatHasComeIsSearchedAndCopied()
{
    write(longLog());
    ctlEditer *const editor = open();
    QVERIFY(begin(*editor));
    QVERIFY(editor->searchForward(0, true, u"log 17"_s, {}));
    editor->copy();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"log 17"_s);
    QVERIFY(!editor->searchForward(1, true, u"line"_s, u"x"_s));
    const CursorPlace cursor = editor->cursorPlace();
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QCOMPARE(editor->cursorPlace(), cursor);
}

void BackgroundLoadingTest::otherDocumentsAreEdited()
{
    ctlEditer *const other = documents().add();
    write(longLog());
    ctlEditer *const editor = open();
    QVERIFY(begin(*editor));
    documents().present(other);
    QTest::keyClicks(other, u"typed"_s);
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QCOMPARE(other->text(), u"typed"_s);
    QCOMPARE(documents().current(), other);
}

void BackgroundLoadingTest::secondOpeningShowsIt()
{
    write(longLog());
    ctlEditer *const editor = open();
    documents().present(documents().add());
    QCOMPARE(open(), editor);
    QCOMPARE(documents().editors().size(), 2);
}

void BackgroundLoadingTest::stoppedTabGoes_data()
{
    QTest::addColumn<int>("steps");
    for (const int steps : { 0, 1 })
        QTest::addRow("after %d", steps) << steps;
}

void BackgroundLoadingTest::stoppedTabGoes()
{
    QFETCH(int, steps);
    ctlEditer *const other = documents().add();
    other->insert(u"text"_s);
    write(longLog());
    const ctlEditer *const editor = open();
    for (int i = 0; i < steps; ++i)
        QVERIFY(m_runner->step());
    stop(editor);
    QCOMPARE(documents().editors(), QList<ctlEditer *>{ other });
    QCOMPARE(documents().current(), other);
    m_runner->runAll();
    QCOMPARE(documents().editors().size(), 1);
    QCOMPARE(recentFiles().entries.front().isUsed(), false);
}

void BackgroundLoadingTest::stoppedFreshDocumentIsFreshAgain()
{
    ctlEditer *const editor = documents().add();
    documents().present(editor);
    const QString title = editor->name();
    const int code = editor->charCode(), returnCode = editor->returnCode();
    write(longLog());
    m_parts->loader.openChosen(editor, { m_parts->files.folder(), u"a.txt"_s });
    QVERIFY(begin(*editor));
    QCOMPARE(m_parts->tabTexts(), QStringList{ u"a.txt"_s });
    stop(editor);
    QVERIFY(!editor->document().isHeld());
    QCOMPARE(editor->text(), QString());
    QCOMPARE(editor->path(), QString());
    QCOMPARE(m_parts->tabTexts(), QStringList{ title });
    QCOMPARE(editor->charCode(), code);
    QCOMPARE(editor->returnCode(), returnCode);
    QVERIFY(!editor->edited());
    editor->insert(u"typed"_s);
    QVERIFY(editor->edited());
}

void BackgroundLoadingTest::closedTabEndsTheReading()
{
    write(longLog());
    ctlEditer *const editor = open();
    QVERIFY(begin(*editor));
    QTRY_VERIFY(documents().notices().has(NoticeKind::Work, editor));
    QVERIFY(m_parts->closer.closeAll(EditsAtClosing::Ask));
    QCOMPARE(documents().editors().size(), 0);
    m_runner->runAll();
    QCOMPARE(documents().notices().heaviest(nullptr), nullptr);
}

void BackgroundLoadingTest::placeIsGoneToWhenItHasCome()
{
    leaveAtFarPlace();
    ctlEditer *const editor = open();
    QVERIFY(begin(*editor));
    QCOMPARE(editor->cursorOffset(), Offset());
    while (editor->cursorOffset() == Offset() && m_runner->step()) { }
    QCOMPARE(editor->cursorPosition(), farPlace);
    QCOMPARE(editor->topRow(), farTop);
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QCOMPARE(editor->cursorPosition(), farPlace);
    QCOMPARE(editor->topRow(), farTop);
}

void BackgroundLoadingTest::placeIsLeftWhereItsUserHasMoved()
{
    leaveAtFarPlace();
    ctlEditer *const editor = open();
    QVERIFY(begin(*editor));
    editor->setCursorPosition(3, 2);
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QCOMPARE(editor->cursorPosition(), (RowCol{ RowIndex(3), 2 }));
}

void BackgroundLoadingTest::placeStaysRememberedWhenClosedEarly()
{
    leaveAtFarPlace();
    ctlEditer *const editor = open();
    QVERIFY(begin(*editor));
    m_parts->closer.close(editor);
    QCOMPARE(recentFiles().entries.front().cursorRow, farPlace.row.value());
}

void BackgroundLoadingTest::shrunkFileIsTakenAsFarAsItGoes()
{
    const QByteArray text = longLog();
    const QString name = write(text);
    ctlEditer *const editor = open();
    QVERIFY(begin(*editor));
    QVERIFY(QFile::resize(name, text.size() / 2));
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QVERIFY(QString::fromUtf8(text).startsWith(editor->text()));
    QVERIFY(editor->document().file().change() != FileChange::None);
}

/// By the notice that tells of every change.
void BackgroundLoadingTest::changedFileIsToldOfWhenItIsRead()
{
    const QString name = write(longLog());
    ctlEditer *const editor = open();
    QVERIFY(begin(*editor));
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QFile file(name);
    QVERIFY(file.open(QIODevice::Append) && file.write("more\n") == 5 && file.flush());
    QCOMPARE(editor->document().file().change(), FileChange::Grown);
}

void BackgroundLoadingTest::unreadableFileIsTold()
{
    const QString name = write(longLog());
    ctlEditer *const editor = open();
    QVERIFY(QFile::remove(name));
    QVERIFY(QDir().mkpath(name));
    const MessageBoxes boxes;
    m_runner->runAll();
    QCOMPARE(boxes.titles(), QStringList{ u"File Load Error!"_s });
    QVERIFY(!editor->document().isHeld());
    QCOMPARE(editor->text(), QString());
    QCOMPARE(editor->path() + editor->name(), name);
    QCOMPARE(documents().editors().size(), 1);
}

/// The box could not be answered, and the run could not go on.
void BackgroundLoadingTest::failureWaitsForARunOfReplacements()
{
    const QString name = write(longLog());
    const ctlEditer *const editor = open();
    QVERIFY(QFile::remove(name));
    QVERIFY(QDir().mkpath(name));
    const MessageBoxes boxes;
    {
        const RequestHold replacing;
        m_runner->runAll();
        settle();
        QCOMPARE(boxes.count(), 0);
        QVERIFY(!editor->document().isHeld());
    }
    QTRY_COMPARE(boxes.titles(), QStringList{ u"File Load Error!"_s });
}

/// It is open by then.
void BackgroundLoadingTest::fileThatIsGoneMeanwhileIsRead()
{
    const QByteArray text = longLog();
    const QString name = write(text);
    ctlEditer *const editor = open();
    QVERIFY(begin(*editor));
    QVERIFY(QFile::remove(name));
    m_runner->runAll();
    QTRY_VERIFY(!editor->document().isHeld());
    QVERIFY(editor->text() == QString::fromUtf8(text));
    QCOMPARE(editor->document().file().change(), FileChange::Deleted);
}

REGISTER_TEST(runFormTest<BackgroundLoadingTest>)
#include "backgroundloading_test.moc"
