#include "app/documentproperties.h"

#include "document/textcounts.h"
#include "editor/ctlediter.h"
#include "files/filename.h"
#include "platform/digitgrouping.h"

#include <QCoreApplication>

QString propertiesOf(const ctlEditer &editor, const TextCounts &counts)
{
    const qint64 bytes = fileSize(counts, editor.document().charCode(), editor.document().returnCode());
    const qint64 kilobytes = (bytes + 1023) / 1024;
    const qint64 chars = counts.singleByteChars + counts.doubleByteChars;
    return QCoreApplication::translate(
               "frmMain", "Path : %1\nName : %2\n\nChar code  : %3\nReturn code: %4\n")
               .arg(FileName::forMessage(editor.path()), FileName::forMessage(editor.name()),
                   editor.charCodeName(), editor.returnCodeName())
        + QCoreApplication::translate("frmMain", "File size  : %1 KB (%2 byte)\n\n")
              .arg(groupDigits(kilobytes), groupDigits(bytes))
        + QCoreApplication::translate("frmMain", "Char count : %1\nRow count  : %2")
              .arg(groupDigits(chars), groupDigits(counts.lineFeeds + 1));
}
