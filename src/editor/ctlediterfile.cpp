#include "editor/ctlediter.h"
#include "editor/readfailurebox.h"

#include "codec/codecs.h"
#include "document/detection.h"
#include "document/documentwriter.h"
#include "document/lineends.h"
#include "files/filename.h"
#include "files/readfile.h"
#include "platform/messagebox.h"
#include "settings/settings.h"
#include "text/enteredtext.h"

namespace {

/// Whether a text has undecodable bytes or spellings.
bool hasBytes(const TextStore &store)
{
    for (qint64 at = 0; at < store.length();) {
        const TextChunk run = store.spelledChunkAt(at);
        const QString text = run.utf16.toString();
        if (run.spelling || cleanInput(text) != text)
            return true;
        at += run.size();
    }
    return store.spelledChunkAt(store.length()).spelling.has_value();
}

} // namespace

bool ctlEditer::loadFile(const QString &path, const QString &name, int requested)
{
    m_path = path;
    m_name = name;
    m_unreadFile = path + name;
    QByteArray bytes;
    if (const auto failure = readWholeFile(path + name, bytes)) {
        tellReadFailure(this, *failure);
        return false;
    }
    m_unreadFile.clear();
    m_version.setRead();
    setUndoEnabled(false);
    clear();
    m_returnCode = detectReturnCode(bytes, appSettings().defaultReturnCode());
    m_charCode =
        requestedCharCode(requested).value_or(detectCharCode(bytes, appSettings().defaultCharCode()));
    if (m_charCode == CharCode::Binary)
        m_returnCode = ReturnCode::None;
    normalizeLineEnds(bytes, m_returnCode);
    setDecodedText(std::move(bytes));
    setUnmodified();
    return true;
}

void ctlEditer::setDecodedText(QByteArray &&bytes)
{
    const TextCodec *const codec = &codecToRead(m_charCode, bytes);
    TextStore text = codec->decode(bytes, layoutRule());
    bytes.clear();
    setText(std::move(text));
    setReadWith(codec);
}

void ctlEditer::setReadWith(const TextCodec *codec)
{
    m_readWith = codec;
    m_keepsSpellings = true;
    setByteCode(codec->name().toByteArray());
}

/// As if an empty file had been read.
void ctlEditer::setReadWithOwnCode()
{
    setReadWith(&infoOf(m_charCode).codec());
}

/// Bytes of the code that the text was read in stay what they are, so that it may be saved in that code
/// again.
void ctlEditer::setWrittenWith(const TextCodec *codec)
{
    if (codec == m_readWith)
        return;
    m_keepsSpellings = false;
    if (!hasBytes(store()))
        setReadWith(codec);
}

TextCodec::AsRead ctlEditer::writtenAsRead(const TextCodec *codec) const
{
    if (codec != m_readWith)
        return TextCodec::AsRead::Nothing;
    return m_keepsSpellings ? TextCodec::AsRead::Everything : TextCodec::AsRead::UndecodableBytes;
}

bool ctlEditer::reload(const QString &path, const QString &name)
{
    return loadFile(path, name, 0);
}

bool ctlEditer::saveFile(const QString &path, const QString &name, int charCode, int returnCode)
{
    if (m_charCode == CharCode::Binary) {
        emit aboutToTell();
        MessageBox::information(this, tr("Error"), tr("The binary file cannot be saved."));
        return false;
    }
    m_charCode = requestedCharCode(charCode).value_or(m_charCode);
    m_returnCode = requestedReturnCode(returnCode).value_or(m_returnCode);
    if (!writeText(path + name))
        return false;
    setUndoEnabled(false);
    m_path = path;
    m_name = name;
    m_unreadFile.clear();
    setUnmodified();
    return true;
}

bool ctlEditer::writeText(const QString &fileName)
{
    const QByteArray target = FileName::toBytes(fileName);
    DocumentWriter writer(target, m_returnCode);
    const bool isOvertaken = m_version.beginWriting(target, FileName::toBytes(m_path + m_name));
    if (isOvertaken || fileName == m_unreadFile)
        writer.keepOldContent();
    const TextCodec *const codec = &infoOf(m_charCode).codec();
    const bool isWritten = writer.write(store(), *codec, writtenAsRead(codec));
    if (isWritten) {
        m_version.endWriting(target);
        setWrittenWith(codec);
    }
    const QString kept = FileName::forMessage(FileName::fromBytes(writer.keptCopy()));
    const QString title = tr("File Write Error");
    if (!isWritten || !kept.isEmpty())
        emit aboutToTell();
    if (!isWritten)
        MessageBox::critical(this, title,
            tr("Cannot write the file.\nYou do not have the permission or the file may be in use."));
    if (!isWritten && !kept.isEmpty())
        MessageBox::critical(
            this, title, tr("The file may be damaged. Its old content is kept in the file\n%1").arg(kept));
    const QString reason = isOvertaken
        ? tr("Another document was saved as this file since. Its old content is kept in the file\n%1")
        : tr("The file could not be read before. Its old content is kept in the file\n%1");
    if (isWritten && !kept.isEmpty())
        MessageBox::information(this, tr("Confirm File Save"), reason.arg(kept));
    return isWritten;
}

/// The text is what the file has, and nothing leads back behind it.
void ctlEditer::setUnmodified()
{
    setEdited(false);
    setUndoEnabled(true);
    m_undoAvailable = false;
    m_redoAvailable = false;
}
