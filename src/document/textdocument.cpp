#include "document/textdocument.h"

#include "codec/codecs.h"
#include "document/detection.h"
#include "document/lineends.h"
#include "document/utf16text.h"
#include "files/byteescape.h"
#include "files/endorder.h"
#include "files/filename.h"
#include "text/textlayout.h"

TextDocument::TextDocument(FileCodes codes, const FileCalls &calls)
    : m_file(calls)
    , m_codes(codes)
    , m_readCode(infoOf(codes.charCode).codec())
    , m_calls(calls)
{
}

void TextDocument::setCodes(FileCodes codes)
{
    m_codes = codes;
    m_readCode = ReadCode(infoOf(codes.charCode).codec());
    emit codesChanged();
}

void TextDocument::chooseCodes(FileCodes codes)
{
    m_codes = codes;
    emit codesChanged();
}

void TextDocument::setText(TextStore &&text)
{
    const bool isRead = isDropped();
    if (!isRead) {
        dropText();
        m_findings = {};
        m_utf16 = {};
    }
    EditableText::setText(std::move(text), !isRead);
}

/// The text is not that of the file read before, but one of these codes.
void TextDocument::forgetReading(FileCodes codes)
{
    m_codes = codes;
    m_readCode = ReadCode(infoOf(codes.charCode).codec());
    m_findings = {};
    m_utf16 = {};
}

std::optional<ReadFailure> TextDocument::load(
    const QString &path, const QString &name, std::optional<CharCode> requested, FileCodes codes)
{
    TextStore text;
    if (const auto failure = read(path, name, requested, codes, text))
        return failure;
    setText(std::move(text));
    return std::nullopt;
}

std::optional<ReadFailure> TextDocument::read(const QString &path, const QString &name,
    std::optional<CharCode> requested, FileCodes codes, TextStore &text)
{
    m_file.beginReading(path, name);
    return read(FileReading::Request{ path + name, requested, codes }, text);
}

std::optional<ReadFailure> TextDocument::readUtf16(
    const QString &path, const QString &name, Utf16Form form, FileCodes codes, TextStore &text)
{
    m_file.beginReading(path, name);
    return read(FileReading::Request{ path + name, {}, codes, form }, text);
}

std::optional<ReadFailure> TextDocument::read(const FileReading::Request &request, TextStore &text)
{
    TextStore fresh(store().layoutRule(), store().layout().sizes());
    FileReading reading(request, LayoutCopy(fresh), m_calls);
    for (auto step = FileReading::Step::More; step == FileReading::Step::More;) {
        EndOrder::obeyIfGiven();
        step = reading.step(spreadOverThreads);
        if (step == FileReading::Step::Failed)
            return reading.failure();
        auto part = reading.takePart();
        if (part && part->startsOver)
            fresh = TextStore(store().layoutRule(), store().layout().sizes());
        if (part)
            fresh.append(std::move(part->text));
        if (part && (part->startsOver || !part->isMeasured))
            reading.setLayout(LayoutCopy(fresh));
    }
    dropText();
    endReading(reading.result());
    text = std::move(fresh);
    return std::nullopt;
}

void TextDocument::endReading(const ReadResult &result)
{
    m_codes = result.codes;
    m_readCode = ReadCode(*result.codec);
    m_findings = result.findings;
    m_utf16 = { result.isUtf16 ? m_findings.utf16 : std::nullopt, false };
    m_file.endReading(result.version);
}

void TextDocument::keepUtf16()
{
    m_utf16.isKept = true;
    // Which has the same escapes as UTF-8, but writes them as they were read.
    m_readCode = ReadCode(codecOf(*m_utf16.form));
    emit codesChanged();
}

WritingCode TextDocument::writingCode() const
{
    const TextCodec &codec = m_utf16.isKept ? codecOf(*m_utf16.form) : infoOf(m_codes.charCode).codec();
    return { &codec, m_readCode.writtenAsReadIn(codec) };
}

void TextDocument::beginArrival(const QString &path, const QString &name, FileCodes codes, TextStore &&start)
{
    dropText();
    m_file.beginReading(path, name);
    forgetReading(codes);
    beginParts(std::move(start));
    emit codesChanged();
}

void TextDocument::endArrival(const ReadResult &result)
{
    endReading(result);
    endParts();
}

void TextDocument::failArrival(const QString &path, const QString &name, FileCodes codes)
{
    m_file.beginReading(path, name);
    setHeld(false);
    if (!isDropped())
        return;
    forgetReading(codes);
    dropText();
    setText(TextStore(store().layoutRule()));
    emit codesChanged();
}

void TextDocument::startNew(
    const QString &name, FileCodes codes, const TextCodec &byteCodec, std::optional<Utf16Form> keptUtf16)
{
    dropText();
    m_file.setName({}, name);
    m_codes = codes;
    m_readCode = ReadCode(keptUtf16 ? codecOf(*keptUtf16) : byteCodec);
    m_findings = { 0, {}, {}, keptUtf16 };
    setHeld(false);
    m_utf16 = { keptUtf16, keptUtf16.has_value() };
    setText(TextStore(store().layoutRule()));
}

void TextDocument::startFile(const QString &path, const QString &name, FileCodes codes)
{
    dropText();
    m_file.setName(path, name);
    m_file.keep();
    forgetReading(codes);
    setText(TextStore(store().layoutRule()));
}

void TextDocument::detachFromFile(const QString &name)
{
    m_file.setName({}, name);
    setEdited(true);
    emit detached();
}

GrowthResult TextDocument::readGrowth()
{
    if (isHeld() || isEdited() || charCode() == CharCode::Unicode || m_file.change() != FileChange::Grown)
        return {};
    if (!infoOf(charCode()).hasState)
        return appendGrowth();
    const auto failure = load(path(), name(), charCode(), m_codes);
    return { !failure, failure };
}

namespace {

constexpr qint64 longestOpenEnd = 3; ///< bytes of a character whose last one is missing

/// How many units at the end of a text are bytes of the end of a file: a character that is not complete yet,
/// perhaps.
qint64 openEnd(const TextStore &store, QByteArrayView fileEnd)
{
    qint64 count = 0;
    const auto isSame = [&](qint64 back) {
        const char16_t unit = store.at(store.end() - back);
        return isByteEscape(unit) && escapedByte(unit) == uchar(fileEnd[fileEnd.size() - back]);
    };
    const qint64 most = qMin(longestOpenEnd, qMin<qint64>(store.length(), fileEnd.size()));
    while (count < most && isSame(count + 1))
        ++count;
    return count;
}

} // namespace

/// Reads again some of what it knows, so that the bytes before the new ones are there to compare with.
GrowthResult TextDocument::appendGrowth()
{
    constexpr qint64 proof = 65536;
    const qint64 known = m_file.version().stamp().size;
    const qint64 from = qMax<qint64>(0, known - proof);
    QByteArray bytes;
    FileStamp stamp;
    if (const auto failure = readFileFrom(path() + name(), from, bytes, stamp, m_calls))
        return { false, failure };
    if (stamp.size < known)
        return {};
    const qint64 open = openEnd(store(), QByteArrayView(bytes).first(known - from));
    QByteArray added = bytes.sliced(known - from - open);
    normalizeLineEnds(added, m_codes.returnCode);
    const TextStore text = m_readCode.codec().decode(added, store().layoutRule());
    const qint64 waiting = openEnd(text, bytes);
    bytes.chop(waiting);
    if (bytes.size() < known - from) // a character of which some was there is not whole yet
        return {};
    ContentHash content = m_file.version().content();
    content.add(QByteArrayView(bytes).sliced(known - from));
    m_file.setReadOn(FileVersion(stamp, content));
    appendUnedited(open, text.piece({}, text.length() - waiting));
    return { true };
}

SaveResult TextDocument::save(const QString &path, const QString &name, std::optional<CharCode> charCode,
    std::optional<ReturnCode> returnCode)
{
    const std::unique_ptr<DocumentSave> save = beginSave(path, name, charCode, returnCode);
    if (!save)
        return { SaveResult::Outcome::Binary, Overtaken::No, false, {} };
    while (save->makeStep()) { }
    SaveResult result = endSave(*save);
    if (result.outcome == SaveResult::Outcome::NotWritten)
        EndOrder::obeyIfGiven();
    return result;
}

std::unique_ptr<DocumentSave> TextDocument::beginSave(const QString &path, const QString &name,
    std::optional<CharCode> charCode, std::optional<ReturnCode> returnCode)
{
    if (m_codes.charCode == CharCode::Binary)
        return nullptr;
    m_codes = { charCode.value_or(m_codes.charCode), returnCode.value_or(m_codes.returnCode) };
    m_utf16.isKept &= !charCode;
    if (charCode || returnCode)
        emit codesChanged();
    const SaveTarget target = m_file.beginWriting(path, name);
    const WritingCode code = writingCode();
    const auto units = m_utf16.isKept ? WrittenText::Units::Wide : WrittenText::Units::Bytes;
    const auto lookFor =
        code.codec == &byteCodec() ? DocumentSave::LookFor::Nothing : DocumentSave::LookFor::Bytes;
    setHeld(true);
    return std::make_unique<DocumentSave>(
        target, WrittenText{ TextSnapshot(store()), code, m_codes.returnCode, units }, lookFor, m_calls);
}

SaveResult TextDocument::endSave(const DocumentSave &save)
{
    setHeld(false);
    const SaveTarget &target = save.target();
    const std::optional<FileStamp> unexpected = save.unexpected();
    SaveResult result{ SaveResult::Outcome::NotWritten,
        unexpected ? m_file.writerOf(*unexpected) : save.overtaken(), target.wasToBeKept,
        FileName::fromBytes(save.keptCopy()), save.isStateFolderMissed() };
    if (!save.isWritten())
        return result;
    result.outcome = SaveResult::Outcome::Written;
    m_file.endWriting(target, save.version());
    m_readCode.setWritten(save.codec(), save.hasBytes());
    history().clear();
    setEdited(false);
    emit saved();
    return result;
}
