#pragma once

#include "codec/returncode.h"
#include "codec/textcodec.h"
#include "files/safefile.h"
#include "text/textsnapshot.h"

#include <functional>

/// What a text is written with.
struct WritingCode {
    bool operator==(const WritingCode &other) const = default;

    const TextCodec *codec; ///< never null
    TextCodec::AsRead asRead; ///< how much of the text is written as it was read
};

/// A text and how it is to be in its file.
struct WrittenText {
    enum class Units {
        Bytes,
        Wide, ///< each character has more than one byte, line ends too
    };
    TextSnapshot text;
    WritingCode code;
    ReturnCode returnCode = ReturnCode::Lf;
    Units units = Units::Bytes;
};

/// Writes a text to a file, step by step: encodes it, gives it the document's line ends, and puts it in place
/// safely.
///
/// Memory: blocks of a bounded size, whatever the length of the text. Threads: steps may be made in any, one
/// after the other.
class DocumentWriter {
public:
    /// See SafeFile for `name` and `calls`.
    DocumentWriter(const QByteArray &name, WrittenText text, const FileCalls &calls = FileCalls::system());
    Q_DISABLE_COPY_MOVE(DocumentWriter)

    /// See SafeFile.
    void keepOldContent() { m_file.keepOldContent(); }
    void keepUnlessOf(const FileStamp &expected) { m_file.keepUnlessOf(expected); }
    enum class Step {
        More,
        Written,
        Failed, ///< the file is as it was, but for keptCopy(); also when the process is to end (EndOrder)
    };
    /// Writes on, up to the text's first U+0000; the last step puts the file in place, and of a long text the
    /// one before waits for the disk. None after Written or Failed. Where the last one copies a file, it asks
    /// `isWanted` between blocks: false fails it.
    Step step(const std::function<bool()> &isWanted = [] { return true; });
    /// Leaves the file as it was.
    void giveUp() { m_file.giveUp(); }
    /// How much of the text was written, in units.
    qint64 unitsDone() const { return m_at.value(); }
    qint64 unitsInAll() const { return m_text.text.length(); }
    /// Of the file, where it is not just replaced; see SafeFile.
    qint64 bytesCopied() const { return m_copied; }
    qint64 bytesToCopy() const { return m_toCopy; }
    /// See SafeFile.
    QByteArray keptCopy() const { return m_file.keptCopy(); }
    bool isStateFolderMissed() const { return m_file.isStateFolderMissed(); }
    const FileStamp &oldStamp() const { return m_file.oldStamp(); }
    const FileVersion &version() const { return m_file.version(); }

private:
    bool begin();
    Step commit(const std::function<bool()> &isWanted);
    bool encodeSome();
    bool isSyncDue() const;
    bool isWide() const;
    TextChunk nextChunk();
    TextChunk nextWideChunk();
    bool writeBlock(QByteArrayView encoded);
    bool writeLines(QByteArrayView encoded);

    const WrittenText m_text;
    const QByteArrayView m_lineEnd;
    SafeFile m_file;
    std::unique_ptr<TextCodec::Encoding> m_encoding; ///< null: nothing was begun
    Offset m_at;
    qint64 m_copied = 0;
    qint64 m_toCopy = 0;
    bool m_isEncoded = false;
    bool m_isSynced = false;
    bool m_hasEnded = false; ///< by a U+0000
};
