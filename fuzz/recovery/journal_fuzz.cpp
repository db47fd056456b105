// Journals of any bytes: some as they are, some as records whose checksums are right. What is whole comes
// back, and the document is sound.

#include "fuzz/bytes.h"
#include "recovery/journaledit.h"
#include "recovery/journalplay.h"
#include "recovery/leftbehind.h"
#include "recovery/restoring.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

QByteArray randomEdit(Bytes &bytes)
{
    EditWriter edit;
    for (int parts = bytes.next() % 6; parts > 0; --parts) {
        switch (bytes.next() % 4) {
        case 0:
            edit.copyCommitted(Offset(bytes.next() % 16), bytes.next() % 16);
            break;
        case 1:
            edit.copyBase(Offset(bytes.next() % 16), bytes.next() % 16);
            break;
        default:
            const QByteArray text = bytes.take(bytes.next() % 16);
            const QByteArray spelling = bytes.take(bytes.next() % 3);
            TextChunk chunk{ {}, text, {}, {} };
            if (!spelling.isEmpty() && text.size() == 1)
                chunk.spelling = spelling;
            edit.append(chunk);
        }
    }
    return edit.content();
}

QByteArray recordContent(Bytes &bytes, RecordType type)
{
    if (bytes.next() % 16 == 0)
        return bytes.take(bytes.next());
    switch (type) {
    case RecordType::Base: {
        JournalBase base;
        base.isFromFile = bytes.next() % 2 == 0;
        base.length = bytes.next() % 16;
        return contentOf(base);
    }
    case RecordType::BaseEnd:
        return contentOf(BaseSeen{ 0, bytes.next() % 2 == 0 });
    case RecordType::BaseText:
    case RecordType::Edit:
        return randomEdit(bytes);
    case RecordType::Commit: {
        JournalState state;
        state.length = bytes.next() % 64;
        state.place.cursor.offset = Offset(bytes.next()) - 100;
        return contentOf(state);
    }
    }
    return {};
}

QByteArray randomJournal(Bytes &bytes)
{
    QByteArray journal = journalMagic().toByteArray();
    if (bytes.next() % 4 == 0)
        return (bytes.next() % 2 == 0 ? journal : QByteArray()) + bytes.take(10000);
    appendRecord(journal, RecordType::Base, recordContent(bytes, RecordType::Base));
    while (!bytes.atEnd()) {
        const auto type = RecordType(1 + bytes.next() % 5);
        appendRecord(journal, type, recordContent(bytes, type));
    }
    journal.chop(bytes.next() % 8);
    return journal;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir temporary;
    const QByteArray folder = QFile::encodeName(temporary.path()) + '/';
    Bytes bytes(data, size);
    QFile file(QFile::decodeName(folder + "a.journal"));
    require(file.open(QIODevice::WriteOnly) && file.write(randomJournal(bytes)) >= 0);
    file.close();
    constexpr qint64 longest = 1 << 20; // whoever gets the sums right can tell a text without end
    const auto found = findLeftBehind(folder);
    require(found.size() <= 1);
    if (!file.exists()) // nothing of a text was in it
        return 0;
    {
        const ClaimedJournal claimed = ClaimedJournal::claim(folder + "a.journal", FileCalls::system());
        JournalReader reader(claimed.file(), FileCalls::system());
        const JournalOutline outline = outlineOf(reader);
        if (outline.base.length > longest || outline.state.length > longest)
            return 0;
    }
    TextDocument document;
    const Restored restored = restore(folder + "a.journal", document);
    document.store().checkInvariants();
    require(
        restored.place.cursor.offset >= Offset() && restored.place.cursor.offset <= document.store().end());
    require(document.isEdited() || document.store().length() == 0);
    require(restored.outcome != Restored::Outcome::InUse && QFile::exists(file.fileName()));
    return 0;
}
