#include "document/unwritabletext.h"

namespace {

constexpr qint64 mostPlacesShown = 100;

/// Where an offset is after a change; one in what was removed comes to the change's start.
Offset followed(Offset offset, const TextChange &change)
{
    if (offset <= change.offset)
        return offset;
    return qMax(offset, change.offset + change.removed) - change.removed
        + (offset >= change.offset + change.removed ? change.inserted : 0);
}

bool isPairAt(const TextStore &store, Offset offset)
{
    return offset >= Offset() && offset + 1 < store.end() && QChar::isHighSurrogate(store.at(offset))
        && QChar::isLowSurrogate(store.at(offset + 1));
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
        const char32_t c = characterAt(m_places.at(i));
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
    return isPairAt(m_document.store(), offset) ? 2 : 1;
}

char32_t UnwritableText::characterAt(Offset offset) const
{
    const TextStore &store = m_document.store();
    return isPairAt(store, offset) ? QChar::surrogateToUcs4(store.at(offset), store.at(offset + 1))
                                   : store.at(offset);
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

/// One unit more on each side: an edit may have made a surrogate pair, or parted one.
void UnwritableText::lookAt(TextRange range)
{
    const TextStore &store = m_document.store();
    Offset from = qMax(Offset(), range.start - 1);
    if (from < store.end() && QChar::isLowSurrogate(store.at(from)) && isPairAt(store, from - 1))
        --from;
    const Offset to = qMin(store.end(), range.end + 1);
    m_places.drop(from, to);
    while (from < to) {
        TextChunk chunk = store.chunkAt(from);
        chunk.truncate(qMin(chunk.size(), to + 1 - from)); // with the second half of a pair
        list(chunk, to);
        from += chunk.size();
    }
}

void UnwritableText::list(const TextChunk &chunk, Offset to)
{
    qint64 at = m_code.codec->findWithoutCode(chunk, 0, m_code.asRead);
    while (at >= 0 && chunk.offset + at < to) {
        const Offset offset = chunk.offset + at;
        const bool isMark = offset == Offset() && m_document.store().at(offset) == QChar::ByteOrderMark;
        if (!isMark) // which is left out
            m_places.add(offset);
        at = m_code.codec->findWithoutCode(chunk, at + lengthAt(offset), m_code.asRead);
    }
}
