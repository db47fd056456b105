#include "app/frmmain.h"

#include "app/textcounts.h"
#include "editor/ctlediter.h"
#include "files/filename.h"
#include "platform/digitgrouping.h"
#include "platform/messagebox.h"

void frmMain::slotCmdFileProp()
{
    const ctlEditer *editor = currentEditor();
    if (!editor)
        return;
    const TextCounts counts = countText(editor->store());
    const qint64 bytes = fileSize(counts, CharCode(editor->charCode()), ReturnCode(editor->returnCode()));
    const qint64 kilobytes = (bytes + 1023) / 1024;
    const qint64 chars = counts.singleByteChars + counts.doubleByteChars;
    MessageBox::information(this, tr("Document properties"),
        tr("Path : %1\nName : %2\n\nChar code  : %3\nReturn code: %4\n")
                .arg(FileName::forMessage(editor->path()), FileName::forMessage(editor->name()),
                    editor->charCodeName(), editor->returnCodeName())
            + tr("File size  : %1 KB (%2 byte)\n\n").arg(groupDigits(kilobytes), groupDigits(bytes))
            + tr("Char count : %1\nRow count  : %2")
                  .arg(groupDigits(chars), groupDigits(counts.lineFeeds + 1)));
}
