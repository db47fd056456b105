// The life of a program told by bytes: its document is loaded, edited, saved and journalled, another program
// writes to the file, the program is killed, its journal cut off anywhere, and what is left restored; beside
// the same on strings.

#include "codec/codecs.h"
#include "document/lineends.h"
#include "fuzz/bytes.h"
#include "recovery/texthash.h"
#include "tests/codec/shorttexts.h"
#include "tests/files/quickcalls.h"
#include "tests/recovery/journalbytes.h"
#include "tests/text/textalphabet.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

const QString documentName = u"document"_s;

/// A document at the moment of a write.
struct Written {
    QString text;
    quint64 hash; ///< of the text with its spellings
    CharCode charCode;
    ReturnCode returnCode;
    QString base; ///< what Undo leads back to
};

/// What is gone when the program is killed.
struct Program {
    Program(RecoveryFolder &folder, const FileCalls &calls)
        : journals(folder.journals(), calls, folder.clock())
        , document({ CharCode::Utf8, ReturnCode::Lf }, calls)
    {
        document.setName(documentName);
        journals.attach(document);
    }
    RecoveryJournals journals;
    TextDocument document;
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
        switch (m_bytes.below(16)) {
        case 0:
            load();
            break;
        case 1:
            save();
            break;
        case 2:
            undo();
            break;
        case 3:
            redo();
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
            endKeeping();
            break;
        case 8:
        case 9:
        case 10:
            writeJournal();
            break;
        case 11:
            paste();
            break;
        default:
            type();
        }
        check();
    }

    void kill()
    {
        m_program.reset();
        start();
        restore();
    }
    void check() const
    {
        document().store().checkInvariants();
        require(document().store().text() == text());
        require(document().isEdited() == (m_done > 0));
        require(document().history().canUndo() == (m_done > 0));
        require(document().history().canRedo() == (m_done + 1 < m_texts.size()));
    }

private:
    TextDocument &document() const { return m_program->document; }
    RecoveryJournals &journals() const { return m_program->journals; }
    const QString &text() const { return m_texts.at(m_done); }
    QString path() const { return m_folder.documents().path(); }
    QByteArray onDisk() const { return m_folder.documents().read(documentName); }

    void start()
    {
        m_program = std::make_unique<Program>(m_folder, m_calls);
        m_isKept = false;
        startAnew({});
    }
    void startAnew(const QString &text)
    {
        m_texts = { text };
        m_done = 0;
    }

    QByteArray fileContent()
    {
        static const QByteArrayList parts{ "a", "b", "\n", "\r\n", "\r", "\x82\xa0", "\x81\x45", "\x87\x90",
            "\x81\xe0", "\xfa\x54", "\x80", "\xff", "\xe3\x81\x82", "\xe3\x81", "\xa4\xa2", "\x8f\xb0\xa1",
            "\x1b$B", "\x1b(B", "\x1b(J", "$\"", "\x1b" };
        QByteArray content;
        for (qint64 count = m_bytes.below(40); count > 0; --count)
            content += parts.at(m_bytes.below(parts.size()));
        return content;
    }
    CharCode charCode() { return CharCode(int(CharCode::Utf8) + int(m_bytes.below(4))); }

    void load()
    {
        QByteArray bytes = fileContent();
        require(m_folder.documents().write(documentName, bytes));
        const CharCode code = charCode();
        require(!document().load(path(), documentName, code, { code, ReturnCode::Lf }));
        m_known = bytes;
        m_isKept = false;
        normalizeLineEnds(bytes, document().returnCode());
        startAnew(decoded(codecToRead(code, bytes), bytes));
    }

    void letOthersWrite() { require(m_folder.documents().write(documentName, fileContent())); }

    /// What another program has written to the document's file is kept.
    void save()
    {
        const QByteArray others = onDisk();
        const bool isOvertaken = !document().path().isEmpty() && others != m_known;
        const CharCode code = charCode();
        const auto returnCode = ReturnCode(int(ReturnCode::Cr) + int(m_bytes.below(3)));
        const SaveResult result = document().save(path(), documentName, code, returnCode);
        require(result.outcome == SaveResult::Outcome::Written);
        require(result.keptCopy.isEmpty() != isOvertaken);
        QFile kept(result.keptCopy);
        require(!isOvertaken || (kept.open(QIODevice::ReadOnly) && kept.readAll() == others));
        m_known = onDisk();
        startAnew(text());
        m_isKept = m_bytes.below(4) == 0;
        if (m_isKept)
            journals().keep(document(), KeptFor::Substitution);
    }

    void endKeeping()
    {
        journals().endKeeping(document(), KeptFor::Substitution);
        m_isKept = false;
    }

    void undo()
    {
        if (m_done == 0)
            return;
        document().undo();
        --m_done;
    }
    void redo()
    {
        if (m_done + 1 == m_texts.size())
            return;
        document().redo();
        ++m_done;
    }

    void type()
    {
        static const QStringList characters = hurtingCharacters();
        QString entered;
        for (qint64 count = m_bytes.below(8); count > 0; --count)
            entered += characters.at(m_bytes.below(characters.size()));
        replace(entered, entered);
    }
    void paste()
    {
        const qint64 from = m_bytes.below(text().size() + 1);
        const qint64 length = m_bytes.below(qMin<qint64>(100, text().size() - from) + 1);
        replace(text().sliced(from, length), document().store().piece(Offset(from), length));
    }
    /// The same as a string and as what it is to be edited with.
    template <typename Text> void replace(const QString &inserted, const Text &text)
    {
        const qint64 offset = m_bytes.below(this->text().size() + 1);
        const qint64 removed = qMin(m_bytes.below(9), this->text().size() - offset);
        document().replace(Offset(offset), removed, text);
        if (removed == 0 && inserted.isEmpty())
            return;
        const QString changed = QString(this->text()).replace(offset, removed, inserted);
        m_texts.resize(++m_done);
        m_texts.append(changed);
    }

    void writeJournal()
    {
        m_folder.now += 10000;
        journals().writeDue();
        require(journals().flush(std::chrono::minutes(1)));
        const QByteArray journal = JournalBytes::only(m_folder);
        const qsizetype commits = JournalBytes::commitsIn(journal);
        require((commits > 0) == (document().isEdited() || m_isKept));
        if (commits == 0)
            m_written.clear();
        else if (!m_journal.isEmpty() && journal.startsWith(m_journal))
            require(commits - m_written.size() <= 1);
        else
            m_written.clear();
        if (commits > m_written.size())
            m_written.append(now());
        require(commits == m_written.size());
        m_journal = journal;
    }
    Written now() const
    {
        const TextStore &store = document().store();
        return { text(), textHashOf(store, store.length()), document().charCode(), document().returnCode(),
            m_isKept ? QString() : m_texts.first() };
    }

    /// As a disk may leave it that was being written to.
    void cutJournal()
    {
        if (m_journal.isEmpty())
            return;
        m_program.reset();
        const qsizetype size = (m_bytes.next() * 256 + m_bytes.next()) % (m_journal.size() + 1);
        m_journal.truncate(size);
        const QString name = m_folder.files().filter(u".journal"_s).value(0);
        require(QFile::resize(QFile::decodeName(m_folder.journals()) + name, size));
        m_written.resize(JournalBytes::commitsIn(m_journal));
        start();
        restore();
    }

    void restore()
    {
        const std::vector<LeftBehind> found = journals().leftBehind();
        require(found.size() <= 1 && (m_written.isEmpty() || found.size() == 1));
        if (found.empty()) {
            removeBroken();
            return;
        }
        if (m_written.isEmpty()) {
            discard(found.front());
            return;
        }
        const Written &written = m_written.last();
        const Restored restored = journals().restore(found.front(), document());
        const bool isEdited = restored.outcome == Restored::Outcome::Edited;
        require(isEdited || restored.outcome == Restored::Outcome::New);
        const TextStore &store = document().store();
        require(store.text() == written.text && textHashOf(store, store.length()) == written.hash);
        require(document().charCode() == written.charCode && document().returnCode() == written.returnCode);
        require(document().path().isEmpty() != isEdited);
        m_known = onDisk();
        startAnew(isEdited ? written.base : QString());
        if (!document().history().canUndo())
            return;
        m_texts.append(written.text);
        m_done = 1;
    }
    /// What has lost its head is no journal to the program, which leaves it alone.
    void removeBroken()
    {
        m_journal.clear();
        for (const QString &name : m_folder.files())
            require(QFile::remove(QFile::decodeName(m_folder.journals()) + name));
    }
    void discard(const LeftBehind &found)
    {
        require(journals().restore(found, document()).outcome == Restored::Outcome::NotPossible);
        require(journals().discard(found) && journals().leftBehind().empty());
        m_journal.clear();
    }

    Bytes &m_bytes;
    RecoveryFolder m_folder;
    const FileCalls m_calls = quickCalls();
    std::unique_ptr<Program> m_program;
    QByteArray m_known; ///< what the document knows its file to have
    bool m_isKept = false; ///< the journal stays though all is saved
    QStringList m_texts; ///< since the text was loaded, saved or restored
    qsizetype m_done = 0; ///< which of them the document has
    QByteArray m_journal; ///< as it was written last
    QList<Written> m_written; ///< by the commits in it
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
    for (int step = 0; step < 40 && !bytes.atEnd(); ++step)
        life.step();
    life.kill();
    life.check();
    return 0;
}
