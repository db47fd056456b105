#include "app/documentarea.h"
#include "app/documentcloser.h"
#include "app/documentloader.h"
#include "app/documentsaver.h"
#include "app/editruns.h"
#include "app/recentplaces.h"
#include "app/windowjobs.h"
#include "editor/ctlediter.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/messageboxes.h"
#include "tests/testprogram.h"

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

/// Opening, saving and closing documents in a window that has nothing else.
class DocumentFilesTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_parts.reset(); }

    void openedFileHasADocument();
    void openFileIsSwitchedTo();
    void chosenFileTakesAFreshDocument();
    void nothingChosenOpensNothing();
    void newDocumentIsSavedWhereTheUserWants();
    void saveEndsWhenTheUserGivesUp();
    void chosenCodesAreWritten();
    void editsAreAskedAbout_data();
    void editsAreAskedAbout();
    void allAreClosedAndSaved();

private:
    struct Parts {
        QWidget window;
        DocumentArea documents{ &window };
        RecentPlaces places;
        std::optional<FileChoice> choice;
        WindowDialogs dialogs{ [this](QWidget *, frmFileDialog::Mode, const FileChoice &) {
                                  return std::exchange(choice, std::nullopt);
                              },
            [](QWidget *) { return false; } };
        const WindowJobs jobs{ std::make_unique<SteppedRunner>() };
        DocumentLoader loader{ window, dialogs, documents, places, jobs };
        EditRuns edits{ documents, jobs };
        DocumentSaver saver{ window, dialogs, documents, places, edits, jobs };
        DocumentCloser closer{ window, documents, loader, saver, edits, places };
    };

    QString folder() const { return m_folder->path() + u'/'; }
    QString write(const QString &name, const QByteArray &content) const;
    QByteArray read(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Parts> m_parts;
};

void DocumentFilesTest::init()
{
    appSettings() = {};
    recentFiles() = {};
    m_folder = std::make_unique<QTemporaryDir>();
    m_parts = std::make_unique<Parts>();
}

QString DocumentFilesTest::write(const QString &name, const QByteArray &content) const
{
    QFile file(folder() + name);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
    return file.fileName();
}

QByteArray DocumentFilesTest::read(const QString &name) const
{
    QFile file(folder() + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be read)");
}

void DocumentFilesTest::openedFileHasADocument()
{
    m_parts->documents.add();
    m_parts->loader.open(write(u"a.txt"_s, "text"), std::nullopt);
    QCOMPARE(m_parts->documents.editors().size(), 2);
    QCOMPARE(m_parts->documents.current()->text(), u"text"_s);
    QCOMPARE(m_parts->documents.current()->name(), u"a.txt"_s);
}

void DocumentFilesTest::openFileIsSwitchedTo()
{
    const QString name = write(u"a.txt"_s, "text");
    m_parts->loader.open(name, std::nullopt);
    ctlEditer *editor = m_parts->documents.current();
    m_parts->documents.present(m_parts->documents.add());
    m_parts->loader.open(name, std::nullopt);
    QCOMPARE(m_parts->documents.current(), editor);
    QCOMPARE(m_parts->documents.editors().size(), 2);
}

void DocumentFilesTest::chosenFileTakesAFreshDocument()
{
    ctlEditer *fresh = m_parts->documents.add();
    write(u"a.txt"_s, "text");
    m_parts->choice = FileChoice{ folder(), u"a.txt"_s };
    m_parts->loader.askAndOpen();
    QCOMPARE(m_parts->documents.editors(), QList<ctlEditer *>{ fresh });
    QCOMPARE(fresh->text(), u"text"_s);
}

void DocumentFilesTest::nothingChosenOpensNothing()
{
    m_parts->loader.askAndOpen();
    QVERIFY(m_parts->documents.editors().isEmpty());
}

void DocumentFilesTest::newDocumentIsSavedWhereTheUserWants()
{
    ctlEditer *editor = m_parts->documents.add();
    editor->insert(u"text"_s);
    m_parts->choice = FileChoice{ folder(), u"a.txt"_s };
    QVERIFY(m_parts->saver.save(editor));
    QCOMPARE(read(u"a.txt"_s), QByteArray("text"));
    QVERIFY(!editor->edited());
    QCOMPARE(m_parts->documents.editorOfFile(folder() + u"a.txt"_s), editor);
}

void DocumentFilesTest::saveEndsWhenTheUserGivesUp()
{
    ctlEditer *editor = m_parts->documents.add();
    editor->insert(u"text"_s);
    QVERIFY(!m_parts->saver.save(editor));
    QVERIFY(editor->edited());
}

void DocumentFilesTest::chosenCodesAreWritten()
{
    ctlEditer *editor = m_parts->documents.add();
    editor->insert(u"あ\n"_s);
    QVERIFY(m_parts->saver.saveTo(editor, { folder(), u"a.txt"_s, CharCode::Euc, ReturnCode::Cr }));
    QCOMPARE(read(u"a.txt"_s), QByteArray("\xA4\xA2\r"));
}

void DocumentFilesTest::editsAreAskedAbout_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("Yes") << u"Yes"_s << true << QByteArray("xold");
    QTest::newRow("No") << u"No"_s << true << QByteArray("old");
    QTest::newRow("Cancel") << u"Cancel"_s << false << QByteArray("old");
}

void DocumentFilesTest::editsAreAskedAbout()
{
    QFETCH(QString, answer);
    m_parts->loader.open(write(u"a.txt"_s, "old"), std::nullopt);
    m_parts->documents.current()->insert(u"x"_s);
    const MessageBoxes boxes({ answer });
    m_parts->closer.askAndClose();
    QCOMPARE(boxes.titles(), QStringList{ u"Confirm File Save"_s });
    QTEST(m_parts->documents.editors().isEmpty(), "isClosed");
    QTEST(recentFiles().entries[0].isUsed(), "isClosed");
    QTEST(read(u"a.txt"_s), "content");
}

void DocumentFilesTest::allAreClosedAndSaved()
{
    for (const auto &name : { u"a.txt"_s, u"b.txt"_s }) {
        m_parts->loader.open(write(name, "old"), std::nullopt);
        m_parts->documents.current()->insert(u"x"_s);
    }
    const MessageBoxes boxes;
    QVERIFY(m_parts->closer.closeAll(EditsAtClosing::Save));
    QCOMPARE(boxes.count(), 0);
    QVERIFY(m_parts->documents.editors().isEmpty());
    QCOMPARE(read(u"a.txt"_s), QByteArray("xold"));
    QCOMPARE(read(u"b.txt"_s), QByteArray("xold"));
    QCOMPARE(recentFiles().entries[0].name, u"a.txt"_s);
}

REGISTER_TEST(runWindowTest<DocumentFilesTest>)
#include "documentfiles_test.moc"
