#include "tests/testprogram.h"
#include "widget/preedit.h"
#include "widget/rowformat.h"
#include "widget/textcursor.h"
#include "widget/textview.h"

using namespace Qt::StringLiterals;

namespace {

/// A view of a text, without an editor.
struct Shown {
    explicit Shown(const QString &text)
    {
        viewport.resize(300, 200);
        format.setFont(viewport.font(), viewport.devicePixelRatioF());
        TextStore::Builder builder(format.layoutRule());
        builder.append(text);
        store = builder.finish();
        view.updateLast();
    }

    QWidget viewport;
    RowFormat format;
    TextStore store;
    TextCursor cursor{ store };
    Preedit preedit;
    TextView view{ viewport, store, format, cursor, preedit };
};

} // namespace

/// Which part of a text is shown, and where its places stand.
class TextViewTest : public QObject {
    Q_OBJECT

private slots:
    void goesAsFarAsThereIsText();
    void rowsStandBelowOneAnother();
    void placesAreFoundWhereTheyStand();
    void selectedColumns_data();
    void selectedColumns();
    void composedTextMovesWhatIsBehind();
};

void TextViewTest::goesAsFarAsThereIsText()
{
    Shown shown(u"x\n"_s.repeated(99));
    TextView &view = shown.view;
    QCOMPARE(view.lastTop(), RowIndex(100 - view.visibleRows()));
    QCOMPARE(view.lastLeft(), 0);
    view.setTop(RowIndex(1000));
    QCOMPARE(view.top(), view.lastTop());
    view.setTop(RowIndex(-1));
    QCOMPARE(view.top(), RowIndex(0));
    view.setLeft(5);
    QCOMPARE(view.left(), 0);

    Shown wide(u"x"_s.repeated(1000));
    QCOMPARE(wide.view.lastTop(), RowIndex(0));
    QVERIFY(qreal(wide.view.lastLeft()) > 1000 * wide.format.measure().xWidth() - 300);
    QCOMPARE(wide.view.cellWidth(), wide.view.lastLeft() + 300);
}

void TextViewTest::rowsStandBelowOneAnother()
{
    Shown shown(u"x\n"_s.repeated(99));
    shown.view.setTop(RowIndex(10));
    for (const RowIndex row : { RowIndex(3), RowIndex(10), RowIndex(11), RowIndex(40) }) {
        const QRectF cell = shown.view.cellRect(row);
        QCOMPARE(cell.top(), qreal(row - RowIndex(10)) * shown.view.rowHeight());
        QCOMPARE(shown.view.rowAt(cell.center().y()), row);
    }
    shown.cursor.set({ Offset(20) });
    QVERIFY(shown.view.isCursorRowVisible(200));
    shown.cursor.set({ Offset(18) });
    QVERIFY(!shown.view.isCursorRowVisible(200));
}

void TextViewTest::placesAreFoundWhereTheyStand()
{
    Shown shown(u"one\ttwo\nth\u304bee"_s);
    for (Offset offset; offset <= shown.store.end(); ++offset) {
        shown.cursor.set({ offset });
        QCOMPARE(shown.view.placeAt(shown.view.cursorBox().center()).offset, offset);
        QCOMPARE(shown.view.cursorX(), shown.view.xOf(shown.cursor.position()));
    }
    QCOMPARE(shown.view.placeAt({ -50, -50 }).offset, Offset(0));
    QCOMPARE(shown.view.placeAt({ 290, 190 }).offset, shown.store.end());
}

void TextViewTest::selectedColumns_data()
{
    QTest::addColumn<qint64>("anchor");
    QTest::addColumn<qint64>("cursor");
    QTest::addColumn<QString>("composed");
    QTest::addColumn<QString>("columns");
    QTest::newRow("nothing") << 1LL << 1LL << QString() << u"- -"_s;
    QTest::newRow("in a row") << 1LL << 2LL << QString() << u"1-2 -"_s;
    QTest::newRow("with a line end") << 1LL << 4LL << QString() << u"1-4 -"_s;
    QTest::newRow("of two rows") << 5LL << 1LL << QString() << u"1-4 0-1"_s;
    QTest::newRow("behind composed text") << 2LL << 1LL << u"xx"_s << u"1-4 -"_s;
    QTest::newRow("before composed text") << 1LL << 2LL << u"xx"_s << u"1-2 -"_s;
}

/// Of "abc" and "def".
void TextViewTest::selectedColumns()
{
    QFETCH(qint64, anchor);
    QFETCH(qint64, cursor);
    QFETCH(QString, composed);
    Shown shown(u"abc\ndef"_s);
    shown.cursor.set({ Offset(cursor) }, { Offset(anchor) });
    shown.preedit.text = composed;
    QStringList found;
    for (const qint64 row : { 0, 1 }) {
        const auto columns = shown.view.selectedInRow(RowIndex(row));
        found << (columns ? u"%1-%2"_s.arg(columns->begin).arg(columns->end) : u"-"_s);
    }
    QTEST(found.join(u' '), "columns");
}

void TextViewTest::composedTextMovesWhatIsBehind()
{
    Shown shown(u"abc"_s);
    shown.cursor.set({ Offset(1) });
    const qreal before = shown.view.xOf({ RowIndex(0), 1 });
    const qreal behind = shown.view.xOf({ RowIndex(0), 2 });
    shown.preedit.text = u"xx"_s;
    shown.preedit.cursor = 1;
    const qreal x = shown.format.measure().xWidth();
    QCOMPARE(shown.view.xOf({ RowIndex(0), 1 }), before);
    QCOMPARE(shown.view.xOf({ RowIndex(0), 2 }), behind + 2 * x);
    QCOMPARE(shown.view.cursorX(), before + x);
    QCOMPARE(shown.view.composedInRow(RowIndex(0)).column, 1);
    QCOMPARE(shown.view.placeAtX(RowIndex(0), before + x).offset, Offset(1));
}

REGISTER_TEST(runWindowTest<TextViewTest>)
#include "textview_test.moc"
