#include "editor/ctlediter.h"

#include "editor/readfailurebox.h"
#include "files/filename.h"
#include "files/statefolder.h"
#include "files/untoldcopy.h"
#include "platform/messagebox.h"
#include "settings/settings.h"

FileCodes ctlEditer::defaultCodes()
{
    return { appSettings().defaultCharCode(), appSettings().defaultReturnCode() };
}

bool ctlEditer::loadFile(const QString &path, const QString &name, int requested)
{
    return loadFile(path, name, requestedCharCode(requested));
}

bool ctlEditer::loadFile(const QString &path, const QString &name, std::optional<CharCode> requested)
{
    if (!document().requestChange())
        return false;
    TextStore text;
    if (const auto failure = laidOutDocument().read(path, name, requested, defaultCodes(), text)) {
        tellReadFailure(this, *failure);
        return false;
    }
    setText(std::move(text));
    return true;
}

bool ctlEditer::loadUtf16(const QString &path, const QString &name, Utf16Form form)
{
    if (!document().requestChange())
        return false;
    TextStore text;
    if (const auto failure = laidOutDocument().readUtf16(path, name, form, defaultCodes(), text)) {
        tellReadFailure(this, *failure);
        return false;
    }
    setText(std::move(text));
    return true;
}

void ctlEditer::startFile(const QString &path, const QString &name, std::optional<CharCode> charCode)
{
    const FileCodes codes = defaultCodes();
    laidOutDocument().startFile(path, name, { charCode.value_or(codes.charCode), codes.returnCode });
}

bool ctlEditer::reload(const QString &path, const QString &name)
{
    return loadFile(path, name, std::nullopt);
}

GrowthResult ctlEditer::readGrowth()
{
    const RowIndex top = topRow();
    const bool isEndShown = top + viewport()->height() / cellHeight() > store().lastRow();
    const CursorPlace cursor = cursorPlace();
    const CursorPlace anchor = anchorPlace();
    const bool isCursorAtEnd = cursor.offset == store().end() && !hasMarkedText();
    {
        const Batch batch(*this);
        if (const GrowthResult growth = document().readGrowth(); !growth)
            return growth;
        const Offset end = document().store().end();
        if (isCursorAtEnd)
            setCursorPlace({ end });
        else
            select({ qMin(anchor.offset, end) }, { qMin(cursor.offset, end) });
    }
    setTopRow(isEndShown ? store().lastRow() : top);
    return { true };
}

bool ctlEditer::saveFile(const QString &path, const QString &name, int charCode, int returnCode)
{
    return saveFile(path, name, requestedCharCode(charCode), requestedReturnCode(returnCode));
}

bool ctlEditer::saveFile(const QString &path, const QString &name, std::optional<CharCode> charCode,
    std::optional<ReturnCode> returnCode)
{
    if (!document().requestChange())
        return false;
    const SaveResult result = document().save(path, name, charCode, returnCode);
    noteSaved(result);
    return result.outcome == SaveResult::Outcome::Written;
}

void ctlEditer::noteSaved(const SaveResult &result)
{
    const bool isWritten = result.outcome == SaveResult::Outcome::Written;
    const bool isAsWanted = result.wasToBeKept && result.overtaken == Overtaken::No;
    const bool isKept = isWritten && !result.keptCopy.isEmpty();
    if (isKept && (isAsWanted || result.overtaken == Overtaken::ByProgram))
        emit fileKept(result.keptCopy);
    else if (!isWritten || isKept)
        tellSaved(result);
}

void ctlEditer::tellSaved(const SaveResult &result)
{
    emit aboutToTell();
    if (result.outcome == SaveResult::Outcome::Binary) {
        MessageBox::information(this, tr("Error"), tr("The binary file cannot be saved."));
        return;
    }
    const QString kept = FileName::forMessage(result.keptCopy);
    if (result.outcome == SaveResult::Outcome::Written) {
        const QString reason = result.overtaken == Overtaken::ByDocument
            ? tr("Another document was saved as this file since. Its old content is kept in the file\n%1")
            : tr("The file could not be read before. Its old content is kept in the file\n%1");
        MessageBox::information(this, tr("Confirm File Save"), reason.arg(kept));
        noteTold(FileName::toBytes(result.keptCopy));
        return;
    }
    const QString title = tr("File Write Error");
    MessageBox::critical(
        this, title, tr("Cannot write the file.\nYou do not have the permission or the file may be in use."));
    if (!kept.isEmpty())
        MessageBox::critical(
            this, title, tr("The file may be damaged. Its old content is kept in the file\n%1").arg(kept));
    if (result.isStateFolderMissed)
        MessageBox::critical(this, title,
            tr("This file can only be written over when its old content is kept before, in the folder\n%1\n"
               "That was not possible. Save the text under another name, or see to it that this folder has "
               "room "
               "and can be written to.")
                .arg(FileName::forMessage(FileName::fromBytes(stateFolder()))));
}
