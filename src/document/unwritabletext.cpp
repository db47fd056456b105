#include "document/unwritabletext.h"

#include "files/escapedhalf.h"
#include "text/codepoint.h"

namespace {

constexpr qint64 mostPlacesShown = 100;
constexpr qint64 longestCharacter = unitsOfHalf;

/// Where an offset is after a change; one in what was removed comes to the change's start.
Offset followed(Offset offset, const TextChange &change)
{
    if (offset <= change.offset)
        return offset;
    return qMax(offset, change.offset + change.removed) - change.removed
        + (offset >= change.offset + change.removed ? change.inserted : 0);
}

char16_t halfAt(const TextStore &store, Offset offset)
{
    return escapedHalfFrom(offset, store.end(), [&store](Offset i) { return store.at(i); });
}

char32_t characterIn(const TextStore &store, Offset offset)
{
    if (const char16_t half = halfAt(store, offset))
        return half;
    return codePointFrom(offset, store.end(), [&store](Offset i) { return store.at(i); });
}

int lengthIn(const TextStore &store, Offset offset)
{
    return halfAt(store, offset) ? unitsOfHalf : unitsOf(characterIn(store, offset));
}

/// Where the character begins that an offset lies in. Wherever a look at the units before it begins, it is in
/// step by then.
Offset startIn(const TextStore &store, Offset offset)
{
    Offset start = qMax(Offset(), offset - longestCharacter);
    while (start < offset) {
        const Offset next = start + lengthIn(store, start);
        if (next > offset)
            break;
        start = next;
    }
    return start;
}

} // namespace

UnwritableText::UnwritableText(const TextDocument &document, qint64 most)
    : m_document(document)
    , m_most(most)
    , m_code(document.writingCode())
{
    connect(&document, &TextDocument::changed, this, &UnwritableText::follow);
    connect(&document, &TextDocument::replaced, this, &UnwritableText::startOver);
    connect(&document, &TextDocument::codesChanged, this, &UnwritableText::startOverInOtherCode);
    connect(&document, &TextDocument::saved, this, &UnwritableText::startOverInOtherCode);
    m_later.setSingleShot(true);
    connect(&m_later, &QTimer::timeout, this, &UnwritableText::lookOn);
    startOver();
}

QList<char32_t> UnwritableText::first(int number) const
{
    QList<char32_t> characters;
    const qint64 end = qMin(count(), mostPlacesShown);
    for (qint64 i = 0; i < end && characters.size() < number; ++i) {
        const char32_t c = characterIn(m_document.store(), m_places.at(i));
        if (!characters.contains(c))
            characters << c;
    }
    return characters;
}

std::optional<Offset> UnwritableText::next(Offset offset) const
{
    if (count() == 0)
        return std::nullopt;
    const qint64 index = m_places.indexBehind(offset);
    return m_places.at(index < count() ? index : 0);
}

int UnwritableText::lengthAt(Offset offset) const
{
    return lengthIn(m_document.store(), offset);
}

/// The text is another one. What was just read needs no look in the code that it was read in.
void UnwritableText::startOver()
{
    m_code = m_document.writingCode();
    const TextStore &store = m_document.store();
    m_places = PlacesInText(store.length());
    m_left = { {},
        m_document.isEdited() || m_code.codec != &m_document.byteCodec() ? store.end() : Offset() };
    lookOn();
    emit changed();
}

void UnwritableText::startOverInOtherCode()
{
    if (m_code == m_document.writingCode())
        return;
    m_code = m_document.writingCode();
    m_places = PlacesInText(m_document.store().length());
    m_left = { {}, m_document.store().end() };
    lookOn();
    emit changed();
}

void UnwritableText::follow(const TextChange &change)
{
    const qint64 before = count();
    m_places.follow(change);
    if (mayBeMore())
        m_left = { followed(m_left.start, change), followed(m_left.end, change) };
    const TextRange inserted = { change.offset, change.offset + change.inserted };
    if (change.inserted > sliceUnits || isFull())
        postpone(inserted);
    else
        lookAt(inserted);
    lookOnLater();
    if (before > 0 || count() > 0)
        emit changed();
}

void UnwritableText::postpone(TextRange range)
{
    m_left = mayBeMore() ? TextRange{ qMin(m_left.start, range.start), qMax(m_left.end, range.end) } : range;
}

void UnwritableText::setLookingOn(bool isOn)
{
    m_isLookingOn = isOn;
    if (isOn)
        lookOnLater();
    else
        m_later.stop();
}

void UnwritableText::lookOnLater()
{
    if (m_isLookingOn && mayBeMore() && !isFull())
        m_later.start();
}

void UnwritableText::lookOn()
{
    if (!mayBeMore() || isFull())
        return;
    const qint64 before = count();
    const Offset end = qMin(m_left.start + sliceUnits, m_left.end);
    lookAt({ m_left.start, end });
    m_left.start = end;
    lookOnLater();
    if (count() != before || !mayBeMore())
        emit changed();
}

/// And at what is beside it: an edit may have made a character of several units, or parted one.
void UnwritableText::lookAt(TextRange range)
{
    const TextStore &store = m_document.store();
    const Offset from = startIn(store, qMax(Offset(), range.start - longestCharacter));
    const Offset to = qMin(store.end(), range.end + longestCharacter);
    m_places.drop(from, to);
    for (Offset next = from; next < to;) {
        TextChunk chunk = store.chunkAt(next);
        chunk.truncate(qMin(chunk.size(), to + 1 - next)); // with the second half of a pair
        next = list(chunk, to);
    }
}

/// Returns where to go on: a character may reach beyond the chunk.
Offset UnwritableText::list(const TextChunk &chunk, Offset to)
{
    qint64 next = 0;
    for (;;) {
        const qint64 at =
            next < chunk.size() ? m_code.codec->findWithoutCode(chunk, next, m_code.asRead) : -1;
        const Offset offset = chunk.offset + at;
        if (at < 0 || offset >= to)
            return chunk.offset + qMax(next, chunk.size());
        const bool isMark = offset == Offset() && m_document.store().at(offset) == QChar::ByteOrderMark;
        if (!isMark) // which is left out
            m_places.add(offset);
        next = at + lengthAt(offset);
    }
}
