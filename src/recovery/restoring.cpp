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

QAnyStringView unitsOf(const TextChunk &chunk)
{
    return chunk.isLatin1() ? QAnyStringView(QLatin1StringView(chunk.latin1)) : QAnyStringView(chunk.utf16);
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

std::optional<quint64> lookThrough(const SharedJournal &journal, const TextStore &text)
{
    JournalLook look(journal, TextSnapshot(text));
    while (look.lookOn()) { }
    return look.hash();
}

/// Whether the document was read from the file, as the journal's base was.
bool isRead(TextDocument &document, const JournalBase &base, const QString &path, const QString &name)
{
    const FileCodes codes{ base.charCode, base.returnCode };
    if (!base.utf16)
        return !document.load(path, name, base.charCode, codes);
    TextStore text;
    if (document.readUtf16(path, name, *base.utf16, codes, text))
        return false;
    document.setText(std::move(text));
    return true;
}

bool isCopyRead(TextDocument &document, const JournalBase &base, const QByteArray &copy)
{
    const QByteArray folder = folderOf(copy);
    return isRead(
        document, base, FileName::fromBytes(folder), FileName::fromBytes(copy.sliced(folder.size())));
}

} // namespace

/// Whether a text that comes back is that of the file, so far as it is known.
class Restoring::Comparison {
public:
    Comparison(const TextPiece &text, const TextStore &file)
        : m_text(text, {})
        , m_file(file)
        , m_isSame(m_text.length() == m_file.length())
    {
    }

    /// Goes on until the time is over, by a chunk at least; whether all is done.
    bool goOn(QDeadlineTimer end)
    {
        while (!isDone()) {
            compareNext();
            if (end.hasExpired())
                break;
        }
        return isDone();
    }
    /// Of a text of which nothing is known nobody can say so.
    bool isSame() const { return m_isSame && m_isKnown; }

private:
    bool isDone() const { return !m_isSame || m_at == m_text.end(); }
    void compareNext()
    {
        TextChunk chunk = m_text.spelledChunkAt(m_at);
        const bool isGap = m_text.at(m_at) == unknownUnit;
        chunk.truncate(isGap ? unknownUnitsAtStart(chunk) : knownUnitsAtStart(chunk));
        if (!isGap)
            compareStart(chunk);
        m_at += chunk.size();
    }

    /// With as much of it as the file has in one piece.
    void compareStart(TextChunk &chunk)
    {
        TextChunk there = m_file.spelledChunkAt(m_at);
        chunk.truncate(qMin(chunk.size(), there.size()));
        there.truncate(chunk.size());
        m_isSame = chunk.spelling == there.spelling && unitsOf(chunk) == unitsOf(there);
        m_isKnown = true;
    }

    const TextSnapshot m_text;
    const TextSnapshot m_file;
    Offset m_at;
    bool m_isSame;
    bool m_isKnown = false;
};

/// Puts a line in place of each part of a text that is not known.
class Restoring::Gaps {
public:
    explicit Gaps(TextPiece text)
        : m_text(std::move(text), {})
    {
    }

    /// Whether all is done when the time is over.
    bool goOn(QDeadlineTimer end)
    {
        while (m_at < m_text.end()) {
            takeNext();
            if (end.hasExpired())
                break;
        }
        return m_at == m_text.end();
    }

    TextPiece take()
    {
        const TextStore text = m_known.finish();
        return text.piece({}, text.length());
    }

private:
    void takeNext()
    {
        TextChunk chunk = m_text.spelledChunkAt(m_at);
        const bool isGap = m_text.at(m_at) == unknownUnit;
        chunk.truncate(isGap ? unknownUnitsAtStart(chunk) : knownUnitsAtStart(chunk));
        m_at += chunk.size();
        if (isGap && !m_isInGap)
            m_known.append(QByteArrayView("\n[...]\n"));
        m_isInGap = isGap;
        if (!isGap)
            append(chunk);
    }

    void append(const TextChunk &chunk)
    {
        if (chunk.spelling)
            m_known.spell(*chunk.spelling);
        if (chunk.isLatin1())
            m_known.append(chunk.latin1);
        else
            m_known.append(chunk.utf16);
    }

    const TextSnapshot m_text;
    Offset m_at;
    bool m_isInGap = false;
    TextStore::Builder m_known{ LayoutRule() };
};

Restoring::Restoring(
    ClaimedJournal &&claimed, SharedJournal journal, TextDocument &document, const FileCalls &calls)
    : m_claimed(std::move(claimed))
    , m_journal(std::move(journal))
    , m_document(document)
    , m_calls(calls)
    , m_bytes(m_journal->reader.size())
{
    const JournalOutline &outline = m_journal->outline;
    if (base().length == 0)
        takeStartOfText();
    else if (outline.seen && outline.seen->isTextKept)
        m_from = Base::Kept;
}

Restoring::~Restoring() = default;

FileCodes Restoring::codes() const
{
    const JournalState &state = m_journal->outline.state;
    return { state.charCode, state.returnCode };
}

bool Restoring::hasBaseTimes() const
{
    const FileStamp &read = std::as_const(m_document).file().version().stamp();
    return read.size == base().size && read.modified == base().time;
}

bool Restoring::isBase(std::optional<quint64> hash) const
{
    if (std::as_const(m_document).store().length() != base().length)
        return false;
    if (m_journal->outline.seen)
        return beginsWithBase(hash);
    return base().contentHash
        && std::as_const(m_document).file().version().content().value() == *base().contentHash;
}

bool Restoring::beginsWithBase(std::optional<quint64> hash) const
{
    return hash && hash == m_journal->outline.seen->hash;
}

void Restoring::takeStartOfText()
{
    m_from = Base::StartOfText;
    m_base = std::as_const(m_document).store().piece({}, base().length);
}

void Restoring::lookInFile(std::optional<quint64> hash)
{
    if (isBase(hash) || (!m_journal->outline.seen && !base().contentHash && hasBaseTimes())) {
        takeStartOfText();
        m_from = Base::File;
        return;
    }
    if (m_from == Base::Unknown && beginsWithBase(hash))
        takeStartOfText();
    const JournalState &state = m_journal->outline.state;
    m_mayBeSaved = m_document.charCode() == state.charCode && m_document.returnCode() == state.returnCode;
}

bool Restoring::lookInCopy(std::optional<quint64> hash)
{
    if (!isBase(hash))
        return false;
    takeStartOfText();
    m_play.reset();
    m_text.reset();
    m_measuring.reset();
    return true;
}

/// A save that writes over the file in place copies it first.
QByteArrayList Restoring::copies() const
{
    const bool isWanted = isPossible() && m_from == Base::Unknown && !m_isSaved && base().isFromFile;
    const auto file =
        isWanted ? followedLinks(FileName::toBytes(base().path + base().name), m_calls) : std::nullopt;
    QByteArrayList names;
    if (!file)
        return names;
    for (const LostCopy &copy : lostCopies(m_calls)) {
        if (copy.file == *file)
            names << copy.name;
    }
    return names;
}

bool Restoring::prepare(QDeadlineTimer end)
{
    return !isPossible()
        || (findBase(end) && play(end) && compare(end) && (m_isSaved || (showGaps(end) && measure(end))));
}

/// Text that the document has already measured takes no time.
JobProgress Restoring::progress() const
{
    const qint64 length = m_journal->outline.state.length;
    const qint64 measured = m_measuring ? qMin(m_measuring->measured(), length) : 0;
    return { m_played + measured, m_bytes + length };
}

/// Where the start of the journal is lost, the end of the text may have been kept.
bool Restoring::findBase(QDeadlineTimer end)
{
    if (m_base)
        return true;
    if (!m_kept)
        m_kept.emplace(m_journal->reader);
    if (!m_kept->readOn(end))
        return false;
    m_base = m_kept->take();
    m_kept.reset();
    const qint64 unknown = base().length - m_base->length();
    if (m_from == Base::Unknown && unknown > 0)
        m_base->prepend(unknownText(unknown));
    return true;
}

bool Restoring::play(QDeadlineTimer end)
{
    if (m_text || m_hasFailed)
        return true;
    if (!m_play && m_base->length() == base().length)
        m_play.emplace(m_journal->reader, m_journal->outline, *m_base);
    const auto made = m_play ? m_play->playOn(end) : JournalPlay::Step::Failed;
    m_played = m_journal->reader.offset();
    m_hasFailed = made == JournalPlay::Step::Failed;
    if (made == JournalPlay::Step::Done)
        m_text = m_play->text();
    return made != JournalPlay::Step::More;
}

/// A program that ends when it has just saved leaves its journal: the file is no longer what the edits begin
/// with, but what they lead to.
bool Restoring::compare(QDeadlineTimer end)
{
    if (m_hasFailed || !m_mayBeSaved)
        return true;
    if (!m_comparison)
        m_comparison = std::make_unique<Comparison>(*m_text, std::as_const(m_document).store());
    if (!m_comparison->goOn(end))
        return false;
    m_isSaved = m_comparison->isSame();
    m_comparison.reset();
    m_mayBeSaved = false;
    return true;
}

bool Restoring::showGaps(QDeadlineTimer end)
{
    if (m_hasFailed || m_from != Base::Unknown || m_measuring)
        return true;
    if (!m_gaps)
        m_gaps = std::make_unique<Gaps>(*m_text);
    if (!m_gaps->goOn(end))
        return false;
    m_text = m_gaps->take();
    m_gaps.reset();
    return true;
}

/// The document may have got another layout since the turn before.
bool Restoring::measure(QDeadlineTimer end)
{
    if (m_hasFailed)
        return true;
    const TextLayout &layout = std::as_const(m_document).store().layout();
    if (!m_measuring || m_measuring->layout().stamp() != layout.stamp())
        m_measuring.emplace(layout);
    return m_text->measure(*m_measuring, end);
}

Restored Restoring::finish()
{
    Restored restored;
    restored.path = base().path;
    if (m_isSaved)
        restored.outcome = Restored::Outcome::Saved;
    else if (isPossible())
        restored.outcome = m_from == Base::File ? putOnFile() : putAnew();
    restored.journal = std::move(m_claimed);
    restored.hasReadError = m_journal->reader.hasFailed();
    restored.place = clamped(m_journal->outline.state.place, std::as_const(m_document).store().end());
    return restored;
}

Restored::Outcome Restoring::putOnFile()
{
    if (m_hasFailed) {
        m_document.startNew(base().name, codes(), byteCodecOf(m_journal->outline.state.byteCodec));
        return Restored::Outcome::NotPossible;
    }
    m_text->setLayout(*m_measuring);
    const TextChange change = m_play->change();
    m_document.replace(change.offset, change.removed, m_text->part(change.offset, change.inserted));
    m_document.chooseCodes(codes());
    if (m_document.isUtf16() && m_journal->outline.state.keepsUtf16)
        m_document.keepUtf16();
    return Restored::Outcome::Edited;
}

Restored::Outcome Restoring::putAnew()
{
    start();
    if (m_hasFailed)
        return Restored::Outcome::NotPossible;
    m_document.layOut(*m_measuring, QDeadlineTimer(QDeadlineTimer::Forever)); // which has no text
    m_text->setLayout(*m_measuring);
    m_document.replace({}, 0, *m_text);
    return m_from == Base::Unknown ? Restored::Outcome::Parts : Restored::Outcome::New;
}

void Restoring::start()
{
    const JournalState &state = m_journal->outline.state;
    if (isOfNewFile(base(), m_calls))
        m_document.startFile(base().path, base().name, codes());
    else
        m_document.startNew(base().name, codes(), byteCodecOf(state.byteCodec),
            state.keepsUtf16 ? base().utf16 : std::nullopt);
}

Restored restore(const QByteArray &name, TextDocument &document, const FileCalls &calls)
{
    Restored restored;
    ClaimedJournal claimed = ClaimedJournal::claim(name, calls);
    if (!claimed) {
        restored.outcome = Restored::Outcome::InUse;
        return restored;
    }
    const SharedJournal journal = openAgain(claimed, calls);
    if (!journal) {
        restored.hasReadError = true;
        restored.journal = std::move(claimed);
        return restored;
    }
    lookThrough(journal, {});
    const JournalBase &base = journal->outline.base;
    const bool isFileRead =
        journal->outline.commits > 0 && base.isFromFile && isRead(document, base, base.path, base.name);
    Restoring restoring(std::move(claimed), journal, document, calls);
    if (isFileRead)
        restoring.lookInFile(lookThrough(journal, std::as_const(document).store()));
    const auto prepare = [&] {
        while (!restoring.prepare(QDeadlineTimer(QDeadlineTimer::Forever))) { }
    };
    prepare();
    for (const QByteArray &copy : restoring.copies()) {
        if (isCopyRead(document, base, copy)
            && restoring.lookInCopy(lookThrough(journal, std::as_const(document).store())))
            break;
    }
    prepare();
    return restoring.finish();
}
