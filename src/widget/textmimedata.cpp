#include "widget/textmimedata.h"

#include "text/textsnapshot.h"

static const QString plainText = QStringLiteral("text/plain");

/// As of its text(), which would be a string of twice as many bytes and more.
static QByteArray utf8Of(TextPiece piece)
{
    const TextSnapshot text(std::move(piece), {});
    QByteArray bytes;
    bytes.reserve(text.length());
    for (Offset at; at < text.end();) {
        const TextChunk chunk = text.chunkAt(at);
        if (chunk.isLatin1())
            bytes += QString::fromLatin1(chunk.latin1).toUtf8();
        else
            bytes += chunk.utf16.toUtf8();
        at += chunk.size();
    }
    return bytes;
}

TextMimeData::TextMimeData(Source source, const TextCodec &byteCodec, const QObject *editor)
    : m_source(std::move(source))
    , m_byteCodec(byteCodec)
    , m_editor(editor)
{
}

void TextMimeData::setSource(Source source)
{
    m_source = std::move(source);
}

TextPiece TextMimeData::piece() const
{
    return m_source();
}

bool TextMimeData::hasFormat(const QString &mimeType) const
{
    return mimeType == plainText;
}

QStringList TextMimeData::formats() const
{
    return { plainText };
}

QVariant TextMimeData::retrieveData(const QString &mimeType, QMetaType type) const
{
    if (mimeType != plainText)
        return {};
    return type.id() == QMetaType::QByteArray ? QVariant(utf8Of(m_source())) : QVariant(m_source().text());
}
