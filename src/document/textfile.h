#pragma once

#include <QByteArray>
#include <QString>

/// Character codes as they are stored in settings, editors and requests.
enum CharCode : int {
    CharCodeBinary = 0, ///< as a request: detect
    CharCodeUnicode = 1,
    CharCodeUtf8 = 2,
    CharCodeShiftJis = 3,
    CharCodeEuc = 4,
    CharCodeJis = 5,
    CharCodeAscii = 6, ///< only ever a result of detection; handled as Shift-JIS
};

/// Line ends as they are stored in settings, editors and requests.
enum ReturnCode : int {
    ReturnCodeNone = 0, ///< as a request: keep
    ReturnCodeCr = 1,
    ReturnCodeCrLf = 2,
    ReturnCodeLf = 3,
};

/// Names shown to the user: "Shift-JIS", "UTF8" …, "????" for a value outside the enumeration; "CR+LF" …,
/// "??".
QString charCodeName(int charCode);
QString returnCodeName(int returnCode);

/// Decides the character code from all bytes of a file; `defaultCode` is the answer for an empty one. Cost:
/// memory speed, at most three passes.
int detectCharCode(const QByteArray &bytes, int defaultCode);
/// Decides the line end by the first one in the file; `defaultCode` where there is none.
int detectReturnCode(const QByteArray &bytes, int defaultCode);
/// Turns the file's line ends into LF in place, before decoding: NUL becomes FF; with CR each CR becomes LF;
/// with CR+LF each CR goes; else nothing. Cost: memory speed; the array is not reallocated.
void normalizeLineEnds(QByteArray &bytes, int returnCode);
