// Any bytes through every codec, in blocks and leaves of any size: they are saved as they were, and what is
// edited beside them does not change them.

#include "fuzz/bytes.h"
#include "tests/codec/codecnamed.h"
#include "tests/codec/shorttexts.h"
#include "tests/codec/storedbytes.h"
#include "tests/text/tinynodes.h"
#include "text/textlayout.h"
#include "text/undohistory.h"

using namespace Qt::StringLiterals;

namespace {

/// What the bytes before the file's tell.
struct Plan {
    explicit Plan(Bytes &bytes)
        : cuts{ nodesOf(int(8 + bytes.below(24))), 1 + bytes.below(70) }
        , offset(bytes.next())
        , removed(bytes.below(6))
        , inserted(typed(bytes))
    {
    }

    static QString typed(Bytes &bytes)
    {
        static const QString texts[] = { {}, u"x"_s, u"漢字"_s, u"ｱ\n"_s, u"\t"_s, u"丂"_s, u"¥"_s, u"B"_s,
            u"("_s };
        return texts[bytes.below(std::size(texts))];
    }

    TextCuts cuts;
    qint64 offset;
    qint64 removed;
    QString inserted;

    /// Of the file.
    qsizetype partSize() const { return 1 + offset % 13; }
};

bool cutsPair(const TextStore &store, qint64 offset)
{
    return offset > 0 && offset < store.length() && QChar::isHighSurrogate(store.at(Offset(offset - 1)))
        && QChar::isLowSurrogate(store.at(Offset(offset)));
}

/// What a part of the text was read from, in codes whose characters have the same bytes everywhere.
QByteArray partOf(const TextCodec &codec, const TextStore &store, qint64 from, qint64 units)
{
    TextStore part({}, store.layout().sizes());
    part.insert({}, store.piece(Offset(from), units));
    return storedBytes(codec, part);
}

bool isUtf16(const TextCodec &codec)
{
    return &codec == &utf16LittleEndianCodec() || &codec == &utf16BigEndianCodec();
}

/// In UTF-16 lone surrogates have bytes of their own, and in UTF-8 those of UTF-16 do.
void checkUnits(const TextCodec &codec, const QByteArray &file, const QString &text)
{
    if (!isUtf16(codec))
        return;
    require(file.size() % 2 == 1 || encoded(codec, text) == file);
    require(decoded(utf8Codec(), encoded(utf8Codec(), text)) == text);
}

/// What the parts of a file give, one after the other.
void checkParts(const TextCodec &codec, QByteArrayView file, const TextStore &whole, const Plan &plan)
{
    const std::unique_ptr<TextCodec::Decoding> decoding = codec.decoding();
    if (!decoding)
        return;
    BuilderSink sink(plan.cuts);
    for (QByteArrayView rest = file; !rest.isEmpty();) {
        const QByteArrayView part = rest.first(qMin(plan.partSize(), rest.size()));
        decoding->add(part, sink);
        rest = rest.sliced(part.size());
    }
    decoding->finish(sink);
    const TextStore store = sink.finish();
    store.checkInvariants();
    require(store.text() == whole.text());
    require(storedBytes(codec, store) == file);
}

/// One edit, taken back and made again.
void checkEdit(const TextCodec &codec, const QByteArray &file, TextStore &store, const Plan &plan)
{
    const qint64 offset = qMin(plan.offset, store.length());
    const qint64 removed = qMin(plan.removed, store.length() - offset);
    const bool isApart = &codec != &jisCodec() && !isUtf16(codec) && !cutsPair(store, offset)
        && !cutsPair(store, offset + removed);
    QByteArray before;
    QByteArray behind;
    if (isApart) {
        before = partOf(codec, store, 0, offset);
        behind = partOf(codec, store, offset + removed, store.length() - offset - removed);
        require(file.startsWith(before) && file.endsWith(behind));
    }
    UndoHistory history;
    history.replace(store, Offset(offset), removed, plan.inserted);
    store.checkInvariants();
    const QByteArray edited = storedBytes(codec, store);
    require(!isApart || edited == before + encoded(codec, plan.inserted) + behind);
    // JIS reads the yen sign as a backslash.
    require(&codec != &jisCodec() || decoded(codec, edited) == store.text().replace(u'¥', u'\\'));
    if (!history.canUndo())
        return;
    history.undo(store);
    require(storedBytes(codec, store) == file);
    history.redo(store);
    require(storedBytes(codec, store) == edited);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Bytes bytes(data, size);
    const Plan plan(bytes);
    const QByteArray content = bytes.take(qint64(size));
    for (const NamedCodec &named : namedCodecs) {
        const TextCodec &codec = named.codec();
        const QByteArray file = isUtf16(codec) ? encoded(codec, {}) + content : content;
        const QString text = decoded(codec, file);
        TextStore store = storeOf(codec, file, plan.cuts);
        store.checkInvariants();
        require(store.text() == text);
        require(storedBytes(codec, store) == file);
        checkUnits(codec, file, text);
        checkParts(codec, file, store, plan);
        checkEdit(codec, file, store, plan);
    }
    return 0;
}
