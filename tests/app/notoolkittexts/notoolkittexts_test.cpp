#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QLibraryInfo>
#include <QLineEdit>

using namespace Qt::StringLiterals;

/// Where the toolkit's translations are not installed its own texts stay English, and the program's do not.
/// The program is told another folder for them (see CMakeLists.txt).
class NoToolkitTextsTest : public QObject {
    Q_OBJECT

private slots:
    void programIsTranslatedAlone_data();
    void programIsTranslatedAlone();
};

void NoToolkitTextsTest::programIsTranslatedAlone_data()
{
    QTest::addColumn<LanguageCommand>("item");
    QTest::addColumn<QString>("title");
    QTest::newRow("Japanese") << LanguageCommand::Japanese << u"ファイル(&F)"_s;
    QTest::newRow("French") << LanguageCommand::French << u"&Fichier"_s;
}

void NoToolkitTextsTest::programIsTranslatedAlone()
{
    QFETCH(LanguageCommand, item);
    QCOMPARE(QLibraryInfo::path(QLibraryInfo::TranslationsPath), u"/nowhere"_s);
    QTest::failOnWarning(QRegularExpression(u"translat"_s));
    resetSettings();
    qputenv("QPEDIR", BUILT_QPE_DIR);
    MessageBoxes boxes;
    TestWindow window;
    window.item(item)->trigger();
    QTEST(window.menu(MenuId::File)->title(), "title");
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(QLineEdit::tr("Cu&t"), u"Cu&t"_s);
    window.slotCmdViewLangEn();
    QCOMPARE(window.menu(MenuId::File)->title(), u"&File"_s);
}

REGISTER_TEST(runWindowTest<NoToolkitTextsTest>)
#include "notoolkittexts_test.moc"
