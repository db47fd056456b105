#include "document/utf16text.h"
#include "tests/app/documentparts.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

/// Several blocks.
QString longText(const QString &line = u"a line, 漢字"_s)
{
    return (line + u'\n').repeated(60000);
}

QByteArray littleEndian(const QString &text)
{
    return "\xFF\xFE"_ba
        + QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * qsizetype(sizeof(QChar)));
}

} // namespace

/// Large files that are read behind the window as UTF-16, or as the text of no file, which may take a second
/// reading.
class LoadingTwiceTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_parts.reset(); }

    void reopensAsUtf16();
    void stoppedReopeningKeepsTheText_data();
    void stoppedReopeningKeepsTheText();
    void reloadsUtf16AsItWas_data();
    void reloadsUtf16AsItWas();
    void reloadsWhatIsUtf16NoMore();
    void utf16IsNotReadWhileItIsSaved();
    void opensTheTextOfNoFile_data();
    void opensTheTextOfNoFile();
    void stoppedTextOfNoFileGoes_data();
    void stoppedTextOfNoFileGoes();
    void unreadableTextOfNoFileIsTold();
    void closedTextOfNoFileIsNotToldOf();

private:
    DocumentLoader &loader() { return m_parts->loader; }
    DocumentArea &documents() { return m_parts->documents; }
    QString write(const QByteArray &content) { return m_parts->files.write(u"a.txt"_s, content); }
    /// Until it is whole; how many steps that took.
    int runAll(const ctlEditer *editor);
    ctlEditer *openUtf16();
    void stop(const ctlEditer *editor);

    std::unique_ptr<DocumentParts> m_parts;
};

void LoadingTwiceTest::init()
{
    m_parts = std::make_unique<DocumentParts>();
    m_parts->jobs.fewest = 1;
}

int LoadingTwiceTest::runAll(const ctlEditer *editor)
{
    int steps = 0;
    const auto run = [&] {
        steps += m_parts->steps.runAll();
        return !editor->document().isHeld();
    };
    return QTest::qWaitFor(run, 60'000) ? steps : -1;
}

ctlEditer *LoadingTwiceTest::openUtf16()
{
    ctlEditer *const editor = m_parts->open(write(littleEndian(longText())));
    if (runAll(editor) < 0)
        return nullptr;
    loader().reopenUtf16(editor, { false, true });
    return runAll(editor) < 0 ? nullptr : editor;
}

void LoadingTwiceTest::stop(const ctlEditer *editor)
{
    QTRY_VERIFY(documents().notices().has(NoticeKind::Work, editor));
    const auto act = documents().notices().heaviest(editor)->offers.front().act;
    act();
}

void LoadingTwiceTest::reopensAsUtf16()
{
    ctlEditer *const editor = m_parts->open(write(littleEndian(longText())));
    QVERIFY(runAll(editor) > 0);
    const QString before = editor->text();
    loader().reopenUtf16(editor, { false, true });
    QVERIFY(editor->document().isHeld());
    QVERIFY(m_parts->steps.step());
    QCOMPARE(editor->text(), before);
    QVERIFY(runAll(editor) > 0);
    QCOMPARE(editor->text(), longText());
    const TextDocument &document = std::as_const(*editor).document();
    QVERIFY(document.isUtf16());
    QCOMPARE(document.charCode(), CharCode::Unicode);
    QCOMPARE(document.findings().utf16, std::optional(Utf16Form{ false, true }));
    QVERIFY(!document.isEdited());
    m_parts->jobs.fewest = qint64{ 1 } << 40; // at once
    QVERIFY(m_parts->saver.saveTo(editor, { m_parts->files.folder(), u"b.txt"_s }));
    QCOMPARE(m_parts->files.read(u"b.txt"_s), longText().toUtf8());
}

void LoadingTwiceTest::stoppedReopeningKeepsTheText_data()
{
    QTest::addColumn<int>("steps");
    for (const int steps : { 0, 1 })
        QTest::addRow("after %d", steps) << steps;
}

void LoadingTwiceTest::stoppedReopeningKeepsTheText()
{
    QFETCH(int, steps);
    ctlEditer *const editor = m_parts->open(write(littleEndian(longText())));
    QVERIFY(runAll(editor) > 0);
    const QString before = editor->text();
    loader().reopenUtf16(editor, { false, true });
    while (steps-- > 0)
        QVERIFY(m_parts->steps.step());
    stop(editor);
    QVERIFY(!editor->document().isHeld());
    m_parts->steps.runAll();
    QCOMPARE(editor->text(), before);
    QVERIFY(!std::as_const(*editor).document().isUtf16());
}

void LoadingTwiceTest::reloadsUtf16AsItWas_data()
{
    QTest::addColumn<bool>("isKept");
    QTest::newRow("saved as UTF-8") << false;
    QTest::newRow("saved as UTF-16") << true;
}

void LoadingTwiceTest::reloadsUtf16AsItWas()
{
    QFETCH(bool, isKept);
    ctlEditer *const editor = openUtf16();
    QVERIFY(editor);
    if (isKept)
        editor->document().keepUtf16();
    const QString other = longText(u"other lines"_s);
    write(littleEndian(other));
    editor->setCursorPosition(3, 2);
    loader().reload(editor);
    QVERIFY(editor->document().isHeld());
    QVERIFY(m_parts->steps.step());
    QCOMPARE(editor->text(), longText());
    QVERIFY(runAll(editor) > 2);
    QCOMPARE(editor->text(), other);
    QCOMPARE(editor->cursorPosition(), (RowCol{ RowIndex(3), 2 }));
    QVERIFY(std::as_const(*editor).document().isUtf16());
    QCOMPARE(keepsUtf16(std::as_const(*editor).document()), isKept);
}

/// Another program has saved it in UTF-8.
void LoadingTwiceTest::reloadsWhatIsUtf16NoMore()
{
    ctlEditer *const editor = openUtf16();
    QVERIFY(editor);
    write(longText(u"あいう"_s).toUtf8());
    loader().reload(editor);
    QVERIFY(runAll(editor) > 0);
    QCOMPARE(editor->text(), longText(u"あいう"_s));
    QVERIFY(!std::as_const(*editor).document().isUtf16());
    QCOMPARE(editor->document().charCode(), CharCode::Utf8);
}

/// A save that has begun while the question was open.
void LoadingTwiceTest::utf16IsNotReadWhileItIsSaved()
{
    ctlEditer *const editor = openUtf16();
    QVERIFY(editor);
    editor->insert(u"edited "_s);
    for (const bool isReload : { true, false }) {
        const MessageBoxes boxes({ u"Yes"_s });
        QTimer::singleShot(0, this, [this, editor] { m_parts->saver.beginSave(editor); });
        if (isReload)
            loader().askAndReload();
        else
            loader().reopenUtf16(editor, {});
        QCOMPARE(boxes.count(), 1);
        QVERIFY(editor->text().startsWith(u"edited "_s));
        QVERIFY(m_parts->saver.isSaving(editor));
        QVERIFY(runAll(editor) > 0);
        QCOMPARE(editor->document().charCode(), CharCode::Unicode);
        editor->insert(u"edited "_s);
    }
}

void LoadingTwiceTest::opensTheTextOfNoFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<std::optional<CharCode>>("code");
    QTest::newRow("UTF-8") << longText().toUtf8() << std::optional<CharCode>();
    QTest::newRow("UTF-16") << littleEndian(longText()) << std::optional<CharCode>();
    QTest::newRow("in a wrong code") << longText().toUtf8() << std::optional(CharCode::ShiftJis);
}

void LoadingTwiceTest::opensTheTextOfNoFile()
{
    QFETCH(QByteArray, content);
    QFETCH(std::optional<CharCode>, code);
    QList<bool> opened;
    loader().openUnsaved(write(content), u"old text"_s, code, [&opened](bool isOpen) { opened << isOpen; });
    ctlEditer *const editor = documents().current();
    QCOMPARE(m_parts->tabTexts(), QStringList{ u"old text"_s });
    QVERIFY(editor->document().isHeld());
    QVERIFY(m_parts->steps.step());
    QVERIFY(opened.isEmpty());
    QVERIFY(runAll(editor) > 0);
    QCOMPARE(opened, QList<bool>{ true });
    QCOMPARE(editor->text(), longText());
    QCOMPARE(editor->path(), QString());
    QCOMPARE(editor->name(), u"old text"_s);
    QVERIFY(editor->edited());
    QVERIFY(!documents().notices().heaviest(editor));
    QCOMPARE(m_parts->tabTexts(), QStringList{ u"* old text"_s });
    QVERIFY(!recentFiles().entries.front().isUsed());
}

void LoadingTwiceTest::stoppedTextOfNoFileGoes_data()
{
    stoppedReopeningKeepsTheText_data();
}

void LoadingTwiceTest::stoppedTextOfNoFileGoes()
{
    QFETCH(int, steps);
    ctlEditer *const before = documents().add();
    documents().present(before);
    QList<bool> opened;
    loader().openUnsaved(
        write(longText().toUtf8()), u"old text"_s, {}, [&opened](bool isOpen) { opened << isOpen; });
    while (steps-- > 0)
        QVERIFY(m_parts->steps.step());
    stop(documents().current());
    QCOMPARE(opened, QList<bool>{ false });
    QCOMPARE(documents().editors(), QList<ctlEditer *>{ before });
    QCOMPARE(documents().current(), before);
    m_parts->steps.runAll();
    QCOMPARE(documents().editors().size(), 1);
}

/// It has gone before the first step.
void LoadingTwiceTest::unreadableTextOfNoFileIsTold()
{
    ctlEditer *const before = documents().add();
    documents().present(before);
    const QString name = write(longText().toUtf8());
    QList<bool> opened;
    loader().openUnsaved(name, u"old text"_s, {}, [&opened](bool isOpen) { opened << isOpen; });
    QVERIFY(QFile::remove(name));
    const MessageBoxes boxes;
    m_parts->steps.runAll();
    QTRY_COMPARE(opened, QList<bool>{ false });
    QCOMPARE(boxes.texts(), QStringList{ u"File Load Error!|This file is not exists!"_s });
    QCOMPARE(documents().editors(), QList<ctlEditer *>{ before });
}

void LoadingTwiceTest::closedTextOfNoFileIsNotToldOf()
{
    bool isTold = false;
    loader().openUnsaved(write(longText().toUtf8()), u"old text"_s, {}, [&isTold](bool) { isTold = true; });
    documents().close(documents().current());
    m_parts->steps.runAll();
    QVERIFY(!isTold);
    QVERIFY(documents().editors().isEmpty());
}

REGISTER_TEST(runWindowTest<LoadingTwiceTest>)
#include "loadingtwice_test.moc"
