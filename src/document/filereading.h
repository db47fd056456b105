#pragma once

#include "document/fileblocks.h"
#include "document/filecodes.h"
#include "document/readfindings.h"
#include "files/readfile.h"
#include "jobs/handover.h"
#include "jobs/spread.h"
#include "text/layoutcopy.h"
#include "text/leafmemory.h"
#include "text/textstore.h"

#include <memory>
#include <mutex>
#include <vector>

/// What is known of a file's text when all of it was read.
struct ReadResult {
    FileCodes codes;
    const TextCodec *codec = nullptr; ///< the one that it was decoded by
    ReadFindings findings;
    FileVersion version;
    bool isUtf16 = false; ///< it was read as such a text, in the form that the findings name
};

/// Reads a file as text, in steps of some milliseconds: the file is never held whole, nor is its text.
///
/// Its code is that of the bytes which were read so far. Where those that follow say otherwise, reading
/// starts over. Codes that have a state (JIS, and UTF-16 as its bytes are) are decoded in order.
///
/// Threads: the steps may be made in any thread, one after the other. It is made and destroyed, and the parts
/// are taken over, where nobody else does anything with it at that time.
class FileReading {
public:
    struct Request {
        QString fileName; ///< with its folder; may hold any bytes, see files/filename.h
        std::optional<CharCode> code; ///< nothing: the one that is detected
        FileCodes codesOfSilent; ///< of a file that does not tell
        /// It is such a text, whose line ends are looked at when it is decoded. Its code is Unicode, so that
        /// a save writes UTF-8.
        std::optional<Utf16Form> utf16 = {};
        /// The file is still being written, until endGrowth().
        bool isGrowing = false;
    };
    /// How many bytes are read at a time; tests take few.
    struct Sizes {
        qsizetype firstBlock = qsizetype{ 256 } << 10;
        qsizetype laterBlocks = qsizetype{ 4 } << 20;
        /// What is decoded in one go. Fits, with what it becomes, the fast memory of one processor.
        qsizetype part = qsizetype{ 256 } << 10;
        /// Of a file: the leaves of larger ones have memory of their own.
        qint64 largeFile = qint64{ 16 } << 20;
    };
    /// Neighbouring text, behind all that came before.
    struct Part {
        TextStore text;
        bool startsOver = false; ///< it is the first one: what came before was read in a wrong code
        /// False: it has characters whose widths the copy of the layout did not know, and will be measured
        /// where it is appended. A new copy knows them, see setLayout().
        bool isMeasured = true;
    };
    enum class Step { More, Done, Failed };
    /// `layout` is that of the store which the parts are appended to; `calls` is not owned.
    FileReading(Request request, LayoutCopy layout, const FileCalls &calls = FileCalls::system());
    FileReading(Request request, LayoutCopy layout, const FileCalls &calls, Sizes sizes);
    ~FileReading();

    /// Reads and decodes the next bytes; the first step only some hundred KiB, which are soon there to be
    /// shown. After Done or Failed there is none.
    Step step(const Spread &spread = makeOneByOne);
    /// Whether there is something for a step to do, in a file that has so many bytes by now. Where none of
    /// many bytes can be decoded by themselves it waits for many more.
    bool hasMore(qint64 size) const;
    /// What a file that was being written has by now is all.
    void endGrowth();
    /// What the last step has decoded; nothing where it was no text.
    std::optional<Part> takePart() { return std::exchange(m_part, std::nullopt); }
    /// Of the text that came so far.
    FileCodes codes() const;
    /// Bytes that were decoded (nearly, of text in UTF-16), and that the file had when it was opened.
    qint64 bytesDone() const { return m_decoded.bytes; }
    qint64 bytesInAll() const { return m_blocks.expectedSize(); }
    /// For want of memory, outside of a step too: gives back what it has.
    void giveUp();
    /// After Failed or giveUp().
    ReadFailure failure() const;
    /// After Done.
    const ReadResult &result() const { return m_result; }

    /// For the steps that follow. In any thread.
    void setLayout(LayoutCopy layout);

private:
    /// What decodes a part at a time; there are as many as parts are decoded at once.
    struct Worker {
        explicit Worker(const LayoutCopy &of)
            : layout(of)
        {
        }
        LayoutCopy layout;
        LeafMemory memory;
    };
    /// What a part of a block has become.
    struct DecodedPart {
        std::optional<TextStore> text = {};
        qint64 undecodable = 0;
    };

    /// What has been.
    struct Decoded {
        qint64 bytes = 0;
        bool isAscii = true;
    };

    Step makeStep(const Spread &spread);
    bool readFirst();
    bool settleCode();
    bool startOver();
    bool isDecodedInOrder() const;
    void takeLayout();
    void decode(FileBlock &next, const Spread &spread);
    Worker &takeWorker();
    void giveBack(Worker &worker);
    void readBehind(FileBlock &next);
    DecodedPart decodePart(char *bytes, qsizetype size);
    TextStore decodeOn(
        QByteArrayView text, const LayoutCopy &layout, LeafMemory *memory, qint64 &undecodable);
    void join(std::vector<DecodedPart> parts);
    void finish();

    const Request m_request;
    const Sizes m_sizes;
    FileBlocks m_blocks;
    FileBlock m_block; ///< the one that is decoded next
    QByteArray m_spare; ///< has room for another one
    FileCodes m_codes;
    Decoded m_decoded;
    bool m_isOpen = false;
    bool m_isTooLarge = false; ///< the memory has not sufficed
    CharCode m_readAs = CharCode::Binary; ///< see codeToRead()
    std::unique_ptr<TextCodec::Decoding> m_decoding; ///< of a code that has a state, since its first part
    bool m_startsOver = false;
    LayoutCopy m_layout; ///< that of the workers, by which nobody measures
    std::vector<std::unique_ptr<Worker>> m_workers;
    std::vector<Worker *> m_idle; ///< those that decode nothing at the moment
    std::mutex m_mutex; ///< for these two while parts are decoded
    std::optional<Part> m_part;
    ReadResult m_result;
    HandOver<LayoutCopy> m_newLayouts;
};
