#include "rows/fontmessages.h"
#include "tests/testprogram.h"

#include <QScopeGuard>
#include <QTest>

namespace {

QStringList messages;

void note(QtMsgType, const QMessageLogContext &, const QString &text)
{
    messages << text;
}

} // namespace

/// Which of the toolkit's messages come through.
class FontMessagesTest : public QObject {
    Q_OBJECT

private slots:
    void passOnOthers_data();
    void passOnOthers();
};

void FontMessagesTest::passOnOthers_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("times");
    QTest::newRow("font without a script")
        << QStringLiteral("  OpenType support missing for \"x\", script 11") << 0;
    QTest::newRow("any other") << QStringLiteral("Something else is missing") << 1;
    QTest::newRow("one that quotes it") << QStringLiteral("x: OpenType support missing for \"x\"") << 1;
}

void FontMessagesTest::passOnOthers()
{
    QFETCH(QString, message);
    messages.clear();
    const QtMessageHandler before = qInstallMessageHandler(note);
    const auto restore = qScopeGuard([before] { qInstallMessageHandler(before); });
    hideFontMessages();
    hideFontMessages(); // a second time changes nothing
    qWarning("%s", qPrintable(message));
    QTEST(int(messages.size()), "times");
}

REGISTER_TEST(runCoreTest<FontMessagesTest>)
#include "fontmessages_test.moc"
