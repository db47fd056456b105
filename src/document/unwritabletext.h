#pragma once

#include "document/placesintext.h"
#include "document/textdocument.h"

#include <QObject>
#include <QTimer>

#include <optional>

/// Knows the characters of a document that its code lacks, so that a save writes others in their place; also
/// undecodable bytes of another code than it is saved in.
///
/// What was read can be written in the code that it was read in, so the text of each edit is all that is
/// looked at, once. Of a long one, or of a whole text that gets another code, a slice is looked at now and
/// the others whenever the event loop has nothing else to do, unless that can wait.
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
    bool mayBeMore() const { return !m_left.isEmpty(); }
    /// The first different ones, in the order of the text; looks at no more than a hundred places. The escape
    /// of a byte is itself, an escaped half of a pair that half.
    QList<char32_t> first(int number) const;
    /// Where the next one begins, at an offset or behind it, else the first one of all, if there is any.
    std::optional<Offset> next(Offset offset) const;
    /// Units of the character that begins at the offset of one.
    int lengthAt(Offset offset) const;

    /// Looks at the slice that is next.
    void lookOn();
    /// Whether it looks on by itself, as it does at first.
    void setLookingOn(bool isOn);

signals:
    /// Others than before are known, or at other places.
    void changed();

private:
    void startOver();
    void startOverInOtherCode();
    void follow(const TextChange &change);
    void postpone(TextRange range);
    void lookOnLater();
    void lookAt(TextRange range);
    Offset list(const TextChunk &chunk, Offset to);
    bool isFull() const { return count() >= m_most; }

    const TextDocument &m_document;
    const qint64 m_most;
    WritingCode m_code;
    PlacesInText m_places;
    TextRange m_left; ///< is still to be looked at
    bool m_isLookingOn = true;
    QTimer m_later;
};
