#include "recovery/restoring.h"

#include "files/filename.h"
#include "files/oldcopy.h"
#include "files/statefolder.h"
#include "recovery/journalplay.h"
#include "recovery/texthash.h"

#include <algorithm>

namespace {

/// No file's text has this: it stands for units that are not known. A leaf of it takes one byte a unit.
constexpr QChar unknownUnit(u'\0');

class StorePlayer : public JournalPlayer {
public:
    explicit StorePlayer(TextStore &store)
        : m_store(store)
    {
    }
    const TextStore &store() const override { return m_store; }
    void replace(Offset offset, qint64 removed, const TextPiece &inserted) override
    {
        m_store.exchange(offset, removed, inserted);
    }

private:
    TextStore &m_store;
};

class DocumentPlayer : public JournalPlayer {
public:
    explicit DocumentPlayer(TextDocument &document)
        : m_document(document)
    {
        m_document.history().beginGroup();
    }
    ~DocumentPlayer() override { m_document.history().endGroup(); }
    Q_DISABLE_COPY_MOVE(DocumentPlayer)

    const TextStore &store() const override { return m_document.store(); }
    void replace(Offset offset, qint64 removed, const TextPiece &inserted) override
    {
        m_document.replace(offset, removed, inserted);
    }

private:
    TextDocument &m_document;
};

/// Its nodes are shared, so that it takes no memory to speak of.
TextPiece unknownText(qint64 length)
{
    TextPiece text;
    TextPiece power(QString(1, unknownUnit)); // of 2^n units
    for (; length > 0; length /= 2) {
        if (length % 2 == 1)
            text.append(TextPiece(power));
        power.append(TextPiece(power));
    }
    return text;
}

qint64 unknownUnitsAtStart(const TextChunk &chunk)
{
    if (!chunk.isLatin1())
        return std::ranges::find_if(chunk.utf16, [](QChar unit) { return unit != unknownUnit; })
            - chunk.utf16.begin();
    const auto isKnown = [](char unit) { return unit != '\0'; };
    return std::ranges::find_if(chunk.latin1, isKnown) - chunk.latin1.begin();
}

qint64 knownUnitsAtStart(const TextChunk &chunk)
{
    const qint64 end = chunk.isLatin1() ? chunk.latin1.indexOf('\0') : chunk.utf16.indexOf(unknownUnit);
    return end == -1 ? chunk.size() : end;
}

/// The text with a line in place of each part that is not known.
TextStore withGaps(const TextStore &text)
{
    TextStore::Builder known((LayoutRule()));
    bool isInGap = false;
    for (Offset at; at < text.end();) {
        TextChunk chunk = text.spelledChunkAt(at);
        const bool isGap = text.at(at) == unknownUnit;
        chunk.truncate(isGap ? unknownUnitsAtStart(chunk) : knownUnitsAtStart(chunk));
        at += chunk.size();
        if (isGap && !isInGap)
            known.append(QByteArrayView("\n[...]\n"));
        isInGap = isGap;
        if (isGap)
            continue;
        if (chunk.spelling)
            known.spell(*chunk.spelling);
        if (chunk.isLatin1())
            known.append(chunk.latin1);
        else
            known.append(chunk.utf16);
    }
    return known.finish();
}

CursorPlace clamped(CursorPlace place, Offset end)
{
    return { qBound(Offset(), place.offset, end), place.atRowEnd };
}

ViewPlace clamped(const ViewPlace &place, Offset end)
{
    ViewPlace inside = { clamped(place.cursor, end), place.anchor, qBound(Offset(), place.top, end),
        qMax<qint64>(0, place.left) };
    if (inside.anchor)
        inside.anchor = qBound(Offset(), *inside.anchor, end);
    return inside;
}

/// Where the text is that the edits begin with: still to be read, or read already.
enum class BaseIn { File, Document };

/// Restores one document.
class Restoring {
public:
    Restoring(JournalReader &journal, const JournalOutline &outline, BaseIn where, TextDocument &document,
        const FileCalls &calls)
        : m_journal(journal)
        , m_outline(outline)
        , m_document(document)
        , m_calls(calls)
        , m_isLoaded(where == BaseIn::Document)
    {
    }

    Restored::Outcome run()
    {
        if (m_outline.base.isFromFile && (m_isLoaded ? isBase(hasBaseTimes()) : loadBase()))
            return editBase();
        std::optional<TextStore> base = knownBase();
        const bool isKnown = base.has_value();
        return writeAnew(isKnown ? std::move(*base) : partlyKnownBase(), isKnown);
    }

private:
    FileCodes codes() const { return { m_outline.state.charCode, m_outline.state.returnCode }; }

    bool hasBaseTimes() const { return isFileUnchanged(m_outline.base, m_calls); }

    bool loadBase()
    {
        const bool hasSameTimes = hasBaseTimes();
        return load(m_outline.base.path, m_outline.base.name) && isBase(hasSameTimes);
    }

    bool loadCopyOfBase(const QString &path, const QString &name)
    {
        return load(path, name) && isBase(false);
    }

    bool load(const QString &path, const QString &name)
    {
        m_isLoaded = !(m_outline.base.utf16 ? loadUtf16(path, name) : loadInCode(path, name));
        return m_isLoaded;
    }

    /// Of the text that was read. The times are those of its file.
    bool isBase(bool hasSameTimes) const
    {
        const JournalBase &base = m_outline.base;
        if (m_document.store().length() != base.length)
            return false;
        if (m_outline.seen)
            return beginsWithBase();
        const quint64 hash = m_document.file().version().content().value();
        return base.contentHash ? hash == *base.contentHash : hasSameTimes;
    }

    std::optional<ReadFailure> loadInCode(const QString &path, const QString &name)
    {
        const JournalBase &base = m_outline.base;
        return m_document.load(path, name, base.charCode, { base.charCode, base.returnCode });
    }

    std::optional<ReadFailure> loadUtf16(const QString &path, const QString &name)
    {
        const JournalBase &base = m_outline.base;
        TextStore text;
        auto failure =
            m_document.readUtf16(path, name, *base.utf16, { base.charCode, base.returnCode }, text);
        if (!failure)
            m_document.setText(std::move(text));
        return failure;
    }

    /// A save that writes over the file in place copies it first, and was interrupted.
    bool loadOldCopy()
    {
        const JournalBase &base = m_outline.base;
        const auto file = followedLinks(FileName::toBytes(base.path + base.name), m_calls);
        const auto isBase = [&](const LostCopy &copy) {
            const QByteArray folder = folderOf(copy.name);
            return copy.file == file
                && loadCopyOfBase(
                    FileName::fromBytes(folder), FileName::fromBytes(copy.name.sliced(folder.size())));
        };
        return base.isFromFile && file && std::ranges::any_of(lostCopies(m_calls), isBase);
    }

    bool beginsWithBase() const
    {
        const TextStore &store = m_document.store();
        return m_outline.seen && store.length() >= m_outline.base.length
            && textHashOf(store, m_outline.base.length) == m_outline.seen->hash;
    }

    bool playOnDocument()
    {
        DocumentPlayer player(m_document);
        return playJournal(m_journal, m_outline, player);
    }

    Restored::Outcome editBase()
    {
        if (!playOnDocument()) {
            m_document.startNew(m_outline.base.name, codes(), byteCodecOf(m_outline.state.byteCodec));
            return Restored::Outcome::NotPossible;
        }
        m_document.chooseCodes(codes());
        if (m_document.isUtf16() && m_outline.state.keepsUtf16)
            m_document.keepUtf16();
        return Restored::Outcome::Edited;
    }

    /// Of a file that has only grown, its start; of one that is half written, its old copy.
    std::optional<TextStore> knownBase()
    {
        if (m_outline.base.length == 0)
            return TextStore();
        if (m_outline.seen && m_outline.seen->isTextKept)
            return keptBase(m_journal);
        if (!(m_isLoaded && beginsWithBase()) && !loadOldCopy())
            return std::nullopt;
        TextStore base;
        base.insert({}, m_document.store().piece({}, m_outline.base.length));
        return base;
    }

    /// Where the start of the journal is lost, the end of the text may have been kept.
    TextStore partlyKnownBase()
    {
        TextStore base = keptBase(m_journal);
        const qint64 unknown = m_outline.base.length - base.length();
        base.insert({}, unknownText(qMax<qint64>(0, unknown)));
        return base;
    }

    Restored::Outcome writeAnew(TextStore &&text, bool isKnown)
    {
        StorePlayer player(text);
        const bool isPlayed =
            text.length() == m_outline.base.length && playJournal(m_journal, m_outline, player);
        if (!isKnown)
            text = withGaps(text);
        start();
        if (!isPlayed)
            return Restored::Outcome::NotPossible;
        m_document.replace({}, 0, text.piece({}, text.length()));
        return isKnown ? Restored::Outcome::New : Restored::Outcome::Parts;
    }

    void start()
    {
        const JournalBase &base = m_outline.base;
        if (isOfNewFile(base, m_calls))
            m_document.startFile(base.path, base.name, codes());
        else
            m_document.startNew(base.name, codes(), byteCodecOf(m_outline.state.byteCodec),
                m_outline.state.keepsUtf16 ? base.utf16 : std::nullopt);
    }

    JournalReader &m_journal;
    const JournalOutline &m_outline;
    TextDocument &m_document;
    const FileCalls &m_calls;
    bool m_isLoaded;
};

Restored restoreFrom(ClaimedJournal &&claimed, BaseIn where, TextDocument &document, const FileCalls &calls)
{
    Restored restored;
    restored.journal = std::move(claimed);
    if (!restored.journal) {
        restored.outcome = Restored::Outcome::InUse;
        return restored;
    }
    JournalReader journal(restored.journal.file(), calls);
    const JournalOutline outline = outlineOf(journal);
    restored.path = outline.base.path;
    if (outline.commits > 0)
        restored.outcome = Restoring(journal, outline, where, document, calls).run();
    restored.hasReadError = journal.hasFailed();
    restored.place = clamped(outline.state.place, document.store().end());
    return restored;
}

} // namespace

Restored restore(const QByteArray &name, TextDocument &document, const FileCalls &calls)
{
    return restoreFrom(ClaimedJournal::claim(name, calls), BaseIn::File, document, calls);
}

Restored restoreOnFile(ClaimedJournal &&journal, TextDocument &document, const FileCalls &calls)
{
    return restoreFrom(std::move(journal), BaseIn::Document, document, calls);
}
