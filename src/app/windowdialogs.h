#pragma once

#include "filedialog/frmfiledialog.h"

#include <functional>
#include <optional>

/// What the file dialog is opened or was left with.
struct FileChoice {
    QString folder; ///< ends in "/"
    QString name;
    int charCode = 0; ///< a CharCode; 0: detect, or keep
    int returnCode = 0; ///< a ReturnCode; 0: keep
};

/// The dialogs that a window's commands run over it until they are closed. The ones here are those of the
/// program.
struct WindowDialogs {
    using ChooseFile = std::optional<FileChoice>(
        QWidget *window, frmFileDialog::Mode mode, const FileChoice &start);
    using EditOptions = bool(QWidget *window);

    static ChooseFile runFileDialog;
    static EditOptions runOptions;

    /// Nothing when the dialog was not accepted.
    std::function<ChooseFile> chooseFile = runFileDialog;
    /// Lets the user change the settings; whether that was accepted.
    std::function<EditOptions> editOptions = runOptions;
};
