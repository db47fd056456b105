#include "document/textdocument.h"

#include "codec/codecs.h"
#include "document/detection.h"
#include "document/lineends.h"
#include "document/utf16text.h"
#include "files/byteescape.h"
#include "files/endorder.h"
#include "files/filename.h"

TextDocument::TextDocument(FileCodes codes, const FileCalls &calls)
    : m_codes(codes)
    , m_readCode(infoOf(codes.charCode).codec())
    , m_version(calls)
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

void TextDocument::replace(Offset offset, qint64 removed, QStringView inserted, Joining joining)
{
    if (removed == 0 && inserted.isEmpty())
        return;
    m_history.replace(m_store, offset, removed, inserted, joining);
    noteEdit({ offset, removed, inserted.size() });
}

void TextDocument::replace(Offset offset, qint64 removed, const TextPiece &inserted)
{
    if (removed == 0 && inserted.isEmpty())
        return;
    m_history.replace(m_store, offset, removed, inserted);
    noteEdit({ offset, removed, inserted.length() });
}

bool TextDocument::requestChange()
{
    if (m_isHeld)
        emit refused();
    return !m_isHeld;
}

void TextDocument::noteEdit(const TextChange &change)
{
    Q_ASSERT(!m_isHeld);
    m_isEdited = true;
    emit changed(change);
}

Offset TextDocument::undo()
{
    return applyStep(&UndoHistory::undo);
}

Offset TextDocument::redo()
{
    return applyStep(&UndoHistory::redo);
}

Offset TextDocument::applyStep(Offset (UndoHistory::*step)(TextStore &, const UndoHistory::Changed &))
{
    return (m_history.*step)(m_store, [this](const TextChange &change) {
        m_isEdited = m_history.canUndo();
        emit changed(change);
    });
}

void TextDocument::setText(TextStore &&text)
{
    const bool isRead = m_dropped.has_value();
    if (!isRead) {
        dropText();
        m_findings = {};
        m_utf16 = {};
    }
    m_store = std::move(text);
    m_isEdited = !isRead;
    emit replaced({ {}, *std::exchange(m_dropped, std::nullopt), m_store.length() });
}

void TextDocument::dropText()
{
    emit aboutToReplace();
    m_dropped = m_store.length();
    m_history.clear();
    m_store = TextStore(m_store.layoutRule());
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
    beginReading(path, name);
    TextStore fresh(m_store.layoutRule(), m_store.nodeSizes());
    FileReading reading({ path + name, requested, codes }, LayoutCopy(fresh), m_calls);
    for (auto step = FileReading::Step::More; step == FileReading::Step::More;) {
        EndOrder::obeyIfGiven();
        step = reading.step(spreadOverThreads);
        if (step == FileReading::Step::Failed)
            return reading.failure();
        auto part = reading.takePart();
        if (part && part->startsOver)
            fresh = TextStore(m_store.layoutRule(), m_store.nodeSizes());
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

/// The document has the name from here on, whatever comes of it.
void TextDocument::beginReading(const QString &path, const QString &name)
{
    if (path + name != m_path + m_name)
        m_version.setUnread();
    m_path = path;
    m_name = name;
    m_unreadFile = path + name;
}

void TextDocument::endReading(const ReadResult &result)
{
    m_codes = result.codes;
    m_readCode = ReadCode(*result.codec);
    m_findings = result.findings;
    m_utf16 = {};
    setRead(result.version);
}

void TextDocument::setRead(const FileVersion &version)
{
    m_unreadFile.clear();
    m_version.setRead(version);
    m_keepsFile = false;
}

std::optional<ReadFailure> TextDocument::readUtf16(
    const QString &path, const QString &name, Utf16Form form, FileCodes codes, TextStore &text)
{
    QByteArray bytes;
    FileVersion version;
    beginReading(path, name);
    if (const auto failure = readWholeFile(path + name, bytes, version, m_calls))
        return failure;
    setRead(version);
    bytes = utf8FromUtf16(bytes, form);
    m_codes = { CharCode::Unicode, detectReturnCode(bytes, codes.returnCode) };
    m_findings = { 0, {}, countRewritten(bytes, m_codes.returnCode), form };
    m_utf16 = { form, false };
    normalizeLineEnds(bytes, m_codes.returnCode);
    dropText(); // there may be no room for both
    m_readCode = ReadCode(utf8Codec());
    text = utf8Codec().decode(bytes, m_store.layoutRule(), &m_findings.undecodableBytes);
    return std::nullopt;
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
    m_isHeld = true;
    m_isEdited = false;
    beginReading(path, name);
    m_codes = codes;
    m_readCode = ReadCode(infoOf(codes.charCode).codec());
    m_findings = {};
    m_utf16 = {};
    m_store = std::move(start);
    if (m_store.length() > 0)
        emit grew({ {}, 0, m_store.length() });
    emit codesChanged();
}

void TextDocument::takePart(TextStore &&part)
{
    Q_ASSERT(m_isHeld);
    const Offset before = m_store.end();
    m_store.append(std::move(part));
    emit grew({ before, 0, m_store.end() - before });
}

void TextDocument::endArrival(const ReadResult &result)
{
    endReading(result);
    m_isHeld = false;
    emit replaced({ {}, *std::exchange(m_dropped, std::nullopt), m_store.length() });
}

void TextDocument::failArrival(const QString &path, const QString &name, FileCodes codes)
{
    beginReading(path, name);
    m_isHeld = false;
    if (!m_dropped)
        return;
    m_codes = codes;
    m_readCode = ReadCode(infoOf(codes.charCode).codec());
    dropText();
    setText(TextStore(m_store.layoutRule()));
    emit codesChanged();
}

void TextDocument::startNew(
    const QString &name, FileCodes codes, const TextCodec &byteCodec, std::optional<Utf16Form> keptUtf16)
{
    dropText();
    setNewFile({}, name);
    m_codes = codes;
    m_readCode = ReadCode(keptUtf16 ? codecOf(*keptUtf16) : byteCodec);
    m_findings = { 0, {}, {}, keptUtf16 };
    m_isHeld = false;
    m_utf16 = { keptUtf16, keptUtf16.has_value() };
    setText(TextStore(m_store.layoutRule()));
}

void TextDocument::startFile(const QString &path, const QString &name, FileCodes codes)
{
    dropText();
    setNewFile(path, name);
    m_keepsFile = true;
    m_codes = codes;
    m_readCode = ReadCode(infoOf(codes.charCode).codec());
    m_findings = {};
    m_utf16 = {};
    setText(TextStore(m_store.layoutRule()));
}

/// A name that nothing was read from or written to.
void TextDocument::setNewFile(const QString &path, const QString &name)
{
    m_path = path;
    m_name = name;
    m_unreadFile.clear();
    m_keepsFile = false;
    m_version = DocumentVersion(m_calls);
}

bool TextDocument::isOfNewFile() const
{
    return !m_path.isEmpty() && m_unreadFile.isEmpty() && m_version.known().stamp().inode == 0;
}

void TextDocument::detachFromFile(const QString &name)
{
    setNewFile({}, name);
    m_isEdited = true;
    emit detached();
}

QByteArray TextDocument::fileName() const
{
    return FileName::toBytes(m_path + m_name);
}

FileChange TextDocument::fileChange(const std::optional<SeenContent> &seen)
{
    if (seen)
        m_version.noteSeen(*seen);
    return m_version.change(fileName());
}

void TextDocument::acknowledgeFile()
{
    m_version.acknowledge(fileName());
}

bool TextDocument::readGrowth()
{
    if (m_isHeld || m_isEdited || m_codes.charCode == CharCode::Unicode || fileChange() != FileChange::Grown)
        return false;
    return infoOf(m_codes.charCode).hasState ? !load(m_path, m_name, m_codes.charCode, m_codes)
                                             : appendGrowth();
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
bool TextDocument::appendGrowth()
{
    constexpr qint64 proof = 65536;
    const qint64 known = m_version.known().stamp().size;
    const qint64 from = qMax<qint64>(0, known - proof);
    QByteArray bytes;
    FileStamp stamp;
    if (readFileFrom(m_path + m_name, from, bytes, stamp, m_calls) || stamp.size < known)
        return false;
    const qint64 open = openEnd(m_store, QByteArrayView(bytes).first(known - from));
    QByteArray added = bytes.sliced(known - from - open);
    normalizeLineEnds(added, m_codes.returnCode);
    const TextStore text = m_readCode.codec().decode(added, m_store.layoutRule());
    const qint64 waiting = openEnd(text, bytes);
    bytes.chop(waiting);
    if (bytes.size() < known - from) // a character of which some was there is not whole yet
        return false;
    ContentHash content = m_version.known().content();
    content.add(QByteArrayView(bytes).sliced(known - from));
    m_version.setReadOn(FileVersion(stamp, content));
    const qint64 length = text.length() - waiting;
    m_history.clear();
    m_store.exchange(m_store.end() - open, open, text.piece({}, length));
    emit changed({ m_store.end() - length, open, length });
    return true;
}

SaveResult TextDocument::save(const QString &path, const QString &name, std::optional<CharCode> charCode,
    std::optional<ReturnCode> returnCode)
{
    const std::unique_ptr<DocumentSave> save = beginSave(path, name, charCode, returnCode);
    if (!save)
        return { SaveResult::Outcome::Binary, Overtaken::No, false, {} };
    while (save->makeStep()) { }
    const SaveResult result = endSave(*save);
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
    SaveTarget target{ path, name };
    const QString own = m_path + m_name;
    target.before = m_version.beginWriting(FileName::toBytes(path + name), FileName::toBytes(own));
    target.wasToBeKept = m_keepsFile && path + name == own;
    target.keepsOldContent = target.wasToBeKept || path + name == m_unreadFile;
    const WritingCode code = writingCode();
    const auto units = m_utf16.isKept ? WrittenText::Units::Wide : WrittenText::Units::Bytes;
    const auto lookFor =
        code.codec == &byteCodec() ? DocumentSave::LookFor::Nothing : DocumentSave::LookFor::Bytes;
    m_isHeld = true;
    return std::make_unique<DocumentSave>(
        target, WrittenText{ TextSnapshot(m_store), code, m_codes.returnCode, units }, lookFor, m_calls);
}

SaveResult TextDocument::endSave(const DocumentSave &save)
{
    m_isHeld = false;
    const SaveTarget &target = save.target();
    const std::optional<FileStamp> unexpected = save.unexpected();
    SaveResult result{ SaveResult::Outcome::NotWritten,
        unexpected ? m_version.writerOf(*unexpected) : save.overtaken(), target.wasToBeKept,
        FileName::fromBytes(save.keptCopy()) };
    if (!save.isWritten())
        return result;
    result.outcome = SaveResult::Outcome::Written;
    m_version.endWriting(FileName::toBytes(target.path + target.name), save.version());
    m_readCode.setWritten(save.codec(), save.hasBytes());
    m_keepsFile &= !target.wasToBeKept;
    m_path = target.path;
    m_name = target.name;
    m_unreadFile.clear();
    m_history.clear();
    m_isEdited = false;
    emit saved();
    return result;
}
