#include "app/obstaclenotices.h"

#include "app/documentarea.h"
#include "app/documentsaver.h"
#include "app/editruns.h"
#include "app/recentplaces.h"
#include "tests/app/stripinwindow.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

/// What is told on opening where a save would fail.
class ObstacleNoticesTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_files.write(u"a.txt"_s, "old\n"); }

    void tellsOfAFileThatCannotBeWritten();
    void tellsOfAFullDisk();

private:
    TestFiles m_files;
};

void ObstacleNoticesTest::tellsOfAFileThatCannotBeWritten()
{
    QWidget window;
    DocumentArea documents(&window);
    RecentPlaces places;
    const WindowDialogs dialogs;
    const WindowJobs jobs;
    EditRuns edits(documents, jobs);
    DocumentSaver saver(window, dialogs, documents, places, edits, jobs);
    int error = EACCES;
    FileCalls calls = FileCalls::system();
    calls.access = [&error](const char *, int, int) {
        errno = error;
        return error == 0 ? 0 : -1;
    };
    const ObstacleNotices notices(documents, saver, calls);
    ctlEditer *const shown = documents.add();
    QVERIFY(shown->loadFile(m_files.folder(), u"a.txt"_s, 0));
    const Notice *notice = documents.notices().heaviest(shown);
    QVERIFY(notice);
    QCOMPARE(notice->text(), u"You may not write this file."_s);
    QCOMPARE(notice->offers.at(0).text(), u"Save As…"_s);
    error = EROFS;
    QVERIFY(shown->reload(m_files.folder(), u"a.txt"_s));
    QCOMPARE(documents.notices().heaviest(shown)->text(), u"The disk of this file can only be read."_s);
    error = 0;
    QVERIFY(shown->saveFile(m_files.folder(), u"b.txt"_s));
    QVERIFY(!documents.notices().heaviest(shown));
}

void ObstacleNoticesTest::tellsOfAFullDisk()
{
    DocumentArea documents(nullptr);
    documents.resize(640, 480);
    documents.show();
    RecentPlaces places;
    const WindowDialogs dialogs;
    const WindowJobs jobs;
    EditRuns edits(documents, jobs);
    DocumentSaver saver(documents, dialogs, documents, places, edits, jobs);
    FileCalls calls = FileCalls::system();
    bool isFull = true;
    calls.statvfs = [&isFull](const char *, struct statvfs *info) {
        *info = {};
        info->f_blocks = 1000000;
        info->f_frsize = 4096;
        info->f_bavail = isFull ? 0 : 1000;
        return 0;
    };
    const ObstacleNotices notices(documents, saver, calls);
    ctlEditer *const shown = documents.add();
    documents.present(shown);
    const StripInWindow strip(documents);
    QVERIFY(shown->loadFile(m_files.folder(), u"a.txt"_s, 0));
    QCOMPARE(strip.text(), u"The disk of this file is full."_s);
    QCOMPARE(strip.offers(), QStringList{ u"Save As…"_s });
    isFull = false;
    QVERIFY(shown->reload(m_files.folder(), u"a.txt"_s));
    QVERIFY(!strip.isShown());
}

REGISTER_TEST(runWindowTest<ObstacleNoticesTest>)
#include "obstaclenotices_test.moc"
