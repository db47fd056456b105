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

FileChange DocumentVersion::change(const QByteArray &own)
{
    const FileChange change = changeByOthers(own, FileVersion::Reading::InPassing);
    if (change == FileChange::None)
        m_acknowledged.reset();
    return m_acknowledged && *m_acknowledged == stampOf(own, *m_calls) ? FileChange::None : change;
}

/// What another document has written is what other programs began with. This one has not read it, so it has
/// not only grown.
FileChange DocumentVersion::changeByOthers(const QByteArray &own, FileVersion::Reading reading)
{
    const FileChange change = m_version.changeOf(own, *m_calls, reading);
    if (change == FileChange::None || change == FileChange::Deleted || change == FileChange::Unsure)
        return change;
    Write *const last = writes().lastTo(idOf(own).value_or(FileId()));
    if (!last || last->number <= m_inStep)
        return change;
    const FileChange sinceLast = last->version.changeOf(own, *m_calls, reading);
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

Overtaken DocumentVersion::beginWriting(const QByteArray &target, const QByteArray &own)
{
    const auto file = idOf(target), ownFile = idOf(own);
    m_target = file.value_or(FileId());
    if (!file || !ownFile) // it may have anything
        return Overtaken::ByProgram;
    const bool isOwn = file == ownFile;
    const FileChange change = isOwn ? changeByOthers(own, FileVersion::Reading::All) : FileChange::None;
    if (change != FileChange::None && change != FileChange::Deleted)
        return Overtaken::ByProgram;
    const Write *const last = writes().lastTo(m_target);
    const bool isNews = last && last->document != m_document && last->number > (isOwn ? m_inStep : m_begun);
    return isNews ? Overtaken::ByDocument : Overtaken::No;
}

/// Another file may have the target's name now: the old one's numbers are free for files of other programs.
void DocumentVersion::endWriting(const QByteArray &target, const FileVersion &written)
{
    m_version = written;
    m_acknowledged.reset();
    writes().last.erase(m_target);
    m_inStep = ++writes().count;
    writes().last[idOf(target).value_or(FileId())] = { m_inStep, m_document, written };
}

/// Null for a name that no file has; nothing where the disk does not answer.
std::optional<DocumentVersion::FileId> DocumentVersion::idOf(const QByteArray &name) const
{
    struct stat info = {};
    if (m_calls->stat(name.constData(), &info) == 0)
        return FileId(info.st_dev, info.st_ino);
    return errno == ENOENT || errno == ENOTDIR ? std::optional(FileId()) : std::nullopt;
}
