#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/undosteps.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/rows.h"
#include "widget/textaccessible.h"

#include <QRandomGenerator>
#include <QScrollBar>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

using namespace Qt::StringLiterals;

namespace {

/// What assistive technology was told, drawn as "insert 3 'abc'", "delete 3 'abc'", "cursor 6", "selected
/// 3-6".
QStringList told;

/// As if assistive technology came or went.
void setHeard(bool heard)
{
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(heard);
}

void hear(QAccessibleEvent *event)
{
    switch (event->type()) {
    case QAccessible::TextInserted: {
        const auto *inserted = static_cast<QAccessibleTextInsertEvent *>(event);
        told << u"insert %1 '%2'"_s.arg(inserted->changePosition()).arg(inserted->textInserted());
        break;
    }
    case QAccessible::TextRemoved: {
        const auto *removed = static_cast<QAccessibleTextRemoveEvent *>(event);
        told << u"delete %1 '%2'"_s.arg(removed->changePosition()).arg(removed->textRemoved());
        break;
    }
    case QAccessible::TextCaretMoved:
        told << u"cursor %1"_s.arg(static_cast<QAccessibleTextCursorEvent *>(event)->cursorPosition());
        break;
    case QAccessible::TextSelectionChanged: {
        const auto *selected = static_cast<QAccessibleTextSelectionEvent *>(event);
        told << u"selected %1-%2"_s.arg(selected->selectionStart()).arg(selected->selectionEnd());
        break;
    }
    default:
        break;
    }
}

} // namespace

/// The text area as assistive technology reads, selects and edits it, and what it is told.
class TextAccessibleTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void isAnEditableText();
    void nameIsTheWidgets();
    void scrollBarsHaveNames();
    void readsParts_data();
    void readsParts();
    void units_data();
    void units();
    void unitsOfARow();
    void longUnitsAreCut();
    void hugeTextIsCut();
    void cursorFollows();
    void cursorEntersNoCharacter();
    void selects();
    void characterRects();
    void pointsFindCharacters();
    void scrollsToAPlace();
    void edits_data();
    void edits();
    void editsAreCleaned();
    void tellsChanges_data();
    void tellsChanges();
    void tellsNewText();
    void tellsManyChangesAsOne();
    void tellsTheBeginningOfMuchText();
    void tellsNothingTwice();
    void tellsNothingUnheard();
    void replaysToTheSameText_data();
    void replaysToTheSameText();

private:
    QAccessibleInterface *accessible() const { return QAccessible::queryAccessibleInterface(m_edit.get()); }
    QAccessibleTextInterface *text() const { return accessible()->textInterface(); }
    QAccessibleEditableTextInterface *editable() const { return accessible()->editableTextInterface(); }

    std::unique_ptr<QMultiLineEdit> m_edit;
    QAccessible::UpdateHandler m_handler = nullptr;
};

void TextAccessibleTest::initTestCase()
{
    m_handler = QAccessible::installUpdateHandler(hear);
}

void TextAccessibleTest::init()
{
    setHeard(true);
    m_edit = std::make_unique<QMultiLineEdit>();
    m_edit->resize(300, 200);
    m_edit->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_edit.get()));
}

void TextAccessibleTest::cleanup()
{
    m_edit.reset();
    told.clear();
}

void TextAccessibleTest::cleanupTestCase()
{
    setHeard(false);
    QAccessible::installUpdateHandler(m_handler);
}

void TextAccessibleTest::isAnEditableText()
{
    QCOMPARE(accessible()->role(), QAccessible::EditableText);
    const QAccessible::State state = accessible()->state();
    QVERIFY(state.multiLine && state.editable && state.selectableText && state.focusable);
    QVERIFY(!state.readOnly);
    QVERIFY(text() && editable());
    QVERIFY(accessible()->actionInterface());
    QWidget other;
    QVERIFY(!QAccessible::queryAccessibleInterface(&other)->textInterface());
}

void TextAccessibleTest::nameIsTheWidgets()
{
    m_edit->setAccessibleName(u"notes.txt"_s);
    QCOMPARE(accessible()->text(QAccessible::Name), u"notes.txt"_s);
}

void TextAccessibleTest::scrollBarsHaveNames()
{
    QCOMPARE(QAccessible::queryAccessibleInterface(m_edit->verticalScrollBar())->text(QAccessible::Name),
        u"Vertical scroll bar"_s);
    QCOMPARE(QAccessible::queryAccessibleInterface(m_edit->horizontalScrollBar())->text(QAccessible::Name),
        u"Horizontal scroll bar"_s);
}

void TextAccessibleTest::readsParts_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("end");
    QTest::addColumn<QString>("part");
    QTest::newRow("everything") << 0 << 9 << u"abc\ndef漢字"_s.first(9);
    QTest::newRow("middle") << 2 << 5 << u"c\nd"_s;
    QTest::newRow("nothing") << 3 << 3 << u""_s;
    QTest::newRow("reversed") << 5 << 2 << u"c\nd"_s;
    QTest::newRow("beyond the end") << 7 << 99 << u"漢字"_s;
    QTest::newRow("before the start") << -5 << 2 << u"ab"_s;
}

void TextAccessibleTest::readsParts()
{
    QFETCH(int, start);
    QFETCH(int, end);
    m_edit->setText(u"abc\ndef漢字"_s);
    QCOMPARE(text()->characterCount(), 9);
    QTEST(text()->text(start, end), "part");
}

/// Rows are drawn as the text before, at and behind the place, each with where it is.
void TextAccessibleTest::units_data()
{
    using enum QAccessible::TextBoundaryType;
    QTest::addColumn<QString>("content");
    QTest::addColumn<int>("boundary");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QString>("found");
    const QString lines = u"One two.  Go!\nlast"_s;
    QTest::newRow("character") << lines << int(CharBoundary) << 1 << u"0-1'O' 1-2'n' 2-3'e'"_s;
    QTest::newRow("first character") << lines << int(CharBoundary) << 0 << u"none 0-1'O' 1-2'n'"_s;
    QTest::newRow("behind the last character")
        << lines << int(CharBoundary) << 18 << u"17-18't' 18-18'' none"_s;
    QTest::newRow("end") << lines << int(CharBoundary) << -1 << u"17-18't' 18-18'' none"_s;
    QTest::newRow("cursor") << lines << int(CharBoundary) << -2 << u"3-4' ' 4-5't' 5-6'w'"_s;
    QTest::newRow("no place") << lines << int(CharBoundary) << 19 << u"none none none"_s;
    QTest::newRow("surrogate pair") << u"a\U00020B9Fb"_s << int(CharBoundary) << 2
                                    << u"0-1'a' 1-3'\U00020B9F' 3-4'b'"_s;
    QTest::newRow("combined character")
        << u"ae\u0301b"_s << int(CharBoundary) << 1 << u"0-1'a' 1-3'e\u0301' 3-4'b'"_s;
    QTest::newRow("word") << lines << int(WordBoundary) << 5 << u"3-4' ' 4-7'two' 7-8'.'"_s;
    QTest::newRow("word at a line end")
        << lines << int(WordBoundary) << 13 << u"12-13'!' 13-14'\n' 14-18'last'"_s;
    QTest::newRow("sentence") << lines << int(SentenceBoundary) << 4
                              << u"none 0-10'One two.  ' 10-14'Go!\n'"_s;
    QTest::newRow("sentence behind") << lines << int(SentenceBoundary) << 10
                                     << u"0-10'One two.  ' 10-14'Go!\n' 14-18'last'"_s;
    QTest::newRow("row") << lines << int(LineBoundary) << 3 << u"none 0-14'One two.  Go!\n' 14-18'last'"_s;
    QTest::newRow("last row") << lines << int(LineBoundary) << 18
                              << u"0-14'One two.  Go!\n' 14-18'last' none"_s;
    QTest::newRow("line") << lines << int(ParagraphBoundary) << 3
                          << u"none 0-14'One two.  Go!\n' 14-18'last'"_s;
    QTest::newRow("empty last line") << u"a\n"_s << int(ParagraphBoundary) << 2 << u"0-2'a\n' 2-2'' none"_s;
    QTest::newRow("whole") << u"a\nb"_s << int(NoBoundary) << 1 << u"none 0-3'a\nb' none"_s;
    QTest::newRow("empty text") << u""_s << int(WordBoundary) << 0 << u"none 0-0'' none"_s;
    QTest::newRow("sentence of an empty text") << u""_s << int(SentenceBoundary) << 0 << u"none 0-0'' none"_s;
}

void TextAccessibleTest::units()
{
    using Getter =
        QString (QAccessibleTextInterface::*)(int, QAccessible::TextBoundaryType, int *, int *) const;
    QFETCH(QString, content);
    QFETCH(int, boundary);
    QFETCH(int, offset);
    m_edit->setText(content);
    m_edit->setCursorPosition(0, 4);
    QStringList found;
    for (const Getter getter : { &QAccessibleTextInterface::textBeforeOffset,
             &QAccessibleTextInterface::textAtOffset, &QAccessibleTextInterface::textAfterOffset }) {
        int start = 0;
        int end = 0;
        const QString unit = (text()->*getter)(offset, QAccessible::TextBoundaryType(boundary), &start, &end);
        if (start == -1)
            QVERIFY(end == -1 && unit.isNull());
        found << (start == -1 ? u"none"_s : u"%1-%2'%3'"_s.arg(start).arg(end).arg(unit));
    }
    QTEST(found.join(u' '), "found");
}

void TextAccessibleTest::unitsOfARow()
{
    wrapAt(*m_edit, 4);
    m_edit->setText(u"xxxxyyyyzz\nend"_s);
    int start = 0;
    int end = 0;
    QCOMPARE(text()->textAtOffset(5, QAccessible::LineBoundary, &start, &end), u"yyyy"_s);
    QCOMPARE(start, 4);
    QCOMPARE(end, 8);
    QCOMPARE(text()->textAfterOffset(5, QAccessible::LineBoundary, &start, &end), u"zz\n"_s);
    QCOMPARE(text()->textAtOffset(5, QAccessible::ParagraphBoundary, &start, &end), u"xxxxyyyyzz\n"_s);
}

void TextAccessibleTest::longUnitsAreCut()
{
    constexpr int length = 10'000'000;
    m_edit->setText(QString(length, u'x'));
    QCOMPARE(text()->characterCount(), length);
    for (const auto boundary : { QAccessible::WordBoundary, QAccessible::SentenceBoundary,
             QAccessible::LineBoundary, QAccessible::ParagraphBoundary }) {
        int start = 0;
        int end = 0;
        const QString unit = text()->textAtOffset(length / 2, boundary, &start, &end);
        QCOMPARE(unit.size(), end - start);
        QVERIFY(unit.size() > 1000 && unit.size() <= TextAccessible::longestUnit);
        QVERIFY(start <= length / 2 && length / 2 < end);
    }
}

void TextAccessibleTest::hugeTextIsCut()
{
    TextStore::Builder builder(m_edit->layoutRule());
    const QByteArray block = QByteArray(999, 'x') + '\n';
    constexpr int blocks = 100'000;
    for (int i = 0; i < blocks; ++i)
        builder.append(QByteArrayView(block));
    m_edit->setText(builder.finish());
    QCOMPARE(text()->characterCount(), blocks * 1000);
    QCOMPARE(text()->text(0, text()->characterCount()).size(), TextAccessible::longestText);
    QCOMPARE(text()->text(99'999'998, 100'000'000), u"x\n"_s);
    text()->setCursorPosition(50'000'500);
    QCOMPARE(m_edit->cursorPosition(), (RowCol{ RowIndex(50'000), 500 }));
    QVERIFY(m_edit->topRow() > RowIndex(49'000));
    int start = 0;
    int end = 0;
    QCOMPARE(text()->textAtOffset(-2, QAccessible::LineBoundary, &start, &end).size(), 1000);
    QCOMPARE(start, 50'000'000);
}

void TextAccessibleTest::cursorFollows()
{
    DrawnText::load(*m_edit, u"ab\ncd|"_s);
    QCOMPARE(text()->cursorPosition(), 5);
    text()->setCursorPosition(1);
    QCOMPARE(DrawnText::draw(*m_edit), u"a|b\ncd"_s);
    text()->setCursorPosition(99);
    QCOMPARE(DrawnText::draw(*m_edit), u"ab\ncd|"_s);
    text()->setCursorPosition(-1);
    QCOMPARE(DrawnText::draw(*m_edit), u"|ab\ncd"_s);
}

void TextAccessibleTest::cursorEntersNoCharacter()
{
    m_edit->setText(u"a\U00020B9Fbe\u0301"_s);
    text()->setCursorPosition(2);
    QCOMPARE(m_edit->cursorOffset(), Offset(1));
    text()->setCursorPosition(5);
    QCOMPARE(m_edit->cursorOffset(), Offset(4));
    text()->setSelection(0, 2, 3);
    QCOMPARE(m_edit->markedText(), u"\U00020B9F"_s);
}

void TextAccessibleTest::selects()
{
    DrawnText::load(*m_edit, u"ab[cd|ef"_s);
    int start = 0;
    int end = 0;
    QCOMPARE(text()->selectionCount(), 1);
    text()->selection(0, &start, &end);
    QCOMPARE(start, 2);
    QCOMPARE(end, 4);
    text()->selection(1, &start, &end);
    QCOMPARE(end, 0);
    text()->setSelection(0, 5, 1);
    QCOMPARE(DrawnText::draw(*m_edit), u"a|bcde]f"_s);
    text()->setSelection(1, 0, 1);
    QCOMPARE(DrawnText::draw(*m_edit), u"a|bcde]f"_s);
    text()->removeSelection(0);
    QCOMPARE(text()->selectionCount(), 0);
    text()->addSelection(0, 99);
    QCOMPARE(DrawnText::draw(*m_edit), u"[abcdef|"_s);
}

void TextAccessibleTest::characterRects()
{
    m_edit->setText(u"ab\nx漢"_s);
    const auto rect = [this](int offset) {
        const QRect found = text()->characterRect(offset);
        return found.translated(-m_edit->viewport()->mapToGlobal(QPoint()));
    };
    const auto edge = [this](qint64 row, qint64 column) {
        return m_edit->hMargin() + qreal(m_edit->store().xAt({ RowIndex(row), column })) / subpixelsPerPixel;
    };
    QVERIFY(qAbs(rect(1).left() - edge(0, 1)) <= 1);
    QVERIFY(qAbs(rect(1).right() - edge(0, 2)) <= 1);
    QVERIFY(qAbs(rect(4).right() - edge(1, 2)) <= 1);
    QCOMPARE(rect(4).top(), int(m_edit->cellRect(RowIndex(1)).top()));
    QVERIFY(qAbs(rect(4).height() - m_edit->rowHeight()) <= 1);
    QVERIFY(!rect(2).isEmpty());
    QVERIFY(rect(5).left() > rect(4).left());
    QVERIFY(text()->characterRect(6).isNull());
    QVERIFY(text()->characterRect(-1).isNull());
}

void TextAccessibleTest::pointsFindCharacters()
{
    m_edit->setText(u"abc\nx漢"_s);
    for (const int offset : { 0, 1, 2, 4, 5 }) {
        const QRect rect = text()->characterRect(offset);
        QCOMPARE(text()->offsetAtPoint(rect.center() - QPoint(1, 0)), offset);
        QCOMPARE(text()->offsetAtPoint(rect.center() + QPoint(rect.width() / 2 - 1, 0)), offset);
    }
    QCOMPARE(text()->offsetAtPoint(m_edit->mapToGlobal(QPoint(-5, 5))), -1);
}

void TextAccessibleTest::scrollsToAPlace()
{
    m_edit->setText(u"line\n"_s.repeated(1000));
    text()->scrollToSubstring(2500, 2504);
    QVERIFY(m_edit->topRow() <= RowIndex(500));
    QVERIFY(m_edit->viewport()->rect().contains(m_edit->cellRect(RowIndex(500)).toRect().center()));
    QCOMPARE(m_edit->cursorOffset(), Offset(0));
}

void TextAccessibleTest::edits_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("end");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("after");
    QTest::newRow("insertion before the cursor") << u"ab|c"_s << 0 << 0 << u"X"_s << u"Xab|c"_s;
    QTest::newRow("insertion at the cursor") << u"ab|c"_s << 2 << 2 << u"XY"_s << u"abXY|c"_s;
    QTest::newRow("insertion behind the cursor") << u"a|bc"_s << 2 << 2 << u"X"_s << u"a|bXc"_s;
    QTest::newRow("insertion in selected text") << u"a[bc|d"_s << 2 << 2 << u"X"_s << u"a[bXc|d"_s;
    QTest::newRow("deletion before the cursor") << u"abc|d"_s << 0 << 2 << u""_s << u"c|d"_s;
    QTest::newRow("deletion around the cursor") << u"ab|cd"_s << 1 << 3 << u""_s << u"a|d"_s;
    QTest::newRow("reversed deletion") << u"ab|cd"_s << 3 << 1 << u""_s << u"a|d"_s;
    QTest::newRow("deletion beyond the end") << u"a|bcd"_s << 2 << 99 << u""_s << u"a|b"_s;
    QTest::newRow("replacement") << u"abcd|"_s << 1 << 3 << u"XYZ"_s << u"aXYZd|"_s;
    QTest::newRow("replacement of everything") << u"a[bc|d"_s << 0 << 4 << u"X"_s << u"|X"_s;
    QTest::newRow("half a surrogate pair") << u"a\U00020B9Fb|"_s << 1 << 2 << u""_s << u"a\U00020B9Fb|"_s;
}

void TextAccessibleTest::edits()
{
    QFETCH(QString, before);
    QFETCH(int, start);
    QFETCH(int, end);
    QFETCH(QString, text);
    DrawnText::load(*m_edit, before);
    const QString plain = m_edit->text();
    editable()->replaceText(start, end, text);
    QTEST(DrawnText::draw(*m_edit), "after");
    QVERIFY(undoSteps(m_edit->history()) <= 1);
    m_edit->undo();
    QCOMPARE(m_edit->text(), plain);
    if (text.isEmpty())
        editable()->deleteText(start, end);
    else if (start == end)
        editable()->insertText(start, text);
    else
        return;
    QFETCH(QString, after);
    QCOMPARE(m_edit->text(), after.remove(u'|').remove(u'[').remove(u']'));
}

void TextAccessibleTest::editsAreCleaned()
{
    editable()->insertText(0, u"a\r\nb\0c"_s);
    QCOMPARE(m_edit->text(), u"a\nbc"_s);
}

void TextAccessibleTest::tellsChanges_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QStringList>("heard");
    QTest::newRow("typing") << u"a|b"_s << u"'xy'"_s
                            << QStringList{ u"insert 1 'x'"_s, u"cursor 2"_s, u"insert 2 'y'"_s,
                                   u"cursor 3"_s };
    QTest::newRow("backspace") << u"ab|c"_s << u"Backspace"_s
                               << QStringList{ u"delete 1 'b'"_s, u"cursor 1"_s };
    QTest::newRow("delete") << u"a|bc"_s << u"Del"_s << QStringList{ u"delete 1 'b'"_s };
    QTest::newRow("typing over selected text")
        << u"a[bc|d"_s << u"'x'"_s
        << QStringList{ u"delete 1 'bc'"_s, u"insert 1 'x'"_s, u"cursor 2"_s, u"selected 2-2"_s };
    QTest::newRow("undo") << u"a|b"_s << u"'x' Undo"_s
                          << QStringList{ u"insert 1 'x'"_s, u"cursor 2"_s, u"delete 1 'x'"_s,
                                 u"cursor 1"_s };
    QTest::newRow("moving") << u"a|b"_s << u"Right"_s << QStringList{ u"cursor 2"_s };
    QTest::newRow("moving nowhere") << u"ab|"_s << u"Right"_s << QStringList{};
    QTest::newRow("selecting") << u"a|bc"_s << u"Shift+Right*2"_s
                               << QStringList{ u"cursor 2"_s, u"selected 1-2"_s, u"cursor 3"_s,
                                      u"selected 1-3"_s };
    QTest::newRow("selecting backwards")
        << u"ab|c"_s << u"Shift+Left"_s << QStringList{ u"cursor 1"_s, u"selected 1-2"_s };
    QTest::newRow("leaving selected text")
        << u"a[b|c"_s << u"Left"_s << QStringList{ u"cursor 1"_s, u"selected 1-1"_s };
    QTest::newRow("line break") << u"a|b"_s << u"Return"_s
                                << QStringList{ u"insert 1 '\n'"_s, u"cursor 2"_s };
}

void TextAccessibleTest::tellsChanges()
{
    QFETCH(QString, before);
    QFETCH(QString, keys);
    DrawnText::load(*m_edit, before);
    told.clear();
    DrawnText::press(*m_edit, keys);
    QTEST(told, "heard");
}

void TextAccessibleTest::tellsNewText()
{
    DrawnText::load(*m_edit, u"old|"_s);
    told.clear();
    m_edit->setText(u"new text"_s);
    QCOMPARE(told, (QStringList{ u"delete 0 'old'"_s, u"insert 0 'new text'"_s, u"cursor 0"_s }));
}

void TextAccessibleTest::tellsManyChangesAsOne()
{
    DrawnText::load(*m_edit, u"ab[cd|ef"_s);
    QInputMethodEvent event;
    event.setCommitString(u"X"_s, -1, 2);
    told.clear();
    QCoreApplication::sendEvent(m_edit.get(), &event);
    QCOMPARE(m_edit->text(), u"aXf"_s);
    QCOMPARE(
        told, (QStringList{ u"delete 1 'bcde'"_s, u"insert 1 'X'"_s, u"cursor 2"_s, u"selected 2-2"_s }));
    told.clear();
    m_edit->undo();
    QCOMPARE(told, (QStringList{ u"delete 1 'X'"_s, u"insert 1 'bcde'"_s, u"cursor 4"_s }));
}

void TextAccessibleTest::tellsTheBeginningOfMuchText()
{
    m_edit->setText(u'a' + u"\U00020B9F"_s.repeated(100'000));
    m_edit->selectAll();
    told.clear();
    m_edit->insert(u"x"_s);
    QVERIFY(told.value(0).size() < TextAccessible::longestUnit + 20);
    QVERIFY(told.value(0).isValidUtf16());
    QCOMPARE(told.value(1), u"insert 0 'x'"_s);
}

void TextAccessibleTest::tellsNothingTwice()
{
    DrawnText::load(*m_edit, u"a|b"_s);
    told.clear();
    m_edit->setCursorPosition(0, 1);
    m_edit->deselect();
    m_edit->insert(QString());
    QCOMPARE(told, QStringList());
}

void TextAccessibleTest::tellsNothingUnheard()
{
    DrawnText::load(*m_edit, u"a|b"_s);
    setHeard(false);
    told.clear();
    m_edit->insert(u"x"_s);
    m_edit->selectAll();
    m_edit->setText(u"new"_s);
    QCOMPARE(told, QStringList());
}

void TextAccessibleTest::replaysToTheSameText_data()
{
    addSeeds(5);
}

/// Whoever applies what is told to the text as it was has the text as it is.
void TextAccessibleTest::replaysToTheSameText()
{
    QFETCH(uint, seed);
    QRandomGenerator random(seed);
    static const QStringList keys{ u"'a'"_s, u"'b'"_s, u"Return"_s, u"Backspace"_s, u"Del"_s, u"Undo"_s,
        u"Redo"_s, u"Left"_s, u"Shift+Right*3"_s, u"Shift+Up"_s, u"Ctrl+Backspace"_s, u"Home"_s, u"Tab"_s,
        u"Cut"_s, u"Paste"_s, u"Copy"_s };
    m_edit->setText(u"one two\nthree\n"_s);
    QString model = m_edit->text();
    for (int step = 0; step < 400; ++step) {
        told.clear();
        DrawnText::press(*m_edit, keys[random.bounded(keys.size())]);
        for (const QString &change : std::as_const(told)) {
            const qsizetype at = change.section(u' ', 1, 1).toInt();
            const QString changed = change.section(u'\'', 1, -2);
            if (change.startsWith(u"insert"))
                model.insert(at, changed);
            if (!change.startsWith(u"delete"))
                continue;
            QCOMPARE(model.mid(at, changed.size()), changed);
            model.remove(at, changed.size());
        }
        QCOMPARE(m_edit->text(), model);
        QCOMPARE(Offset(text()->cursorPosition()), m_edit->cursorOffset());
    }
}

REGISTER_TEST(runWindowTest<TextAccessibleTest>)
#include "textaccessible_test.moc"
