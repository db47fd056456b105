// The life of a program told by bytes: its documents are opened, edited, saved, journalled and closed,
// another program writes to their files, the program is killed, journals cut off anywhere, and what is left
// restored, some now and some later, in any order; beside the same on strings.

#include "codec/codecs.h"
#include "fuzz/recovery/livingdocument.h"
#include "tests/files/quickcalls.h"
#include "tests/recovery/journalbytes.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <map>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mostDocuments = 3;

/// What is gone when the program is killed.
struct Program {
    Program(RecoveryFolder &folder, const FileCalls &calls)
        : journals(folder.journals(), calls, folder.clock())
    {
    }
    RecoveryJournals journals;
    Saves saves;
    std::array<std::unique_ptr<LivingDocument>, mostDocuments> documents;
};

/// A journal on the disk, and the texts that its commits have.
struct Journal {
    QString file;
    QByteArray bytes;
    QList<Written> written;
};

class Life {
public:
    explicit Life(Bytes &bytes)
        : m_bytes(bytes)
    {
        qputenv("XDG_STATE_HOME", QFile::encodeName(m_folder.documents().path()) + "kept");
        start();
    }

    void step()
    {
        m_place = size_t(m_bytes.below(mostDocuments));
        switch (m_bytes.below(18)) {
        case 0:
            document().load();
            break;
        case 1:
            document().save();
            break;
        case 2:
            document().undo();
            break;
        case 3:
            document().redo();
            break;
        case 4:
            letOthersWrite();
            break;
        case 5:
            kill();
            break;
        case 6:
            cutJournal();
            break;
        case 7:
            document().endKeeping();
            break;
        case 8:
        case 9:
        case 10:
            writeJournals();
            break;
        case 11:
            document().paste();
            break;
        case 12:
            close();
            break;
        case 13:
            restoreOne();
            break;
        default:
            document().type();
        }
        check();
    }

    void kill()
    {
        m_program.reset();
        start();
        for (qint64 count = m_bytes.below(mostDocuments + 1); count > 0; --count)
            restoreOne();
    }
    /// Nothing of it is anywhere else.
    void restoreAll()
    {
        while (!m_left.empty())
            restoreOne();
    }
    void check() const
    {
        for (const auto &document : m_program->documents) {
            if (document)
                document->check();
        }
    }

private:
    /// The one that a step is about; opens it where there is none.
    LivingDocument &document()
    {
        const QString name = QString(QChar(u'a' + int(m_place)));
        if (!m_program->documents[m_place])
            open(name);
        return *m_program->documents[m_place];
    }
    void open(const QString &name)
    {
        m_program->documents[m_place] = std::make_unique<LivingDocument>(
            ++m_lastId, name, m_bytes, m_folder, m_program->journals, m_program->saves, m_calls);
    }
    void close()
    {
        std::unique_ptr<LivingDocument> &document = m_program->documents[m_place];
        if (!document)
            return;
        document->close();
        m_live.erase(document->id());
        m_claimed.erase(document->id());
        document.reset();
    }
    void letOthersWrite()
    {
        const QString name = QString(QChar(u'a' + int(m_place)));
        require(m_folder.documents().write(name, LivingDocument::fileContent(m_bytes)));
    }

    void start()
    {
        m_left.merge(m_live);
        m_left.merge(m_claimed);
        m_live.clear();
        m_claimed.clear();
        m_program = std::make_unique<Program>(m_folder, m_calls);
    }

    void writeJournals()
    {
        m_folder.now += 10000;
        m_program->journals.writeDue();
        require(m_program->journals.flush(std::chrono::minutes(1)));
        m_claimed.clear();
        std::map<qint64, Journal> found = journalsOnDisk();
        for (const auto &[id, journal] : m_left)
            require(found.erase(id) == 1 || journal.written.isEmpty());
        for (const auto &document : m_program->documents) {
            if (!document)
                continue;
            const auto journal = found.extract(document->id());
            require(journal.empty() != document->needsJournal());
            if (journal.empty())
                m_live.erase(document->id());
            else
                noteWritten(*document, std::move(journal.mapped()));
        }
        require(found.empty());
    }
    /// By the documents that they are of, which their commits tell; those that have none are not told.
    std::map<qint64, Journal> journalsOnDisk() const
    {
        std::map<qint64, Journal> found;
        for (const QString &file : m_folder.files()) {
            const QByteArray bytes = JournalBytes::named(m_folder, file);
            const auto left =
                std::ranges::find(m_left, file, [](const auto &entry) { return entry.second.file; });
            const std::optional<JournalState> state = JournalBytes::lastState(bytes);
            require(state || left != m_left.end());
            const qint64 id = left != m_left.end() ? left->first : state->place.left;
            require(found.insert({ id, { file, bytes, {} } }).second);
        }
        return found;
    }
    void noteWritten(const LivingDocument &document, Journal &&journal)
    {
        const qsizetype commits = JournalBytes::commitsIn(journal.bytes);
        Journal &known = m_live[document.id()];
        if (!known.bytes.isEmpty() && journal.bytes.startsWith(known.bytes))
            require(commits - known.written.size() <= 1);
        else
            known.written.clear();
        journal.written = std::move(known.written);
        if (commits > journal.written.size())
            journal.written.append(document.now());
        require(commits == journal.written.size());
        known = std::move(journal);
    }

    /// One that was left behind, as a disk may leave it that was being written to.
    void cutJournal()
    {
        m_program.reset();
        start();
        if (m_left.empty())
            return;
        Journal &journal = anyLeft()->second;
        const qsizetype size = (m_bytes.next() * 256 + m_bytes.next()) % (journal.bytes.size() + 1);
        journal.bytes.truncate(size);
        const bool isCut = QFile::resize(QFile::decodeName(m_folder.journals()) + journal.file, size);
        require(isCut || journal.written.isEmpty()); // whoever looks removes what has no text
        journal.written.resize(JournalBytes::commitsIn(journal.bytes));
    }

    std::map<qint64, Journal>::iterator anyLeft()
    {
        return std::next(m_left.begin(), m_bytes.below(qint64(m_left.size())));
    }
    /// In the place of a document, which is closed.
    void restoreOne()
    {
        if (m_left.empty())
            return;
        m_place = size_t(m_bytes.below(mostDocuments));
        close();
        const auto chosen = anyLeft();
        const QByteArray file = m_folder.journals() + QFile::encodeName(chosen->second.file);
        const std::vector<LeftBehind> found = m_folder.leftBehind();
        const auto left = std::ranges::find(found, file, &LeftBehind::journal);
        const bool isEmpty = chosen->second.written.isEmpty();
        require(left != found.end() || isEmpty);
        if (left != found.end())
            open(left->name);
        if (left != found.end() && isEmpty) {
            document().restoreNothing(*left);
            require(m_program->journals.discard(*left));
        } else if (isEmpty) {
            QFile::remove(QFile::decodeName(file)); // it may be gone: whoever looks removes what has no text
        } else {
            document().restore(*left, chosen->second.written.last());
            m_claimed[document().id()] = chosen->second;
        }
        m_left.erase(chosen);
    }

    Bytes &m_bytes;
    RecoveryFolder m_folder;
    const FileCalls m_calls = quickCalls();
    std::unique_ptr<Program> m_program;
    size_t m_place = 0; ///< among the documents
    qint64 m_lastId = 0;
    /// Journals by the documents that wrote them, or got their texts.
    std::map<qint64, Journal> m_live; ///< of documents that are open
    std::map<qint64, Journal> m_claimed; ///< those from which open documents were restored
    std::map<qint64, Journal> m_left; ///< behind, by programs that were killed
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static char name[] = "recovery_fuzz";
    static char *arguments[] = { name, nullptr };
    static int count = 1;
    static const QCoreApplication application(count, arguments);
    Bytes bytes(data, size);
    Life life(bytes);
    for (int step = 0; step < 60 && !bytes.atEnd(); ++step)
        life.step();
    life.kill();
    life.restoreAll();
    life.check();
    return 0;
}
