#include "app/documentloader.h"

#include "document/utf16text.h"
#include "tests/app/documentparts.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

/// Files on their way into documents, without a main window.
class DocumentLoaderTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_parts = std::make_unique<DocumentParts>(); }
    void cleanup() { m_parts.reset(); }

    void opensInATabOfItsOwn();
    void showsWhatIsOpen();
    void asksBeforeEditsGo_data();
    void asksBeforeEditsGo();
    void putsTheCursorWhereItWas();
    void offersTheCodeThatWasWanted();
    void chosenFileTakesTheFreshDocument();
    void chosenFileLeavesAnEditedDocument();
    void cancelledDialogOpensNothing();
    void opensTheTextOfACopy();
    void opensNoTextThatCannotBeRead();
    void readsFromDiskAsTheDocumentWas();
    void reloadingKeepsTheCursor();
    void reloadingAsksFirst();
    void failedReloadingLeavesTheText();
    void reopensWithAnotherCode();
    void reopensAsUtf16();
    void saysWhatItIsLoading();

private:
    const DocumentArea &documents() const { return m_parts->documents; }
    DocumentLoader &loader() { return m_parts->loader; }
    QString write(const QByteArray &content) { return m_parts->files.write(u"a.txt"_s, content); }

    std::unique_ptr<DocumentParts> m_parts;
};

void DocumentLoaderTest::opensInATabOfItsOwn()
{
    ctlEditer *const first = m_parts->documents.add();
    ctlEditer *const opened = m_parts->open(write("text\n"));
    QCOMPARE(documents().editors(), QList<ctlEditer *>({ first, opened }));
    QCOMPARE(opened->text(), u"text\n"_s);
    QCOMPARE(m_parts->tabTexts(), QStringList({ first->name(), u"a.txt"_s }));
}

void DocumentLoaderTest::showsWhatIsOpen()
{
    ctlEditer *const opened = m_parts->open(write("text\n"));
    m_parts->open(m_parts->files.write(u"b.txt"_s, "other\n"));
    write("changed\n");
    loader().open(m_parts->files.folder() + u"./a.txt"_s, {});
    QCOMPARE(documents().current(), opened);
    QCOMPARE(m_parts->text(), u"text\n"_s);
}

void DocumentLoaderTest::asksBeforeEditsGo_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("text");
    QTest::newRow("Yes") << u"Yes"_s << u"text\n"_s;
    QTest::newRow("No") << u"No"_s << u"edited text\n"_s;
}

void DocumentLoaderTest::asksBeforeEditsGo()
{
    QFETCH(QString, answer);
    const QString name = write("text\n");
    m_parts->open(name)->insert(u"edited "_s);
    const MessageBoxes boxes({ answer });
    loader().open(name, {});
    QCOMPARE(boxes.titles(), QStringList{ u"Existing File"_s });
    QTEST(m_parts->text(), "text");
    QCOMPARE(documents().current()->edited(), answer == u"No"_s);
}

void DocumentLoaderTest::putsTheCursorWhereItWas()
{
    const QString name = write("one\ntwo\nthree\n");
    m_parts->open(name)->setCursorPosition(2, 3);
    m_parts->closer.close(documents().current());
    QCOMPARE(m_parts->open(name)->cursorPosition(), (RowCol{ RowIndex(2), 3 }));
}

void DocumentLoaderTest::offersTheCodeThatWasWanted()
{
    const QString name = write("\x82\xa0\n");
    ctlEditer *const editor = m_parts->open(name);
    loader().open(name, CharCode::ShiftJis);
    QVERIFY(!m_parts->documents.notices().has(NoticeKind::OtherCode, editor));
    loader().open(name, CharCode::Euc);
    QCOMPARE(m_parts->text(), u"あ\n"_s);
    const Notice *const notice = m_parts->documents.notices().heaviest(editor);
    QVERIFY(notice && notice->kind == NoticeKind::OtherCode);
    notice->offers.front().act();
    QCOMPARE(std::as_const(*editor).document().charCode(), CharCode::Euc);
}

void DocumentLoaderTest::chosenFileTakesTheFreshDocument()
{
    ctlEditer *const fresh = m_parts->documents.add();
    write("text\n");
    m_parts->choices << FileChoice{ m_parts->files.folder(), u"a.txt"_s };
    loader().askAndOpen();
    QCOMPARE(documents().editors(), QList<ctlEditer *>{ fresh });
    QCOMPARE(fresh->text(), u"text\n"_s);
    QCOMPARE(m_parts->tabTexts(), QStringList{ u"a.txt"_s });
}

void DocumentLoaderTest::chosenFileLeavesAnEditedDocument()
{
    ctlEditer *const edited = m_parts->documents.add();
    edited->insert(u"mine"_s);
    write("text\n");
    loader().openChosen(edited, { m_parts->files.folder(), u"a.txt"_s });
    QCOMPARE(documents().editors().size(), 2);
    QCOMPARE(edited->text(), u"mine"_s);
    QCOMPARE(m_parts->text(), u"text\n"_s);
}

void DocumentLoaderTest::cancelledDialogOpensNothing()
{
    m_parts->open(write("text\n"));
    loader().askAndOpen();
    QCOMPARE(m_parts->starts.size(), 1);
    QCOMPARE(m_parts->starts.first().fullName(), m_parts->files.folder() + u"a.txt"_s);
    QCOMPARE(documents().editors().size(), 1);
}

void DocumentLoaderTest::opensTheTextOfACopy()
{
    bool isOpen = false;
    loader().openUnsaved(write("\xff\xfe"
                               "a\0b\0"_ba),
        u"old text"_s, {}, [&isOpen](bool open) { isOpen = open; });
    QVERIFY(isOpen);
    QCOMPARE(m_parts->text(), u"ab"_s);
    QCOMPARE(documents().current()->path(), QString());
    QCOMPARE(documents().current()->name(), u"old text"_s);
    QVERIFY(documents().current()->edited());
    QVERIFY(!m_parts->documents.notices().heaviest(documents().current()));
}

void DocumentLoaderTest::opensNoTextThatCannotBeRead()
{
    ctlEditer *const before = m_parts->open(write("text\n"));
    const MessageBoxes boxes;
    bool isOpen = true;
    loader().openUnsaved(
        m_parts->files.folder() + u"none"_s, u"old text"_s, {}, [&isOpen](bool open) { isOpen = open; });
    QVERIFY(!isOpen);
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(documents().editors(), QList<ctlEditer *>{ before });
    QCOMPARE(documents().current(), before);
}

void DocumentLoaderTest::readsFromDiskAsTheDocumentWas()
{
    const QByteArray bytes = "\xa4\xa2\xa4\xa4\n";
    QCOMPARE(m_parts->open(m_parts->files.write(u"b.txt"_s, bytes))->text(), u"あい\n"_s);
    loader().open(write(bytes), CharCode::ShiftJis); // which is not detected
    ctlEditer *const editor = documents().current();
    loader().openFromDisk(*editor, u"on disk"_s);
    QCOMPARE(editor->text(), u"､｢､､\n"_s);
    QCOMPARE(m_parts->text(), editor->text());
}

void DocumentLoaderTest::reloadingKeepsTheCursor()
{
    ctlEditer *const editor = m_parts->open(write("one\ntwo\nthree\n"));
    editor->setCursorPosition(1, 2);
    write("eins\nzwei\ndrei\n");
    loader().reload(editor);
    QCOMPARE(editor->text(), u"eins\nzwei\ndrei\n"_s);
    QCOMPARE(editor->cursorPosition(), (RowCol{ RowIndex(1), 2 }));
}

void DocumentLoaderTest::reloadingAsksFirst()
{
    ctlEditer *const editor = m_parts->open(write("text\n"));
    editor->insert(u"edited "_s);
    MessageBoxes boxes({ u"No"_s, u"Yes"_s });
    loader().reload(editor);
    QCOMPARE(editor->text(), u"edited text\n"_s);
    loader().reload(editor);
    QCOMPARE(editor->text(), u"text\n"_s);
    QVERIFY(!editor->edited());
    QCOMPARE(boxes.titles(), QStringList({ u"Confirm Reload"_s, u"Confirm Reload"_s }));
}

void DocumentLoaderTest::failedReloadingLeavesTheText()
{
    const QString name = write("text\n");
    ctlEditer *const editor = m_parts->open(name);
    editor->setCursorPosition(0, 2);
    QVERIFY(QFile::remove(name));
    const MessageBoxes boxes;
    loader().reload(editor);
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(editor->text(), u"text\n"_s);
    QCOMPARE(editor->cursorPosition(), (RowCol{ RowIndex(0), 2 }));
}

void DocumentLoaderTest::reopensWithAnotherCode()
{
    ctlEditer *const editor = m_parts->open(write("\x82\xa0\n"));
    QCOMPARE(editor->text(), u"あ\n"_s);
    loader().reopen(editor, CharCode::Utf8);
    QCOMPARE(editor->text(), QString(QChar(0xdc82)) + QChar(0xdca0) + u'\n');
    editor->insert(u"x"_s);
    const MessageBoxes boxes({ u"No"_s });
    loader().reopen(editor, CharCode::ShiftJis);
    QVERIFY(editor->text().startsWith(u'x'));
}

void DocumentLoaderTest::reopensAsUtf16()
{
    ctlEditer *const editor = m_parts->open(write("a\0\n\0"_ba));
    loader().reopenUtf16(editor, Utf16Form{});
    QCOMPARE(editor->text(), u"a\n"_s);
    QVERIFY(std::as_const(*editor).document().isUtf16());
}

void DocumentLoaderTest::saysWhatItIsLoading()
{
    QVERIFY(!loader().loading());
    QList<const ctlEditer *> loading;
    connect(&documents(), &DocumentArea::added, this, [&](ctlEditer *editor) {
        connect(&editor->document(), &TextDocument::replaced, this, [&] { loading << loader().loading(); });
    });
    ctlEditer *const editor = m_parts->open(write("text\n"));
    QCOMPARE(loading, QList<const ctlEditer *>{ editor });
    QVERIFY(!loader().loading());
}

REGISTER_TEST(runWindowTest<DocumentLoaderTest>)
#include "documentloader_test.moc"
