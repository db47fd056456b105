#include "document/editabletext.h"

#include "tests/document/textlistener.h"
#include "tests/testprogram.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

/// A text that is edited, without a file.
class EditableTextTest : public QObject {
    Q_OBJECT

private slots:
    void tellsOfEveryEdit();
    void tellsOfNothingWhenNothingChanges();
    void tellsOfEachChangeOfAStep();
    void isEditedUntilAllIsUndone();
    void recordsNothingWithoutUndo();
    void layingOutChangesNothing();
    void heldTextRefuses();
};

void EditableTextTest::tellsOfEveryEdit()
{
    EditableText text;
    TextListener heard(text);
    text.replace(Offset(0), 0, u"abcdef");
    text.replace(Offset(1), 2, u"x");
    text.replace(Offset(0), 1, text.store().piece(Offset(2), 2));
    QCOMPARE(text.store().text(), u"dexdef"_s);
    QCOMPARE(heard.changes, QList<Change>({ { 0, 0, 6 }, { 1, 2, 1 }, { 0, 1, 2 } }));
    QVERIFY(heard.replacements.isEmpty());
}

void EditableTextTest::tellsOfNothingWhenNothingChanges()
{
    EditableText text;
    TextListener heard(text);
    text.replace(Offset(0), 0, u"");
    text.replace(Offset(0), 0, TextPiece());
    QVERIFY(heard.changes.isEmpty());
    QVERIFY(!text.isEdited());
    QVERIFY(!text.history().canUndo());
}

void EditableTextTest::tellsOfEachChangeOfAStep()
{
    EditableText text;
    text.replace(Offset(0), 0, u"abc");
    text.replace(Offset(0), 2, u"x");
    TextListener heard(text);
    QCOMPARE(text.undo(), Offset(2));
    QCOMPARE(text.store().text(), u"abc"_s);
    QCOMPARE(heard.changes, QList<Change>({ { 0, 1, 0 }, { 0, 0, 2 } }));
    QCOMPARE(text.redo(), Offset(1));
    QCOMPARE(text.store().text(), u"xc"_s);
    QCOMPARE(heard.changes.size(), 4);
}

void EditableTextTest::isEditedUntilAllIsUndone()
{
    EditableText text;
    bool editedWhenTold = false;
    connect(&text, &EditableText::changed, this, [&] { editedWhenTold = text.isEdited(); });
    text.replace(Offset(0), 0, u"a");
    text.replace(Offset(0), 0, u"b");
    QVERIFY(editedWhenTold);
    text.undo();
    QVERIFY(text.isEdited() && editedWhenTold);
    text.undo();
    QVERIFY(!text.isEdited() && !editedWhenTold);
    text.redo();
    QVERIFY(text.isEdited() && editedWhenTold);
}

void EditableTextTest::recordsNothingWithoutUndo()
{
    EditableText text;
    text.replace(Offset(0), 0, u"a");
    text.history().setEnabled(false);
    QVERIFY(!text.history().canUndo());
    text.replace(Offset(1), 0, u"b");
    text.replace(Offset(1), 0, text.store().piece(Offset(0), 1));
    QCOMPARE(text.store().text(), u"aab"_s);
    QVERIFY(!text.history().canUndo());
    QVERIFY(text.isEdited());
}

void EditableTextTest::layingOutChangesNothing()
{
    EditableText text;
    text.replace({}, 0, u"abcdef");
    text.setEdited(false);
    TextListener heard(text);
    text.layOut({ .limit = 2 * subpixelsPerPixel });
    QCOMPARE(text.store().rowCount(), 3);
    text.layOut({});
    QCOMPARE(text.store().rowCount(), 1);
    QVERIFY(heard.changes.isEmpty() && heard.replacements.isEmpty());
    QVERIFY(!text.isEdited());
}

void EditableTextTest::heldTextRefuses()
{
    EditableText text;
    const QSignalSpy refused(&text, &EditableText::refused);
    QVERIFY(text.requestChange());
    text.setHeld(true);
    QVERIFY(text.isHeld());
    QVERIFY(!text.requestChange());
    QCOMPARE(refused.count(), 1);
    text.setHeld(false);
    QVERIFY(text.requestChange());
    QCOMPARE(refused.count(), 1);
}

REGISTER_TEST(runCoreTest<EditableTextTest>)
#include "editabletext_test.moc"
