#include "tests/faults/faultkinds.h"
#include "tests/testprogram.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString sourceOf(const QString &path)
{
    QFile file(QStringLiteral(SOURCE_FOLDER "/") + path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Of a test in whatever folder; null for none.
QString sourceOfTest(const QString &name)
{
    for (const QString &folder : { u"tests"_s, u"fuzz"_s }) {
        for (const QString &room : QDir(QStringLiteral(SOURCE_FOLDER "/") + folder).entryList(QDir::Dirs)) {
            const QString source = sourceOf(folder + u'/' + room + u'/' + name + u".cpp"_s);
            if (!source.isNull())
                return source;
        }
    }
    return {};
}

} // namespace

/// Whether docs/robustness.md is true.
class RobustnessTest : public QObject {
    Q_OBJECT

private slots:
    void everyFaultHasItsRow();
    void everyTestNamedExists();
    void figuresHaveTheirPlace();

private:
    const QString m_page = sourceOf(u"docs/robustness.md"_s);
};

void RobustnessTest::everyFaultHasItsRow()
{
    for (const FaultKind &kind : faultKinds)
        QVERIFY2(m_page.contains(u"\n| "_s + QLatin1StringView(kind.name) + u" |"_s), kind.name);
}

void RobustnessTest::everyTestNamedExists()
{
    static const QRegularExpression named(u"`(\\w+_(?:test|fuzz))(?: (\\w+))?`"_s);
    int count = 0;
    for (auto match = named.globalMatch(m_page); match.hasNext(); ++count) {
        const auto test = match.next();
        const QString source = sourceOfTest(test.captured(1));
        QVERIFY2(!source.isNull(), qPrintable(test.captured(1)));
        const QString function = test.captured(2) + u"()"_s;
        QVERIFY2(!test.hasCaptured(2) || source.contains(function), qPrintable(test.captured(0)));
    }
    QVERIFY(count > 0);
}

/// As tools/robustness looks for it.
void RobustnessTest::figuresHaveTheirPlace()
{
    const QStringList lines = m_page.split(u'\n');
    const qsizetype begin = lines.indexOf(u"<!-- figures -->"_s);
    const qsizetype end = lines.indexOf(u"<!-- end of figures -->"_s);
    QVERIFY(begin != -1 && begin < end);
    static const QRegularExpression row(u"^\\| [^|]+ \\| \\d+ \\| \\d{4}-\\d\\d-\\d\\d \\|$"_s);
    constexpr qsizetype head = 3; // the comment, the columns' names, the line below
    for (qsizetype at = begin + head; at < end; ++at)
        QVERIFY2(lines[at].contains(row), qPrintable(lines[at]));
}

REGISTER_TEST(runPlainTest<RobustnessTest>)
#include "robustness_test.moc"
