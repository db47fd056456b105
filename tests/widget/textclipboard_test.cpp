#include "widget/textclipboard.h"

#include "tests/testprogram.h"
#include "tests/widget/inputparts.h"

#include <QClipboard>
#include <QMimeData>

using namespace Qt::StringLiterals;

namespace {

struct Clipped : InputParts {
    using InputParts::InputParts;

    TextClipboard clipboard{ cursor, view, exchange, moves, edits };
};

QClipboard &clipboard()
{
    return *QGuiApplication::clipboard();
}

} // namespace

/// The clipboard and a text, without an editor between them.
class TextClipboardTest : public QObject {
    Q_OBJECT

private slots:
    void init() { clipboard().clear(); }

    void copiesTheSelection();
    void copiesNothingWhereNothingIsSelected();
    void copyStaysAsItWas();
    void cuts();
    void pastes();
    void pastesOverTheSelection();
    void pastesWhatOtherProgramsHave();
    void pastesTextAlone();
    void aPasteIsOneStep();
    void withoutAPrimarySelectionNothingMoves();
};

void TextClipboardTest::copiesTheSelection()
{
    Clipped parts(u"one two"_s);
    parts.select(4, 7);
    parts.clipboard.copy();
    QCOMPARE(clipboard().text(), u"two"_s);
    QVERIFY(TextClipboard::canPaste());
    QCOMPARE(parts.drawn(), u"one [two|"_s);
    QVERIFY(!parts.document.isEdited());
}

void TextClipboardTest::copiesNothingWhereNothingIsSelected()
{
    Clipped parts(u"text"_s);
    QVERIFY(!TextClipboard::canPaste());
    clipboard().setText(u"kept"_s);
    parts.clipboard.copy();
    parts.clipboard.cut();
    QCOMPARE(clipboard().text(), u"kept"_s);
    QCOMPARE(parts.drawn(), u"|text"_s);
}

void TextClipboardTest::copyStaysAsItWas()
{
    Clipped parts(u"one two"_s);
    parts.select(0, 3);
    parts.clipboard.copy();
    parts.edits.type(u"1"_s);
    QCOMPARE(clipboard().text(), u"one"_s);
}

void TextClipboardTest::cuts()
{
    Clipped parts(u"one two"_s);
    parts.select(0, 4);
    parts.clipboard.cut();
    QCOMPARE(parts.drawn(), u"|two"_s);
    QCOMPARE(clipboard().text(), u"one "_s);
    parts.edits.undo();
    QCOMPARE(parts.text(), u"one two"_s);
}

void TextClipboardTest::pastes()
{
    Clipped parts(u"ab"_s);
    parts.setCursor(1);
    parts.clipboard.paste();
    QCOMPARE(parts.drawn(), u"a|b"_s);
    clipboard().setText(u"new"_s);
    parts.clipboard.paste();
    QCOMPARE(parts.drawn(), u"anew|b"_s);
}

void TextClipboardTest::pastesOverTheSelection()
{
    Clipped parts(u"one two"_s);
    parts.select(4, 7);
    clipboard().setText(u"2"_s);
    parts.clipboard.paste();
    QCOMPARE(parts.drawn(), u"one 2|"_s);
}

void TextClipboardTest::pastesWhatOtherProgramsHave()
{
    Clipped parts(u""_s);
    clipboard().setText(u"a\r\nb"_s + QChar(0xdcff));
    parts.clipboard.paste();
    QVERIFY(parts.text().startsWith(u"a\nb"_s));
    QVERIFY(!parts.text().contains(QChar(0xdcff)));
}

void TextClipboardTest::pastesTextAlone()
{
    Clipped parts(u"one two"_s);
    parts.select(4, 7);
    auto *const picture = new QMimeData;
    picture->setData(u"image/png"_s, "bytes");
    clipboard().setMimeData(picture);
    QVERIFY(!TextClipboard::canPaste());
    parts.clipboard.paste();
    QCOMPARE(parts.drawn(), u"one [two|"_s);
}

void TextClipboardTest::aPasteIsOneStep()
{
    Clipped parts(u""_s);
    parts.edits.type(u"a"_s);
    clipboard().setText(u"b"_s);
    parts.clipboard.paste();
    parts.edits.type(u"c"_s);
    parts.edits.undo();
    QCOMPARE(parts.text(), u"ab"_s);
    parts.edits.undo();
    QCOMPARE(parts.text(), u"a"_s);
}

/// The platform of this test has none.
void TextClipboardTest::withoutAPrimarySelectionNothingMoves()
{
    QVERIFY(!clipboard().supportsSelection());
    Clipped parts(u"text"_s);
    parts.clipboard.pasteSelection(parts.at(2));
    QCOMPARE(parts.drawn(), u"|text"_s);
}

REGISTER_TEST(runWindowTest<TextClipboardTest>)
#include "textclipboard_test.moc"
