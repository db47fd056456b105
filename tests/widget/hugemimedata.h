#pragma once

#include <QMimeData>

#include <new>

/// Text of another program for which there is not enough memory.
class HugeMimeData : public QMimeData {
public:
    bool hasFormat(const QString &mimeType) const override { return formats().contains(mimeType); }
    QStringList formats() const override { return { QStringLiteral("text/plain") }; }

protected:
    QVariant retrieveData(const QString &, QMetaType) const override { throw std::bad_alloc(); }
};
