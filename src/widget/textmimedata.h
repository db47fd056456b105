#pragma once

#include "text/textstore.h"

#include <QMimeData>
#include <QPointer>

#include <functional>

class TextCodec;

/// Text for a clipboard or a drag that is made into a string only when someone asks for it.
class TextMimeData : public QMimeData {
    Q_OBJECT
public:
    using Source = std::function<TextPiece()>;
    /// `byteCodec` as TextDocument has it; `editor`, from which the text is, is not owned and may go before.
    TextMimeData(Source source, const TextCodec &byteCodec, const QObject *editor);
    /// From now on the text comes from `source`.
    void setSource(Source source);
    /// The text letter for letter with its spellings, for a paste inside this program.
    TextPiece piece() const;
    const TextCodec &byteCodec() const { return m_byteCodec; }
    bool isFrom(const QObject *editor) const { return m_editor == editor; }

    bool hasFormat(const QString &mimeType) const override;
    QStringList formats() const override;

protected:
    QVariant retrieveData(const QString &mimeType, QMetaType type) const override;

private:
    Source m_source;
    const TextCodec &m_byteCodec;
    const QPointer<const QObject> m_editor;
};
