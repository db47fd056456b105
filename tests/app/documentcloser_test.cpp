#include "app/documentcloser.h"

#include "tests/app/documentparts.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

/// What is asked when documents are closed, and what becomes of them, without a main window.
class DocumentCloserTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_parts = std::make_unique<DocumentParts>(); }
    void cleanup() { m_parts.reset(); }

    void closesTheCurrentOne();
    void asksAboutEdits_data();
    void asksAboutEdits();
    void failedSaveKeepsIt();
    void closedOnesAreRecent();
    void closesAllFromTheLast();
    void closesAllUntilItIsCancelled();
    void savesAllWithoutAsking();
    void savingAllStopsWhereOneFails();

private:
    ctlEditer *edited(const QString &name)
    {
        ctlEditer *const editor = m_parts->open(m_parts->files.write(name, "old"));
        editor->insert(u"new "_s);
        return editor;
    }
    QStringList openNames() const
    {
        QStringList names;
        for (const ctlEditer *const editor : m_parts->documents.editors())
            names << editor->name();
        return names;
    }

    std::unique_ptr<DocumentParts> m_parts;
};

void DocumentCloserTest::closesTheCurrentOne()
{
    m_parts->closer.askAndClose(); // there is none
    m_parts->open(m_parts->files.write(u"a.txt"_s, "old"));
    ctlEditer *const other = m_parts->documents.add();
    const MessageBoxes boxes;
    m_parts->closer.askAndClose();
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(m_parts->documents.editors(), QList<ctlEditer *>{ other });
}

void DocumentCloserTest::asksAboutEdits_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("closes");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("Yes") << u"Yes"_s << true << "new old"_ba;
    QTest::newRow("No") << u"No"_s << true << "old"_ba;
    QTest::newRow("Cancel") << u"Cancel"_s << false << "old"_ba;
    QTest::newRow("Escape") << u"Escape"_s << false << "old"_ba;
}

void DocumentCloserTest::asksAboutEdits()
{
    QFETCH(QString, answer);
    edited(u"a.txt"_s);
    const MessageBoxes boxes({ answer });
    m_parts->closer.askAndClose();
    QCOMPARE(boxes.texts(),
        QStringList{ u"Confirm File Save|\"a.txt\" is edited.\n Would you want to save this file?"_s });
    QCOMPARE(boxes.shown().first().drawnButtons(), u"[Yes] No Cancel=Escape"_s);
    QTEST(m_parts->documents.editors().isEmpty(), "closes");
    QTEST(m_parts->files.read(u"a.txt"_s), "written");
}

void DocumentCloserTest::failedSaveKeepsIt()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    breakSaving(editor);
    const MessageBoxes boxes({ u"Yes"_s });
    m_parts->closer.askAndClose();
    QCOMPARE(boxes.count(), 2);
    QCOMPARE(m_parts->documents.current(), editor);
    QVERIFY(editor->edited());
}

void DocumentCloserTest::closedOnesAreRecent()
{
    m_parts->open(m_parts->files.write(u"a.txt"_s, "old"));
    m_parts->documents.add();
    m_parts->closer.closeAll(EditsAtClosing::Ask);
    QCOMPARE(recentFiles().entries[0].name, u"a.txt"_s);
    QVERIFY(!recentFiles().entries[1].isUsed()); // the other one has no file
}

void DocumentCloserTest::closesAllFromTheLast()
{
    QStringList closed;
    connect(&m_parts->documents, &DocumentArea::closed, this,
        [&closed](const ctlEditer *editor) { closed << editor->name(); });
    edited(u"a.txt"_s);
    m_parts->open(m_parts->files.write(u"b.txt"_s, "old"));
    edited(u"c.txt"_s);
    const MessageBoxes boxes({ u"No"_s, u"Yes"_s });
    QVERIFY(m_parts->closer.closeAll(EditsAtClosing::Ask));
    QCOMPARE(closed, QStringList({ u"c.txt"_s, u"b.txt"_s, u"a.txt"_s }));
    QCOMPARE(m_parts->files.read(u"a.txt"_s), "new old"_ba);
    QCOMPARE(m_parts->files.read(u"c.txt"_s), "old"_ba);
    QVERIFY(m_parts->closer.closeAll(EditsAtClosing::Ask)); // there is none any more
}

void DocumentCloserTest::closesAllUntilItIsCancelled()
{
    ctlEditer *const first = edited(u"a.txt"_s);
    edited(u"b.txt"_s);
    const MessageBoxes boxes({ u"No"_s, u"Cancel"_s });
    QVERIFY(!m_parts->closer.closeAll(EditsAtClosing::Ask));
    QCOMPARE(m_parts->documents.editors(), QList<ctlEditer *>{ first });
    QVERIFY(first->edited());
}

void DocumentCloserTest::savesAllWithoutAsking()
{
    edited(u"a.txt"_s);
    edited(u"b.txt"_s);
    const MessageBoxes boxes;
    QVERIFY(m_parts->closer.closeAll(EditsAtClosing::Save));
    QCOMPARE(boxes.count(), 0);
    QVERIFY(m_parts->documents.editors().isEmpty());
    QCOMPARE(m_parts->files.read(u"a.txt"_s), "new old"_ba);
    QCOMPARE(m_parts->files.read(u"b.txt"_s), "new old"_ba);
}

void DocumentCloserTest::savingAllStopsWhereOneFails()
{
    edited(u"a.txt"_s);
    breakSaving(edited(u"b.txt"_s));
    edited(u"c.txt"_s);
    const MessageBoxes boxes;
    QVERIFY(!m_parts->closer.closeAll(EditsAtClosing::Save));
    QCOMPARE(openNames(), QStringList({ u"a.txt"_s, u"b.txt"_s }));
    QCOMPARE(m_parts->files.read(u"a.txt"_s), "old"_ba);
    QCOMPARE(m_parts->files.read(u"c.txt"_s), "new old"_ba);
}

REGISTER_TEST(runWindowTest<DocumentCloserTest>)
#include "documentcloser_test.moc"
