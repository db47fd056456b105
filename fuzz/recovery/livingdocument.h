#pragma once

#include "document/lineends.h"
#include "fuzz/bytes.h"
#include "recovery/texthash.h"
#include "tests/codec/shorttexts.h"
#include "tests/recovery/recoveryfolder.h"
#include "tests/text/textalphabet.h"

#include <map>

/// A document at the moment of a write to its journal.
struct Written {
    QString text;
    quint64 hash; ///< of the text with its spellings
    CharCode charCode;
    ReturnCode returnCode;
    QString base; ///< what Undo leads back to
};

/// Which document of a program has saved to a file last.
struct Saves {
    struct Save {
        qint64 number = 0; ///< counted over all files
        qint64 document = 0;
    };
    qint64 count = 0;
    std::map<QString, Save> last;
};

/// An open document with its journal, beside the same on strings; bytes tell what becomes of it.
class LivingDocument {
public:
    /// Never saved, and without text. By `id` its journal is known. Nothing is owned.
    LivingDocument(qint64 id, const QString &name, Bytes &bytes, const RecoveryFolder &folder,
        RecoveryJournals &journals, Saves &saves, const FileCalls &calls)
        : m_id(id)
        , m_bytes(bytes)
        , m_folder(folder)
        , m_journals(journals)
        , m_saves(saves)
        , m_document({ CharCode::Utf8, ReturnCode::Lf }, calls)
    {
        m_document.startNew(name, { CharCode::Utf8, ReturnCode::Lf }, utf8Codec());
        m_document.setEdited(false);
        m_journals.attach(m_document, [id] { return ViewPlace{ {}, {}, {}, id }; });
    }

    qint64 id() const { return m_id; }
    /// Its text is not all in its file.
    bool needsJournal() const { return m_document.isEdited() || m_isKept; }
    Written now() const
    {
        const TextStore &store = m_document.store();
        return { text(), textHashOf(store, store.length()), m_document.charCode(), m_document.returnCode(),
            m_isKept ? QString() : m_texts.first() };
    }

    static QByteArray fileContent(Bytes &bytes)
    {
        static const QByteArrayList parts{ "a", "b", "\n", "\r\n", "\r", "\x82\xa0", "\x81\x45", "\x87\x90",
            "\x81\xe0", "\xfa\x54", "\x80", "\xff", "\xe3\x81\x82", "\xe3\x81", "\xa4\xa2", "\x8f\xb0\xa1",
            "\x1b$B", "\x1b(B", "\x1b(J", "$\"", "\x1b" };
        QByteArray content;
        for (qint64 count = bytes.below(40); count > 0; --count)
            content += parts.at(bytes.below(parts.size()));
        return content;
    }

    void load()
    {
        QByteArray bytes = fileContent(m_bytes);
        require(m_folder.documents().write(name(), bytes));
        const CharCode code = charCode();
        require(!m_document.load(path(), name(), code, { code, ReturnCode::Lf }));
        m_known = bytes;
        m_isKept = false;
        normalizeLineEnds(bytes, m_document.returnCode());
        startAnew(decoded(codecToRead(code, bytes), bytes));
    }

    /// What another program or document has written to the file is kept.
    void save()
    {
        const QByteArray others = onDisk();
        const bool isOvertaken =
            (!m_document.path().isEmpty() && others != m_known) || hasAnotherSaved(m_saves.last[name()]);
        const CharCode code = charCode();
        const auto returnCode = ReturnCode(int(ReturnCode::Cr) + int(m_bytes.below(3)));
        const SaveResult result = m_document.save(path(), name(), code, returnCode);
        require(result.outcome == SaveResult::Outcome::Written);
        require(result.keptCopy.isEmpty() != isOvertaken);
        QFile kept(result.keptCopy);
        require(!isOvertaken || (kept.open(QIODevice::ReadOnly) && kept.readAll() == others));
        m_known = onDisk();
        m_saves.last[name()] = { ++m_saves.count, m_id };
        startAnew(text());
        m_isKept = m_bytes.below(4) == 0;
        if (m_isKept)
            m_journals.keep(m_document, KeptFor::Substitution);
    }
    void endKeeping()
    {
        m_journals.endKeeping(m_document, KeptFor::Substitution);
        m_isKept = false;
    }
    /// Its journal goes.
    void close() { m_journals.end(m_document); }

    void undo()
    {
        if (m_done == 0)
            return;
        m_document.undo();
        --m_done;
    }
    void redo()
    {
        if (m_done + 1 == m_texts.size())
            return;
        m_document.redo();
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
        replace(text().sliced(from, length), m_document.store().piece(Offset(from), length));
    }

    /// Gets what its journal has.
    void restore(const LeftBehind &found, const Written &written)
    {
        const Restored restored = m_journals.restore(found, m_document);
        const bool isEdited = restored.outcome == Restored::Outcome::Edited;
        const bool isSaved = restored.outcome == Restored::Outcome::Saved;
        require(isEdited || isSaved || restored.outcome == Restored::Outcome::New);
        const TextStore &store = m_document.store();
        require(store.text() == written.text && textHashOf(store, store.length()) == written.hash);
        require(m_document.charCode() == written.charCode);
        require(m_document.returnCode() == written.returnCode);
        require(m_document.path().isEmpty() != (isEdited || isSaved));
        m_known = onDisk();
        startAnew(isSaved ? written.text : isEdited ? written.base : QString());
        if (!m_document.history().canUndo())
            return;
        m_texts.append(written.text);
        m_done = 1;
    }
    /// There is nothing in it.
    void restoreNothing(const LeftBehind &found)
    {
        require(m_journals.restore(found, m_document).outcome == Restored::Outcome::NotPossible);
        require(m_document.store().length() == 0 && !m_document.isEdited());
    }

    void check() const
    {
        m_document.store().checkInvariants();
        require(m_document.store().text() == text());
        require(m_document.isEdited() == (m_done > 0));
        require(m_document.history().canUndo() == (m_done > 0));
        require(m_document.history().canRedo() == (m_done + 1 < m_texts.size()));
    }

private:
    const QString &text() const { return m_texts.at(m_done); }
    QString name() const { return m_document.name(); }
    QString path() const { return m_folder.documents().path(); }
    QByteArray onDisk() const { return m_folder.documents().read(name()); }
    CharCode charCode() { return CharCode(int(CharCode::Utf8) + int(m_bytes.below(4))); }

    bool hasAnotherSaved(const Saves::Save &last) const
    {
        return last.document != m_id && last.number > m_begun;
    }
    void startAnew(const QString &text)
    {
        m_begun = m_saves.count;
        m_texts = { text };
        m_done = 0;
    }
    /// The same as a string and as what it is to be edited with.
    template <typename Text> void replace(const QString &inserted, const Text &with)
    {
        const qint64 offset = m_bytes.below(text().size() + 1);
        const qint64 removed = qMin(m_bytes.below(9), text().size() - offset);
        m_document.replace(Offset(offset), removed, with);
        if (removed == 0 && inserted.isEmpty())
            return;
        const QString changed = QString(text()).replace(offset, removed, inserted);
        m_texts.resize(++m_done);
        m_texts.append(changed);
    }

    const qint64 m_id;
    Bytes &m_bytes;
    const RecoveryFolder &m_folder;
    RecoveryJournals &m_journals;
    Saves &m_saves;
    TextDocument m_document;
    qint64 m_begun = m_saves.count; ///< how many saves there were when it was read or written last
    QByteArray m_known; ///< what the document knows its file to have
    bool m_isKept = false; ///< the journal stays though all is saved
    QStringList m_texts{ QString() }; ///< since the text was loaded, saved or restored
    qsizetype m_done = 0; ///< which of them the document has
};
