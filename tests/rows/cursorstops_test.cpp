#include "rows/fontmeasure.h"
#include "rows/rowlayout.h"
#include "tests/testprogram.h"
#include "text/cursorstops.h"
#include "text/graphemes.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Characters of many units, and rows so long that they are laid out in segments: the cursor's keys and the
/// row know the same places in them, and none inside a character.
class CursorStopsTest : public QObject {
    Q_OBJECT
private slots:
    void longTexts_data();
    void longTexts();
};

void CursorStopsTest::longTexts_data()
{
    QTest::addColumn<QString>("text");
    const struct {
        const char *name;
        QString text;
        int count;
    } repeated[] = {
        { "Devanagari", u"\u0915\u094D\u0937\u093F\u0924\u094D\u0930"_s, 900 },
        { "Devanagari words", u"\u0915\u094D\u0937\u093F \u0924\u094D\u0930 "_s, 800 },
        { "Thai", u"\u0E2A\u0E27\u0E31\u0E2A\u0E14\u0E35\u0E04\u0E23\u0E31\u0E1A"_s, 650 },
        { "Arabic with vowels", u"\u0628\u0650\u0633\u0652\u0645\u0650 "_s, 900 },
        { "dakuten", u"\u304B\u3099"_s, 3000 },
        { "families", u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s, 800 },
        { "flags", u"\U0001F1EF\U0001F1F5"_s, 1500 },
        { "surrogate pairs", u"\U00020B9F"_s, 3000 },
        { "letter with 5000 marks", u"e"_s + QString(5000, QChar(0x301)), 1 },
        { "letters with 3000 marks", u"e"_s + QString(3000, QChar(0x301)), 3 },
        { "100 joined emoji", u"\U0001F468\u200D"_s.repeated(100) + u"\U0001F469"_s, 30 },
        { "emoji joined behind 64 marks",
            u"\U0001F468"_s + QString(64, QChar(0xFE0F)) + u"\u200D\U0001F469"_s, 60 },
    };
    for (const auto &[name, text, count] : repeated) {
        for (const int before : { 0, 1, 2, 3 })
            QTest::addRow("%s behind %d letters", name, before)
                << QString(before, u'x') + text.repeated(count) + u"x"_s;
    }
    for (const int letters : { 1, 17, 33, 65 })
        QTest::addRow("%d letters of flags", letters) << u"x"_s + u"\U0001F1EF"_s.repeated(letters) + u"x"_s;
}

void CursorStopsTest::longTexts()
{
    QFETCH(QString, text);
    const std::vector<qsizetype> expected = graphemeBoundaries(text);
    const auto measure = FontMeasure::forFont(QFont(u"VL Gothic"_s, 18), 1);
    LayoutRule rule;
    rule.advances = &measure->advances();
    TextStore store(rule);
    store.replace(Offset(0), 0, text);
    const RowLayout row(store, RowIndex(0), *measure, 0, 1e7);
    qsizetype last = 0;
    std::size_t next = 0;
    for (qsizetype column = 0; column <= text.size(); ++column) {
        const bool isStop = expected[next] == column;
        QCOMPARE(row.isCursorStop(column), isStop);
        if (!isStop)
            continue;
        QCOMPARE(previousCursorStop(store, Offset(column)), Offset(last));
        QCOMPARE(nextCursorStop(store, Offset(last)), Offset(column ? column : expected[1]));
        last = column;
        next += next + 1 < expected.size();
    }
}

REGISTER_TEST(runWindowTest<CursorStopsTest>)
#include "cursorstops_test.moc"
