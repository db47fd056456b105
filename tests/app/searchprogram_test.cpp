#include "tests/app/programwindow.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

namespace {

QString outputOf(const QStringList &arguments)
{
    QProcess process;
    process.start(u"xdotool"_s, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString activeTitle()
{
    return outputOf({ u"getactivewindow"_s, u"getwindowname"_s });
}

void press(const QString &key)
{
    outputOf({ u"key"_s, key });
}

QString configFile(const QString &name)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' + name;
}

QByteArray history()
{
    QFile file(configFile(u"marlopad_fr.conf"_s));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/// The program itself, driven by keys: what it leaves behind, however it ends.
class SearchProgramTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void historySurvivesAKilledProgram();
    void openPanelKeepsNoProgramRunning();
    void nothingIsWrittenWithoutAPanel();
    void returnSearchesOnEveryDesktop_data();
    void returnSearchesOnEveryDesktop();
    void replacingAllLeadsBack();

private:
    void start();
    bool hasEnded();

    QScopedPointer<QProcess> m_program;
    QString m_desktop;
    QTemporaryDir m_folder;
};

void SearchProgramTest::init()
{
    QFile::remove(configFile(u"marlopad_fr.conf"_s));
    QFile settings(configFile(u"marlopad.conf"_s));
    QVERIFY(settings.open(QIODevice::WriteOnly));
    QVERIFY(settings.write("[main]\nLang = 0\n") > 0);
    settings.close();
    start();
}

void SearchProgramTest::cleanup()
{
    m_program->kill();
    m_program->waitForFinished();
    QCOMPARE(m_program->readAllStandardError(), QByteArray());
}

void SearchProgramTest::start()
{
    QFile file(m_folder.filePath(u"a.txt"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write("one needle\n") > 0);
    file.close();
    m_program.reset(new QProcess);
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert(u"XDG_CURRENT_DESKTOP"_s, m_desktop);
    m_program->setProcessEnvironment(variables);
    m_program->start(QStringLiteral(MARLOPAD_PROGRAM), { file.fileName() });
    QVERIFY(m_program->waitForStarted());
    QTRY_COMPARE_WITH_TIMEOUT(activeTitle(), u"Marlo!Pad QT  [UTF8][LF]"_s, 20000);
    QVERIFY(ProgramWindow::takesKeys());
}

bool SearchProgramTest::hasEnded()
{
    return m_program->state() == QProcess::NotRunning
        || (m_program->waitForFinished(1) && m_program->state() == QProcess::NotRunning);
}

void SearchProgramTest::historySurvivesAKilledProgram()
{
    press(u"ctrl+n"_s);
    QTRY_COMPARE(activeTitle(), u"Search"_s);
    outputOf({ u"type"_s, u"needle"_s });
    press(u"Return"_s);
    QTRY_VERIFY(history().contains("Search0 = needle\n"));
    m_program->kill();
    QVERIFY(m_program->waitForFinished());
    QVERIFY(history().contains("Search0 = needle\n"));
    QCOMPARE(m_program->readAllStandardError(), QByteArray());
    start();
    press(u"ctrl+n"_s);
    QTRY_COMPARE(activeTitle(), u"Search"_s);
    // The most recent entry, by the keyboard.
    press(u"Down"_s);
    outputOf({ u"type"_s, u"2"_s });
    press(u"Return"_s);
    QTRY_VERIFY(history().contains("Search0 = needle2\nSearch1 = needle\n"));
}

void SearchProgramTest::openPanelKeepsNoProgramRunning()
{
    const QString window = outputOf({ u"getactivewindow"_s });
    press(u"ctrl+n"_s);
    QTRY_COMPARE(activeTitle(), u"Search"_s);
    outputOf({ u"windowactivate"_s, u"--sync"_s, window });
    QTRY_COMPARE(outputOf({ u"getactivewindow"_s }), window);
    press(u"ctrl+q"_s);
    QTRY_VERIFY(hasEnded());
    QCOMPARE(m_program->exitCode(), 0);
    QCOMPARE(history().count('\n'), 41);
}

void SearchProgramTest::nothingIsWrittenWithoutAPanel()
{
    press(u"ctrl+q"_s);
    QTRY_VERIFY(hasEnded());
    QVERIFY(!QFile::exists(configFile(u"marlopad_fr.conf"_s)));
}

void SearchProgramTest::returnSearchesOnEveryDesktop_data()
{
    QTest::addColumn<QString>("desktop");
    QTest::newRow("none") << QString();
    QTest::newRow("where Return presses buttons") << u"GNOME"_s;
    QTest::newRow("where it does not") << u"KDE"_s;
}

/// With the focus on the last button, which closes the panel.
void SearchProgramTest::returnSearchesOnEveryDesktop()
{
    QFETCH(QString, desktop);
    m_program->kill();
    m_program->waitForFinished();
    m_desktop = desktop;
    start();
    m_desktop.clear();
    press(u"ctrl+n"_s);
    QTRY_COMPARE(activeTitle(), u"Search"_s);
    outputOf({ u"type"_s, u"needle"_s });
    outputOf({ u"key"_s, u"Tab"_s, u"Tab"_s, u"Tab"_s, u"Tab"_s, u"Return"_s });
    QTRY_VERIFY(history().contains("Search0 = needle\n"));
    QCOMPARE(activeTitle(), u"Search"_s);
}

void SearchProgramTest::replacingAllLeadsBack()
{
    for (int round = 0; round < 5; ++round) {
        press(u"ctrl+m"_s);
        QTRY_COMPARE(activeTitle(), u"Replace"_s);
        outputOf({ u"type"_s, u"e"_s });
        outputOf({ u"key"_s, u"Tab"_s, u"e"_s, u"x"_s, u"Tab"_s, u"Tab"_s, u"Tab"_s, u"space"_s });
        // The progress panel, and the box in front of it.
        QTRY_COMPARE(
            outputOf({ u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Replace All$"_s }).count(u'\n'), 1);
        QVERIFY(ProgramWindow::answer(u"Replace All"_s, u"Return"_s));
        QTRY_COMPARE(activeTitle(), u"Marlo!Pad QT  [UTF8][LF]"_s);
    }
    press(u"ctrl+s"_s);
    const auto saved = [this] {
        QFile file(m_folder.filePath(u"a.txt"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QTRY_COMPARE(saved(), QByteArray("one needle\n").replace("e", "exxxxx"));
}

REGISTER_TEST(runCoreTest<SearchProgramTest>)
#include "searchprogram_test.moc"
