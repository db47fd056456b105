#include "files/filename.h"
#include "files/stagedfile.h"
#include "files/untoldcopy.h"
#include "recovery/recoveryjournals.h"
#include "tests/faults/operations.h"
#include "tests/files/savedfile.h"

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView oldLine = "the old text\n";
constexpr QByteArrayView typedText = "new, and ";

/// Which file a document is of, before it is loaded or saved.
enum class Target { New, Plain, Link, TwoNames, ClosedFolder };

class FileOperation : public Operation {
public:
    FileOperation(const Sandbox &sandbox, Target target, qsizetype lines)
        : Operation(sandbox)
        , m_target(target)
        , m_old(oldLine.toByteArray().repeated(lines))
        , m_new(typedText.toByteArray() + m_old)
    {
    }

    void prepare() override
    {
        if (m_target == Target::New)
            return;
        writeFile(fileName(), m_old);
        settle();
        if (m_target == Target::Link)
            ::symlink("file.txt", (m_sandbox.documents() + "link").constData());
        if (m_target == Target::TwoNames)
            ::link(fileName().constData(), (m_sandbox.documents() + "other.txt").constData());
    }

protected:
    QByteArray fileName() const { return m_sandbox.documents() + "file.txt"; }
    QString path() const { return FileName::fromBytes(m_sandbox.documents()); }
    QString nameToUse() const { return m_target == Target::Link ? u"link"_s : u"file.txt"_s; }
    /// A save reads the content of a file again that is hardly older than its last look: makes it older, so
    /// that how long the test takes changes no call.
    void settle() const
    {
        constexpr timespec longAgo[2] = { { 1'000'000'000, 0 }, { 1'000'000'000, 0 } };
        QCOMPARE(::utimensat(AT_FDCWD, fileName().constData(), longAgo, 0), 0);
    }
    FileCalls on(const FileCalls &calls) const
    {
        return m_target == Target::ClosedFolder ? withClosedFolder(calls, m_sandbox.documents()) : calls;
    }

    const Target m_target;
    const QByteArray m_old;
    const QByteArray m_new; ///< when something was typedText
};

/// A failure leaves the text that was there.
class Load : public FileOperation {
public:
    using FileOperation::FileOperation;

    bool run(const FileCalls &calls, const Begin &begin) override
    {
        TextDocument document(plainCodes, calls);
        document.replace({}, 0, u"before");
        begin();
        const bool isLoaded = !document.load(path(), nameToUse(), {}, plainCodes);
        m_isWell = document.store().text() == (isLoaded ? QString::fromUtf8(m_old) : u"before"_s);
        return isLoaded;
    }
    QString lostInWindow() const override { return m_isWell ? QString() : u"another text"_s; }
    QString lostOnDisk(const NextStart &, bool) const override
    {
        return contentOf(fileName()) == m_old ? QString() : u"the file"_s;
    }

private:
    bool m_isWell = true;
};

/// Reads what a log has got since.
class ReadOn : public FileOperation {
public:
    using FileOperation::FileOperation;

    bool run(const FileCalls &calls, const Begin &begin) override
    {
        TextDocument document(plainCodes, calls);
        if (document.load(path(), nameToUse(), {}, plainCodes))
            return false;
        writeFile(fileName(), m_old + m_old);
        begin();
        const bool isRead = document.readGrowth().isRead;
        m_isWell = document.store().text() == QString::fromUtf8(isRead ? m_old + m_old : m_old)
            && !document.isEdited();
        return isRead;
    }
    QString lostInWindow() const override { return m_isWell ? QString() : u"another text"_s; }
    QString lostOnDisk(const NextStart &, bool) const override
    {
        return contentOf(fileName()) == m_old + m_old ? QString() : u"the file"_s;
    }

private:
    bool m_isWell = true;
};

class Save : public FileOperation {
public:
    enum class With { NothingElse, KeptCopy, Journal, Overtaking };

    Save(const Sandbox &sandbox, Target target, With with, qsizetype lines)
        : FileOperation(sandbox, target, lines)
        , m_with(with)
    {
    }

    bool run(const FileCalls &system, const Begin &begin) override
    {
        const FileCalls calls = on(system);
        RecoveryJournals journals(journalFolder(), calls, [this] { return m_now; });
        TextDocument document(plainCodes, calls);
        if (m_with == With::Journal)
            journals.attach(document);
        if (m_target != Target::New && document.load(path(), nameToUse(), {}, plainCodes))
            return false;
        document.replace({}, 0, QString::fromUtf8(m_target == Target::New ? m_new : typedText.toByteArray()));
        pause(journals);
        if (m_with == With::KeptCopy)
            document.file().keep();
        if (m_with == With::Overtaking)
            writeAsAnother(calls);
        begin();
        const SaveResult result = document.save(path(), nameToUse());
        pause(journals);
        const bool isSaved = result.outcome == SaveResult::Outcome::Written;
        m_isWell = document.store().text() == QString::fromUtf8(m_new) && document.isEdited() == !isSaved;
        return isSaved;
    }
    QString lostInWindow() const override { return m_isWell ? QString() : u"text or edited"_s; }
    QString lostOnDisk(const NextStart &start, bool isDone) const override
    {
        const QByteArray now = contentOf(fileName());
        const bool isOld =
            m_target == Target::New ? !QFile::exists(QFile::decodeName(fileName())) : now == replaced();
        const bool hasOldCopy = start.hasCopy(fileName(), replaced());
        if (now != m_new && (isDone || (!isOld && !hasOldCopy)))
            return u"the file begins with "_s + QString::fromUtf8(now.first(qMin<qsizetype>(now.size(), 40)));
        const bool isToBeKept = m_with == With::KeptCopy || m_with == With::Overtaking;
        if (isToBeKept && !isOld && !hasOldCopy && !isCopyKept(isDone))
            return u"the old text"_s;
        if (m_with == With::Journal && now != m_new
            && !start.restoredTexts().contains(QString::fromUtf8(m_new)))
            return u"the new text"_s;
        return {};
    }

private:
    /// What the file has before it is saved.
    QByteArray replaced() const
    {
        return m_with == With::Overtaking ? QByteArray("of another program\n") : m_old;
    }
    void writeAsAnother(const FileCalls &calls) const
    {
        const QByteArray bytes = replaced();
        const int file = calls.open(fileName().constData(), O_WRONLY | O_CLOEXEC, 0);
        calls.ftruncate(file, 0);
        calls.pwrite(file, bytes.constData(), size_t(bytes.size()), 0);
        calls.close(file);
    }
    /// For long enough that what is due is written.
    void pause(RecoveryJournals &journals)
    {
        if (m_with != With::Journal)
            return;
        m_now += WriteSchedule::longestRetry;
        journals.writeDue();
        journals.flush(std::chrono::minutes(1));
    }
    /// And the next start says so. Where the note of that could not be written the program that runs does.
    bool isCopyKept(bool isDone) const
    {
        const QDir folder(QFile::decodeName(stateFolder()));
        const QStringList kept = folder.entryList({ u"kept-*-file.txt"_s }, QDir::Files);
        return kept.size() == 1 && contentOf(QFile::encodeName(folder.filePath(kept[0]))) == replaced()
            && (isDone || untoldCopies() == QByteArrayList{ QFile::encodeName(folder.filePath(kept[0])) });
    }

    const With m_with;
    qint64 m_now = 0;
    bool m_isWell = true;
};

NamedOperation load(const char *name, Target target, qsizetype lines)
{
    return { name, [=](const Sandbox &sandbox) { return std::make_unique<Load>(sandbox, target, lines); } };
}

NamedOperation save(
    const char *name, Target target, Save::With with = Save::With::NothingElse, qsizetype lines = 1)
{
    return { name,
        [=](const Sandbox &sandbox) { return std::make_unique<Save>(sandbox, target, with, lines); } };
}

} // namespace

std::vector<NamedOperation> documentOperations()
{
    using With = Save::With;
    constexpr qsizetype manyLines = 21000; // more than are written at once
    return {
        load("load", Target::Plain, 1),
        load("load through a link", Target::Link, 1),
        load("load of an empty file", Target::Plain, 0),
        { "load of what a file has got since",
            [](const Sandbox &sandbox) { return std::make_unique<ReadOn>(sandbox, Target::Plain, 1); } },
        save("save of a new file", Target::New),
        save("save", Target::Plain),
        save("save through a link", Target::Link),
        save("save in place", Target::TwoNames),
        save("save of a long text in place", Target::TwoNames, With::NothingElse, manyLines),
        save("save in a closed folder", Target::ClosedFolder),
        save("save that keeps a copy", Target::Plain, With::KeptCopy),
        save("save in place that keeps a copy", Target::TwoNames, With::KeptCopy),
        save("save over what another program wrote", Target::Plain, With::Overtaking),
        save("save of a document with a journal", Target::Plain, With::Journal),
        save("save in place of a document with a journal", Target::TwoNames, With::Journal),
    };
}
