#include "widget/inputcomposer.h"

#include "tests/testprogram.h"
#include "tests/widget/inputparts.h"

#include <QInputMethod>
#include <QSignalSpy>
#include <QTextCharFormat>

#include <private/qinputmethod_p.h>
#include <qpa/qplatforminputcontext.h>

using namespace Qt::StringLiterals;

namespace {

using Attribute = QInputMethodEvent::Attribute;

QInputMethodEvent composing(const QString &text, const QList<Attribute> &attributes = {})
{
    return { text, attributes };
}

void commit(InputParts &parts, const QString &text, int from = 0, int length = 0)
{
    QInputMethodEvent event;
    event.setCommitString(text, from, length);
    parts.composer.compose(event);
}

/// An input method that does not know that it is to commit, and commits when it is told to forget.
class Stubborn : public QPlatformInputContext {
public:
    Stubborn(QWidget &editor, const QString &text)
        : m_editor(editor)
        , m_text(text)
    {
        QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = this;
    }
    ~Stubborn() override { QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = nullptr; }
    Q_DISABLE_COPY_MOVE(Stubborn)
    bool isValid() const override { return true; }
    void reset() override
    {
        QInputMethodEvent event;
        event.setCommitString(m_text);
        QCoreApplication::sendEvent(&m_editor, &event);
    }

private:
    QWidget &m_editor;
    const QString m_text;
};

} // namespace

/// An input method and a text, without an editor between them.
class InputComposerTest : public QObject {
    Q_OBJECT

private slots:
    void composedTextIsNotInTheDocument();
    void theCursorStandsInComposedText_data();
    void theCursorStandsInComposedText();
    void committedTextIsAStep();
    void textAroundTheCursorIsReplaced();
    void nothingIsNoEdit();
    void anInputMethodThatDoesNotAnswerLosesNothing();
    void whatItCommitsAfterwardsIsNotWrittenTwice();
    void selectsInWhatItWasShown();
    void showsAPartOfALongLine_data();
    void showsAPartOfALongLine();
    void showsWholeCharacters();
    void showsTheLineAlone();
    void answersAsMuchAsIsWanted();
};

void InputComposerTest::composedTextIsNotInTheDocument()
{
    InputParts parts(u"ab"_s);
    parts.setCursor(1);
    const Attribute format(QInputMethodEvent::TextFormat, 0, 1, QTextCharFormat());
    QVERIFY(parts.composer.compose(composing(u"かな"_s, { format })));
    QVERIFY(parts.composer.isComposing());
    QCOMPARE(parts.text(), u"ab"_s);
    QCOMPARE(parts.preedit.text, u"かな"_s);
    QCOMPARE(parts.preedit.formats.size(), 1);
    QVERIFY(parts.composer.compose(composing({})));
    QVERIFY(!parts.composer.isComposing());
    QVERIFY(parts.preedit.formats.isEmpty());
    QVERIFY(!parts.document.isEdited());
}

void InputComposerTest::theCursorStandsInComposedText_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<bool>("isVisible");
    QTest::newRow("|かな") << 0 << 1 << 0 << true;
    QTest::newRow("か|な") << 1 << 1 << 1 << true;
    QTest::newRow("hidden") << 1 << 0 << 1 << false;
    QTest::newRow("far behind") << 9 << 1 << 2 << true;
    QTest::newRow("before its start") << -1 << 1 << 0 << true;
}

void InputComposerTest::theCursorStandsInComposedText()
{
    QFETCH(int, place);
    QFETCH(int, length);
    InputParts parts(u"ab"_s);
    parts.composer.compose(composing(u"かな"_s, { { QInputMethodEvent::Cursor, place, length, {} } }));
    QTEST(parts.preedit.cursor, "cursor");
    QTEST(parts.preedit.cursorVisible, "isVisible");
}

void InputComposerTest::committedTextIsAStep()
{
    InputParts parts(u""_s);
    parts.edits.type(u"a"_s);
    parts.composer.compose(composing(u"か"_s));
    commit(parts, u"火"_s);
    QCOMPARE(parts.drawn(), u"a火|"_s);
    QVERIFY(!parts.composer.isComposing());
    parts.edits.undo();
    QCOMPARE(parts.drawn(), u"a|"_s);
    // What was not composed is typing like any other.
    commit(parts, u"b"_s);
    commit(parts, u"c"_s);
    parts.edits.undo();
    QCOMPARE(parts.drawn(), u"a|"_s);
}

void InputComposerTest::textAroundTheCursorIsReplaced()
{
    InputParts parts(u"abcd"_s);
    parts.setCursor(2);
    commit(parts, u"X"_s, -1, 2);
    QCOMPARE(parts.drawn(), u"aX|d"_s);
    parts.edits.undo();
    QCOMPARE(parts.text(), u"abcd"_s);
}

void InputComposerTest::nothingIsNoEdit()
{
    InputParts parts(u"[ab"_s);
    parts.select(0, 2);
    QSignalSpy changed(&parts.document, &TextDocument::changed);
    QVERIFY(parts.composer.compose(QInputMethodEvent()));
    parts.composer.commit();
    QVERIFY(changed.isEmpty());
    QVERIFY(parts.cursor.hasSelection());
}

/// The platform of this test has none that could.
void InputComposerTest::anInputMethodThatDoesNotAnswerLosesNothing()
{
    InputParts parts(u"ab"_s);
    const Passing passing(parts);
    parts.setCursor(1);
    parts.composer.compose(composing(u"かな"_s));
    parts.composer.commit();
    QCOMPARE(parts.drawn(), u"aかな|b"_s);
    QVERIFY(!parts.composer.isComposing());
    parts.composer.commit();
    QCOMPARE(parts.text(), u"aかなb"_s);
}

void InputComposerTest::whatItCommitsAfterwardsIsNotWrittenTwice()
{
    InputParts parts(u"ab"_s);
    const Passing passing(parts);
    const Stubborn inputMethod(parts.editor, u"かな"_s);
    parts.setCursor(1);
    parts.composer.compose(composing(u"かな"_s));
    parts.composer.commit();
    QCOMPARE(parts.drawn(), u"aかな|b"_s);
    commit(parts, u"x"_s); // it is heard again
    QCOMPARE(parts.drawn(), u"aかなx|b"_s);
}

void InputComposerTest::selectsInWhatItWasShown()
{
    InputParts parts(u"before\nabcdef"_s);
    parts.setCursor(9);
    parts.composer.compose(composing({}, { { QInputMethodEvent::Selection, 1, 3, {} } }));
    QCOMPARE(parts.drawn(), u"before\na[bcd|ef"_s);
    parts.composer.compose(composing({}, { { QInputMethodEvent::Selection, 4, -2, {} } }));
    QCOMPARE(parts.drawn(), u"before\nab|cd]ef"_s);
    parts.composer.compose(composing({}, { { QInputMethodEvent::Selection, -5, 100, {} } }));
    QCOMPARE(parts.drawn(), u"before\n[abcdef|"_s);
}

void InputComposerTest::showsAPartOfALongLine_data()
{
    QTest::addColumn<qint64>("cursor");
    QTest::addColumn<qint64>("length");
    QTest::addColumn<int>("cursorInside");
    QTest::newRow("start") << 0LL << 1024LL << 0;
    QTest::newRow("near the start") << 10LL << 1034LL << 10;
    QTest::newRow("middle") << 5000LL << 2048LL << 1024;
    QTest::newRow("end") << 10000LL << 1024LL << 1024;
}

void InputComposerTest::showsAPartOfALongLine()
{
    QFETCH(qint64, cursor);
    InputParts parts(u"x"_s.repeated(10000));
    parts.setCursor(cursor);
    QTEST(qint64(parts.composer.answer(Qt::ImSurroundingText, {}).toString().size()), "length");
    QTEST(parts.composer.answer(Qt::ImCursorPosition, {}).toInt(), "cursorInside");
    QCOMPARE(parts.composer.answer(Qt::ImAbsolutePosition, {}).toLongLong(), cursor);
}

void InputComposerTest::showsWholeCharacters()
{
    InputParts parts(u"𠮟"_s.repeated(3000));
    for (const qint64 cursor : { 2000, 2002, 3998 }) {
        parts.setCursor(cursor);
        const QString shown = parts.composer.answer(Qt::ImSurroundingText, {}).toString();
        QVERIFY(shown.startsWith(u"𠮟"_s) && shown.endsWith(u"𠮟"_s));
    }
    InputParts odd(u"x"_s + u"𠮟"_s.repeated(3000));
    odd.setCursor(2001);
    const QString shown = odd.composer.answer(Qt::ImSurroundingText, {}).toString();
    QVERIFY(shown.startsWith(u"𠮟"_s) && shown.endsWith(u"𠮟"_s));
    InputParts half(u"𠮟"_s.repeated(1000) + u"x"_s + u"𠮟"_s.repeated(1000));
    half.setCursor(2001);
    QVERIFY(half.composer.answer(Qt::ImSurroundingText, {}).toString().startsWith(u"𠮟"_s));
}

void InputComposerTest::showsTheLineAlone()
{
    InputParts parts(u"one\ntwo\nthree"_s);
    parts.select(5, 6);
    QCOMPARE(parts.composer.answer(Qt::ImSurroundingText, {}).toString(), u"two"_s);
    QCOMPARE(parts.composer.answer(Qt::ImCursorPosition, {}).toInt(), 2);
    QCOMPARE(parts.composer.answer(Qt::ImAnchorPosition, {}).toInt(), 1);
    QCOMPARE(parts.composer.answer(Qt::ImCurrentSelection, {}).toString(), u"w"_s);
    parts.select(0, 6); // from before what is shown
    QCOMPARE(parts.composer.answer(Qt::ImAnchorPosition, {}).toInt(), 0);
    QCOMPARE(parts.composer.answer(Qt::ImCurrentSelection, {}).toString(), u"one\ntw"_s);
}

void InputComposerTest::answersAsMuchAsIsWanted()
{
    InputParts parts(u"abcdef"_s);
    parts.setCursor(3);
    const InputComposer &composer = parts.composer;
    QCOMPARE(composer.answer(Qt::ImTextBeforeCursor, {}).toString(), u"abc"_s);
    QCOMPARE(composer.answer(Qt::ImTextBeforeCursor, 2).toString(), u"bc"_s);
    QCOMPARE(composer.answer(Qt::ImTextBeforeCursor, 9).toString(), u"abc"_s);
    QCOMPARE(composer.answer(Qt::ImTextAfterCursor, 2).toString(), u"de"_s);
    QCOMPARE(composer.answer(Qt::ImTextAfterCursor, -1).toString(), QString());
    QCOMPARE(composer.answer(Qt::ImCursorPosition, parts.at(5)).toInt(), 5);
    QVERIFY(!composer.answer(Qt::ImPreferredLanguage, {}).isValid());
}

REGISTER_TEST(runWindowTest<InputComposerTest>)
#include "inputcomposer_test.moc"
