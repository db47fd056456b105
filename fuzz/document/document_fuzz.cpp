// A document's life told by bytes: loads, edits, searches, undo, redo and saves, beside the same on a string.

#include "document/lineends.h"
#include "document/textdocument.h"
#include "fuzz/bytes.h"
#include "tests/codec/shorttexts.h"
#include "tests/document/documentfolder.h"
#include "tests/files/quickcalls.h"
#include "tests/text/textalphabet.h"
#include "text/textsearch.h"

using namespace Qt::StringLiterals;

namespace {

const QString name = u"document"_s;
constexpr FileCodes defaults{ CharCode::Utf8, ReturnCode::Lf };

/// Whether UTF-8 gives the text back as it is.
bool isPlain(const QString &text)
{
    return text.isValidUtf16() && !text.contains(u'\r') && !text.contains(QChar::ByteOrderMark);
}

/// A document, what it tells of itself, and the texts that each step led to.
class Session {
public:
    explicit Session(Bytes &bytes)
        : m_bytes(bytes)
        , m_document(defaults, m_calls)
    {
        QObject::connect(&m_document, &TextDocument::changed, &m_context,
            [this](const TextChange &change) { follow(change); });
        QObject::connect(&m_document, &TextDocument::replaced, &m_context,
            [this](const TextChange &change) { follow(change); });
    }

    void step()
    {
        switch (m_bytes.below(12)) {
        case 0:
            load();
            break;
        case 1:
            save();
            break;
        case 2:
        case 3:
            undo();
            break;
        case 4:
            redo();
            break;
        case 5:
        case 6:
            replaceHit();
            break;
        default:
            replace(m_bytes.below(text().size() + 1), m_bytes.below(20), entered());
        }
        check();
    }

private:
    const QString &text() const { return m_texts.at(m_done); }

    void follow(const TextChange &change)
    {
        m_followed.replace(
            change.offset.value(), change.removed, m_document.store().text(change.offset, change.inserted));
    }

    QString entered()
    {
        static const QStringList characters = hurtingCharacters();
        QString entered;
        for (qint64 count = m_bytes.below(12); count > 0; --count)
            entered += characters.at(m_bytes.below(characters.size()));
        return entered;
    }

    void startAnew(const QString &text)
    {
        m_texts = { text };
        m_done = 0;
    }

    void load()
    {
        QByteArray bytes = m_bytes.take(m_bytes.below(100));
        require(m_folder.write(name, bytes));
        const auto requested = requestedCharCode(int(m_bytes.below(7)));
        require(!m_document.load(m_folder.path(), name, requested, defaults));
        require(!requested || m_document.charCode() == *requested);
        normalizeLineEnds(bytes, m_document.returnCode());
        startAnew(decoded(codecToRead(m_document.charCode(), bytes), bytes));
        if (m_document.charCode() == CharCode::Binary || m_document.charCode() == CharCode::Unicode)
            return;
        require(m_document.save(m_folder.path(), name).outcome == SaveResult::Outcome::Written);
        require(
            m_folder.read(name) == bytes.replace("\n", infoOf(m_document.returnCode()).bytes.toByteArray()));
    }

    void save()
    {
        const SaveResult result = m_document.save(m_folder.path(), name, CharCode::Utf8, ReturnCode::Lf);
        require(
            (result.outcome == SaveResult::Outcome::Binary) == (m_document.charCode() == CharCode::Binary));
        if (result.outcome == SaveResult::Outcome::Binary)
            return;
        require(result.outcome == SaveResult::Outcome::Written && result.keptCopy.isEmpty());
        startAnew(text());
        TextDocument other(defaults, m_calls);
        require(!other.load(m_folder.path(), name, CharCode::Utf8, defaults));
        require(!isPlain(text()) || other.store().text() == text());
    }

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

    void replace(qint64 offset, qint64 removed, const QString &inserted)
    {
        removed = qMin(removed, text().size() - offset);
        m_document.replace(Offset(offset), removed, inserted);
        if (removed == 0 && inserted.isEmpty())
            return;
        const QString changed = QString(text()).replace(offset, removed, inserted);
        m_texts.resize(++m_done);
        m_texts.append(changed);
    }

    void replaceHit()
    {
        const qint64 from = m_bytes.below(text().size() + 1);
        const QString wanted = text().sliced(from, m_bytes.below(text().size() - from + 1));
        const qint64 start = m_bytes.below(text().size() + 1);
        const TextPattern pattern(wanted, Qt::CaseSensitive);
        const auto hit = findHit(m_document.store(), pattern, SearchDirection::Forward, { Offset(start) });
        // No line holds a line end.
        const bool isSearchable = !wanted.isEmpty() && !wanted.contains(u'\n');
        const qint64 expected = isSearchable ? text().indexOf(wanted, start) : -1;
        require(hit.has_value() == (expected >= 0));
        if (!hit)
            return;
        require(hit->begin.offset == Offset(expected) && hit->end.offset == Offset(expected) + wanted.size());
        replace(expected, wanted.size(), entered());
    }

    void check() const
    {
        m_document.store().checkInvariants();
        require(m_document.store().text() == text());
        require(m_followed == text());
        require(m_document.isEdited() == (m_done > 0));
        require(m_document.history().canUndo() == (m_done > 0));
        require(m_document.history().canRedo() == (m_done + 1 < m_texts.size()));
    }

    Bytes &m_bytes;
    const DocumentFolder m_folder;
    const FileCalls m_calls = quickCalls();
    TextDocument m_document;
    QObject m_context;
    QString m_followed; ///< what a listener makes of the signals
    QStringList m_texts{ QString() }; ///< since the text was loaded or saved
    qsizetype m_done = 0; ///< which of them the document has
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Bytes bytes(data, size);
    Session session(bytes);
    for (int step = 0; step < 60 && !bytes.atEnd(); ++step)
        session.step();
    return 0;
}
