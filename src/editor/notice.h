#pragma once

#include <QString>

#include <functional>
#include <vector>

class QObject;

/// What notices tell of. About one document, and about the program, there is at most one of each kind.
enum class NoticeKind {
    InterruptedSave, ///< a copy of old bytes that a save left which did not end
    ChangedOnDisk, ///< another program has written, replaced or deleted the file
    Substituted, ///< characters that a save has written as others
    CannotWrite, ///< characters that the document's code lacks
    RestoredApart, ///< a text that was restored is not that of its file any more, or was saved before
    OtherCode, ///< the file is open, and the user wanted to read it with another code
    ReplacedInPart, ///< hits that were replaced only in part
    Utf16, ///< UTF-16 text that was read byte by byte, or is saved as UTF-8
    RewrittenBytes, ///< bytes that a save writes as others
    KeptFile, ///< where the file is that was to be kept
    WrongCode, ///< bytes that do not fit the code that the file was read with, or fit another one
    NoRecovery, ///< text that is not saved cannot be kept for the next start
    Unsaved, ///< texts that were not saved when the program last ended
    NotWritable, ///< the file cannot be written, or its disk is full
    Languages, ///< what the desktop speaks is not the language of the interface
    CodesOfNew, ///< what the desktop writes is not the code of new documents
    Following, ///< what is written behind the file's end comes into the text
    Work, ///< the document is being loaded, saved or changed behind the window
    Searching, ///< its text is being searched behind the window
    Counting, ///< its text is being counted behind the window
    Opening, ///< many files are being opened, one after the other
    LayingOut, ///< its rows are made anew, in turns
};

/// Of several notices the one of the heaviest kind is shown.
int weightOf(NoticeKind kind);
/// Whether the user wants to see it, by the settings.
bool isWanted(NoticeKind kind);

/// One of the things that a notice offers to do. Texts are asked for whenever they are shown, so that they
/// are in the present language.
struct NoticeOffer {
    std::function<QString()> text;
    std::function<void()> act; ///< unused where there are choices
    std::vector<NoticeOffer> choices = {}; ///< shown as a menu
};

/// What the user is told in the strip above the text: that something puts text at risk, and what can be done
/// about it.
struct Notice {
    NoticeKind kind;
    const QObject *about = nullptr; ///< the document; null: the program
    std::function<QString()> text; ///< plain, one line
    std::vector<NoticeOffer>
        offers; ///< the most useful first: where there is little room, others are in a menu
    std::function<void()> dismissed = {}; ///< after the user has put the notice away; may be unset
    bool isDismissable = true;
    /// What assistive tools are told, and told again when it becomes another one; unset: the text.
    std::function<QString()> spoken = {};
    std::function<void()> escaped = {}; ///< what Escape in the strip does besides leaving it; may be unset
};
