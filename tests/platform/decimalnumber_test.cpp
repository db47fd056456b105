#include "platform/decimalnumber.h"
#include "tests/testprogram.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Numbers as they are typed.
class DecimalNumberTest : public QObject {
    Q_OBJECT

private slots:
    void number_data();
    void number();
};

void DecimalNumberTest::number_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("number");
    const QString none = u"none"_s;
    QTest::newRow("plain") << u"18"_s << u"18"_s;
    QTest::newRow("blanks around") << u" 18 "_s << u"18"_s;
    QTest::newRow("full-width blanks around") << u"\u300018\u3000"_s << u"18"_s;
    QTest::newRow("full width") << u"\uFF11\uFF18"_s << u"18"_s;
    QTest::newRow("mixed widths") << u"1\uFF18"_s << u"18"_s;
    QTest::newRow("full-width minus") << u"\uFF0D\uFF11"_s << u"-1"_s;
    QTest::newRow("minus") << u"-1"_s << u"-1"_s;
    QTest::newRow("plus") << u"+7"_s << u"7"_s;
    QTest::newRow("full-width plus") << u"\uFF0B\uFF17"_s << u"7"_s;
    QTest::newRow("sign alone") << u"-"_s << none;
    QTest::newRow("two signs") << u"+-7"_s << none;
    QTest::newRow("blank behind the sign") << u"- 7"_s << none;
    QTest::newRow("minus sign of a conversion") << u"\u2212\uFF15"_s << u"-5"_s;
    QTest::newRow("minus zero") << u"-0"_s << u"0"_s;
    QTest::newRow("sign and full-width blanks") << u"\u3000\uFF0B\uFF15\u3000"_s << u"5"_s;
    QTest::newRow("tabs around") << u"\t12\t"_s << u"12"_s;
    QTest::newRow("smallest of 32 bits") << u"-2147483648"_s << u"-2147483648"_s;
    QTest::newRow("below 32 bits") << u"-2147483649"_s << u"-2147483649"_s;
    QTest::newRow("full width, above 32 bits")
        << u"\uFF12\uFF11\uFF14\uFF17\uFF14\uFF18\uFF13\uFF16\uFF14\uFF18"_s << u"2147483648"_s;
    QTest::newRow("smallest") << u"-9223372036854775808"_s << u"-9223372036854775808"_s;
    QTest::newRow("one too small") << u"-9223372036854775809"_s << none;
    QTest::newRow("thousands") << u"1,000"_s << none;
    QTest::newRow("exponent") << u"1e1"_s << none;
    QTest::newRow("leading zero is decimal") << u"010"_s << u"10"_s;
    QTest::newRow("largest of 32 bits") << u"2147483647"_s << u"2147483647"_s;
    QTest::newRow("largest") << u"9223372036854775807"_s << u"9223372036854775807"_s;
    QTest::newRow("one too large") << u"9223372036854775808"_s << none;
    QTest::newRow("far too large") << u"99999999999999999999"_s << none;
    QTest::newRow("empty") << QString() << none;
    QTest::newRow("letters") << u"abc"_s << none;
    QTest::newRow("digits and letters") << u"12a"_s << none;
    QTest::newRow("hexadecimal") << u"0x10"_s << none;
    QTest::newRow("fraction") << u"1.5"_s << none;
    QTest::newRow("blank within") << u"1 0"_s << none;
    QTest::newRow("digits of another script") << u"\u0661\u0662"_s << none;
    QTest::newRow("superscript") << u"²"_s << none;
    QTest::newRow("Chinese numeral") << u"五"_s << none;
    QTest::newRow("full-width blank alone") << u"\u3000"_s << none;
    QTest::newRow("two minus signs") << u"--5"_s << none;
}

void DecimalNumberTest::number()
{
    QFETCH(QString, text);
    const std::optional<qint64> number = decimalNumber(text);
    QTEST(number ? QString::number(*number) : u"none"_s, "number");
    const std::optional<int> small = decimalNumberAs<int>(text);
    QCOMPARE(small.has_value(), number && *number == int(*number));
    QCOMPARE(small.value_or(0), small ? number.value_or(0) : 0);
}

REGISTER_TEST(runPlainTest<DecimalNumberTest>)
#include "decimalnumber_test.moc"
