#include "app/documentarea.h"
#include "editor/noticequeue.h"
#include "tests/app/brokenreading.h"
#include "tests/app/jobevents.h"
#include "tests/app/stayingapplication.h"
#include "tests/app/unsavedtexts.h"

#include <QDirIterator>

#include <map>

using namespace Qt::StringLiterals;

namespace {

JobScene::Content contentAfter(const JobScene::Job &job, JobEvents::Fate fate)
{
    using Fate = JobEvents::Fate;
    switch (fate) {
    case Fate::Done:
        return job.done;
    case Fate::Stopped:
        return job.stopped;
    case Fate::Failed:
        return job.failed;
    case Fate::NotTried:
    case Fate::Gone:
    case Fate::DoneAndGone:
        return JobScene::Content::NoDocument;
    }
    Q_UNREACHABLE();
}

} // namespace

/// Every job that is done behind the window, and everything that may come between: what is in the files and
/// in the texts then, what the strip tells, and where the next key goes.
///
/// Another job is another row of JobScene::jobs(), another event one of JobEvents::events().
class JobsAndEventsTest : public QObject, private JobEvents {
    Q_OBJECT

private slots:
    void init() { beginScene(); }
    void cleanup() { endScene(); }

    void endsAsItShould_data();
    void endsAsItShould();
    void readErrorInTheMiddle_data();
    void readErrorInTheMiddle();

private:
    /// Its end makes a document edited, about which is asked.
    bool isAskedAbout(Fate fate) const
    {
        using enum JobScene::Kind;
        return (m_job->kind == Edit || isOfInput()) && fate == Fate::DoneAndGone;
    }
    void checkDocument(Fate fate);
    void checkFiles(Fate fate);
    static QByteArrayList keptContents();
    void checkJournals();
    void checkStrip();
    void checkNextKey();
};

void JobsAndEventsTest::checkDocument(Fate fate)
{
    const JobScene::Content content = contentAfter(*m_job, fate);
    const bool isThere = m_scene->window.tabBar()->editors().contains(m_editor);
    QCOMPARE(isThere, content != JobScene::Content::NoDocument);
    if (!isThere)
        return;
    QVERIFY(!m_editor->document().isHeld());
    QString expected = JobScene::textOf(content, m_come);
    const bool isFromInput = isOfInput() && !expected.isEmpty();
    expected.insert(m_cursor - Offset(), m_typed);
    QVERIFY(m_editor->text() == expected);
    m_editor->store().checkInvariants();
    const bool isUnsaved = m_job->kind == JobScene::Kind::Save && fate != Fate::Done;
    const bool isEditMade = m_job->kind == JobScene::Kind::Edit && fate == Fate::Done;
    const bool isRestored = m_job->kind == JobScene::Kind::Restore && fate == Fate::Done;
    QCOMPARE(m_editor->edited(),
        isUnsaved || isEditMade || isRestored || isFromInput || content == JobScene::Content::Replaced
            || !m_typed.isEmpty());
    if (m_job->kind == JobScene::Kind::Search)
        QCOMPARE(m_editor->hasMarkedText(), fate == Fate::Done && content == JobScene::Content::Text);
    if (m_job->kind == JobScene::Kind::Layout) {
        QTRY_VERIFY(!m_editor->store().linesAhead());
        const bool keepsRows = fate == Fate::Stopped || fate == Fate::Failed;
        QCOMPARE(m_editor->rowHeight() > m_scene->rowHeight, !keepsRows);
    }
}

QByteArrayList JobsAndEventsTest::keptContents()
{
    QByteArrayList contents;
    QDirIterator kept(
        QFile::decodeName(stateFolder()), { u"kept-*"_s }, QDir::Files, QDirIterator::Subdirectories);
    while (kept.hasNext()) {
        QFile file(kept.next());
        if (file.open(QIODevice::ReadOnly))
            contents << file.readAll();
    }
    return contents;
}

/// The old content, the new one, or what somebody else has made of it, which is kept where it is written
/// over.
void JobsAndEventsTest::checkFiles(Fate fate)
{
    const TestFiles &files = m_scene->files;
    const QString name = QString::fromLatin1(m_job->file);
    const bool isSaved =
        m_job->kind == JobScene::Kind::Save && (fate == Fate::Done || fate == Fate::DoneAndGone);
    const bool isWritten = isSaved || (isAskedAbout(fate) && m_event->answer != u"No");
    QStringList others =
        QDir(files.folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString &known : { u"other.txt"_s, u"third.txt"_s, u"a.txt"_s, u"b.txt"_s })
        others.removeOne(known);
    QVERIFY(files.read(u"other.txt"_s) == m_otherFile);
    const auto written = m_job->kind == JobScene::Kind::Input ? JobScene::Content::Come : m_job->done;
    if (isWritten)
        QVERIFY(files.read(name) == JobScene::textOf(written, m_come).toUtf8());
    else if (!m_foreign.isEmpty())
        QVERIFY(files.read(name) == m_foreign);
    else if (m_event->act == &JobsAndEventsTest::nothing || m_event->act == &JobsAndEventsTest::stop)
        QCOMPARE(QFile::exists(itsFile()), name == u"a.txt");
    if (isWritten && !m_foreign.isEmpty())
        QVERIFY(keptContents().contains(m_foreign));
    QCOMPARE(others, QStringList());
    if (m_job->kind == JobScene::Kind::Save && name != u"a.txt")
        QVERIFY(files.read(u"a.txt"_s) == JobScene::text());
}

/// A text that comes back is in the old journal until it has one of its own. What has come of standard input
/// is kept where nobody can be asked.
void JobsAndEventsTest::checkJournals()
{
    if (m_job->kind == JobScene::Kind::Restore)
        QVERIFY(UnsavedTexts::now().contains(JobScene::textOf(JobScene::Content::Edited)));
    if (isOfInput() && m_event->act == &JobsAndEventsTest::endByOrder)
        QVERIFY(UnsavedTexts::now().contains(JobScene::textOf(m_job->stopped, m_come)));
}

/// Of nothing that is under way.
void JobsAndEventsTest::checkStrip()
{
    const NoticeQueue &notices = m_scene->window.findChild<DocumentArea *>()->notices();
    for (const ctlEditer *const editor : m_scene->window.tabBar()->editors()) {
        for (const NoticeKind kind : { NoticeKind::Work, NoticeKind::Searching, NoticeKind::Counting })
            QVERIFY(!notices.has(kind, editor));
        QTRY_VERIFY(!notices.has(NoticeKind::LayingOut, editor));
    }
}

/// It comes to the document that is shown, of which the Edit menu is, and to no other one.
void JobsAndEventsTest::checkNextKey()
{
    QCOMPARE(m_scene->other->text(), m_otherText);
    ctlEditer *const shown = m_scene->window.currentEditor();
    QCOMPARE(m_scene->window.isItemEnabled(EditCommand::Undo), shown->history().canUndo());
    std::map<const ctlEditer *, qint64> lengths;
    for (const ctlEditer *const editor : m_scene->window.tabBar()->editors())
        lengths[editor] = editor->store().length();
    shown->deselect();
    m_scene->press(Qt::Key_Z);
    for (const auto &[editor, length] : lengths)
        QCOMPARE(editor->store().length() - length, editor == shown ? 1 : 0);
}

void JobsAndEventsTest::endsAsItShould_data()
{
    QTest::addColumn<const JobScene::Job *>("job");
    QTest::addColumn<const Event *>("event");
    for (const JobScene::Job &job : JobScene::jobs()) {
        for (const Event &event : events()) {
            if (fateOf(job, event) != Fate::NotTried)
                QTest::addRow("%s: %s", job.name, event.name) << &job << &event;
        }
    }
}

void JobsAndEventsTest::endsAsItShould()
{
    QFETCH(const JobScene::Job *, job);
    QFETCH(const Event *, event);
    m_event = event;
    const Fate fate = fateOf(*job, *event);
    m_job = job;
    const MessageBoxes boxes(
        QStringList(job->boxesOfBegin, u"Yes"_s) + QStringList(isAskedAbout(fate) ? 2 : 1, event->answer));
    begin(*job);
    makeStepsBefore(event->moment);
    if (event->moment == Moment::End && job->kind == JobScene::Kind::Input)
        QCOMPARE(m_come, JobScene::text().size());
    QVERIFY(m_scene->isUnderWay(*job, *m_editor));
    m_cursor = m_editor->cursorOffset();
    (this->*event->act)();
    if (QTest::currentTestFailed())
        return;
    if (!event->endsWindow)
        m_scene->makeAllSteps();
    const int boxesOfEnd = fate == Fate::Failed || isAskedAbout(fate) ? 1
        : fate == Fate::Done                                          ? job->boxesOfEnd
                                                                      : 0;
    QVERIFY2(boxes.count() == job->boxesOfBegin + event->boxes + boxesOfEnd,
        qPrintable(boxes.texts().join(u'\n')));
    checkFiles(fate);
    m_fullDisk.reset();
    checkJournals();
    if (event->endsWindow || QTest::currentTestFailed())
        return;
    checkDocument(fate);
    checkStrip();
    checkNextKey();
}

void JobsAndEventsTest::readErrorInTheMiddle_data()
{
    QTest::addColumn<const JobScene::Job *>("job");
    for (const JobScene::Job &job : JobScene::jobs()) {
        using enum JobScene::Kind;
        if (job.kind == Load || job.kind == Reload || job.kind == Follow || job.kind == Restore
            || job.kind == Input)
            QTest::addRow("%s", job.name) << &job;
    }
}

/// Of a file that is longer than what is read ahead. A text that comes back is in its journal.
void JobsAndEventsTest::readErrorInTheMiddle()
{
    QFETCH(const JobScene::Job *, job);
    const MessageBoxes boxes(QStringList(job->boxesOfBegin, u"Yes"_s));
    begin(*job);
    m_cursor = m_editor->cursorOffset();
    m_scene->files.write(u"a.txt"_s, JobScene::text().repeated(6));
    m_scene->bringAndStep();
    m_come = m_scene->brought;
    QVERIFY(m_editor->document().isHeld());
    if (const SharedFd input = m_scene->input.lock())
        breakInput(*input);
    else
        QVERIFY(breakReading(itsFile()));
    m_scene->makeAllSteps();
    const bool isRestored = job->kind == JobScene::Kind::Restore;
    QCOMPARE(boxes.count(), job->boxesOfBegin + (isRestored ? 0 : 1));
    if (!isRestored)
        QCOMPARE(boxes.texts().last(), u"File Load Error!|This file could not be read to its end!"_s);
    checkDocument(isRestored ? Fate::Done : Fate::Failed);
    if (job->kind != JobScene::Kind::Input)
        QCOMPARE(m_editor->name(), u"a.txt"_s);
    checkStrip();
    checkNextKey();
}

REGISTER_TEST(runStayingTest<JobsAndEventsTest>)
#include "jobsandevents_test.moc"
