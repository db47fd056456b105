#pragma once

#include "codec/charcode.h"
#include "codec/returncode.h"
#include "filedialog/frmfiledialog.h"

#include <functional>
#include <optional>

class ctlEditer;

/// What the file dialog is opened or was left with.
struct FileChoice {
    QString folder; ///< ends in "/"
    QString name;
    std::optional<CharCode> charCode = {}; ///< nothing: detect, or keep
    std::optional<ReturnCode> returnCode = {}; ///< nothing: keep

    QString fullName() const { return folder + name; }
};

/// What the file dialog is opened with for a document, which may be null: its file, or for one that was never
/// saved the user's documents.
FileChoice startFor(const ctlEditer *editor);

/// The dialogs that a window's commands run over it until they are closed. The ones here are those of the
/// program.
struct WindowDialogs {
    using ChooseFile = std::optional<FileChoice>(
        QWidget *window, frmFileDialog::Mode mode, const FileChoice &start);
    using EditOptions = bool(QWidget *window);

    static ChooseFile runFileDialog;
    static EditOptions runOptions;
    static EditOptions runMoreOptions;

    /// Nothing when the dialog was not accepted.
    std::function<ChooseFile> chooseFile = runFileDialog;
    /// Lets the user change the settings; whether that was accepted.
    std::function<EditOptions> editOptions = runOptions;
    std::function<EditOptions> editMoreOptions = runMoreOptions;
};
