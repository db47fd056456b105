#include "recovery/journalplay.h"

#include "recovery/journaledit.h"
#include "text/textsnapshot.h"

#include <utility>
#include <vector>

namespace {

/// No text is as long as this, and no sum of two such lengths overflows.
constexpr qint64 longestText = qint64{ 1 } << 48;

bool isWithin(Offset offset, qint64 length, Offset end)
{
    return offset >= Offset() && length >= 0 && offset <= end && length <= end - offset;
}

/// Counts the units of a text that is told in parts, and sees whether there are such parts.
class PartCheck : public EditReader::Parts {
public:
    PartCheck(qint64 committed, qint64 base)
        : m_committed(committed)
        , m_base(base)
    {
    }
    void copyCommitted(Offset offset, qint64 length) override { copy(offset, length, m_committed); }
    void copyBase(Offset offset, qint64 length) override { copy(offset, length, m_base); }
    void text(QByteArrayView latin1) override { add(latin1.size()); }
    void text(QStringView utf16) override { add(utf16.size()); }
    void spelling(QByteArrayView bytes) override { Q_UNUSED(bytes) }

    qint64 length() const { return m_length; }
    /// Of what is copied, that which stands farthest behind.
    Offset copiedEnd() const { return m_copiedEnd; }
    bool isSound() const { return m_isSound; }

private:
    void copy(Offset offset, qint64 length, qint64 source)
    {
        m_isSound = m_isSound && isWithin(offset, length, Offset(source));
        add(length);
        if (m_isSound)
            m_copiedEnd = qMax(m_copiedEnd, offset + length);
    }
    void add(qint64 length)
    {
        m_isSound = m_isSound && length >= 0 && length <= longestText && m_length <= longestText;
        if (m_isSound)
            m_length += length;
    }

    qint64 m_committed;
    qint64 m_base;
    qint64 m_length = 0;
    Offset m_copiedEnd;
    bool m_isSound = true;
};

/// Puts text and pieces of others one behind the other. It is measured when it comes into a document.
class PieceBuilder {
public:
    void text(QByteArrayView latin1) { builder().append(latin1); }
    void text(QStringView utf16) { builder().append(utf16); }
    void spelling(QByteArrayView bytes) { builder().spell(bytes); }
    void append(TextPiece &&piece)
    {
        endText();
        m_piece.append(std::move(piece));
    }
    bool isEmpty() const { return !m_builder && m_piece.isEmpty(); }
    TextPiece finish()
    {
        endText();
        return std::exchange(m_piece, {});
    }

private:
    TextStore::Builder &builder()
    {
        if (!m_builder)
            m_builder.emplace(LayoutRule());
        return *m_builder;
    }
    void endText()
    {
        if (!m_builder)
            return;
        const TextStore built = m_builder->finish();
        m_builder.reset();
        m_piece.append(built.piece({}, built.length()));
    }

    std::optional<TextStore::Builder> m_builder;
    TextPiece m_piece;
};

/// A base that is as long as the texts behind it say. The journal starts behind the first commit where what
/// that consists of is not all there.
std::optional<JournalBase> lostBase(JournalReader &journal)
{
    PartCheck kept(0, 0);
    PartCheck first(longestText, longestText);
    journal.rewind();
    auto record = journal.next();
    for (; record && record->type != RecordType::Commit; record = journal.next()) {
        if (record->type == RecordType::BaseText)
            EditReader::read(record->content, kept);
        else if (record->type == RecordType::Edit)
            EditReader::read(record->content, first);
    }
    const auto state = record ? stateIn(record->content) : std::nullopt;
    if (!state || state->length < 0 || state->length > longestText || !kept.isSound())
        return std::nullopt;
    JournalBase base;
    base.length = qMax(kept.length(), first.copiedEnd() - Offset());
    if (!first.isSound() || first.length() != state->length) {
        base.length = state->length;
        journal.startHere();
    }
    return base;
}

/// What is read next is what follows the base. Nothing: there is no journal.
std::optional<JournalBase> startWithBase(JournalReader &journal)
{
    journal.rewind();
    auto first = journal.next();
    if (!first && journal.skipDamage())
        first = journal.next();
    if (!first)
        return std::nullopt;
    if (first->type == RecordType::Base)
        return baseIn(first->content);
    auto base = lostBase(journal);
    journal.rewind();
    return base;
}

} // namespace

/// Follows the lengths of the texts from commit to commit.
class OutlineReading::Reader {
public:
    explicit Reader(const JournalBase &base)
        : m_base(base)
        , m_next(base.length, base.length)
    {
        outline.base = base;
    }

    /// False where what follows cannot be relied upon.
    bool take(const JournalRecord &record)
    {
        switch (record.type) {
        case RecordType::Base:
            return false;
        case RecordType::BaseText:
            return EditReader::read(record.content, m_kept) && m_kept.isSound();
        case RecordType::BaseEnd:
            return takeEnd(record.content);
        case RecordType::Edit:
            return EditReader::read(record.content, m_next) && m_next.isSound();
        case RecordType::Commit:
            return takeCommit(record.content);
        }
        return false;
    }

    JournalOutline outline;

private:
    bool takeEnd(QByteArrayView content)
    {
        const auto seen = baseSeenIn(content);
        if (!seen || (seen->isTextKept && m_kept.length() > m_base.length))
            return false;
        if (!seen->isTextKept || m_kept.length() == m_base.length)
            outline.seen = seen;
        return true;
    }

    bool takeCommit(QByteArrayView content)
    {
        const auto state = stateIn(content);
        if (!state || state->length != m_next.length())
            return false;
        outline.state = *state;
        ++outline.commits;
        m_next = PartCheck(state->length, m_base.length);
        return true;
    }

    JournalBase m_base;
    PartCheck m_next; ///< the text that the next commit ends
    PartCheck m_kept{ 0, 0 }; ///< text alone: there is nothing to be copied from
};

OutlineReading::OutlineReading(JournalReader &journal)
    : m_journal(journal)
{
    if (const auto base = startWithBase(journal))
        m_reader = std::make_unique<Reader>(*base);
}

OutlineReading::~OutlineReading() = default;

bool OutlineReading::readOn(qint64 bytes)
{
    if (!m_reader)
        return true;
    const qint64 end = m_journal.offset() + bytes;
    while (m_journal.offset() < end) {
        const auto record = m_journal.next();
        if (!record || !m_reader->take(*record))
            return true;
    }
    return false;
}

const JournalOutline &OutlineReading::outline() const
{
    static const JournalOutline none;
    return m_reader ? m_reader->outline : none;
}

JournalOutline outlineOf(JournalReader &journal)
{
    OutlineReading reading(journal);
    while (!reading.readOn(qint64{ 1 } << 40)) { }
    return reading.outline();
}

class KeptBase::Builder : public EditReader::Parts {
public:
    void copyCommitted(Offset, qint64) override { }
    void copyBase(Offset, qint64) override { }
    void text(QByteArrayView latin1) override { m_text.text(latin1); }
    void text(QStringView utf16) override { m_text.text(utf16); }
    void spelling(QByteArrayView bytes) override { m_text.spelling(bytes); }
    TextPiece finish() { return m_text.finish(); }

private:
    PieceBuilder m_text;
};

KeptBase::KeptBase(JournalReader &journal)
    : m_journal(journal)
    , m_builder(std::make_unique<Builder>())
{
    m_journal.rewind();
}

KeptBase::~KeptBase() = default;

bool KeptBase::readOn(QDeadlineTimer end)
{
    do {
        const auto record = m_journal.next();
        if (!record || record->type == RecordType::BaseEnd)
            return true;
        if (record->type == RecordType::BaseText)
            EditReader::read(record->content, *m_builder);
    } while (!end.hasExpired());
    return false;
}

TextPiece KeptBase::take()
{
    return m_builder->finish();
}

/// Gathers what the next text consists of, and makes it of the one before: what both begin and end with
/// stays as it is.
class JournalPlay::Player : public EditReader::Parts {
public:
    explicit Player(TextPiece base)
        : m_base(std::move(base))
        , m_text(m_base)
        , m_length(m_text.length())
    {
    }

    void copyCommitted(Offset offset, qint64 length) override
    {
        if (m_middle.isEmpty() && !m_held && offset == m_start) {
            m_start += length;
            return;
        }
        takeHeld();
        m_held = { 0, offset, length };
    }
    void copyBase(Offset offset, qint64 length) override
    {
        takeHeld();
        m_middle.append(m_base.part(offset, length));
    }
    void text(QByteArrayView latin1) override
    {
        takeHeld();
        m_middle.text(latin1);
    }
    void text(QStringView utf16) override
    {
        takeHeld();
        m_middle.text(utf16);
    }
    void spelling(QByteArrayView bytes) override
    {
        takeHeld();
        m_middle.spelling(bytes);
    }

    void commit()
    {
        Offset end(m_length);
        if (m_held && m_held->offset >= m_start && m_held->offset + m_held->length == end)
            end = m_held->offset;
        else
            takeHeld();
        m_held.reset();
        const Offset start = std::exchange(m_start, {});
        replace(start, end - start, m_middle.finish());
    }

    const TextPiece &made() const { return m_text; }
    TextChange change() const { return m_change.value_or(TextChange()); }

private:
    void takeHeld()
    {
        if (const auto held = std::exchange(m_held, std::nullopt))
            m_middle.append(m_text.part(held->offset, held->length));
    }

    void replace(Offset start, qint64 removed, TextPiece &&inserted)
    {
        const TextChange change{ start, removed, inserted.length() };
        if (removed == 0 && change.inserted == 0)
            return;
        TextPiece text = m_text.part({}, start - Offset());
        const Offset behind = start + removed;
        text.append(std::move(inserted));
        text.append(m_text.part(behind, Offset(m_length) - behind));
        m_text = std::move(text);
        m_length += change.inserted - change.removed;
        m_change = m_change ? m_change->then(change) : change;
    }

    const TextPiece m_base;
    TextPiece m_text; ///< of the last commit that was played
    qint64 m_length; ///< of that
    std::optional<TextChange> m_change; ///< to that from the base
    PieceBuilder m_middle;
    Offset m_start; ///< behind what stays at the start
    std::optional<TextPart> m_held; ///< a copy that may be what stays at the end
};

JournalPlay::JournalPlay(JournalReader &journal, const JournalOutline &outline, TextPiece base)
    : m_journal(journal)
    , m_outline(outline)
    , m_player(std::make_unique<Player>(std::move(base)))
{
    m_journal.rewind();
}

JournalPlay::~JournalPlay() = default;

JournalPlay::Step JournalPlay::playOn(QDeadlineTimer end)
{
    while (m_commits < m_outline.commits) {
        const auto record = m_journal.next();
        if (!record)
            return Step::Failed;
        if (record->type == RecordType::Edit)
            EditReader::read(record->content, *m_player);
        if (record->type == RecordType::Commit) {
            m_player->commit();
            ++m_commits;
        }
        if (end.hasExpired())
            break;
    }
    return m_commits < m_outline.commits ? Step::More : Step::Done;
}

const TextPiece &JournalPlay::text() const
{
    return m_player->made();
}

TextChange JournalPlay::change() const
{
    return m_player->change();
}
