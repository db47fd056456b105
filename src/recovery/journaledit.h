#pragma once

#include "recovery/bytefields.h"
#include "text/textsnapshot.h"

/// What a text consists of, as records of type Edit and BaseText tell it: parts of the text that was
/// committed last or of the base, and text with its spellings, as it is in memory.

/// What a part begins with.
enum class EditItem : quint8 { Committed = 1, Base = 2, Latin1 = 3, Utf16 = 4, Spelling = 5 };

/// Puts parts one behind the other, for the content of a record.
class EditWriter {
public:
    /// Of this many bytes or a few more a record is made, so that the next one is not long in coming.
    static constexpr qsizetype wantedBytes = 65536;

    void copyCommitted(Offset offset, qint64 length) { copy(EditItem::Committed, offset, length); }
    void copyBase(Offset offset, qint64 length) { copy(EditItem::Base, offset, length); }
    /// A chunk as TextSnapshot::spelledChunkAt() gives it; takes as many of its units as there is room for,
    /// one at least, and returns how many.
    qint64 append(const TextChunk &chunk);

    const QByteArray &content() const { return m_fields.result(); }
    bool isFull() const { return m_fields.size() >= wantedBytes; }
    bool isEmpty() const { return m_fields.size() == 0; }
    void clear() { m_fields.clear(); }

private:
    void copy(EditItem source, Offset offset, qint64 length);

    FieldWriter m_fields;
};

/// Reads the parts in a record's content.
class EditReader {
public:
    /// Hears of each part in order.
    struct Parts {
        virtual ~Parts() = default;
        virtual void copyCommitted(Offset offset, qint64 length) = 0;
        virtual void copyBase(Offset offset, qint64 length) = 0;
        virtual void text(QByteArrayView latin1) = 0;
        virtual void text(QStringView utf16) = 0;
        /// Of the unit that comes next; or of the end.
        virtual void spelling(QByteArrayView bytes) = 0;
    };
    /// False when the content is not what EditWriter makes; some parts may have been told then.
    static bool read(QByteArrayView content, Parts &parts);
};
