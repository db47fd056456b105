#include "editor/readfailurebox.h"

#include "platform/messagebox.h"

#include <QCoreApplication>

namespace {

constexpr const char *missingText = QT_TRANSLATE_NOOP("ctlEditer", "This file is not exists!");
constexpr const char *notOpenedText = QT_TRANSLATE_NOOP("ctlEditer", "This file was not opened!");
constexpr const char *folderText = QT_TRANSLATE_NOOP("ctlEditer", "This is a folder, not a file!");
constexpr const char *deviceText = QT_TRANSLATE_NOOP("ctlEditer", "This is a device or a pipe, not a file!");
constexpr const char *tooLargeText =
    QT_TRANSLATE_NOOP("ctlEditer", "There is not enough memory for this file!");
constexpr const char *brokenOffText =
    QT_TRANSLATE_NOOP("ctlEditer", "This file could not be read to its end!");

const char *textOf(ReadFailure failure)
{
    switch (failure) {
    case ReadFailure::Missing:
        return missingText;
    case ReadFailure::NotOpened:
        return notOpenedText;
    case ReadFailure::Folder:
        return folderText;
    case ReadFailure::Device:
        return deviceText;
    case ReadFailure::TooLarge:
        return tooLargeText;
    case ReadFailure::BrokenOff:
        return brokenOffText;
    }
    Q_UNREACHABLE();
}

} // namespace

void tellReadFailure(QWidget *parent, ReadFailure failure)
{
    MessageBox::critical(parent, QCoreApplication::translate("ctlEditer", "File Load Error!"),
        QCoreApplication::translate("ctlEditer", textOf(failure)));
}
