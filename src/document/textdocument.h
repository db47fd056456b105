#pragma once

#include "document/documentsave.h"
#include "document/editabletext.h"
#include "document/filereading.h"
#include "document/readcode.h"
#include "document/readfindings.h"

#include <optional>

/// What became of a save.
struct SaveResult {
    enum class Outcome {
        Written,
        NotWritten, ///< the file is as it was, if keptCopy is empty
        Binary, ///< refused: what was not taken for text cannot be written
    };
    Outcome outcome = Outcome::NotWritten;
    Overtaken overtaken = Overtaken::No; ///< the file was written since this document read or wrote it
    bool wasToBeKept = false; ///< the old content, by KnownFile::keep()
    QString keptCopy; ///< name of the file that has the old content; empty for none
    bool isStateFolderMissed = false; ///< the old content could not be kept there, see SafeFile
};

/// What became of reading on.
struct GrowthResult {
    bool isRead = false;
    std::optional<ReadFailure> failure = {}; ///< why not; none where there was nothing to be read, or not yet
    explicit operator bool() const { return isRead; }
};

/// A document without a window: a text with its history, and the file it is from and goes to.
///
/// Nothing here is shown to the user; load() and save() return what happened.
///
/// Cost: nothing but loading, saving and laying out anew depends on the length of the text.
class TextDocument : public EditableText {
    Q_OBJECT
public:
    /// Empty, as if a file of these codes without a byte had been read. `calls` is not owned.
    explicit TextDocument(FileCodes codes = {}, const FileCalls &calls = FileCalls::system());

    /// Folder, ending in "/"; empty for a document never saved.
    QString path() const { return m_file.path(); }
    QString name() const { return m_file.name(); }
    const KnownFile &file() const { return m_file; }
    /// The same for whoever asks what has become of the file, and says what its user knows or wants of it.
    KnownFile &file() { return m_file; }

    /// Of a document that was not read from a file, as for the constructor.
    void setCodes(FileCodes codes);
    /// What it is saved in where nothing else is asked for; what its undecodable bytes are of stays.
    void chooseCodes(FileCodes codes);
    CharCode charCode() const { return m_codes.charCode; }
    ReturnCode returnCode() const { return m_codes.returnCode; }
    /// The codec of the undecodable bytes and spellings in the text: pieces of texts of the same one may be
    /// exchanged with them.
    const TextCodec &byteCodec() const { return m_readCode.codec(); }
    /// Of a save without a code of its own.
    WritingCode writingCode() const;

    /// Of the last load(); nothing of a text from elsewhere.
    const ReadFindings &findings() const { return m_findings; }

    /// Makes it another text without a history: edited, unless it was read just now.
    void setText(TextStore &&text);

    /// Reads the file path + name, in the code requested or else in the one detected; `codes` are those of a
    /// file that does not tell. Laid out by the rule of the text before, which is there until all was read.
    /// A failure: text, codes and history stay, but path and name are the new ones, and saving under
    /// them keeps a copy of what could not be read.
    std::optional<ReadFailure> load(
        const QString &path, const QString &name, std::optional<CharCode> requested, FileCodes codes);
    /// All of load() but its last step, for whoever sets texts in a way of its own: the text before is gone,
    /// and `text` is to be given to setText() next.
    std::optional<ReadFailure> read(const QString &path, const QString &name,
        std::optional<CharCode> requested, FileCodes codes, TextStore &text);
    /// The text of the file path + name comes part by part, see takePart(): the text before is gone, and the
    /// document is held. `start` is what has come already, and says how parts are laid out. `codes` may turn
    /// out to be others; called again, what has come is gone.
    void beginArrival(const QString &path, const QString &name, FileCodes codes, TextStore &&start);
    /// All of it has come, and is as after read(): replaced() is told.
    void endArrival(const ReadResult &result);
    /// It cannot be read, and all is as after a load() that failed: the text that was there stays, but where
    /// a part has come already there is none, and the codes are these.
    void failArrival(const QString &path, const QString &name, FileCodes codes);
    /// Makes it a document of that name that was never saved, without text; undecodable bytes and spellings
    /// that come into it are of `byteCodec`. It is saved as UTF-16 where that is kept, see keepUtf16().
    void startNew(const QString &name, FileCodes codes, const TextCodec &byteCodec,
        std::optional<Utf16Form> keptUtf16 = {});
    /// Makes it a document of a file that is not there yet, without text, see KnownFile::isNew().
    void startFile(const QString &path, const QString &name, FileCodes codes);
    /// Puts what a file that has only grown has got behind the text, which has no history then; an incomplete
    /// character at the end waits for its rest. Codes in which a text depends on what stands before it are
    /// read again as a whole. Nothing is read where the text is edited or UTF-16, or the file has not grown.
    GrowthResult readGrowth();
    /// Makes it a document of that name that was never saved, edited: its text is that of no file any more.
    void detachFromFile(const QString &name);
    /// Writes the text as path + name, in the document's own code and line end where none is given. Written:
    /// path and name are the document's, and it has no history. Else text, name and history stay, but the
    /// codes given are kept.
    SaveResult save(const QString &path, const QString &name, std::optional<CharCode> charCode = {},
        std::optional<ReturnCode> returnCode = {});
    /// save() in three parts, for whoever makes the steps of it behind the window: the document is held from
    /// the first to the last. Null where it is refused as binary. Cost of the first: see
    /// KnownFile::beginWriting(); of the last: none that grows with the text.
    std::unique_ptr<DocumentSave> beginSave(const QString &path, const QString &name,
        std::optional<CharCode> charCode = {}, std::optional<ReturnCode> returnCode = {});
    /// A save that is not over by then comes to nothing, and has been given up.
    SaveResult endSave(const DocumentSave &save);

    /// As read(), but takes the file for UTF-16 and decodes it before its line ends become LF. The code is
    /// Unicode, so that a save writes UTF-8.
    std::optional<ReadFailure> readUtf16(
        const QString &path, const QString &name, Utf16Form form, FileCodes codes, TextStore &text);
    /// Whether the text was read so, or comes from one that was.
    bool isUtf16() const { return m_utf16.form.has_value(); }
    /// Such a text is saved as UTF-16 from now on, in the order it had and with a mark if it had one; until
    /// it is saved in another code or loaded again.
    void keepUtf16();

signals:
    /// The text is what the file has now, and the history is empty.
    void saved();
    /// The text is that of no file any more, see detachFromFile().
    void detached();
    /// The text goes to its file in other codes than before, with or without it being written.
    void codesChanged();

private:
    /// Of a text that was decoded before its line ends were looked at.
    struct Utf16Text {
        std::optional<Utf16Form> form = {};
        bool isKept = false;
    };

    std::optional<ReadFailure> read(const FileReading::Request &request, TextStore &text);
    void forgetReading(FileCodes codes);
    void endReading(const ReadResult &result);
    GrowthResult appendGrowth();

    KnownFile m_file;
    FileCodes m_codes;
    ReadCode m_readCode;
    ReadFindings m_findings;
    Utf16Text m_utf16;
    const FileCalls &m_calls;
};
