#include "recovery/journalwriter.h"

#include "recovery/journalfolder.h"

#include <algorithm>

namespace {

constexpr qsizetype bytesOfStep = 1 << 20;
/// A journal is made anew when it is so many times as long as it was then, and so much more.
constexpr qint64 mostGrowth = 4;
constexpr qint64 smallGrowth = qint64{ 4 } << 20;
/// In a change as large as this much may stand that the base has; it is worth looking for.
constexpr qint64 largeChange = qint64{ 1 } << 20;

} // namespace

JournalWriter::JournalWriter(const QByteArray &folder, const FileCalls &calls)
    : m_folder(folder)
    , m_calls(calls)
{
}

bool JournalWriter::mustBeNew() const
{
    return !m_file || m_hasFailed || m_file->size() > mostGrowth * m_compactSize + smallGrowth
        || !m_file->hasName();
}

void JournalWriter::begin(const JournalWrite &write)
{
    m_write = &write;
    m_next.reset();
    if (mustBeNew()) {
        m_next = std::make_unique<JournalFile>(m_calls);
        m_stage = Stage::Start;
    } else {
        m_stage = Stage::Parts;
    }
    plan();
}

/// In a new file the text that was committed last is the base.
void JournalWriter::plan()
{
    if (m_next)
        planParts(m_write->changeOfBase, *m_write->baseText, false);
    else
        planParts(m_write->change, *m_write->committed, m_write->change.inserted >= largeChange);
}

void JournalWriter::planParts(const TextChange &change, const TextSnapshot &before, bool fromBase)
{
    const Offset behind = change.offset + change.removed;
    const TextExtract extract{ *m_write->text, { change.offset, change.offset + change.inserted } };
    const TextExtract gone{ before, { change.offset, behind } };
    const TextExtract base{ *m_write->baseText, { {}, fromBase ? m_write->baseText->end() : Offset() } };
    m_parts.clear();
    addPart({ int(Source::Committed), {}, change.offset - Offset() });
    for (const TextPart &part : partsOf(extract, { gone, base }))
        addPart(part);
    addPart({ int(Source::Committed), behind, before.end() - behind });
    std::ranges::reverse(m_parts);
}

void JournalWriter::addPart(const TextPart &part)
{
    if (part.length > 0)
        m_parts.push_back(part);
}

JournalWriter::Progress JournalWriter::failed(int error)
{
    m_error = error;
    m_hasFailed = true;
    m_next.reset();
    return Progress::Failed;
}

JournalWriter::Progress JournalWriter::step()
{
    bool isWell = true;
    switch (m_stage) {
    case Stage::Start:
        isWell = startNewFile();
        break;
    case Stage::KeepBase:
        isWell = m_baseReading.step(*m_write->baseText, target());
        if (m_baseReading.isDone())
            m_stage = Stage::Parts;
        break;
    case Stage::Parts:
        isWell = writeSomeParts();
        if (isWell && m_parts.empty())
            return finish() ? Progress::Done : failed(m_error);
        break;
    }
    return isWell ? Progress::More : failed(target().error());
}

/// A base that is kept comes before the edits, so that no moment has the one without the other.
bool JournalWriter::startNewFile()
{
    if (m_name.isEmpty())
        m_name = m_folder + newJournalName();
    if (!m_next->create(m_folder) || !m_next->append(RecordType::Base, contentOf(m_write->base)))
        return false;
    m_stage = Stage::Parts;
    const bool isSeen = m_baseReading.isDone();
    if (!m_write->base.isFromFile) {
        m_baseReading.skip();
    } else if (BaseReading::isKept(*m_write->baseText)) {
        m_baseReading.restart();
        m_stage = Stage::KeepBase;
    } else if (isSeen) {
        return m_baseReading.repeat(*m_next);
    }
    return true;
}

bool JournalWriter::writeSomeParts()
{
    EditWriter edit;
    for (qsizetype written = 0; written < bytesOfStep && !m_parts.empty(); edit.clear()) {
        while (!m_parts.empty() && !edit.isFull())
            writePart(edit);
        written += edit.content().size();
        if (!target().append(RecordType::Edit, edit.content()))
            return false;
    }
    return true;
}

/// The next part, or some of it.
void JournalWriter::writePart(EditWriter &edit)
{
    TextPart &part = m_parts.back();
    if (part.source == TextPart::ownText) {
        TextChunk chunk = m_write->text->spelledChunkAt(part.offset);
        chunk.truncate(qMin(chunk.size(), part.length));
        const qint64 taken = edit.append(chunk);
        part.offset += taken;
        part.length -= taken;
    } else {
        if (part.source == int(Source::Base))
            edit.copyBase(part.offset, part.length);
        else
            edit.copyCommitted(part.offset, part.length);
        part.length = 0;
    }
    if (part.length == 0)
        m_parts.pop_back();
}

bool JournalWriter::finish()
{
    bool isWell = target().append(RecordType::Commit, contentOf(m_write->state)) && target().sync();
    if (isWell && m_next)
        isWell = m_next->publish(m_name);
    m_error = target().error();
    if (!m_next || !m_next->isPublished())
        return isWell;
    m_file = std::move(m_next);
    m_hasFailed = false;
    m_compactSize = m_file->size();
    return isWell;
}

JournalWriter::Progress JournalWriter::stepAtLeisure()
{
    const bool isWell =
        m_baseReading.step(*m_write->baseText, *m_file) && (!m_baseReading.isDone() || m_file->sync());
    if (!isWell)
        return failed(m_file->error());
    if (!m_baseReading.isDone())
        return Progress::More;
    m_compactSize = qMax(m_compactSize, m_file->size());
    return Progress::Done;
}

void JournalWriter::rest()
{
    m_next.reset();
    m_write = nullptr;
}

void JournalWriter::leave()
{
    rest();
    m_file.reset();
}

void JournalWriter::remove()
{
    leave();
    if (!m_name.isEmpty())
        m_calls.unlink(m_name.constData());
}
