#include "app/windowdialogs.h"

#include "app/documentfile.h"
#include "filedialog/documentsfolder.h"
#include "options/frmmoreoptions.h"
#include "options/frmoption.h"
#include "platform/windowsystem.h"

using namespace Qt::StringLiterals;

FileChoice startFor(const ctlEditer *editor)
{
    if (editor && hasFile(*editor))
        return { editor->path(), editor->name() };
    return { DocumentsFolder::path(), u".txt"_s };
}

std::optional<FileChoice> WindowDialogs::runFileDialog(
    QWidget *window, frmFileDialog::Mode mode, const FileChoice &start)
{
    frmFileDialog dialog(window, mode, start.folder, start.name);
    dialog.showCodes(start.charCode, start.returnCode);
    const bool isAccepted = dialog.exec() == QDialog::Accepted;
    // Where a question and the dialog it belongs to go at once, window managers activate some other window.
    WindowSystem::activate(*window);
    if (!isAccepted)
        return std::nullopt;
    return FileChoice{ dialog.dirPath, dialog.fileName, dialog.charCode, dialog.returnCode };
}

bool WindowDialogs::runOptions(QWidget *window)
{
    return frmOption(window).exec() == QDialog::Accepted;
}

bool WindowDialogs::runMoreOptions(QWidget *window)
{
    return frmMoreOptions(window).exec() == QDialog::Accepted;
}
