#include "app/qpeapplicationesc.h"
#include "app/textfreeing.h"
#include "platform/requesthold.h"
#include "tests/testprogram.h"
#include "tests/text/storecompare.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Counts how often memory is given back.
struct Freeing {
    int given = 0;
    TextFreeing texts{ [this] { ++given; } };
};

/// Longer than what is freed at once, and shorter than a portion.
void freeLongText()
{
    TextStore store;
    store.replace({}, 0, u"0123456789ABCDEF"_s.repeated(500'000));
}

/// Of some portions.
void freeManyNodes()
{
    const TextStore store = storeOf(u"abcdefgh"_s.repeated(40'000), {}, nodesOf(4));
}
constexpr int fewestPortions = 3;

} // namespace

class TextFreeingTest : public QObject {
    Q_OBJECT

private slots:
    void longTextIsFreedAndGivenBack();
    void muchIsGivenBackInPortions();
    void turnFreesOrGivesBack();
    void portionsAreGivenBackAmidReplacements();
    void manyDocumentsAreGivenBackAtOnce();
    void littleIsNotGivenBackAmidReplacements();
};

void TextFreeingTest::longTextIsFreedAndGivenBack()
{
    const Freeing freeing;
    freeLongText();
    QCOMPARE(freeing.given, 0);
    QTRY_COMPARE(freeing.given, 1);
}

void TextFreeingTest::muchIsGivenBackInPortions()
{
    const Freeing freeing;
    freeManyNodes();
    QCOMPARE(freeing.given, 0);
    QTRY_VERIFY(freeing.given > fewestPortions);
}

/// Either is as much as a turn may take.
void TextFreeingTest::turnFreesOrGivesBack()
{
    const Freeing freeing;
    freeManyNodes();
    int turns = 0;
    for (; freeing.given < fewestPortions; ++turns)
        QCoreApplication::processEvents();
    QVERIFY(turns >= 2 * fewestPortions);
}

/// It would be one long call behind them.
void TextFreeingTest::portionsAreGivenBackAmidReplacements()
{
    const Freeing freeing;
    const RequestHold run;
    freeManyNodes();
    QTRY_VERIFY(freeing.given > fewestPortions);
}

void TextFreeingTest::manyDocumentsAreGivenBackAtOnce()
{
    Freeing freeing;
    freeing.texts.giveBackSoon();
    freeing.texts.giveBackSoon();
    QTRY_VERIFY(freeing.given > 0);
    QCoreApplication::processEvents();
    QCOMPARE(freeing.given, 1);
}

void TextFreeingTest::littleIsNotGivenBackAmidReplacements()
{
    Freeing freeing;
    {
        const RequestHold run;
        freeing.texts.giveBackSoon();
        for (int turn = 0; turn < 5; ++turn)
            QCoreApplication::processEvents();
        QCOMPARE(freeing.given, 0);
    }
    QTRY_COMPARE(freeing.given, 1);
}

namespace {

int runTextFreeingTest(int argc, char **argv)
{
    const QPEApplicationEsc app(argc, argv);
    return runPlainTest<TextFreeingTest>(argc, argv);
}

} // namespace

REGISTER_TEST(runTextFreeingTest)
#include "textfreeing_test.moc"
