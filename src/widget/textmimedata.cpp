#include "widget/textmimedata.h"

#include "widget/utf8text.h"

#include <new>

static const QString plainText = QStringLiteral("text/plain");

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
    try {
        if (type.id() == QMetaType::QByteArray)
            return utf8Of(m_source(), spreadOverThreads);
        return m_source().text();
    } catch (const std::bad_alloc &) {
        return {}; // to the toolkit nothing may be thrown
    }
}
