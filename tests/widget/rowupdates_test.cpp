#include "rows/rowlayout.h"
#include "tests/testprogram.h"
#include "tests/widget/viewparts.h"

#include <QPaintEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

using Rows = QList<qint64>;

/// Paints a view by its RowUpdates alone, and notes which rows had to be drawn.
struct PaintedView : ViewParts {
    explicit PaintedView(const QString &text)
        : ViewParts(text)
        , screen(viewport.size() * viewport.devicePixelRatioF())
    {
        screen.setDevicePixelRatio(viewport.devicePixelRatioF());
        screen.fill(Qt::red);
        view.updateLast();
    }

    Rows paint(const QRegion &area)
    {
        Rows drawn;
        QPainter painter(&screen);
        updates.paint(painter, area, Qt::white, [&](RowIndex row, const QRectF &cell, const QRect &update) {
            drawn << row.value();
            QVERIFY(cell.contains(QRectF(update).center()));
            updates.takePicture(row);
            updates.rowPainted(layoutOf(row));
        });
        return drawn;
    }
    bool show()
    {
        verticalBar.hide();
        horizontalBar.hide();
        viewport.setAttribute(Qt::WA_OpaquePaintEvent);
        editor.resize(viewport.size());
        editor.show();
        const bool isShown = QTest::qWaitForWindowExposed(&editor);
        QCoreApplication::processEvents();
        return isShown;
    }
    Rows paintAll() { return paint(viewport.rect()); }
    /// As the toolkit paints what an edit or a moved view has asked for.
    Rows goDown(qint64 rows)
    {
        view.setTop(view.top() + rows);
        updates.viewMoved(rows);
        return paintAll();
    }
    RowLayout layoutOf(RowIndex row) const
    {
        return { document.store(), row, format.measure(), 0, qreal(viewport.width()) };
    }
    QRect areaOfSlots(qint64 first, qint64 count) const
    {
        const qreal height = view.rowHeight();
        return QRectF(0, qreal(first) * height + 1, 50, qreal(count) * height - 2).toAlignedRect();
    }
    QColor colorAt(qreal y) const
    {
        return screen.toImage().pixelColor(QPoint(5, qFloor(y * viewport.devicePixelRatioF())));
    }

    QPixmap screen;
};

Rows rowsFrom(qint64 first, qint64 last)
{
    Rows rows;
    for (qint64 row = first; row <= last; ++row)
        rows << row;
    return rows;
}

/// What a widget is asked to paint.
class PaintedArea : public QObject {
public:
    explicit PaintedArea(QWidget &widget) { widget.installEventFilter(this); }
    QRegion take() { return std::exchange(m_area, {}); }
    bool isEmpty() const { return m_area.isEmpty(); }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            m_area += static_cast<QPaintEvent *>(event)->region();
        return event->type() == QEvent::Paint;
    }

private:
    QRegion m_area;
};

} // namespace

/// Which rows are painted anew.
class RowUpdatesTest : public QObject {
    Q_OBJECT

private slots:
    void anAreaIsItsRows();
    void belowTheTextIsBackground();
    void rowsThatStayAreNotDrawnAtAFractionalScale();
    void toldRowsAreDrawn_data();
    void toldRowsAreDrawn();
    void whatNobodyAskedForIsDrawn();
    void anotherViewTakesThePictures();
    void repaintsAreAskedForWhereRowsAre();
    void movedShortRowsAreNotPaintedOverTheWholeWidth();
};

void RowUpdatesTest::anAreaIsItsRows()
{
    PaintedView parts(u"x\n"_s.repeated(99));
    QCOMPARE(parts.paint(parts.areaOfSlots(2, 3)), rowsFrom(2, 4));
    QCOMPARE(parts.paint(QRegion(parts.areaOfSlots(0, 1)) + parts.areaOfSlots(3, 1)), (Rows{ 0, 3 }));
    parts.view.setTop(RowIndex(50));
    QCOMPARE(parts.paint(parts.areaOfSlots(1, 1)), Rows{ 51 });
}

void RowUpdatesTest::belowTheTextIsBackground()
{
    PaintedView parts(u"x\nx"_s);
    QCOMPARE(parts.paintAll(), rowsFrom(0, 1));
    const qreal end = 2 * parts.view.rowHeight();
    QCOMPARE(parts.colorAt(end - 2), QColor(Qt::red)); // the rows are for who draws them
    QCOMPARE(parts.colorAt(end + 2), QColor(Qt::white));
    QCOMPARE(parts.colorAt(parts.viewport.height() - 1), QColor(Qt::white));
}

void RowUpdatesTest::rowsThatStayAreNotDrawnAtAFractionalScale()
{
    PaintedView parts(u"x\n"_s.repeated(99));
    const qint64 last = parts.view.rowAt(parts.viewport.height()).value();
    QVERIFY(parts.paintAll().size() >= last);
    const Rows drawn = parts.goDown(1);
    if (parts.view.isScaleWhole())
        QVERIFY(drawn.size() >= last); // there the toolkit moves what it has, and asks for less
    else
        QCOMPARE(drawn, Rows{ last + 1 });
}

void RowUpdatesTest::toldRowsAreDrawn_data()
{
    QTest::addColumn<std::function<void(PaintedView &)>>("tell");
    QTest::addColumn<Rows>("drawn");
    using Tell = std::function<void(PaintedView &)>;
    QTest::newRow("one") << Tell([](PaintedView &p) { p.updates.updateRow(RowIndex(3)); }) << Rows{ 3 };
    QTest::newRow("some") << Tell([](PaintedView &p) { p.updates.updateRows(RowIndex(2), RowIndex(4)); })
                          << rowsFrom(2, 4);
    QTest::newRow("the cursor's") << Tell([](PaintedView &p) {
        p.setCursor(8);
        p.updates.updateCursorRow();
    }) << Rows{ 4 };
    QTest::newRow("the selection's") << Tell([](PaintedView &p) {
        p.select(9, 4);
        p.updates.updateSelection();
    }) << rowsFrom(2, 4);
    QTest::newRow("no selection") << Tell([](PaintedView &p) {
        p.setCursor(8);
        p.updates.updateSelection();
    }) << Rows();
}

/// At every scale they are asked for; where pictures are kept, theirs are not good any more.
void RowUpdatesTest::toldRowsAreDrawn()
{
    QFETCH(std::function<void(PaintedView &)>, tell);
    QFETCH(Rows, drawn);
    PaintedView parts(u"x\n"_s.repeated(99));
    parts.paintAll();
    tell(parts);
    if (parts.view.isScaleWhole())
        return;
    const qint64 last = parts.view.rowAt(parts.viewport.height()).value();
    QCOMPARE(parts.goDown(1), drawn + Rows{ last + 1 });
}

/// As when the desktop's colours change.
void RowUpdatesTest::whatNobodyAskedForIsDrawn()
{
    PaintedView parts(u"x\n"_s.repeated(99));
    const Rows all = parts.paintAll();
    QCOMPARE(parts.paintAll(), all);
    parts.updates.updateAll();
    QCOMPARE(parts.goDown(1).size(), all.size());
}

void RowUpdatesTest::anotherViewTakesThePictures()
{
    PaintedView parts(u"x\n"_s.repeated(99));
    PaintedView other(u"y\n"_s.repeated(99));
    const Rows all = parts.paintAll();
    other.paintAll();
    QCOMPARE(parts.goDown(1).size(), all.size());
}

void RowUpdatesTest::repaintsAreAskedForWhereRowsAre()
{
    PaintedView parts(u"x\n"_s.repeated(99));
    QVERIFY(parts.show());
    PaintedArea painted(parts.viewport);

    parts.updates.updateRow(RowIndex(2));
    parts.updates.updateRow(RowIndex(2));
    QTRY_VERIFY(!painted.isEmpty());
    const QRect row = painted.take().boundingRect();
    const qreal height = parts.view.rowHeight();
    QVERIFY(row.top() <= 2 * height && row.top() >= 2 * height - 2);
    QVERIFY(row.bottom() + 1 >= 3 * height && row.bottom() <= 3 * height + 1);
    QCOMPARE(row.width(), parts.viewport.width());

    // Those above and below the view do nothing, and rows are cut at its end.
    parts.view.setTop(RowIndex(10));
    parts.updates.updateRow(RowIndex(9));
    parts.updates.updateRow(RowIndex(90));
    QCoreApplication::processEvents();
    QVERIFY(painted.isEmpty());
    parts.updates.updateRows(RowIndex(0), RowIndex(10));
    QTRY_VERIFY(!painted.isEmpty());
    QVERIFY(painted.take().boundingRect().height() <= height + 3);
    // However many they are, it costs what the view shows of them.
    parts.updates.updateRows(RowIndex(10), RowIndex(qint64{ 1 } << 50));
    QTRY_VERIFY(!painted.isEmpty());
}

/// What is right of a short row is background before and after.
void RowUpdatesTest::movedShortRowsAreNotPaintedOverTheWholeWidth()
{
    PaintedView parts(u"x\n"_s.repeated(5) + u"x"_s.repeated(99) + u"\nx"_s.repeated(99));
    parts.setCursor(parts.document.store().length()); // the cursor's row may show more
    QVERIFY(parts.show());
    parts.paintAll();
    PaintedArea painted(parts.viewport);
    parts.view.setTop(RowIndex(1));
    parts.updates.viewMoved(1);
    QTRY_VERIFY(!painted.isEmpty());
    const QRegion area = painted.take();
    const auto right = [&parts](int slot) {
        return QPoint(parts.viewport.width() - 5, qFloor(parts.view.rowHeight() * (slot + 0.5)));
    };
    QVERIFY(!area.contains(right(0)) && !area.contains(right(3)) && !area.contains(right(6)));
    if (parts.view.isScaleWhole())
        return; // there it is moved
    QVERIFY(area.contains(QPoint(5, 5)));
    QVERIFY(area.contains(right(4)) && area.contains(right(5)));
}

REGISTER_TEST(runWindowTest<RowUpdatesTest>)
#include "rowupdates_test.moc"
