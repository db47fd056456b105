#pragma once

#include "codec/textcodec.h"
#include "document/placesintext.h"

#include <QObject>
#include <QTimer>

class TextDocument;

/// Knows the characters of a document that its code lacks, so that a save writes others in their place; also
/// undecodable bytes of another code than it is saved in.
///
/// What was read can be written in the code that it was read in, so the text of each edit is all that is
/// looked at, once. Of a long one, or of a whole text that gets another code, a slice is looked at now and
/// the others whenever the event loop has nothing else to do.
class UnwritableText : public QObject {
    Q_OBJECT
public:
    static constexpr qint64 sliceUnits = 65536;
    /// How many are known at once; when there are more, those behind are found when some of these are gone.
    static constexpr qint64 usualMost = 10000;

    /// `document` is not owned and lives longer.
    explicit UnwritableText(const TextDocument &document, qint64 most = usualMost);

    /// Of those that are known.
    qint64 count() const { return m_places.count(); }
    /// Whether there is text that was not looked at yet.
    bool mayBeMore() const { return m_from < m_to; }
    /// The first different ones, in the order of the text; looks at no more than a hundred places. The escape
    /// of a byte is itself.
    QList<char32_t> first(int number) const;
    /// Where the next one begins, at an offset or behind it, else the first one of all; -1 when there is
    /// none.
    qint64 next(qint64 offset) const;
    /// Units of the character that begins at the offset of one.
    int lengthAt(qint64 offset) const;

    /// Looks at the slice that is next.
    void lookOn();

signals:
    /// Others than before are known, or at other places.
    void changed();

private:
    void startOver();
    void startOverInOtherCode();
    void follow(const TextChange &change);
    void postpone(qint64 from, qint64 to);
    void lookAt(qint64 from, qint64 to);
    void list(const TextChunk &chunk, qint64 to);
    bool isFull() const { return count() >= m_most; }
    char32_t characterAt(qint64 offset) const;

    const TextDocument &m_document;
    const qint64 m_most;
    const TextCodec *m_codec;
    TextCodec::AsRead m_asRead;
    PlacesInText m_places;
    qint64 m_from = 0; ///< where the text begins that is still to be looked at
    qint64 m_to = 0;
    QTimer m_later;
};
