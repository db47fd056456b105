#include "document/fileblocks.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr qint64 readAtOnce = qint64{ 1 } << 20;

constexpr bool isUtf8Rest(char byte)
{
    return (uchar(byte) & 0xC0) == 0x80;
}

/// A CR may go, and what stands before it then be followed by what stands behind.
constexpr bool isCr(char byte)
{
    return byte == '\r';
}

/// Whether every character ends behind this byte, however it begins. A NUL becomes FF, which is a character
/// by itself in each code.
bool endsCharacter(char byte, CharCode code)
{
    const auto b = uchar(byte);
    const bool isKatakana = code == CharCode::ShiftJis && b >= 0xA1 && b <= 0xDF; // or a second byte
    return (b < 0x80 && !isCr(byte)) || b == 0xFF || isKatakana;
}

bool beginsCharacter(char byte, CharCode code)
{
    return code == CharCode::Utf8 && !isUtf8Rest(byte) && !isCr(byte);
}

/// By a look from the end.
qsizetype lastSureCut(QByteArrayView bytes, CharCode code)
{
    const bool isAnywhere = infoOf(code).hasState || code == CharCode::Binary;
    for (qsizetype place = bytes.size(); place > 0; --place) {
        const char before = bytes[place - 1];
        if (isAnywhere ? !isCr(before) : endsCharacter(before, code))
            return place;
        if (place < bytes.size() && !isCr(before) && beginsCharacter(bytes[place], code))
            return place;
    }
    return 0;
}

/// Of bytes that begin with a character: by a look from the start. It ends at a character that a CR which
/// goes would change.
qsizetype lastCharacterCut(QByteArrayView bytes, const TextCodec &codec)
{
    qsizetype cut = 0;
    for (qsizetype from = 0; from < bytes.size();) {
        const qsizetype cr = bytes.indexOf('\r', from);
        const QByteArrayView run = bytes.sliced(from).first((cr < 0 ? bytes.size() : cr) - from);
        const qsizetype whole = codec.wholeCharacters(run);
        if (whole > 0)
            cut = from + whole;
        if (whole < run.size())
            break;
        from += whole + 1;
    }
    return cut;
}

} // namespace

void FileFacts::add(QByteArrayView bytes)
{
    if (m_codeIs == Code::Wanted)
        m_code.add(bytes);
    add(bytes, bytes);
}

void FileFacts::add(QByteArrayView bytes, QByteArrayView text)
{
    constexpr qsizetype startSize = 4096;
    if (m_start.size() < startSize)
        m_start += bytes.first(std::min(bytes.size(), startSize - m_start.size()));
    m_lineEnd.add(text);
    m_rewritten.add(text);
    m_content.add(bytes);
}

FileBlocks::FileBlocks(QString fileName, std::optional<CharCode> code, const FileCalls &calls)
    : m_fileName(std::move(fileName))
    , m_code(code)
    , m_file(calls)
    , m_facts(code ? FileFacts::Code::Known : FileFacts::Code::Wanted)
{
}

FileBlocks::FileBlocks(QString fileName, Utf16Form form, const FileCalls &calls)
    : FileBlocks(std::move(fileName), CharCode::Utf8, calls)
{
    m_utf16.emplace(form);
}

bool FileBlocks::open()
{
    m_failure = m_file.open(m_fileName);
    return !m_failure;
}

void FileBlocks::startOver(CharCode code)
{
    m_settledCode = code;
    m_settledSize = std::exchange(m_facts, FileFacts()).size();
}

CharCode FileBlocks::code(CharCode codeOfEmpty) const
{
    if (m_code)
        return *m_code;
    return m_facts.size() <= m_settledSize ? m_settledCode : m_facts.code().code(codeOfEmpty);
}

bool FileBlocks::read(FileBlock &block, const FileBlock &before, qsizetype size)
{
    const QByteArrayView carried = QByteArrayView(before.bytes).first(before.size).sliced(before.end);
    const qint64 left = expectedSize() - m_facts.size();
    const qint64 room = left > 0 ? left + 1 : readAtOnce; // one more tells the end, unless the file grows
    block.bytes.resize(carried.size() + std::min<qint64>(size, room));
    std::copy(carried.begin(), carried.end(), block.bytes.begin());
    block.size = carried.size();
    block.end = 0;
    block.isLast = false;
    while (fill(block) && !block.isLast) {
        const CharCode readAs = codeToRead(code(CharCode::Utf8), m_mark);
        block.end = cutOf(QByteArrayView(block.bytes).first(block.size), readAs);
        if (block.end > 0 || m_isAtEnd)
            break;
        block.bytes.resize(block.bytes.size() * 2 + readAtOnce);
    }
    block.fileEnd = m_facts.size() - (m_utf16 ? 0 : block.size - block.end);
    return !m_failure;
}

/// Reads until there is no more room, or no more to read.
bool FileBlocks::fill(FileBlock &block)
{
    m_isAtEnd = false;
    while (block.size < block.bytes.size() && !m_isAtEnd) {
        if (!(m_utf16 ? addUtf16(block) : addBytes(block)))
            return false;
    }
    block.isLast = m_isAtEnd && !m_isGrowing;
    if (block.isLast)
        block.end = block.size;
    return true;
}

bool FileBlocks::addBytes(FileBlock &block)
{
    char *const to = block.bytes.data() + block.size;
    const auto count = readSome(to, std::min<qint64>(readAtOnce, block.bytes.size() - block.size));
    if (!count)
        return false;
    m_isAtEnd = *count == 0;
    if (!m_isAtEnd)
        addFacts({ to, *count });
    block.size += *count;
    return true;
}

void FileBlocks::addFacts(QByteArrayView bytes)
{
    constexpr qsizetype longestMark = 3;
    m_facts.add(bytes);
    const QByteArrayView start = m_facts.start();
    if (m_mark.size() < longestMark && m_mark.size() < start.size())
        m_mark = start.first(qMin(start.size(), longestMark)).toByteArray().replace('\0', '\xFF');
}

/// Makes room where it becomes more.
bool FileBlocks::addUtf16(FileBlock &block)
{
    m_utf16Bytes.resize(std::min<qint64>(readAtOnce, block.bytes.size() - block.size));
    const auto count = readSome(m_utf16Bytes.data(), m_utf16Bytes.size());
    if (!count)
        return false;
    m_isAtEnd = *count == 0;
    const QByteArrayView bytes = QByteArrayView(m_utf16Bytes).first(*count);
    const QByteArray text = m_isAtEnd ? m_utf16->finish() : m_utf16->add(bytes);
    m_facts.add(bytes, text);
    if (block.bytes.size() - block.size < text.size())
        block.bytes.resize(block.size + text.size());
    std::copy(text.begin(), text.end(), block.bytes.begin() + block.size);
    block.size += text.size();
    return true;
}

/// From where it was read to last.
std::optional<qint64> FileBlocks::readSome(char *to, qint64 size)
{
    const auto count = m_file.read(to, size, m_facts.size());
    if (!count)
        m_failure = ReadFailure::BrokenOff;
    return count;
}

FileVersion FileBlocks::version() const
{
    FileStamp stamp = m_file.stamp();
    stamp.size = m_facts.size();
    return { stamp, m_facts.content() };
}

void FileBlocks::readAgain(FileCodes codes, const std::function<bool(QByteArrayView)> &take) const
{
    constexpr qsizetype leastSize = 65536;
    QByteArray bytes;
    qint64 offset = 0;
    for (bool isLast = false; !isLast;) {
        const qsizetype before = bytes.size();
        const qsizetype size = std::max(leastSize, before); // few looks at what cannot be cut
        bytes.resize(before + size);
        const auto count = m_file.read(bytes.data() + before, size, offset);
        if (!count)
            return;
        offset += *count;
        bytes.truncate(before + *count);
        isLast = *count == 0;
        const qsizetype end = isLast ? bytes.size() : cutOf(bytes, codes.charCode);
        QByteArray part = bytes.first(end);
        bytes.remove(0, end);
        normalizeLineEnds(part, codes.returnCode);
        if (!part.isEmpty() && !take(part))
            return;
    }
}

qsizetype cutOf(QByteArrayView bytes, CharCode code)
{
    const qsizetype cut = lastSureCut(bytes, code);
    return cut > 0 ? cut : lastCharacterCut(bytes, infoOf(code).codec());
}
