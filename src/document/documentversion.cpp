#include "document/documentversion.h"

#include <map>

#include <sys/stat.h>

namespace {

struct Write {
    qint64 number = 0; ///< counted over all files
    qint64 document = 0;
};

/// Which write to each file was the last one, and whose.
struct Writes {
    qint64 count = 0;
    std::map<std::pair<dev_t, ino_t>, Write> last;

    Write lastTo(const std::pair<dev_t, ino_t> &file) const
    {
        const auto found = last.find(file);
        return found == last.end() ? Write() : found->second;
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

DocumentVersion::DocumentVersion()
    : m_document(newDocument())
    , m_begun(writes().count)
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
    const Write last = writes().lastTo(m_target);
    return last.document != m_document && last.number > (isOwn ? m_inStep : m_begun);
}

/// Another file may have the target's name now: the old one's numbers are free for files of other programs.
void DocumentVersion::endWriting(const QByteArray &target)
{
    writes().last.erase(m_target);
    m_inStep = ++writes().count;
    writes().last[idOf(target)] = { m_inStep, m_document };
}

/// Null for a name that no file has.
DocumentVersion::FileId DocumentVersion::idOf(const QByteArray &name)
{
    struct stat info;
    return ::stat(name.constData(), &info) == 0 ? FileId(info.st_dev, info.st_ino) : FileId();
}
