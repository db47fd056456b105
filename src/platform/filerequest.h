#pragma once

#include "codec/charcode.h"
#include "files/sharedfd.h"

#include <QList>
#include <QMetaType>
#include <QString>

#include <optional>

/// A line of a text and a character in it, both counted from 1.
struct LineColumn {
    qint64 line = 1;
    qint64 column = 1;
    bool operator==(const LineColumn &) const = default;
};

/// A document that somebody outside of the window wants to have opened.
struct FileRequest {
    enum class From {
        Launcher, ///< or another program
        Shell, ///< a command line: a file that is not there is a new one
        Desktop, ///< dropped on the window, or chosen in a file manager: a folder stands for its files
        Elsewhere, ///< the same, where no file of this computer is meant: it is told
    };

    /// Absolute; empty: a new document, with what can be read from `input` if that is set. From elsewhere
    /// their addresses, one a line.
    QString fileName;
    From from = From::Launcher;
    std::optional<LineColumn> place = {}; ///< where the cursor goes
    std::optional<CharCode> charCode = {}; ///< nothing: detect
    bool isRecent = false; ///< the user chooses one of those that were closed last; nothing else counts
    SharedFd input = {}; ///< a pipe or a file, read from where it is
    SharedFd waiting = {}; ///< of a start that waits for the document's end, see WaitingStart
};
using FileRequests = QList<FileRequest>;

/// From the desktop, by addresses: each that is one of a file here, in their order, and last those that are
/// not.
FileRequests requestsByAddresses(const QList<QByteArray> &addresses);

Q_DECLARE_METATYPE(FileRequest)
