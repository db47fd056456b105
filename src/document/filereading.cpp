#include "document/filereading.h"

#include "document/fittingcode.h"
#include "document/utf16text.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

/// Codes in which ASCII gives the same text; what is in no code of text has other line ends.
bool isAsciiAlike(CharCode code)
{
    return isCodeOfText(code) && !infoOf(code).hasState;
}

/// Bytes that fit the code they were read with are text of that code, unless any bytes fit it.
bool isUtf16Likely(const ReadFindings &found, CharCode readAs)
{
    return found.utf16 && (found.utf16->hasMark || found.undecodableBytes > 0 || readAs == CharCode::Binary);
}

FileBlocks blocksOf(const FileReading::Request &request, const FileCalls &calls)
{
    return request.utf16 ? FileBlocks(request.fileName, *request.utf16, calls)
                         : FileBlocks(request.fileName, request.code, calls);
}

/// The length of the first part of a block that is decoded by itself.
qsizetype partOf(QByteArrayView block, qsizetype wanted, CharCode code)
{
    for (qsizetype size = wanted; size < block.size(); size *= 2) {
        if (const qsizetype end = cutOf(block.first(size), code); end > 0)
            return end;
    }
    return block.size();
}

} // namespace

FileReading::FileReading(Request request, LayoutCopy layout, const FileCalls &calls)
    : FileReading(std::move(request), std::move(layout), calls, Sizes())
{
}

FileReading::FileReading(Request request, LayoutCopy layout, const FileCalls &calls, Sizes sizes)
    : m_request(std::move(request))
    , m_sizes(sizes)
    , m_blocks(blocksOf(m_request, calls))
    , m_codes(m_request.codesOfSilent)
    , m_layout(std::move(layout))
{
    m_blocks.setGrowing(m_request.isGrowing);
}

FileReading::~FileReading() = default;

FileReading::Step FileReading::step(const Spread &spread)
{
    try {
        return makeStep(spread);
    } catch (const std::bad_alloc &) {
        giveUp();
        return Step::Failed;
    }
}

ReadFailure FileReading::failure() const
{
    return m_isTooLarge ? ReadFailure::TooLarge : *m_blocks.failure();
}

/// Whoever is told of it needs memory too.
void FileReading::giveUp()
{
    m_isTooLarge = true;
    m_part.reset();
    m_block = {};
    m_spare = {};
    m_decoding.reset();
    m_idle.clear();
    m_workers.clear();
}

FileReading::Step FileReading::makeStep(const Spread &spread)
{
    m_part.reset();
    takeLayout();
    if (!m_isOpen && !(m_blocks.open() && readFirst()))
        return Step::Failed;
    m_isOpen = true;
    if (!settleCode() && !startOver())
        return Step::Failed;
    FileBlock next;
    std::swap(next.bytes, m_spare);
    if (m_block.end == 0 && !m_block.isLast)
        readBehind(next); // what there is waits for its rest
    else
        decode(next, spread);
    if (m_blocks.failure())
        return Step::Failed;
    if (!m_block.isLast) {
        std::swap(m_spare, m_block.bytes);
        m_block = std::move(next);
        return Step::More;
    }
    finish();
    return Step::Done;
}

bool FileReading::hasMore(qint64 size) const
{
    constexpr qint64 fewWaiting = 65536;
    const qint64 waiting = m_block.size - m_block.end;
    return m_block.end > 0 || size - m_blocks.facts().size() > qMax<qint64>(0, (waiting - fewWaiting) / 4);
}

void FileReading::endGrowth()
{
    m_blocks.setGrowing(false);
}

bool FileReading::readFirst()
{
    m_block = {};
    return m_blocks.read(m_block, {}, m_sizes.firstBlock);
}

/// Decides by all bytes that were read. False: what was decoded was read in another code.
bool FileReading::settleCode()
{
    const CharCode before = m_codes.charCode;
    const TextCodec *const codecBefore = m_result.codec;
    const auto lineEnd = m_blocks.facts().lineEnd().found();
    m_codes.charCode = m_blocks.code(m_request.codesOfSilent.charCode);
    m_readAs = codeToRead(m_codes.charCode, m_blocks.mark());
    m_result.codec = &codecToRead(m_codes.charCode, m_blocks.mark());
    m_codes.returnCode = m_codes.charCode == CharCode::Binary
        ? ReturnCode::None
        : lineEnd.value_or(m_request.codesOfSilent.returnCode);
    return (m_codes.charCode == before && m_result.codec == codecBefore) || m_decoded.bytes == 0
        || (m_decoded.isAscii && isAsciiAlike(before) && isAsciiAlike(m_codes.charCode));
}

FileCodes FileReading::codes() const
{
    return { m_request.utf16 ? CharCode::Unicode : m_codes.charCode, m_codes.returnCode };
}

bool FileReading::startOver()
{
    m_blocks.startOver(m_codes.charCode);
    m_startsOver = true;
    m_decoded = {};
    m_result = {};
    m_decoding.reset();
    return readFirst() && settleCode();
}

void FileReading::setLayout(LayoutCopy layout)
{
    m_newLayouts.put(std::move(layout));
}

void FileReading::takeLayout()
{
    std::vector<LayoutCopy> layouts = m_newLayouts.take();
    if (layouts.empty())
        return;
    m_layout = std::move(layouts.back());
    for (const auto &worker : m_workers)
        worker->layout = m_layout;
}

/// Where parts of a block cannot be decoded by themselves it is the one part.
bool FileReading::isDecodedInOrder() const
{
    return infoOf(m_readAs).hasState;
}

/// Decodes the block while the one behind it is read.
void FileReading::decode(FileBlock &next, const Spread &spread)
{
    char *const bytes = m_block.bytes.data();
    std::vector<qsizetype> ends;
    do {
        const qsizetype from = ends.empty() ? 0 : ends.back();
        const QByteArrayView rest(bytes + from, m_block.end - from);
        ends.push_back(isDecodedInOrder() ? m_block.end : from + partOf(rest, m_sizes.part, m_readAs));
    } while (ends.back() < m_block.end);
    std::vector<DecodedPart> parts(ends.size());
    const bool isAscii = m_blocks.facts().code().isAscii();
    const int readers = m_block.isLast ? 0 : 1;
    spread(readers + int(ends.size()), [&](int task) {
        if (task < readers)
            return readBehind(next);
        const auto part = size_t(task - readers);
        const qsizetype from = part == 0 ? 0 : ends[part - 1];
        parts[part] = decodePart(bytes + from, ends[part] - from);
    });
    m_decoded.isAscii = isAscii;
    m_decoded.bytes = m_block.fileEnd;
    join(std::move(parts));
}

FileReading::Worker &FileReading::takeWorker()
{
    const std::lock_guard lock(m_mutex);
    if (m_idle.empty()) {
        m_workers.push_back(std::make_unique<Worker>(m_layout));
        return *m_workers.back();
    }
    Worker &worker = *m_idle.back();
    m_idle.pop_back();
    return worker;
}

void FileReading::giveBack(Worker &worker)
{
    const std::lock_guard lock(m_mutex);
    m_idle.push_back(&worker);
}

void FileReading::readBehind(FileBlock &next)
{
    m_blocks.read(next, m_block, m_sizes.laterBlocks);
}

/// In any thread.
FileReading::DecodedPart FileReading::decodePart(char *bytes, qsizetype size)
{
    const QByteArrayView text(bytes, normalizeLineEnds(bytes, size, m_codes.returnCode));
    DecodedPart part;
    Worker &worker = takeWorker();
    LeafMemory *const memory = bytesInAll() >= m_sizes.largeFile ? &worker.memory : nullptr;
    if (isDecodedInOrder())
        part.text = decodeOn(text, worker.layout, memory, part.undecodable);
    else
        part.text = m_result.codec->decode(text, worker.layout, memory, part.undecodable);
    giveBack(worker);
    return part;
}

TextStore FileReading::decodeOn(
    QByteArrayView text, const LayoutCopy &layout, LeafMemory *memory, qint64 &undecodable)
{
    if (!m_decoding)
        m_decoding = m_result.codec->decoding();
    const auto part = m_block.isLast ? TextCodec::Part::Last : TextCodec::Part::Inner;
    return TextCodec::decode(*m_decoding, text, part, layout, memory, undecodable);
}

/// Makes one part of those of a block.
void FileReading::join(std::vector<DecodedPart> parts)
{
    for (DecodedPart &part : parts) {
        m_result.findings.undecodableBytes += part.undecodable;
        if (m_part)
            m_part->text.append(std::move(*part.text));
        else
            m_part = Part{ std::move(*part.text), std::exchange(m_startsOver, false) };
    }
    m_part->isMeasured =
        std::ranges::all_of(m_workers, [](const auto &worker) { return worker->layout.isComplete(); });
    if (!m_part->isMeasured)
        m_part->text.forgetLayout();
}

/// Nothing is read behind the last block, so all facts are those of the whole file.
void FileReading::finish()
{
    const FileFacts &facts = m_blocks.facts();
    ReadFindings &findings = m_result.findings;
    m_result.codes = codes();
    m_result.version = m_blocks.version();
    findings.givenCode = m_request.code;
    findings.rewritten = facts.rewritten().with(m_codes.returnCode);
    if (m_request.utf16) {
        m_result.isUtf16 = true;
        findings.utf16 = m_request.utf16;
        return;
    }
    findings.utf16 = utf16FormOf(facts.start(), facts.size());
    if (!isUtf16Likely(findings, m_codes.charCode))
        findings.utf16.reset();
    if (!m_request.code && facts.code().isAscii())
        return;
    const auto blocks = [this](CharCode code, const auto &take) {
        m_blocks.readAgain({ code, m_codes.returnCode }, take);
    };
    findings.fittingCode =
        otherFittingCode(blocks, m_codes.charCode, !m_request.code, findings.undecodableBytes);
}
