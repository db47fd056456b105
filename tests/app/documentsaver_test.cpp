#include "app/documentsaver.h"

#include "tests/app/documentparts.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

/// Documents on their way into files, without a main window.
class DocumentSaverTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<ctlEditer *>(); }
    void init() { m_parts = std::make_unique<DocumentParts>(); }
    void cleanup() { m_parts.reset(); }

    void savesUnderItsName();
    void asksForANameWhereThereIsNone();
    void cancelledDialogSavesNothing();
    void asksUntilItIsWritten();
    void savesWithOtherCodes();
    void keepsTheCodesOfAFailedSave();
    void comesWithACodeChosen();
    void savesAllInTheirOrder();
    void savingAllStopsWhereOneFails();
    void makesTheDocumentsFolderAlone();
    void forgetsTheCarriedPlace();

private:
    ctlEditer *edited(const QString &name, const QByteArray &content = "old\n")
    {
        ctlEditer *const editor = m_parts->open(m_parts->files.write(name, content));
        editor->insert(u"new "_s);
        m_parts->documents.refresh(editor);
        return editor;
    }
    FileChoice choice(const QString &name) const { return { m_parts->files.folder(), name }; }

    std::unique_ptr<DocumentParts> m_parts;
};

void DocumentSaverTest::savesUnderItsName()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    QCOMPARE(m_parts->tabTexts(), QStringList{ u"* a.txt"_s });
    QVERIFY(m_parts->saver.save(editor));
    QCOMPARE(m_parts->files.read(u"a.txt"_s), "new old\n"_ba);
    QCOMPARE(m_parts->tabTexts(), QStringList{ u"a.txt"_s });
    QVERIFY(m_parts->starts.isEmpty());
}

void DocumentSaverTest::asksForANameWhereThereIsNone()
{
    ctlEditer *const editor = m_parts->documents.add();
    editor->insert(u"text"_s);
    m_parts->choices << choice(u"b.txt"_s);
    QVERIFY(m_parts->saver.save(editor));
    QCOMPARE(m_parts->files.read(u"b.txt"_s), "text"_ba);
    QCOMPARE(m_parts->tabTexts(), QStringList{ u"b.txt"_s });
    QVERIFY(m_parts->saver.save(editor));
    QCOMPARE(m_parts->starts.size(), 1);
}

void DocumentSaverTest::cancelledDialogSavesNothing()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    QVERIFY(!m_parts->saver.saveAs(editor));
    QCOMPARE(m_parts->files.read(u"a.txt"_s), "old\n"_ba);
    QVERIFY(editor->edited());
}

/// What was chosen can be mended.
void DocumentSaverTest::asksUntilItIsWritten()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    QVERIFY(QDir(m_parts->files.folder()).mkdir(u"folder"_s));
    m_parts->choices << choice(u"folder"_s) << choice(u"b.txt"_s);
    const MessageBoxes boxes;
    QVERIFY(m_parts->saver.saveAs(editor));
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(m_parts->starts.size(), 2);
    QCOMPARE(m_parts->starts.at(0).name, u"a.txt"_s);
    QCOMPARE(m_parts->starts.at(1).name, u"folder"_s);
    QCOMPARE(m_parts->files.read(u"b.txt"_s), "new old\n"_ba);
    QCOMPARE(editor->name(), u"b.txt"_s);
}

void DocumentSaverTest::savesWithOtherCodes()
{
    ctlEditer *const editor = m_parts->open(m_parts->files.write(u"a.txt"_s, "あ\n"));
    FileChoice other = choice(u"b.txt"_s);
    other.charCode = CharCode::ShiftJis;
    other.returnCode = ReturnCode::CrLf;
    QVERIFY(m_parts->saver.saveTo(editor, other));
    QCOMPARE(m_parts->files.read(u"b.txt"_s), "\x82\xa0\r\n"_ba);
    QCOMPARE(m_parts->files.read(u"a.txt"_s), QByteArray("あ\n"));
}

void DocumentSaverTest::keepsTheCodesOfAFailedSave()
{
    ctlEditer *const editor = edited(u"a.txt"_s, "あ\n");
    breakSaving(editor);
    QSignalSpy refreshed(&m_parts->documents, &DocumentArea::refreshed);
    FileChoice other = choice(u"a.txt"_s);
    other.charCode = CharCode::ShiftJis;
    const MessageBoxes boxes;
    QVERIFY(!m_parts->saver.saveTo(editor, other));
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(std::as_const(*editor).document().charCode(), CharCode::ShiftJis);
    QCOMPARE(refreshed.count(), 1);
    QVERIFY(editor->edited());
}

void DocumentSaverTest::comesWithACodeChosen()
{
    ctlEditer *const other = edited(u"a.txt"_s);
    m_parts->documents.add();
    m_parts->documents.present(m_parts->documents.editors().last());
    QVERIFY(!m_parts->saver.saveAs(other, CharCode::Utf8));
    QCOMPARE(m_parts->documents.current(), other); // is shown while the user is asked
    QCOMPARE(m_parts->starts.first().charCode, CharCode::Utf8);
}

void DocumentSaverTest::savesAllInTheirOrder()
{
    QStringList saved;
    for (const QString &name : { u"a.txt"_s, u"b.txt"_s, u"c.txt"_s }) {
        const ctlEditer *const editor = edited(name);
        connect(&editor->document(), &TextDocument::saved, this, [&saved, name] { saved << name; });
    }
    ctlEditer *const unedited = m_parts->documents.editors().at(1);
    QVERIFY(m_parts->saver.save(unedited));
    saved.clear();
    m_parts->documents.present(unedited);
    m_parts->saver.saveAll();
    QCOMPARE(saved, QStringList({ u"a.txt"_s, u"c.txt"_s }));
    QCOMPARE(m_parts->documents.current(), unedited);
    QCOMPARE(m_parts->tabTexts(), QStringList({ u"a.txt"_s, u"b.txt"_s, u"c.txt"_s }));
}

void DocumentSaverTest::savingAllStopsWhereOneFails()
{
    edited(u"a.txt"_s);
    breakSaving(edited(u"b.txt"_s));
    edited(u"c.txt"_s);
    const MessageBoxes boxes;
    m_parts->saver.saveAll();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(m_parts->files.read(u"a.txt"_s), "new old\n"_ba);
    QCOMPARE(m_parts->files.read(u"c.txt"_s), "old\n"_ba);
}

void DocumentSaverTest::makesTheDocumentsFolderAlone()
{
    const QString folder = QDir::homePath() + u"/Documents/"_s;
    QVERIFY(!QFile::exists(folder));
    ctlEditer *const editor = m_parts->documents.add();
    const MessageBoxes boxes;
    m_parts->choices << FileChoice{ QDir::homePath() + u"/Mistyped/"_s, u"a.txt"_s };
    QVERIFY(!m_parts->saver.save(editor));
    QVERIFY(!QFile::exists(QDir::homePath() + u"/Mistyped"_s));
    m_parts->choices << FileChoice{ folder, u"a.txt"_s };
    QVERIFY(m_parts->saver.save(editor));
    QVERIFY(QFile::exists(folder + u"a.txt"_s));
    QVERIFY(QDir(folder).removeRecursively());
}

void DocumentSaverTest::forgetsTheCarriedPlace()
{
    const QString name = m_parts->files.write(u"a.txt"_s, "one\ntwo\n");
    m_parts->open(name)->setCursorPosition(1, 2);
    m_parts->closer.close(m_parts->documents.current());
    QVERIFY(QFile::remove(name));
    const MessageBoxes boxes;
    ctlEditer *const editor = m_parts->open(name);
    editor->insert(u"other\ntext\n"_s);
    editor->setCursorPosition(0, 1);
    QVERIFY(m_parts->saver.save(editor));
    m_parts->closer.close(editor);
    QCOMPARE(recentFiles().entries[0].cursorRow, 0);
    QCOMPARE(recentFiles().entries[0].cursorColumn, 1);
}

REGISTER_TEST(runWindowTest<DocumentSaverTest>)
#include "documentsaver_test.moc"
