#include "app/documentjournals.h"
#include "app/lastwrites.h"
#include "files/endorder.h"
#include "jobs/poolrunner.h"
#include "recovery/recoveryjournals.h"
#include "tests/app/documentparts.h"
#include "tests/app/stayingapplication.h"
#include "tests/files/quickcalls.h"

#include <QThread>

#include <condition_variable>
#include <mutex>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 fewestWhileStuck = qint64{ 1 } << 18;

QByteArray textWhileStuck()
{
    return QByteArray("a line of a large text\n").repeated(30'000);
}

/// On which no write gets to its end until it is released.
class StuckDisk {
public:
    StuckDisk()
    {
        m_calls.fsync = [this](int) {
            std::unique_lock lock(m_mutex);
            m_isWaitedFor = true;
            m_changed.wait(lock, [this] { return m_isReleased; });
            return 0;
        };
    }
    Q_DISABLE_COPY_MOVE(StuckDisk)

    const FileCalls &calls() const { return m_calls; }
    bool isWaitedFor()
    {
        const std::lock_guard lock(m_mutex);
        return m_isWaitedFor;
    }
    void release()
    {
        const std::lock_guard lock(m_mutex);
        m_isReleased = true;
        m_changed.notify_all();
    }

private:
    FileCalls m_calls = quickCalls();
    std::mutex m_mutex; ///< for what follows
    std::condition_variable m_changed;
    bool m_isReleased = false;
    bool m_isWaitedFor = false;
};

} // namespace

/// The window while the disk of the journals does not answer: everything else goes on, and what was typed is
/// in the journals once it does.
class StuckJournalsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<ctlEditer *>(); }
    void init();
    void cleanup();

    void largeFileIsRead();
    void longTextIsSaved();
    void textIsTypedOn();
    void tabIsClosed();
    void allIsSavedAndClosed();
    void orderToEndDoesNotWait();

private:
    struct Parts : DocumentParts {
        QByteArray folder() const { return QFile::encodeName(files.folder()) + "journals/"; }
        QStringList journalNames() const
        {
            return QDir(QFile::decodeName(folder())).entryList({ u"*.journal"_s }, QDir::Files);
        }

        StuckDisk disk;
        qint64 now = 1000;
        RecoveryJournals journals{ folder(), disk.calls(), [this] { return now; } };
        DocumentJournals documentJournals{ documents, journals };
        LastWrites lastWrites{ documents, loader, saver, places, journals };
    };

    ctlEditer *current() const { return m_parts->documents.current(); }
    void write();

    std::unique_ptr<Parts> m_parts;
};

/// With more edited documents than there are threads, whose journals are being written.
void StuckJournalsTest::init()
{
    m_parts = std::make_unique<Parts>();
    m_parts->jobs = { std::make_unique<PoolRunner>(), fewestWhileStuck };
    for (int i = 0; i < QThread::idealThreadCount() + 2; ++i)
        QTest::keyClicks(m_parts->open(m_parts->files.write(u"%1.txt"_s.arg(i), "text\n")), u"typed "_s);
    write();
    QTRY_VERIFY(m_parts->disk.isWaitedFor());
}

void StuckJournalsTest::cleanup()
{
    m_parts->disk.release();
    EndOrder::withdraw();
    m_parts.reset();
}

/// What is due.
void StuckJournalsTest::write()
{
    m_parts->now += 10'000;
    m_parts->journals.writeDue();
}

void StuckJournalsTest::largeFileIsRead()
{
    const ctlEditer *const editor = m_parts->open(m_parts->files.write(u"large.txt"_s, textWhileStuck()));
    QVERIFY(editor->document().isHeld());
    QTRY_VERIFY(!editor->document().isHeld());
    QVERIFY(editor->text() == QString::fromLatin1(textWhileStuck()));
    QVERIFY(m_parts->journalNames().isEmpty());
}

void StuckJournalsTest::longTextIsSaved()
{
    ctlEditer *const editor = current();
    editor->insert(QString::fromLatin1(textWhileStuck()));
    m_parts->saver.beginSave(editor);
    QVERIFY(m_parts->saver.isSaving(editor));
    QTRY_VERIFY(!m_parts->saver.isSaving(editor));
    QVERIFY(!editor->edited());
    QVERIFY(m_parts->files.read(editor->name()) == "typed " + textWhileStuck() + "text\n");
}

void StuckJournalsTest::textIsTypedOn()
{
    QTest::keyClicks(current(), u"on "_s);
    write();
    QCOMPARE(current()->text(), u"typed on text\n"_s);
    QVERIFY(m_parts->journalNames().isEmpty());
    m_parts->disk.release();
    QVERIFY(m_parts->journals.flush(std::chrono::minutes(1)));
    const auto count = m_parts->documents.editors().size();
    QCOMPARE(m_parts->journalNames().size(), count);
}

/// Its journal goes too, when it can.
void StuckJournalsTest::tabIsClosed()
{
    const auto count = m_parts->documents.editors().size();
    m_parts->closer.close(current());
    QCOMPARE(m_parts->documents.editors().size(), count - 1);
    m_parts->disk.release();
    QVERIFY(m_parts->journals.flush(std::chrono::minutes(1)));
    QCOMPARE(m_parts->journalNames().size(), count - 1);
}

void StuckJournalsTest::allIsSavedAndClosed()
{
    QVERIFY(m_parts->closer.closeAll(EditsAtClosing::Save));
    QCOMPARE(m_parts->files.read(u"0.txt"_s), "typed text\n"_ba);
    m_parts->disk.release();
    QVERIFY(m_parts->journals.flush(std::chrono::minutes(1)));
    QCOMPARE(m_parts->journalNames(), QStringList());
}

/// No longer than it may take.
void StuckJournalsTest::orderToEndDoesNotWait()
{
    EndOrder::give();
    static_cast<QPEApplication *>(qApp)->endAtOnce();
    QVERIFY(m_parts->journalNames().isEmpty());
    QCOMPARE(m_parts->files.read(u"0.txt"_s), "text\n"_ba);
}

REGISTER_TEST(runStayingTest<StuckJournalsTest>)
#include "stuckjournals_test.moc"
