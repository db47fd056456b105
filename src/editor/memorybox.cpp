#include "editor/memorybox.h"

#include "platform/messagebox.h"

#include <QCoreApplication>

void tellTooLittleMemory(QWidget *parent)
{
    MessageBox::critical(parent, QCoreApplication::translate("ctlEditer", "Error"),
        QCoreApplication::translate("ctlEditer", "There is not enough memory for this!"));
}
