#pragma once

#include <QIconEngine>

/// Draws the pictures of an icon in the device pixels asked for. The pictures are looked up and read when
/// first needed; what was drawn is kept in the toolkit's pixmap cache.
class PictureEngine : public QIconEngine {
public:
    PictureEngine(const QString &name, const QString &disabledName);

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal scale) override;
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override;
    QIconEngine *clone() const override;
    QString key() const override;
    QString iconName() override;
    bool isNull() override;

private:
    QPixmap draw(const QSize &devicePixels, QIcon::Mode mode);

    QString m_name;
    QString m_disabledName;
};
