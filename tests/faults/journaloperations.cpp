#include "files/filename.h"
#include "files/ownfile.h"
#include "files/stagedfolders.h"
#include "files/statefolder.h"
#include "recovery/recoveryjournals.h"
#include "tests/faults/onefault.h"
#include "tests/faults/operations.h"
#include "tests/files/savedfile.h"

using namespace Qt::StringLiterals;

namespace {

const QString fileText = u"text\n"_s;

/// A document and its journal, in a program that ends without a word when this does.
class Program {
public:
    explicit Program(const FileCalls &calls)
        : m_calls(calls)
        , journals(journalFolder(), m_calls, [this] { return m_now; })
        , document(plainCodes, m_calls)
    {
        journals.attach(document);
    }

    bool load(const Sandbox &sandbox)
    {
        return !document.load(FileName::fromBytes(sandbox.documents()), u"file.txt"_s, {}, plainCodes);
    }
    void type(const QString &letter) { document.replace({}, 0, letter); }
    /// For long enough that what is due is written; whether all is on the disk.
    bool pause()
    {
        m_now += WriteSchedule::longestRetry;
        journals.writeDue();
        return journals.flush(std::chrono::minutes(1));
    }

private:
    const FileCalls m_calls;
    qint64 m_now = 0;

public:
    RecoveryJournals journals;
    TextDocument document;
};

class JournalOperation : public Operation {
public:
    using Operation::Operation;

    void prepare() override { writeFile(m_sandbox.documents() + "file.txt", fileText.toUtf8()); }
    QString lostInWindow() const override { return m_lost; }

protected:
    void leaveJournal(const QString &typed) const
    {
        Program program(quickCalls());
        program.load(m_sandbox);
        program.type(typed);
        program.pause();
    }
    static QString asLost(const QStringList &found) { return u"the journal: "_s + found.join(u"; "_s); }
    /// Once a call has failed the next ones succeed, and then nothing may be missing.
    bool pauseUntilWritten(Program &program)
    {
        const bool isWritten = program.pause();
        const bool isToldWrong = isWritten != (program.journals.failure() == 0);
        const bool isWrittenAtLast = isWritten || program.pause() || program.pause();
        m_lost = isWrittenAtLast && program.journals.failure() == 0 ? QString() : u"what comes next"_s;
        if (isToldWrong)
            m_lost = u"the word that it failed"_s;
        return isWritten;
    }

private:
    QString m_lost;
};

class JournalWriting : public JournalOperation {
public:
    enum class Step { First, Next, Anew, Removed };

    JournalWriting(const Sandbox &sandbox, Step step)
        : JournalOperation(sandbox)
        , m_step(step)
    {
    }

    bool run(const FileCalls &system, const Begin &begin) override
    {
        bool isFull = false;
        const FileCalls calls = withFaults(
            system, [&isFull](const QByteArray &call) { return isFull && call == "pwrite" ? ENOSPC : 0; });
        Program program(calls);
        program.load(m_sandbox);
        program.type(u"a"_s);
        if (m_step != Step::First)
            program.pause();
        if (m_step == Step::Next || m_step == Step::Anew)
            program.type(u"b"_s);
        if (m_step == Step::Anew) {
            isFull = true;
            program.pause();
            isFull = false;
        }
        if (m_step == Step::Removed)
            program.document.undo();
        begin();
        return pauseUntilWritten(program);
    }
    QString lostOnDisk(const NextStart &start, bool isDone) const override
    {
        const QStringList found = start.restoredTexts();
        const bool isNew = found == QStringList(after());
        // One that cannot be removed is offered, and the user discards it.
        if (m_step == Step::Removed && found.isEmpty())
            return {};
        const bool mayBeOld = !isDone || m_step == Step::Removed;
        return isNew || (mayBeOld && found == before()) ? QString() : asLost(found);
    }

private:
    QStringList before() const { return m_step == Step::First ? QStringList() : QStringList(u"atext\n"_s); }
    QString after() const { return m_step == Step::First ? u"atext\n"_s : u"batext\n"_s; }

    const Step m_step;
};

class JournalRestoring : public JournalOperation {
public:
    enum class File { Unchanged, Changed };

    JournalRestoring(const Sandbox &sandbox, File file)
        : JournalOperation(sandbox)
        , m_file(file)
    {
    }

    void prepare() override
    {
        JournalOperation::prepare();
        leaveJournal(u"a"_s);
        if (m_file == File::Changed)
            writeFile(m_sandbox.documents() + "file.txt", "of another program\n");
    }
    bool run(const FileCalls &calls, const Begin &begin) override
    {
        const LeftBehind found = findLeftBehind(journalFolder()).at(0);
        Program program(calls);
        begin();
        const Restored restored = program.journals.restore(found, program.document);
        const bool isRestored =
            restored.outcome == Restored::Outcome::Edited || restored.outcome == Restored::Outcome::New;
        m_isWell = isRestored ? program.document.store().text() == u"atext\n"_s
                              : restored.hasReadError || !restored.journal;
        return pauseUntilWritten(program) && isRestored;
    }
    QString lostInWindow() const override
    {
        return m_isWell ? JournalOperation::lostInWindow() : u"the text"_s;
    }
    QString lostOnDisk(const NextStart &start, bool) const override
    {
        const QStringList found = start.restoredTexts();
        return found.contains(u"atext\n"_s) ? QString() : asLost(found);
    }

private:
    const File m_file;
    bool m_isWell = true;
};

/// Of a document whose file is gone; its journal has the text.
class Closing : public JournalOperation {
public:
    using JournalOperation::JournalOperation;

    bool run(const FileCalls &calls, const Begin &begin) override
    {
        Program program(calls);
        program.load(m_sandbox);
        QFile::remove(QFile::decodeName(m_sandbox.documents() + "file.txt"));
        program.journals.keep(program.document, KeptFor::FileLost);
        program.pause();
        begin();
        program.journals.leave(program.document);
        return program.journals.flush(std::chrono::minutes(1));
    }
    QString lostOnDisk(const NextStart &start, bool) const override
    {
        const QStringList found = start.restoredTexts();
        return found.contains(fileText) ? QString() : asLost(found);
    }
};

class Discarding : public JournalOperation {
public:
    using JournalOperation::JournalOperation;

    void prepare() override
    {
        JournalOperation::prepare();
        leaveJournal(u"a"_s);
    }
    bool run(const FileCalls &calls, const Begin &begin) override
    {
        const LeftBehind found = findLeftBehind(journalFolder()).at(0);
        RecoveryJournals journals(journalFolder(), calls);
        begin();
        return journals.discard(found);
    }
    /// After a power cut it may be there again.
    QString lostOnDisk(const NextStart &start, bool) const override
    {
        const QStringList found = start.restoredTexts();
        const bool isWhole = found.isEmpty() || found == QStringList(u"atext\n"_s);
        return isWhole ? QString() : asLost(found);
    }
};

/// With something of everything that a stopped program leaves behind.
class Start : public JournalOperation {
public:
    using JournalOperation::JournalOperation;

    void prepare() override
    {
        JournalOperation::prepare();
        leaveJournal(u"a"_s);
        const QByteArray digits(ownFileDigits, '0');
        const QByteArray copy = stateFolder() + ".marlopad-copy-" + digits;
        OldCopy lost(FileCalls::system());
        lost.make(m_sandbox.documents() + "file.txt");
        lost.leave();
        writeFile(copy, "not finished");
        writeFile(m_sandbox.documents() + ".file.txt.marlopad-" + digits, "staged");
        noteStagedFolder(m_sandbox.documents());
        writeFile(journalFolder() + newUnfinishedName(), "not finished");
    }
    bool run(const FileCalls &calls, const Begin &begin) override
    {
        begin();
        lostCopies(calls);
        findLeftBehind(journalFolder(), calls);
        removeNotedStrays(calls);
        return true;
    }
    QString lostOnDisk(const NextStart &start, bool) const override
    {
        if (!start.hasCopy(m_sandbox.documents() + "file.txt", fileText.toUtf8()))
            return u"the copy"_s;
        return start.restoredTexts() == QStringList(u"atext\n"_s) ? QString() : u"the journal"_s;
    }
};

NamedOperation writing(const char *name, JournalWriting::Step step)
{
    return { name, [=](const Sandbox &sandbox) { return std::make_unique<JournalWriting>(sandbox, step); } };
}

NamedOperation restoring(const char *name, JournalRestoring::File file)
{
    return { name,
        [=](const Sandbox &sandbox) { return std::make_unique<JournalRestoring>(sandbox, file); } };
}

template <class Kind> NamedOperation other(const char *name)
{
    return { name, [](const Sandbox &sandbox) { return std::make_unique<Kind>(sandbox); } };
}

} // namespace

std::vector<NamedOperation> journalOperations()
{
    using Step = JournalWriting::Step;
    return {
        writing("first write of a journal", Step::First),
        writing("next write of a journal", Step::Next),
        writing("journal that is written anew", Step::Anew),
        writing("journal that goes", Step::Removed),
        other<Closing>("closing of a document without its file"),
        restoring("restoring", JournalRestoring::File::Unchanged),
        restoring("restoring where the file has changed", JournalRestoring::File::Changed),
        other<Discarding>("discarding"),
        other<Start>("start"),
    };
}
