#include "tests/faults/sandbox.h"

#include "files/filename.h"
#include "files/stagedfile.h"
#include "files/stagedfolders.h"
#include "files/statefolder.h"
#include "recovery/journalfolder.h"
#include "recovery/restoring.h"
#include "settings/config.h"
#include "tests/files/savedfile.h"

#include <QDirIterator>

using namespace Qt::StringLiterals;

QStringList NextStart::restoredTexts() const
{
    QStringList texts;
    for (const LeftBehind &journal : journals) {
        TextDocument document;
        const Restored restored = restore(journal.journal, document);
        using Outcome = Restored::Outcome;
        const bool isRestored = restored.outcome == Outcome::Edited || restored.outcome == Outcome::Saved
            || restored.outcome == Outcome::New;
        texts << (isRestored ? document.store().text() : u"(not restored)"_s);
    }
    return texts;
}

bool NextStart::hasCopy(const QByteArray &file, const QByteArray &bytes) const
{
    return std::ranges::any_of(
        copies, [&](const LostCopy &copy) { return copy.file == file && contentOf(copy.name) == bytes; });
}

namespace {

/// In memory where that can be: folders come and go by the thousand.
QString place()
{
    const QString memory = u"/dev/shm"_s;
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + u"/faults"_s;
}

} // namespace

Sandbox::Sandbox()
    : m_dir(place())
    , m_root(QFile::encodeName(m_dir.path()) + '/')
{
    qputenv("XDG_STATE_HOME", m_root + "state");
    qputenv("XDG_CONFIG_HOME", m_root + "config");
    empty();
}

void Sandbox::empty() const
{
    QDirIterator found(m_dir.path(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (found.hasNext()) {
        const QFileInfo info(found.next());
        if (info.isDir() && !info.isSymLink())
            QDir(info.filePath()).removeRecursively();
        else
            QFile::remove(info.filePath());
    }
    ::mkdir(documents().constData(), 0700);
}

QStringList Sandbox::files() const
{
    QStringList files;
    QDirIterator found(m_dir.path(), QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (found.hasNext())
        files << found.next().sliced(m_root.size());
    return files;
}

NextStart Sandbox::startAgain() const
{
    removeStagedStrays(Config::folder());
    removeNotedStrays();
    NextStart start{ lostCopies(), findLeftBehind(journalFolder()) };
    for (const QString &name : { u"marlopad"_s, u"marlopad_fr"_s })
        const Config config(name, Config::User, Config::Change);
    return start;
}

namespace {

/// An empty folder may be one where something is to be mounted: it is looked for again.
bool isNoteOfEmptyFolder(const QString &name)
{
    QFile note(name);
    if (!name.contains(u"state/marlopad/saves/"_s) || !note.open(QIODevice::ReadOnly))
        return false;
    const QString folder = QFile::decodeName(note.readAll().chopped(1)).section(u' ', 1);
    return QDir(folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace

QString Sandbox::unexplained(const NextStart &start) const
{
    static const QSet<QString> own{ u"documents/file.txt"_s, u"documents/other.txt"_s, u"documents/link"_s,
        u"config/marlopad.conf"_s, u"config/marlopad_fr.conf"_s, u"config/real.conf"_s };
    QSet<QString> offered;
    for (const LostCopy &copy : start.copies)
        offered << FileName::fromBytes(copy.name) << FileName::fromBytes(copy.name + ".of");
    for (const LeftBehind &journal : start.journals)
        offered << FileName::fromBytes(journal.journal);
    for (const QString &file : files()) {
        const bool isKept = file.startsWith(u"state/marlopad/kept-"_s); // and the user is told so
        if (!own.contains(file) && !isKept && !isNoteOfEmptyFolder(FileName::fromBytes(m_root) + file)
            && !offered.contains(FileName::fromBytes(m_root) + file))
            return file;
    }
    return {};
}
