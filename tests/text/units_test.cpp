#include "tests/testprogram.h"
#include "text/textstore.h"

#include <type_traits>
#include <utility>

namespace {

/// What must not compile: a place of one kind where another one, or a plain number, is meant.
template <typename Place, typename Other>
constexpr bool isApart =
    !std::is_convertible_v<Place,
        Other> && !std::is_convertible_v<Other, Place> && !std::is_constructible_v<Place, Other> && !std::is_assignable_v<Place &, Other>;

static_assert(isApart<Offset, RowIndex>);
static_assert(isApart<Offset, LineIndex>);
static_assert(isApart<RowIndex, LineIndex>);

template <typename Place>
constexpr bool isNoNumber =
    !std::is_convertible_v<Place,
        qint64> && !std::is_constructible_v<qint64, Place> && !std::is_convertible_v<qint64, Place> && !std::is_assignable_v<Place &, qint64>;

static_assert(isNoNumber<Offset> && isNoNumber<RowIndex> && isNoNumber<LineIndex>);

template <typename Left, typename Right>
concept Comparable = requires(Left left, Right right)
{
    left < right;
};
template <typename Left, typename Right>
concept Subtractable = requires(Left left, Right right)
{
    left - right;
};
template <typename Left, typename Right>
concept Addable = requires(Left left, Right right)
{
    left + right;
};

static_assert(Comparable<Offset, Offset> && !Comparable<Offset, RowIndex> && !Comparable<Offset, qint64>);
static_assert(Subtractable<Offset, Offset> && !Subtractable<Offset, LineIndex>);
static_assert(Addable<Offset, qint64> && !Addable<Offset, Offset> && !Addable<qint64, Offset>);

template <typename Place>
concept Asked = requires(const TextStore &store, Place place)
{
    store.row(place);
};
template <typename Place>
concept Read = requires(const TextStore &store, Place place)
{
    store.at(place);
};

static_assert(Asked<RowIndex> && !Asked<Offset> && !Asked<LineIndex> && !Asked<qint64>);
static_assert(Read<Offset> && !Read<RowIndex> && !Read<LineIndex> && !Read<qint64>);

// They cost what a plain number costs.
static_assert(std::is_trivially_copyable_v<Offset> && sizeof(Offset) == sizeof(qint64));

} // namespace

/// Places in a text, each counted in its own unit.
class UnitsTest : public QObject {
    Q_OBJECT

private slots:
    void placesMoveByPlainNumbers();
    void distancesArePlainNumbers();
    void rangesHaveLengths();
};

void UnitsTest::placesMoveByPlainNumbers()
{
    RowIndex row(5);
    QCOMPARE((row + 2).value(), 7);
    QCOMPARE((row - 2).value(), 3);
    ++row;
    row += 10;
    QCOMPARE(row.value(), 16);
    --row;
    row -= 5;
    QCOMPARE(row.value(), 10);
    QVERIFY(RowIndex() < row && RowIndex(10) == row);
}

void UnitsTest::distancesArePlainNumbers()
{
    static_assert(std::is_same_v<decltype(Offset(7) - Offset(3)), qint64>);
    QCOMPARE(Offset(7) - Offset(3), 4);
    QCOMPARE(Offset(3) - Offset(7), -4);
}

void UnitsTest::rangesHaveLengths()
{
    QCOMPARE((TextRange{ Offset(2), Offset(7) }).length(), 5);
    QVERIFY((TextRange{ Offset(2), Offset(2) }).isEmpty());
    QVERIFY(!(TextRange{ Offset(2), Offset(3) }).isEmpty());
}

REGISTER_TEST(runPlainTest<UnitsTest>)
#include "units_test.moc"
