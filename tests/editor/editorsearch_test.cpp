#include "editor/editorsearch.h"

#include "tests/testprogram.h"
#include "tests/widget/drawntext.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

/// Searching and replacing from the cursor of an editor, drawn before and after.
class EditorSearchTest : public QObject {
    Q_OBJECT

private slots:
    void hits_data();
    void hits();
    void replacementIsOneOperation_data();
    void replacementIsOneOperation();
    void patternIsReplaced();
};

/// What is looked for is "ab", and replaced by "xyz".
void EditorSearchTest::hits_data()
{
    QTest::addColumn<SearchDirection>("direction");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QString>("replaced");
    const auto row = [](SearchDirection direction, const char *before, const char *selected,
                         const char *replaced) {
        QTest::newRow(before) << direction << QString::fromLatin1(selected) << QString::fromLatin1(replaced);
    };
    row(SearchDirection::Forward, "|ab ab", "[ab| ab", "xyz| ab");
    row(SearchDirection::Forward, "a|b ab", "ab [ab|", "ab xyz|");
    row(SearchDirection::Forward, "[ab| ab", "ab [ab|", "ab xyz|");
    row(SearchDirection::Forward, "ab|a]b", "ab|a]b", "ab|a]b");
    row(SearchDirection::Forward, "ab [ab|", "ab [ab|", "ab [ab|");
    row(SearchDirection::Backward, "ab ab|", "ab |ab]", "ab |xyz");
    row(SearchDirection::Backward, "ab a|b ", "ab |ab] ", "ab |xyz ");
    row(SearchDirection::Backward, "ab [ab|", "|ab] ab", "|xyz ab");
    row(SearchDirection::Backward, "|ab] ab", "|ab] ab", "|ab] ab");
}

void EditorSearchTest::hits()
{
    QFETCH(SearchDirection, direction);
    const QString before = QString::fromLatin1(QTest::currentDataTag());
    QMultiLineEdit editor;
    EditorSearch search(editor);
    search.setPattern(u"ab"_s, Qt::CaseSensitive);

    QFETCH(QString, selected);
    DrawnText::load(editor, before);
    QCOMPARE(search.selectHit(direction), selected != before);
    QCOMPARE(DrawnText::draw(editor), selected);

    QFETCH(QString, replaced);
    DrawnText::load(editor, before);
    QCOMPARE(search.replaceHit(direction, u"xyz"_s), replaced != before);
    QCOMPARE(DrawnText::draw(editor), replaced);
}

void EditorSearchTest::replacementIsOneOperation_data()
{
    QTest::addColumn<SearchDirection>("direction");
    QTest::newRow("next") << SearchDirection::Forward;
    QTest::newRow("previous") << SearchDirection::Backward;
}

/// It is said once that the text has changed, and never that the hit is selected.
void EditorSearchTest::replacementIsOneOperation()
{
    QFETCH(SearchDirection, direction);
    QMultiLineEdit editor;
    EditorSearch search(editor);
    search.setPattern(u"ab"_s, Qt::CaseSensitive);
    DrawnText::load(editor, direction == SearchDirection::Forward ? u"|1ab2"_s : u"1ab2|"_s);
    const QSignalSpy changed(&editor, &QMultiLineEdit::textChanged);
    const QSignalSpy copyable(&editor, &QMultiLineEdit::copyAvailable);
    QVERIFY(search.replaceHit(direction, u"x"_s));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(copyable.count(), 0);
    editor.undo();
    QCOMPARE(editor.text(), u"1ab2"_s);
    QVERIFY(!editor.history().canUndo());
}

void EditorSearchTest::patternIsReplaced()
{
    QMultiLineEdit editor;
    EditorSearch search(editor);
    DrawnText::load(editor, u"|b B a A"_s);
    QVERIFY(!search.selectHit(SearchDirection::Forward));
    search.setPattern(u"A"_s, Qt::CaseSensitive);
    QVERIFY(search.selectHit(SearchDirection::Forward));
    QCOMPARE(DrawnText::draw(editor), u"b B a [A|"_s);
    search.setPattern(u"A"_s, Qt::CaseInsensitive);
    QVERIFY(search.selectHit(SearchDirection::Backward));
    QCOMPARE(DrawnText::draw(editor), u"b B |a] A"_s);
    search.setPattern(u"B"_s, Qt::CaseInsensitive);
    QVERIFY(search.selectHit(SearchDirection::Backward));
    QCOMPARE(DrawnText::draw(editor), u"b |B] a A"_s);
}

REGISTER_TEST(runWindowTest<EditorSearchTest>)
#include "editorsearch_test.moc"
