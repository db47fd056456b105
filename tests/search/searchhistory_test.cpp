#include "search/searchhistory.h"
#include "settings/config.h"
#include "tests/search/searchforms.h"
#include "tests/testprogram.h"

#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace {

QStringList textsOf(const SearchHistory &history)
{
    return { history.texts().begin(), history.texts().end() };
}

QStringList padded(QStringList texts)
{
    while (texts.size() < qsizetype(SearchHistory::size))
        texts << QString();
    return texts;
}

SearchHistory historyOf(const QStringList &added)
{
    SearchHistory history;
    for (const QString &text : added)
        history.add(text);
    return history;
}

QStringList numbered(int first, int last)
{
    QStringList texts;
    for (int i = first; i <= last; ++i)
        texts << u"t%1"_s.arg(i);
    return texts;
}

/// The same by the obvious means.
void addTo(QStringList &model, const QString &text)
{
    if (text.isEmpty())
        return;
    model.removeAll(text);
    model.prepend(text);
    model = model.mid(0, 20);
}

} // namespace

class SearchHistoryTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void adds_data();
    void adds();
    void isKept_data();
    void isKept();
    void missingFileIsEmpty();
    void unusualFiles_data();
    void unusualFiles();
    void likeASimpleList_data();
    void likeASimpleList();
};

void SearchHistoryTest::init()
{
    QFile::remove(historyFileName());
}

void SearchHistoryTest::adds_data()
{
    QTest::addColumn<QStringList>("added");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("nothing") << QStringList() << QStringList();
    QTest::newRow("newest first") << QStringList{ u"a"_s, u"b"_s } << QStringList{ u"b"_s, u"a"_s };
    QTest::newRow("the same twice in a row is there once")
        << QStringList{ u"b"_s, u"a"_s, u"a"_s } << QStringList{ u"a"_s, u"b"_s };
    QTest::newRow("a text used again moves to the top")
        << QStringList{ u"a"_s, u"b"_s, u"c"_s, u"a"_s } << QStringList{ u"a"_s, u"c"_s, u"b"_s };
    QTest::newRow("case makes another text")
        << QStringList{ u"a"_s, u"A"_s } << QStringList{ u"A"_s, u"a"_s };
    QTest::newRow("blanks make another text")
        << QStringList{ u"a"_s, u"a "_s, u" "_s } << QStringList{ u" "_s, u"a "_s, u"a"_s };
    QTest::newRow("composed and combining characters are other texts")
        << QStringList{ u"\u00e9"_s, u"e\u0301"_s } << QStringList{ u"e\u0301"_s, u"\u00e9"_s };
    QTest::newRow("an empty text is not recorded")
        << QStringList{ u"a"_s, QString(), u""_s } << QStringList{ u"a"_s };
    QStringList twenty = numbered(1, 20);
    std::reverse(twenty.begin(), twenty.end());
    QTest::newRow("twenty fit") << numbered(1, 20) << twenty;
    QTest::newRow("the 21st pushes out the oldest")
        << numbered(1, 20) + QStringList{ u"new"_s } << QStringList{ u"new"_s } + twenty.mid(0, 19);
    QTest::newRow("the oldest of a full list used again pushes out nothing")
        << numbered(1, 20) + QStringList{ u"t1"_s } << QStringList{ u"t1"_s } + twenty.mid(0, 19);
    QTest::newRow("the last but one of a full list used again") << numbered(1, 20)
            + QStringList{ u"t2"_s } << QStringList{ u"t2"_s } + twenty.mid(0, 18) + QStringList{ u"t1"_s };
}

void SearchHistoryTest::adds()
{
    QFETCH(QStringList, added);
    QFETCH(QStringList, expected);

    QCOMPARE(textsOf(historyOf(added)), padded(expected));
}

void SearchHistoryTest::isKept_data()
{
    QTest::addColumn<QString>("text");
    for (const char16_t *text :
        { u"plain", u" blanks ", u"  ", u"\t", u",", u"a,b", u"\"quoted\"", u"'", u"\\", u"a\\nb", u"%1",
            u"a=b", u"=", u"[history]", u"#", u";", u"\u3000", u"検索", u"\U0001f600", u"\u00e9\u0301" })
        QTest::newRow(qPrintable(u'<' + QString::fromUtf16(text) + u'>')) << QString::fromUtf16(text);
    QTest::newRow("lone surrogate of an undecodable byte") << QString(QChar(0xdc80));
    QTest::newRow("100,000 characters") << QString(100000, u'長');
}

/// The file as another program would read it, and as this one reads it.
void SearchHistoryTest::isKept()
{
    QFETCH(QString, text);

    const SearchHistory history = historyOf({ u"older"_s, text });
    Config(u"marlopad_fr"_s); // none is made by looking
    QVERIFY(!QFile::exists(historyFileName()));
    {
        Config config(u"marlopad_fr"_s);
        config.setGroup(u"history"_s);
        history.write(config, u"Search"_s);
    }
    QVERIFY(historyFileContents().startsWith("[history]\nSearch0 = "));
    QVERIFY(historyFileContents().contains("\nSearch1 = older\nSearch2 = \n"));
    QCOMPARE(historyFileContents().count("\n"), 21);
    Config config(u"marlopad_fr"_s);
    config.setGroup(u"history"_s);
    SearchHistory read;
    read.read(config, u"Search"_s);
    QCOMPARE(textsOf(read), textsOf(history));
    read.read(config, u"Replace"_s);
    QCOMPARE(textsOf(read), padded({}));
}

void SearchHistoryTest::missingFileIsEmpty()
{
    Config config(u"marlopad_fr"_s);
    config.setGroup(u"history"_s);
    SearchHistory history = historyOf({ u"a"_s });
    history.read(config, u"Search"_s);
    QCOMPARE(textsOf(history), padded({}));
}

void SearchHistoryTest::unusualFiles_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("another group") << QByteArray("[main]\nSearch0 = a\n") << padded({ u"x"_s });
    QTest::newRow("gaps stay where they are")
        << QByteArray("[history]\nSearch2 = c\n") << padded({ u"x"_s, {}, {}, u"c"_s });
    QTest::newRow("more than twenty")
        << QByteArray("[history]\nSearch19 = last\nSearch20 = beyond\n") << padded({ u"x"_s });
    QTest::newRow("keys in another order")
        << QByteArray("[history]\nSearch1 = b\nReplace0 = r\nSearch0 = a\n")
        << padded({ u"x"_s, u"a"_s, u"b"_s });
    QTest::newRow("no key file at all") << QByteArray("\xff\xfe\0[history", 11) << padded({ u"x"_s });
}

void SearchHistoryTest::unusualFiles()
{
    QFETCH(QByteArray, contents);
    QFETCH(QStringList, expected);

    writeHistoryFile(contents);
    Config config(u"marlopad_fr"_s);
    config.setGroup(u"history"_s);
    SearchHistory history;
    history.read(config, u"Search"_s);
    history.add(u"x"_s);
    QCOMPARE(textsOf(history), expected);
}

void SearchHistoryTest::likeASimpleList_data()
{
    QTest::addColumn<quint32>("seed");
    const quint32 first = quint32(qMax(1, qEnvironmentVariableIntValue("SEED")));
    for (quint32 seed = first; seed < first + 10; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void SearchHistoryTest::likeASimpleList()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    SearchHistory history;
    QStringList model;
    for (int step = 0; step < 2000; ++step) {
        const int number = int(random.bounded(30U));
        const QString text = number == 0 ? QString() : QString::number(number);
        history.add(text);
        addTo(model, text);
        QCOMPARE(textsOf(history), padded(model));
    }
}

REGISTER_TEST(runCoreTest<SearchHistoryTest>)
#include "searchhistory_test.moc"
