#pragma once

#include <QMimeData>

#include <functional>

/// Plain text for a clipboard or a drag that is made into a string only when someone asks for it.
class TextMimeData : public QMimeData {
    Q_OBJECT
public:
    using Source = std::function<QString()>;
    explicit TextMimeData(Source source);
    /// From now on the text comes from `source`.
    void setSource(Source source);
    /// The text letter for letter, for a paste inside this program.
    QString exactText() const;

    bool hasFormat(const QString &mimeType) const override;
    QStringList formats() const override;

protected:
    QVariant retrieveData(const QString &mimeType, QMetaType type) const override;

private:
    Source m_source;
};
