#pragma once

#include "codec/charcode.h"
#include "codec/returncode.h"
#include "document/readfindings.h"
#include "files/filecalls.h"
#include "recovery/bytefields.h"
#include "text/units.h"

#include <optional>

/// A journal is a file of records, each with its length and its checksum. It begins with one of type Base.
/// The text that the base names, and then what changed it: the text is that of the last Commit; of what
/// stands behind it nothing counts.
enum class RecordType : quint8 {
    Base = 1, ///< which text the edits begin with
    BaseText = 2, ///< a part of that text itself, where it is kept
    BaseEnd = 3, ///< all of the base was seen; see BaseSeen
    Edit = 4, ///< a part of what the next text consists of; see journaledit.h
    Commit = 5, ///< the text is whole, and what is to be known of it; see JournalState
};

/// What begins every journal, its version included.
QByteArrayView journalMagic();

struct JournalRecord {
    static constexpr qint64 headSize = 13; ///< length, checksum, type
    static constexpr qint64 mostBytes = 1 << 30; ///< of what a record holds

    RecordType type = RecordType::Commit;
    QByteArray content;
};

void appendRecord(QByteArray &to, RecordType type, QByteArrayView content);
/// Of the record that `bytes`, of headSize or more, begin with: its head and its content, if it is one.
qint64 recordSize(QByteArrayView bytes);
/// Whether `bytes`, of headSize or more, may begin with a record, as far as its type tells.
bool isRecordHead(QByteArrayView bytes);
/// The record that `bytes` begin with; nothing if it is not whole.
std::optional<JournalRecord> firstRecord(QByteArrayView bytes);

/// The text that a journal's edits begin with.
struct JournalBase {
    QString path; ///< folder, ending in "/"; empty for a document never saved
    QString name;
    /// The text was read from the file or written to it whole; else the edits begin with nothing.
    bool isFromFile = false;
    qint64 size = -1; ///< of the file, in bytes; -1: not known
    qint64 time = -1; ///< when it was changed last, in ns
    CharCode charCode = CharCode::ShiftJis;
    ReturnCode returnCode = ReturnCode::CrLf;
    qint64 length = 0; ///< of the text, in units
    std::optional<Utf16Form> utf16 = {}; ///< it was read as such a text
    std::optional<quint64> contentHash = {}; ///< of the file's bytes; see ContentHash
};
QByteArray contentOf(const JournalBase &base);
std::optional<JournalBase> baseIn(QByteArrayView content);

/// Whether the file of a base is as it was, by its size and time.
bool isFileUnchanged(const JournalBase &base, const FileCalls &calls);
/// Whether the document was of a file that was never there, and still is not.
bool isOfNewFile(const JournalBase &base, const FileCalls &calls);

/// What was found when all of the base had been read.
struct BaseSeen {
    quint64 hash = 0; ///< of its text
    bool isTextKept = false; ///< it stands in records of type BaseText
};
QByteArray contentOf(const BaseSeen &seen);
std::optional<BaseSeen> baseSeenIn(QByteArrayView content);

/// Where a document is looked at.
struct ViewPlace {
    CursorPlace cursor;
    std::optional<Offset> anchor; ///< the other end of the selection, if there is one
    Offset top; ///< of the first unit that is shown
    qint64 left = 0; ///< pixels that are scrolled off to the left
    friend bool operator==(const ViewPlace &, const ViewPlace &) = default;
};

/// A document at the moment of a write, beside its text.
struct JournalState {
    /// Every one takes as many bytes.
    static constexpr qint64 bytes = 55;

    qint64 time = 0; ///< of the clock, in ms since 1970 UTC
    qint64 length = 0; ///< of the text, in units
    CharCode charCode = CharCode::ShiftJis;
    ReturnCode returnCode = ReturnCode::CrLf;
    quint8 byteCodec = 0; ///< which codec its undecodable bytes and spellings are of; see byteCodecNumber()
    ViewPlace place;
    bool keepsUtf16 = false; ///< it is saved in the form in which the base was read
};
QByteArray contentOf(const JournalState &state);
std::optional<JournalState> stateIn(QByteArrayView content);

/// Codecs by numbers that files keep. A number that is none is that of UTF-8.
quint8 byteCodecNumber(const TextCodec &codec);
const TextCodec &byteCodecOf(quint8 number);
