#pragma once

#include "document/detection.h"
#include "document/filecodes.h"
#include "document/lineends.h"
#include "document/utf16text.h"
#include "files/readfile.h"

/// What the bytes of a file tell before they are decoded. They come in order, cut anywhere.
class FileFacts {
public:
    enum class Code { Wanted, Known };

    /// Where the code is known nobody asks for code().
    explicit FileFacts(Code code = Code::Wanted)
        : m_codeIs(code)
    {
    }

    void add(QByteArrayView bytes);
    /// The same of a file whose line ends are known in another code only: `text` is what its bytes stand for.
    void add(QByteArrayView bytes, QByteArrayView text);

    const CodeDetection &code() const { return m_code; }
    const LineEndDetection &lineEnd() const { return m_lineEnd; }
    const RewrittenCount &rewritten() const { return m_rewritten; }
    const ContentHash &content() const { return m_content; }
    qint64 size() const { return m_content.size(); }
    /// The first few thousand.
    QByteArrayView start() const { return m_start; }

private:
    Code m_codeIs;
    CodeDetection m_code;
    LineEndDetection m_lineEnd;
    RewrittenCount m_rewritten;
    ContentHash m_content;
    QByteArray m_start;
};

/// Bytes of a file.
struct FileBlock {
    QByteArray bytes; ///< with room behind those that were read
    qsizetype size = 0;
    qsizetype end = 0; ///< those before it can be decoded, see cutOf(); the rest belongs to the next
    qint64 fileEnd = 0; ///< of the file's bytes, where this ends; nearly so where they become UTF-8
    bool isLast = false;
};

/// Reads a file in blocks that can be decoded one by one, and finds out what its bytes tell while the
/// processor has them at hand. One that is read as UTF-16 becomes UTF-8 before, whose line ends can be found
/// by bytes.
class FileBlocks {
public:
    /// Where bytes are cut depends on the code. `calls` is not owned.
    FileBlocks(QString fileName, std::optional<CharCode> code, const FileCalls &calls);
    /// Text in UTF-16.
    FileBlocks(QString fileName, Utf16Form form, const FileCalls &calls);

    /// False: see failure(). So is read().
    bool open();
    /// Makes `block` what follows `before`: about `size` bytes, or more where they cannot be cut sooner.
    bool read(FileBlock &block, const FileBlock &before, qsizetype size);
    /// What the file has by now is not all, and it may grow: until that is over no block is the last one, and
    /// what has not come whole waits for its rest. Not for text in UTF-16.
    void setGrowing(bool isGrowing) { m_isGrowing = isGrowing; }
    /// Forgets what was read, but for the mark, and the code that it has led to: that is the code until more
    /// was read.
    void startOver(CharCode code);

    const std::optional<ReadFailure> &failure() const { return m_failure; }
    /// Of all bytes that were read.
    const FileFacts &facts() const { return m_facts; }
    /// The one that was asked for, or else detected in them.
    CharCode code(CharCode codeOfEmpty) const;
    /// The first three bytes, as they are decoded.
    QByteArrayView mark() const { return m_mark; }
    qint64 expectedSize() const { return m_file.stamp().size; }
    /// Of all of the file, when the last block was read.
    FileVersion version() const;
    /// Gives the bytes from the start once more, with the line ends of texts, in blocks that may be cut in
    /// such a code, until `take` returns false or they cannot be read.
    void readAgain(FileCodes codes, const std::function<bool(QByteArrayView)> &take) const;

private:
    bool fill(FileBlock &block);
    bool addBytes(FileBlock &block);
    void addFacts(QByteArrayView bytes);
    bool addUtf16(FileBlock &block);
    std::optional<qint64> readSome(char *to, qint64 size);

    const QString m_fileName;
    const std::optional<CharCode> m_code;
    std::optional<Utf8FromUtf16> m_utf16; ///< of a file that is read so
    QByteArray m_utf16Bytes;
    FileReader m_file;
    bool m_isGrowing = false;
    bool m_isAtEnd = false; ///< of what the file has
    FileFacts m_facts;
    QByteArray m_mark;
    CharCode m_settledCode = CharCode::Binary; ///< see startOver()
    qint64 m_settledSize = -1; ///< of what has led to it
    std::optional<ReadFailure> m_failure;
};

/// The last place that is known where bytes in a code, which begin with a character, may be cut so that both
/// parts, decoded by themselves, give the text of the whole, with whatever line ends; 0 for none. In a code
/// with a state the second part is decoded where the first one has left it (see TextCodec::Decoding). Cost: a
/// look at the end; at all of them where none is ASCII, in Shift-JIS and EUC.
qsizetype cutOf(QByteArrayView bytes, CharCode code);
