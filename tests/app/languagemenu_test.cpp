#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QAction>
#include <QToolBar>

using namespace Qt::StringLiterals;

namespace {

/// A file beside or in the place of a translation: a whole translation under any other name, else no
/// translation.
void writeInstead(const QString &dataFolder, const QString &name, LanguageCommand item)
{
    if (name.isEmpty())
        return;
    const QString target = dataFolder + name;
    QVERIFY(QDir().mkpath(QFileInfo(target).path()));
    const QString language = item == LanguageCommand::Japanese ? u"ja"_s : u"fr"_s;
    if (!name.endsWith(u"marlopad2.qm")) {
        QVERIFY(QFile::copy(QStringLiteral(TEST_QPE_DIR) + u"/i18n/%1/marlopad2.qm"_s.arg(language), target));
        return;
    }
    QFile broken(target);
    QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("no translation") > 0);
}

} // namespace

/// Choosing a language: the texts of menus and tool bar, and a language whose file is missing.
class LanguageMenuTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void languages_data();
    void languages();
    void languageIsWrittenWithTheSettings();
    void languageAtStart_data();
    void languageAtStart();
    void languageTwiceIsOneTranslator();
    void missingTranslation_data();
    void missingTranslation();
    void rebuiltMenusKeepStates();
};

void LanguageMenuTest::init()
{
    resetSettings();
    qunsetenv("QPEDIR");
}

void LanguageMenuTest::languages_data()
{
    QTest::addColumn<LanguageCommand>("item");
    QTest::addColumn<int>("stored");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("Japanese") << LanguageCommand::Japanese << 1
                              << QStringList{ u"ファイル(&F)"_s, u"元に戻す(&U)  (Fn+Z)"_s, u"(なし)"_s };
    QTest::newRow("English") << LanguageCommand::English << 0
                             << QStringList{ u"&File"_s, u"&Undo  (Fn+Z)"_s, u"(no item)"_s };
    QTest::newRow("French") << LanguageCommand::French << 2
                            << QStringList{ u"&Fichier"_s, u"Ann&uler  (Fn+Z)"_s, u"(aucun)"_s };
}

void LanguageMenuTest::languages()
{
    QFETCH(LanguageCommand, item);
    qputenv("QPEDIR", TEST_QPE_DIR);
    TestWindow window;
    // From each language to each other one, and to itself.
    for (const LanguageCommand before :
        { LanguageCommand::Japanese, LanguageCommand::English, LanguageCommand::French }) {
        window.item(before)->trigger();
        window.item(item)->trigger();
        QTEST(appSettings().Lang, "stored");
        QTEST(QStringList({ window.menu(MenuId::File)->title(), window.item(EditCommand::Undo)->text(),
                  window.recentMenu()->actions().constFirst()->text() }),
            "texts");
        QCOMPARE(window.toolBar()->actions().at(3)->iconText(), u"Undo"_s);
        QCOMPARE(window.toolBar()->actions().at(3)->toolTip(), u"Undo"_s);
    }
}

void LanguageMenuTest::languageIsWrittenWithTheSettings()
{
    qputenv("QPEDIR", TEST_QPE_DIR);
    {
        TestWindow window;
        window.slotCmdViewLangFr();
        readSettings();
        QCOMPARE(appSettings().Lang, 0); // nothing was written yet
        window.slotCmdViewLangFr();
    }
    appSettings() = {};
    readSettings();
    QCOMPARE(appSettings().Lang, 2);
}

void LanguageMenuTest::languageAtStart_data()
{
    QTest::addColumn<int>("stored");
    QTest::addColumn<QString>("title");
    QTest::newRow("0 English") << 0 << u"&File"_s;
    QTest::newRow("1 Japanese") << 1 << u"ファイル(&F)"_s;
    QTest::newRow("2 French") << 2 << u"&Fichier"_s;
    QTest::newRow("3 is none") << 3 << u"&File"_s;
}

void LanguageMenuTest::languageAtStart()
{
    QFETCH(int, stored);
    appSettings().Lang = stored;
    writeSettings();
    {
        qputenv("QPEDIR", TEST_QPE_DIR);
        const TestWindow window;
        QTEST(window.menu(MenuId::File)->title(), "title");
    }
    MessageBoxes boxes;
    qputenv("QPEDIR", "/nowhere");
    const TestWindow window;
    QCOMPARE(window.menu(MenuId::File)->title(), u"&File"_s);
    QCOMPARE(appSettings().Lang, stored);
    QCOMPARE(boxes.count(), 0);
}

void LanguageMenuTest::languageTwiceIsOneTranslator()
{
    qputenv("QPEDIR", TEST_QPE_DIR);
    TestWindow window;
    window.slotCmdViewLangJa();
    window.slotCmdViewLangJa();
    window.slotCmdViewLangEn();
    QCOMPARE(QCoreApplication::translate("frmMain", "&File"), u"&File"_s);
    QCOMPARE(window.menu(MenuId::File)->title(), u"&File"_s);
}

void LanguageMenuTest::missingTranslation_data()
{
    QTest::addColumn<LanguageCommand>("item");
    QTest::addColumn<QString>("file"); // that is there instead, below the data folder
    QTest::addColumn<QString>("text");
    const QString noJapanese = u"A japanese translation file is not found."_s;
    const QString noFrench = u"A french translation file not found."_s;
    QTest::newRow("Japanese") << LanguageCommand::Japanese << QString() << noJapanese;
    QTest::newRow("French") << LanguageCommand::French << QString() << noFrench;
    QTest::newRow("Japanese that is no translation")
        << LanguageCommand::Japanese << u"i18n/ja/marlopad2.qm"_s << noJapanese;
    QTest::newRow("French that is no translation")
        << LanguageCommand::French << u"i18n/fr/marlopad2.qm"_s << noFrench;
    // The toolkit would also take files whose names are beginnings of the one asked for.
    QTest::newRow("Japanese under a shorter name")
        << LanguageCommand::Japanese << u"i18n/ja/marlopad2"_s << noJapanese;
    QTest::newRow("French under the name of a folder above")
        << LanguageCommand::French << u"../data.qm"_s << noFrench;
}

void LanguageMenuTest::missingTranslation()
{
    QFETCH(LanguageCommand, item);
    QFETCH(QString, file);
    qputenv("QPEDIR", TEST_QPE_DIR);
    TestWindow window;
    const LanguageCommand other =
        item == LanguageCommand::Japanese ? LanguageCommand::French : LanguageCommand::Japanese;
    window.item(other)->trigger();
    const QString title = window.menu(MenuId::File)->title();
    const int stored = appSettings().Lang;

    const TestFiles files;
    writeInstead(files.folder() + u"data.d/"_s, file, item);
    qputenv("QPEDIR", QFile::encodeName(files.folder() + u"data.d"_s));
    MessageBoxes boxes;
    window.item(item)->trigger();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.shown().at(0).icon, QMessageBox::Critical);
    QCOMPARE(boxes.shown().at(0).title, u"Marlo!Pad QT"_s);
    QCOMPARE(boxes.shown().at(0).buttons.size(), 1);
    QTEST(boxes.shown().at(0).text, "text");
    QCOMPARE(window.menu(MenuId::File)->title(), title);
    QCOMPARE(QCoreApplication::translate("frmMain", "&File"), title);
    QCOMPARE(appSettings().Lang, stored);
}

void LanguageMenuTest::rebuiltMenusKeepStates()
{
    qputenv("QPEDIR", TEST_QPE_DIR);
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"text"_s);
    QTest::keyClick(window.currentEditor(), Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(window.editStates(), u"u-xc"_s);
    const qsizetype count = window.menu(MenuId::Edit)->actions().size();
    window.slotCmdViewLangJa();
    QCOMPARE(window.editStates(), u"u-xc"_s);
    window.slotCmdViewLangEn();
    QCOMPARE(window.editStates(), u"u-xc"_s);
    QCOMPARE(window.menu(MenuId::Edit)->actions().size(), count);
}

REGISTER_TEST(runWindowTest<LanguageMenuTest>)
#include "languagemenu_test.moc"
