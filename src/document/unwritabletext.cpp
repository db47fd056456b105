#include "document/unwritabletext.h"

#include "document/textdocument.h"

namespace {

constexpr qint64 mostPlacesShown = 100;

/// Where an offset is after a change; one in what was removed comes to the change's start.
qint64 followed(qint64 offset, const TextChange &change)
{
    if (offset <= change.offset)
        return offset;
    return qMax(offset, change.offset + change.removed) - change.removed
        + (offset >= change.offset + change.removed ? change.inserted : 0);
}

bool isPairAt(const TextStore &store, qint64 offset)
{
    return offset >= 0 && offset + 1 < store.length() && QChar::isHighSurrogate(store.at(offset))
        && QChar::isLowSurrogate(store.at(offset + 1));
}

} // namespace

UnwritableText::UnwritableText(const TextDocument &document, qint64 most)
    : m_document(document)
    , m_most(most)
    , m_codec(&document.codecToWrite())
    , m_asRead(document.writtenAsRead())
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

qint64 UnwritableText::next(qint64 offset) const
{
    if (count() == 0)
        return -1;
    const qint64 index = m_places.indexBehind(offset);
    return m_places.at(index < count() ? index : 0);
}

int UnwritableText::lengthAt(qint64 offset) const
{
    return isPairAt(m_document.store(), offset) ? 2 : 1;
}

char32_t UnwritableText::characterAt(qint64 offset) const
{
    const TextStore &store = m_document.store();
    return isPairAt(store, offset) ? QChar::surrogateToUcs4(store.at(offset), store.at(offset + 1))
                                   : store.at(offset);
}

/// The text is another one. What was just read needs no look in the code that it was read in.
void UnwritableText::startOver()
{
    m_codec = &m_document.codecToWrite();
    m_asRead = m_document.writtenAsRead();
    const qint64 length = m_document.store().length();
    m_places = PlacesInText(length);
    m_from = 0;
    m_to = m_document.isEdited() || m_codec != &m_document.byteCodec() ? length : 0;
    lookOn();
    emit changed();
}

void UnwritableText::startOverInOtherCode()
{
    if (m_codec == &m_document.codecToWrite() && m_asRead == m_document.writtenAsRead())
        return;
    m_codec = &m_document.codecToWrite();
    m_asRead = m_document.writtenAsRead();
    m_places = PlacesInText(m_document.store().length());
    m_from = 0;
    m_to = m_document.store().length();
    lookOn();
    emit changed();
}

void UnwritableText::follow(const TextChange &change)
{
    const qint64 before = count();
    m_places.follow(change);
    if (mayBeMore()) {
        m_from = followed(m_from, change);
        m_to = followed(m_to, change);
    }
    const qint64 end = change.offset + change.inserted;
    if (change.inserted > sliceUnits || isFull())
        postpone(change.offset, end);
    else
        lookAt(change.offset, end);
    if (mayBeMore() && !isFull())
        m_later.start();
    if (before > 0 || count() > 0)
        emit changed();
}

void UnwritableText::postpone(qint64 from, qint64 to)
{
    const bool isFirst = !mayBeMore();
    m_from = isFirst ? from : qMin(m_from, from);
    m_to = isFirst ? to : qMax(m_to, to);
}

void UnwritableText::lookOn()
{
    if (!mayBeMore() || isFull())
        return;
    const qint64 before = count();
    const qint64 end = qMin(m_from + sliceUnits, m_to);
    lookAt(m_from, end);
    m_from = end;
    if (mayBeMore() && !isFull())
        m_later.start();
    if (count() != before || !mayBeMore())
        emit changed();
}

/// One unit more on each side: an edit may have made a surrogate pair, or parted one.
void UnwritableText::lookAt(qint64 from, qint64 to)
{
    const TextStore &store = m_document.store();
    from = qMax<qint64>(0, from - 1);
    if (from < store.length() && QChar::isLowSurrogate(store.at(from)) && isPairAt(store, from - 1))
        --from;
    to = qMin(store.length(), to + 1);
    m_places.drop(from, to);
    while (from < to) {
        TextChunk chunk = store.chunkAt(from);
        chunk.truncate(qMin(chunk.size(), to + 1 - from)); // with the second half of a pair
        list(chunk, to);
        from += chunk.size();
    }
}

void UnwritableText::list(const TextChunk &chunk, qint64 to)
{
    qint64 at = m_codec->findWithoutCode(chunk, 0, m_asRead);
    while (at >= 0 && chunk.offset + at < to) {
        const qint64 offset = chunk.offset + at;
        const bool isMark = offset == 0 && m_document.store().at(0) == QChar::ByteOrderMark;
        if (!isMark) // which is left out
            m_places.add(offset);
        at = m_codec->findWithoutCode(chunk, at + lengthAt(offset), m_asRead);
    }
}
