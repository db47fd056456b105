#include "recovery/journalrecord.h"

#include "codec/codecs.h"
#include "files/filename.h"
#include "files/fileversion.h"
#include "recovery/checksum.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace {

quint64 checksumOf(RecordType type, QByteArrayView content)
{
    return ::checksumOf(content, quint64(type));
}

bool isRecordType(quint8 type)
{
    return type >= quint8(RecordType::Base) && type <= quint8(RecordType::Commit);
}

/// Stands in a journal where there is no other end of a selection.
constexpr Offset noAnchor(-1);

/// Bits of a number in the state.
constexpr quint32 atRowEnd = 1;
constexpr quint32 asUtf16 = 2;

quint8 utf16Number(const std::optional<Utf16Form> &form)
{
    return form ? quint8(1 + (form->isBigEndian ? 1 : 0) + (form->hasMark ? 2 : 0)) : quint8(0);
}

std::optional<Utf16Form> utf16OfNumber(quint8 number)
{
    const int bits = number - 1;
    return number > 0 ? std::optional(Utf16Form{ (bits & 1) != 0, (bits & 2) != 0 }) : std::nullopt;
}

/// In the order of their numbers: a new one comes last.
using CodecFunction = const TextCodec &();
constexpr CodecFunction *byteCodecs[] = { utf8Codec, utf16LittleEndianCodec, utf16BigEndianCodec, latin1Codec,
    shiftJisCodec, eucCodec, jisCodec };

} // namespace

QByteArrayView journalMagic()
{
    return { "Marlopad journal 1\n" };
}

void appendRecord(QByteArray &to, RecordType type, QByteArrayView content)
{
    Q_ASSERT(content.size() <= JournalRecord::mostBytes);
    FieldWriter head;
    head.number32(quint32(content.size()));
    head.number64(qint64(checksumOf(type, content)));
    head.number8(quint8(type));
    to.append(head.result());
    to.append(content);
}

qint64 recordSize(QByteArrayView bytes)
{
    return JournalRecord::headSize + FieldReader(bytes).number32();
}

bool isRecordHead(QByteArrayView bytes)
{
    return isRecordType(quint8(bytes[JournalRecord::headSize - 1]));
}

std::optional<JournalRecord> firstRecord(QByteArrayView bytes)
{
    FieldReader head(bytes.first(qMin<qint64>(bytes.size(), JournalRecord::headSize)));
    const qint64 size = head.number32();
    const auto sum = quint64(head.number64());
    const quint8 type = head.number8();
    if (!head.isWhole() || size > bytes.size() - JournalRecord::headSize)
        return std::nullopt;
    const QByteArrayView content = bytes.sliced(JournalRecord::headSize, size);
    if (!isRecordType(type) || checksumOf(RecordType(type), content) != sum)
        return std::nullopt;
    return JournalRecord{ RecordType(type), content.toByteArray() };
}

QByteArray contentOf(const JournalBase &base)
{
    FieldWriter fields;
    fields.text(base.path);
    fields.text(base.name);
    fields.number8(base.isFromFile ? 1 : 0);
    fields.number64(base.size);
    fields.number64(base.time);
    fields.number8(quint8(base.charCode));
    fields.number8(quint8(base.returnCode));
    fields.number64(base.length);
    fields.number8(utf16Number(base.utf16));
    fields.number8(base.contentHash ? 1 : 0);
    fields.number64(qint64(base.contentHash.value_or(0)));
    return fields.result();
}

std::optional<JournalBase> baseIn(QByteArrayView content)
{
    FieldReader fields(content);
    JournalBase base;
    base.path = fields.text();
    base.name = fields.text();
    base.isFromFile = fields.number8() != 0;
    base.size = fields.number64();
    base.time = fields.number64();
    base.charCode = CharCode(fields.number8());
    base.returnCode = ReturnCode(fields.number8());
    base.length = fields.number64();
    if (!fields.atEnd()) // earlier versions wrote none
        base.utf16 = utf16OfNumber(fields.number8());
    if (!fields.atEnd() && fields.number8() != 0)
        base.contentHash = quint64(fields.number64());
    return fields.isWhole() && base.length >= 0 ? std::optional(base) : std::nullopt;
}

bool isFileUnchanged(const JournalBase &base, const FileCalls &calls)
{
    struct stat info = {};
    const QByteArray name = FileName::toBytes(base.path + base.name);
    return base.isFromFile && calls.stat(name.constData(), &info) == 0 && info.st_size == base.size
        && FileStamp(info).modified == base.time;
}

bool isOfNewFile(const JournalBase &base, const FileCalls &calls)
{
    struct stat info = {};
    const QByteArray name = FileName::toBytes(base.path + base.name);
    return base.isFromFile && base.size == -1 && base.length == 0 && calls.stat(name.constData(), &info) == -1
        && errno == ENOENT;
}

QByteArray contentOf(const BaseSeen &seen)
{
    FieldWriter fields;
    fields.number64(qint64(seen.hash));
    fields.number8(seen.isTextKept ? 1 : 0);
    return fields.result();
}

std::optional<BaseSeen> baseSeenIn(QByteArrayView content)
{
    FieldReader fields(content);
    BaseSeen seen;
    seen.hash = quint64(fields.number64());
    seen.isTextKept = fields.number8() != 0;
    return fields.isWhole() ? std::optional(seen) : std::nullopt;
}

QByteArray contentOf(const JournalState &state)
{
    FieldWriter fields;
    fields.number64(state.time);
    fields.number64(state.length);
    fields.number8(quint8(state.charCode));
    fields.number8(quint8(state.returnCode));
    fields.number8(state.byteCodec);
    fields.number64(state.place.cursor.offset.value());
    fields.number32((state.place.cursor.atRowEnd ? atRowEnd : 0) | (state.keepsUtf16 ? asUtf16 : 0));
    fields.number64(state.place.anchor.value_or(noAnchor).value());
    fields.number64(state.place.top.value());
    fields.number64(state.place.left);
    Q_ASSERT(fields.size() == JournalState::bytes);
    return fields.result();
}

std::optional<JournalState> stateIn(QByteArrayView content)
{
    FieldReader fields(content);
    JournalState state;
    state.time = fields.number64();
    state.length = fields.number64();
    state.charCode = CharCode(fields.number8());
    state.returnCode = ReturnCode(fields.number8());
    state.byteCodec = fields.number8();
    state.place.cursor.offset = Offset(fields.number64());
    const quint32 bits = fields.number32();
    state.place.cursor.atRowEnd = (bits & atRowEnd) != 0;
    state.keepsUtf16 = (bits & asUtf16) != 0;
    if (const Offset anchor(fields.number64()); anchor >= Offset())
        state.place.anchor = anchor;
    state.place.top = Offset(fields.number64());
    state.place.left = fields.number64();
    return fields.isWhole() ? std::optional(state) : std::nullopt;
}

quint8 byteCodecNumber(const TextCodec &codec)
{
    const auto *const found =
        std::ranges::find_if(byteCodecs, [&codec](CodecFunction *function) { return &function() == &codec; });
    return found == std::end(byteCodecs) ? quint8(0) : quint8(found - std::begin(byteCodecs));
}

const TextCodec &byteCodecOf(quint8 number)
{
    return byteCodecs[number < std::size(byteCodecs) ? number : 0]();
}
