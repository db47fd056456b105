#include "editor/indentation.h"
#include "tests/testprogram.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The lines of a block, moved by a tab.
class IndentationTest : public QObject {
    Q_OBJECT

private slots:
    void lines_data();
    void lines();
    void linesOfManyLeaves();
    void linesOfSeveralParts();
    void spellingsStay();
};

namespace {

TextStore storeOfText(const QString &text, const NodeSizes &sizes = {})
{
    TextStore::Builder builder({}, sizes);
    builder.append(text);
    return builder.finish();
}

QString textOfPiece(const TextPiece &piece)
{
    return piece.text();
}

} // namespace

/// What is between "[" and "]" of a text is the block.
void IndentationTest::lines_data()
{
    QTest::addColumn<QString>("drawing");
    QTest::addColumn<QString>("in");
    QTest::addColumn<QString>("out");
    const auto row = [](const QString &drawing, const QString &in, const QString &out) {
        QTest::addRow("%s", qPrintable(QString(drawing).replace(u'\n', u'/').replace(u'\t', u'>')))
            << drawing << in << out;
    };
    row(u"[a]"_s, u"\ta"_s, u"a"_s);
    row(u"[\ta\n\t\tb]"_s, u"\t\ta\n\t\t\tb"_s, u"a\n\tb"_s);
    row(u"[a\n\nb\n]"_s, u"\ta\n\n\tb\n"_s, u"a\n\nb\n"_s);
    row(u"a[b\n\tc]d"_s, u"b\n\t\tc"_s, u"b\nc"_s);
    row(u"a[\tb]"_s, u"\tb"_s, u"\tb"_s);
    row(u"a\n[\tb\n]c"_s, u"\t\tb\n"_s, u"b\n"_s);
    row(u"[\t]"_s, u"\t\t"_s, u""_s);
    row(u"[\t\n\n]"_s, u"\t\t\n\n"_s, u"\n\n"_s);
    row(u"[ a]"_s, u"\t a"_s, u" a"_s);
    row(u"[\t漢\n字]"_s, u"\t\t漢\n\t字"_s, u"漢\n字"_s);
    row(u"a[]b"_s, u""_s, u""_s);
}

void IndentationTest::lines()
{
    QFETCH(QString, drawing);
    const TextRange block = { Offset(drawing.indexOf(u'[')), Offset(drawing.indexOf(u']') - 1) };
    const TextStore store = storeOfText(drawing.remove(u'[').remove(u']'));
    QTEST(textOfPiece(indented(store, block, Indentation::In)), "in");
    QTEST(textOfPiece(indented(store, block, Indentation::Out)), "out");
}

/// A leaf may end anywhere in a line.
void IndentationTest::linesOfManyLeaves()
{
    const QString line = u"one 漢字\n"_s;
    const TextStore store = storeOfText(line.repeated(50), { .leafUnits = 4, .children = 4 });
    const QString moved = textOfPiece(indented(store, { {}, store.end() }, Indentation::In));
    QCOMPARE(moved, (u'\t' + line).repeated(50));
    const TextStore further = storeOfText(moved, { .leafUnits = 4, .children = 4 });
    QCOMPARE(textOfPiece(indented(further, { {}, further.end() }, Indentation::Out)), line.repeated(50));
}

/// They are made by several threads; where they begin says nothing of lines.
void IndentationTest::linesOfSeveralParts()
{
    const QString line = u"one 漢字\n"_s;
    constexpr qsizetype lines = 160'000;
    TextStore store = storeOfText(line.repeated(lines));
    store.exchange({}, store.length(), indented(store, { {}, store.end() }, Indentation::In));
    store.checkInvariants();
    QVERIFY(store.text() == (u'\t' + line).repeated(lines));
    store.exchange({}, store.length(), indented(store, { {}, store.end() }, Indentation::Out));
    QVERIFY(store.text() == line.repeated(lines));
}

void IndentationTest::spellingsStay()
{
    TextStore::Builder builder(LayoutRule{});
    builder.append(u"a\n");
    builder.spell("\xFA\x4A");
    builder.append(u"Ⅰ");
    const TextStore store = builder.finish();
    TextStore moved;
    moved.insert(Offset(0), indented(store, { {}, store.end() }, Indentation::In));
    QCOMPARE(moved.text(), u"\ta\n\tⅠ"_s);
    QVERIFY(!moved.spelledChunkAt(Offset(0)).spelling);
    QCOMPARE(moved.spelledChunkAt(Offset(4)).spelling, QByteArrayView("\xFA\x4A"));
}

REGISTER_TEST(runPlainTest<IndentationTest>)
#include "indentation_test.moc"
