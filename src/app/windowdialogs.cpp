#include "app/windowdialogs.h"

#include "options/frmoption.h"

std::optional<FileChoice> WindowDialogs::runFileDialog(
    QWidget *window, frmFileDialog::Mode mode, const FileChoice &start)
{
    frmFileDialog dialog(window, mode, start.folder, start.name);
    dialog.showCodes(requestedCharCode(start.charCode), requestedReturnCode(start.returnCode));
    const bool isAccepted = dialog.exec() == QDialog::Accepted;
    // Where a question and the dialog it belongs to go at once, window managers activate some other window.
    window->activateWindow();
    if (!isAccepted)
        return std::nullopt;
    return FileChoice{ dialog.dirPath, dialog.fileName, int(dialog.charCode.value_or(CharCode::Binary)),
        int(dialog.returnCode.value_or(ReturnCode::None)) };
}

bool WindowDialogs::runOptions(QWidget *window)
{
    return frmOption(window).exec() == QDialog::Accepted;
}
