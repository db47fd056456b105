#include "app/qpeapplicationesc.h"
#include "app/textfreeing.h"
#include "platform/requesthold.h"
#include "tests/testprogram.h"
#include "text/textstore.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Counts how often memory is given back.
struct Freeing {
    int given = 0;
    TextFreeing texts{ [this] { ++given; } };
};

/// Longer than what is freed at once.
void freeLongText()
{
    TextStore store;
    store.replace({}, 0, u"0123456789ABCDEF"_s.repeated(1000000));
}

} // namespace

class TextFreeingTest : public QObject {
    Q_OBJECT

private slots:
    void longTextIsFreedAndGivenBack();
    void manyDocumentsAreGivenBackAtOnce();
    void nothingIsGivenBackAmidReplacements();
};

void TextFreeingTest::longTextIsFreedAndGivenBack()
{
    const Freeing freeing;
    freeLongText();
    QCOMPARE(freeing.given, 0);
    QTRY_COMPARE(freeing.given, 1);
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

void TextFreeingTest::nothingIsGivenBackAmidReplacements()
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
