#include "tests/testprogram.h"
#include "text/enteredtext.h"

#include <QTest>

using namespace Qt::StringLiterals;

class EnteredTextTest : public QObject {
    Q_OBJECT

private slots:
    void fitInputIsShared();
    void cleansInput_data();
    void cleansInput();
};

void EnteredTextTest::fitInputIsShared()
{
    const QString fit = u"a漢\n"_s.repeated(1000);
    QCOMPARE(cleanInput(fit).constData(), fit.constData());
}

void EnteredTextTest::cleansInput_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("clean");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("fit") << u"a漢\n\t\uFFFD"_s << u"a漢\n\t\uFFFD"_s;
    QTest::newRow("pair") << u"a\U0001F480b"_s << u"a\U0001F480b"_s;
    QTest::newRow("escape") << u"a\xDC80"
                               u"b"_s
                            << u"a\uFFFDb"_s;
    QTest::newRow("high half") << u"\xD800"
                                  u"b"_s
                               << u"\uFFFDb"_s;
    QTest::newRow("high half at the end") << u"a\xD800"_s << u"a\uFFFD"_s;
    QTest::newRow("high half before a pair") << u"\xD83D\xD83D\xDC80"_s << u"\uFFFD\U0001F480"_s;
    QTest::newRow("escape behind a pair") << u"\U0001F480\xDC80"_s << u"\U0001F480\uFFFD"_s;
    QTest::newRow("NUL") << QString::fromLatin1("a\0b\0", 4) << u"ab"_s;
    QTest::newRow("NUL between halves") << u"\xD83D"_s + QChar(0) + u"\xDC80"_s << u"\uFFFD\uFFFD"_s;
}

void EnteredTextTest::cleansInput()
{
    QFETCH(QString, input);
    QFETCH(QString, clean);
    QCOMPARE(cleanInput(input), clean);
}

REGISTER_TEST(runPlainTest<EnteredTextTest>)
#include "enteredtext_test.moc"
