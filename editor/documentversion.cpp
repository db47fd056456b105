#include "editor/documentversion.h"

#include <map>

#include <sys/stat.h>

namespace {

/// Which write to each file was the last one, counted over all files.
struct Writes {
    qint64 count = 0;
    std::map<std::pair<dev_t, ino_t>, qint64> last;

    qint64 lastTo(const std::pair<dev_t, ino_t> &file) const
    {
        const auto found = last.find(file);
        return found == last.end() ? 0 : found->second;
    }
};

Writes &writes()
{
    static Writes theirs;
    return theirs;
}

} // namespace

DocumentVersion::DocumentVersion()
    : m_begun(writes().count)
    , m_inStep(m_begun)
{
}

void DocumentVersion::setRead()
{
    *this = DocumentVersion();
}

bool DocumentVersion::beginWriting(const QByteArray &target, const QByteArray &own)
{
    m_target = idOf(target);
    const bool isOwn = m_target == idOf(own);
    return writes().lastTo(m_target) > (isOwn ? m_inStep : m_begun);
}

/// Another file may have the target's name now: the old one's numbers are free for files of other programs.
void DocumentVersion::endWriting(const QByteArray &target)
{
    writes().last.erase(m_target);
    m_inStep = ++writes().count;
    writes().last[idOf(target)] = m_inStep;
}

/// Null for a name that no file has.
DocumentVersion::FileId DocumentVersion::idOf(const QByteArray &name)
{
    struct stat info;
    return ::stat(name.constData(), &info) == 0 ? FileId(info.st_dev, info.st_ino) : FileId();
}
