#include "recovery/journaltext.h"

#include "document/utf16text.h"

namespace {

bool isNone(const TextChange &change)
{
    return change.removed == 0 && change.inserted == 0;
}

void add(TextChange &sum, const TextChange &change)
{
    sum = isNone(sum) ? change : sum.then(change);
}

/// A save may have made it UTF-8.
std::optional<Utf16Form> utf16OfFile(const TextDocument &document, WholeIn where)
{
    const bool isSame = where == WholeIn::FileRead || keepsUtf16(document);
    return isSame ? utf16FormOf(document) : std::nullopt;
}

/// That reads it: what has its code by the bytes of UTF-16 is written as UTF-8.
CharCode codeOfFile(const TextDocument &document, WholeIn where)
{
    const CharCode code = document.charCode();
    return code == CharCode::Unicode && where == WholeIn::FileWritten ? CharCode::Utf8 : code;
}

} // namespace

void JournalText::begin(const TextDocument &document, WholeIn where)
{
    const TextStore &store = document.store();
    const bool isFromFile = where != WholeIn::NoFile && !document.path().isEmpty();
    m_base = { document.path(), document.name(), isFromFile, -1, -1, codeOfFile(document, where),
        document.returnCode(), isFromFile ? store.length() : 0, utf16OfFile(document, where), {} };
    if (const FileVersion &file = document.file().version(); isFromFile && file.stamp().inode != 0) {
        m_base.size = file.stamp().size;
        m_base.time = file.stamp().modified;
        m_base.contentHash = file.content().value();
    }
    m_baseEnd = endSpellingOf(store);
    m_changeOfBase = {};
    m_change = {};
    drop();
    m_isDropped = false;
}

void JournalText::drop()
{
    m_isDropped = true;
    m_baseText.reset();
    m_written.reset();
}

void JournalText::returnToBase()
{
    m_written = m_baseText;
    m_change = m_changeOfBase;
}

/// Where the history does not have it, the journal begins with nothing.
void JournalText::takeBase(const TextDocument &document)
{
    const UndoHistory &history = document.history();
    const TextPiece &origin = history.origin();
    if (m_base.isFromFile && history.isEnabled() && origin.length() == m_base.length) {
        m_baseText = std::make_shared<const TextSnapshot>(origin, m_baseEnd);
    } else {
        m_base.isFromFile = false;
        m_base.length = 0;
        m_baseText = std::make_shared<const TextSnapshot>();
        m_changeOfBase = { {}, 0, document.store().length() };
    }
    returnToBase();
}

void JournalText::note(const TextChange &change)
{
    add(m_change, change);
    add(m_changeOfBase, change);
}

std::shared_ptr<const JournalWrite> JournalText::next(const TextDocument &document, const JournalState &state)
{
    if (!m_baseText)
        takeBase(document);
    if (!m_base.isFromFile) { // its name may be another one by now
        m_base.path = document.path();
        m_base.name = document.name();
    }
    auto text = std::make_shared<const TextSnapshot>(document.store());
    auto write = std::make_shared<const JournalWrite>(
        JournalWrite{ m_base, m_baseText, m_written, text, m_change, m_changeOfBase, state });
    m_written = std::move(text);
    m_change = {};
    return write;
}
