#pragma once

#include "codec/charcode.h"
#include "codec/returncode.h"

#include <QByteArrayView>

#include <optional>

/// Decides the character code from all bytes of a file, which come in order, cut anywhere. Cost: memory
/// speed, at most three passes.
class CodeDetection {
public:
    void add(QByteArrayView bytes);
    /// Of the bytes that came; `defaultCode` where there were none.
    CharCode code(CharCode defaultCode) const;
    /// None of them is above 7F, and none is 0.
    bool isAscii() const { return !m_hasHigh && m_pass != Pass::Binary; }

private:
    /// The first look at a file: one walk over it as UTF-8.
    enum class Pass {
        GoesOn,
        Ended, ///< at bytes that are not UTF-8
        Binary, ///< at a NUL
    };
    enum class JisState { Start, Escape, Dollar, Parenthesis, Found };

    /// Then the rest does not matter.
    bool hasMark() const { return m_start[0] == 0xFF && m_start[1] == 0xFE; }
    void pass(const uchar *in, const uchar *end);
    void lookForJis(const uchar *in, const uchar *end);

    uchar m_start[2] = {}; ///< the first bytes
    int m_started = 0; ///< how many of these there are
    bool m_hasHigh = false;
    Pass m_pass = Pass::GoesOn;
    int m_owed = 0; ///< bytes that the last character still wants
    bool m_hasEscape =
        false; ///< has the escape character; this and the next are right while the walk goes on
    bool m_isPlain = true; ///< nothing but bytes 28..127
    JisState m_jis = JisState::Start;
    bool m_hasShiftJisByte = false;
};

/// Decides the line end by the first one in a file, whose bytes come as above.
class LineEndDetection {
public:
    void add(QByteArrayView bytes);
    /// Nothing: there was none yet, or perhaps the first half of one.
    std::optional<ReturnCode> found() const { return m_found; }

private:
    bool m_sawCr = false;
    std::optional<ReturnCode> m_found;
};

/// The same for bytes that are there at once.
CharCode detectCharCode(QByteArrayView bytes, CharCode defaultCode);
ReturnCode detectReturnCode(QByteArrayView bytes, ReturnCode defaultCode);
