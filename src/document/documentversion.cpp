#include "document/documentversion.h"

#include <map>

namespace {

struct Write {
    qint64 number = 0; ///< counted over all files
    qint64 document = 0;
    FileVersion version = {};
};

/// Which write to each file was the last one, and whose.
struct Writes {
    qint64 count = 0;
    std::map<std::pair<dev_t, ino_t>, Write> last;

    /// Null: none.
    Write *lastTo(const std::pair<dev_t, ino_t> &file)
    {
        const auto found = last.find(file);
        return found == last.end() ? nullptr : &found->second;
    }
};

Writes &writes()
{
    static Writes theirs;
    return theirs;
}

std::pair<dev_t, ino_t> idOf(const FileStamp &stamp)
{
    return { stamp.device, stamp.inode };
}

qint64 newDocument()
{
    static qint64 documents = 0;
    return ++documents;
}

} // namespace

DocumentVersion::DocumentVersion(const FileCalls &calls)
    : m_calls(&calls)
    , m_document(newDocument())
    , m_begun(writes().count)
    , m_inStep(m_begun)
{
}

void DocumentVersion::setRead(const FileVersion &version)
{
    *this = DocumentVersion(*m_calls);
    m_version = version;
}

namespace {

bool isFile(const QByteArray &name, const FileCalls &calls)
{
    struct stat info;
    return calls.stat(name.constData(), &info) == 0 && S_ISREG(info.st_mode);
}

} // namespace

/// One that the document was to make, somebody else may have made.
FileChange DocumentVersion::change(const QByteArray &own)
{
    const bool isMadeByOthers = m_version.stamp().inode == 0 && isFile(own, *m_calls)
        && !writes().lastTo(idOf(stampOf(own, *m_calls)));
    const FileChange change = isMadeByOthers ? FileChange::Replaced : changeByOthers(own, FileChange::None);
    if (change == FileChange::None)
        m_acknowledged.reset();
    return m_acknowledged && *m_acknowledged == stampOf(own, *m_calls) ? FileChange::None : change;
}

/// What another document has written is what other programs began with. This one has not read it, so it has
/// not only grown.
FileChange DocumentVersion::changeByOthers(const QByteArray &own, FileChange unanswered)
{
    const FileChange change = m_version.changeOf(own, *m_calls, unanswered);
    if (change == FileChange::None || change == FileChange::Deleted || change == FileChange::Unsure)
        return change;
    Write *const last = writes().lastTo(idOf(stampOf(own, *m_calls)));
    if (!last || last->number <= m_inStep)
        return change;
    const FileChange sinceLast = last->version.changeOf(own, *m_calls, unanswered);
    return sinceLast == FileChange::Grown ? FileChange::Changed : sinceLast;
}

void DocumentVersion::noteSeen(const SeenContent &seen)
{
    m_version.noteSeen(seen);
    if (Write *const last = writes().lastTo({ seen.stamp.device, seen.stamp.inode }))
        last->version.noteSeen(seen);
}

void DocumentVersion::acknowledge(const QByteArray &own)
{
    m_acknowledged = stampOf(own, *m_calls);
}

BeforeWriting DocumentVersion::beginWriting(const QByteArray &target, const QByteArray &own)
{
    const auto file = stampAt(target), ownFile = stampAt(own);
    m_target = idOf(file.value_or(FileStamp()));
    if (!file || !ownFile) // it may have anything
        return { FileStamp(), Overtaken::ByProgram };
    const bool isOwn = file->isSameFile(*ownFile);
    const FileChange change = isOwn ? changeByOthers(own, FileChange::Unsure) : FileChange::None;
    const Write *const last = writes().lastTo(m_target);
    const bool isNews = last && last->number > (isOwn ? m_inStep : m_begun);
    const Overtaken byUs = isNews && last->document != m_document ? Overtaken::ByDocument : Overtaken::No;
    if (change == FileChange::None || change == FileChange::Deleted)
        return { *file, byUs };
    if (change != FileChange::Unsure)
        return { *file, Overtaken::ByProgram };
    BeforeWriting::Doubt doubt{ { m_version.content().value() }, byUs };
    if (isNews)
        doubt.hashes << last->version.content().value();
    return { *file, Overtaken::ByProgram, doubt };
}

Overtaken DocumentVersion::writerOf(const FileStamp &file) const
{
    const Write *const last = writes().lastTo(idOf(file));
    const bool isOurs = last && last->document != m_document && last->version.stamp() == file;
    return isOurs ? Overtaken::ByDocument : Overtaken::ByProgram;
}

/// Another file may have the target's name now: the old one's numbers are free for files of other programs.
void DocumentVersion::endWriting(const QByteArray &target, const FileVersion &written)
{
    m_version = written;
    m_acknowledged.reset();
    writes().last.erase(m_target);
    m_inStep = ++writes().count;
    writes().last[idOf(stampOf(target, *m_calls))] = { m_inStep, m_document, written };
}

/// Of no file for a name that none has; nothing where the disk does not answer.
std::optional<FileStamp> DocumentVersion::stampAt(const QByteArray &name) const
{
    struct stat info = {};
    if (m_calls->stat(name.constData(), &info) == 0)
        return FileStamp(info);
    return errno == ENOENT || errno == ENOTDIR ? std::optional(FileStamp()) : std::nullopt;
}
