#pragma once

#include "document/documentsave.h"
#include "document/filereading.h"
#include "document/readcode.h"
#include "document/readfindings.h"
#include "text/undohistory.h"

#include <QObject>

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
    bool wasToBeKept = false; ///< the old content, by keepFile()
    QString keptCopy; ///< name of the file that has the old content; empty for none
};

/// A document without a window: a text with its history, and the file it is from and goes to.
///
/// Nothing here is shown to the user; load() and save() return what happened. Whoever shows the document
/// listens to the signals, which come when all is as they say.
///
/// Cost: an edit costs what it costs in the store; nothing but loading, saving and laying out anew depends on
/// the length of the text.
class TextDocument : public QObject {
    Q_OBJECT
public:
    using Joining = UndoHistory::Joining;

    /// Empty, as if a file of these codes without a byte had been read. `calls` is not owned.
    explicit TextDocument(FileCodes codes = {}, const FileCalls &calls = FileCalls::system());

    const TextStore &store() const { return m_store; }
    /// What can be undone and redone.
    const UndoHistory &history() const { return m_history; }
    /// The same for whoever says how edits become steps, and how many are kept. Only the document plays them.
    UndoHistory &history() { return m_history; }
    /// The text differs from what was loaded or saved, or from what was there when the document was last
    /// called unedited: after an edit, until it is undone with all before it.
    bool isEdited() const { return m_isEdited; }
    void setEdited(bool edited) { m_isEdited = edited; }

    /// Folder, ending in "/"; empty for a document never saved.
    QString path() const { return m_path; }
    QString name() const { return m_name; }
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

    /// Lays the text out anew; it stays the same, and nothing is emitted.
    void layOut(const LayoutRule &rule) { m_store.setLayoutRule(rule); }

    /// Puts `inserted` in place of `removed` units at `offset`; nothing when both are empty.
    void replace(Offset offset, qint64 removed, QStringView inserted, Joining joining = Joining::Never);
    /// The same, with its spellings.
    void replace(Offset offset, qint64 removed, const TextPiece &inserted);
    /// While it is held, something is done to all of the text behind the window: nobody may change it, read
    /// it again or save it. To be asked by whoever is about to, on behalf of a user: false where it may not
    /// be, which refused() tells.
    bool requestChange();
    bool isHeld() const { return m_isHeld; }
    void setHeld(bool held) { m_isHeld = held; }
    /// Makes it another text without a history: edited, unless it was read just now.
    void setText(TextStore &&text);

    /// Takes a step back, or makes it once more; returns the offset where the cursor belongs then. Asserts
    /// that history() has one.
    Offset undo();
    Offset redo();

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
    /// The text of the file path + name comes part by part: the text before is gone, and the document is
    /// held. `start` is what has come already, and says how parts are laid out. `codes` may turn out to be
    /// others; called again, what has come is gone.
    void beginArrival(const QString &path, const QString &name, FileCodes codes, TextStore &&start);
    /// The next part, see TextStore::append(). Only grew() is told.
    void takePart(TextStore &&part);
    /// All of it has come, and is as after read(): replaced() is told.
    void endArrival(const ReadResult &result);
    /// It cannot be read, and all is as after a load() that failed: the text that was there stays, but where
    /// a part has come already there is none, and the codes are these.
    void failArrival(const QString &path, const QString &name, FileCodes codes);
    /// Makes it a document of that name that was never saved, without text; undecodable bytes and spellings
    /// that come into it are of `byteCodec`. It is saved as UTF-16 where that is kept, see keepUtf16().
    void startNew(const QString &name, FileCodes codes, const TextCodec &byteCodec,
        std::optional<Utf16Form> keptUtf16 = {});
    /// Makes it a document of a file that is not there yet, without text: its first save makes the file, and
    /// keeps what another program may have put there by then.
    void startFile(const QString &path, const QString &name, FileCodes codes);
    /// Whether it is such a document, and was not saved yet.
    bool isOfNewFile() const;
    /// What other programs have done to the document's file since it was read or written, but for what is
    /// acknowledged. `seen` is what somebody found who has read through the file because this was unsure, see
    /// ContentReading. Cost: one call where nothing has happened.
    FileChange fileChange(const std::optional<SeenContent> &seen = {});
    /// What the file was when it was read or written last; of no file for a document that never was.
    const FileVersion &fileVersion() const { return m_version.known(); }
    /// The user knows what the file is now. A save over it keeps a copy of it all the same.
    void acknowledgeFile();
    /// Puts what a file that has only grown has got behind the text, which has no history then; an incomplete
    /// character at the end waits for its rest. Codes in which a text depends on what stands before it are
    /// read again as a whole. False where the text is edited or UTF-16, the file has not grown, or cannot be
    /// read.
    bool readGrowth();
    /// Makes it a document of that name that was never saved, edited: its text is that of no file any more.
    void detachFromFile(const QString &name);
    /// Writes the text as path + name, in the document's own code and line end where none is given. Written:
    /// path and name are the document's, and it has no history. Else text, name and history stay, but the
    /// codes given are kept.
    SaveResult save(const QString &path, const QString &name, std::optional<CharCode> charCode = {},
        std::optional<ReturnCode> returnCode = {});
    /// save() in three parts, for whoever makes the steps of it behind the window: the document is held from
    /// the first to the last. Null where it is refused as binary. Cost of the first: see
    /// DocumentVersion::beginWriting(); of the last: none that grows with the text.
    std::unique_ptr<DocumentSave> beginSave(const QString &path, const QString &name,
        std::optional<CharCode> charCode = {}, std::optional<ReturnCode> returnCode = {});
    /// A save that is not over by then comes to nothing, and has been given up.
    SaveResult endSave(const DocumentSave &save);
    /// The next save to the document's own file keeps a copy of what the file has now.
    void keepFile() { m_keepsFile = true; }

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
    /// After each edit, undo and redo; what they are made of comes one by one.
    void changed(const TextChange &change);
    /// The text is about to become another one: for whoever keeps something of this one.
    void aboutToReplace();
    /// The text is another one, or was read again: places in the one before say nothing any more. `change` is
    /// from the whole of one to the whole of the other.
    void replaced(const TextChange &change);
    /// A part of a text that is still to be whole has come, behind what was there.
    void grew(const TextChange &change);
    /// A change was asked for that has to wait, see requestChange().
    void refused();
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

    Offset applyStep(Offset (UndoHistory::*step)(TextStore &, const UndoHistory::Changed &));
    void noteEdit(const TextChange &change);
    void beginReading(const QString &path, const QString &name);
    void endReading(const ReadResult &result);
    void setRead(const FileVersion &version);
    void dropText();
    void setNewFile(const QString &path, const QString &name);
    QByteArray fileName() const;
    bool appendGrowth();

    TextStore m_store;
    UndoHistory m_history;
    bool m_isEdited = false;
    bool m_isHeld = false;
    QString m_path;
    QString m_name;
    QString m_unreadFile; ///< path + name of the file that could not be read; empty when the text is its own
    std::optional<qint64> m_dropped; ///< units of the text that is gone already, while another one is made
    FileCodes m_codes;
    ReadCode m_readCode;
    ReadFindings m_findings;
    Utf16Text m_utf16;
    bool m_keepsFile = false;
    DocumentVersion m_version;
    const FileCalls &m_calls;
};
