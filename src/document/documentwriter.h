#pragma once

#include "codec/returncode.h"
#include "codec/textcodec.h"
#include "files/safefile.h"

/// Writes a text to a file: encodes it, gives it the document's line ends, and puts it in place safely.
///
/// Memory: blocks of a bounded size, whatever the length of the text.
class DocumentWriter {
public:
    /// See SafeFile for `name` and `calls`.
    DocumentWriter(
        const QByteArray &name, ReturnCode returnCode, const FileCalls &calls = FileCalls::system());

    /// See SafeFile.
    void keepOldContent() { m_file.keepOldContent(); }
    /// Writes the text up to its first U+0000. False when the file could not be written, or the process is to
    /// end (EndOrder): it is as it was, but for keptCopy().
    bool write(const TextStore &store, const TextCodec &codec,
        TextCodec::AsRead asRead = TextCodec::AsRead::Everything);
    /// The same in a code whose characters have more than one byte each, line ends too.
    bool writeWide(const TextStore &store, const TextCodec &codec, TextCodec::AsRead asRead);
    /// See SafeFile.
    QByteArray keptCopy() const { return m_file.keptCopy(); }
    const FileVersion &version() const { return m_file.version(); }

private:
    bool writeBlock(QByteArrayView encoded);
    bool writeLines(QByteArrayView encoded);

    SafeFile m_file;
    const QByteArrayView m_lineEnd;
    bool m_ended = false; ///< by a U+0000
};
